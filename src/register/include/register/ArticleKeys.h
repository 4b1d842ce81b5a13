#pragma once

#include <QString>

#include <array>

namespace till {

/// The group keys and the article keys below them.
class ArticleKeys {
  public:
    static constexpr int Groups = 5, Keys = 20;
    struct Key {
        QString caption, artikelNummer;
    };

    /// Reads the captions of the group keys. Raises 340 for a group number that has no key; the rows before
    /// it count.
    void LoadGroups();
    /// Presses a group key: its article keys are read over those of the group before. A key that the new
    /// group does not define keeps what it had. Raises 340 for a number that has no key.
    void PressGroup(int index);

    [[nodiscard]] const QString& group(int index) const {
        return m_groups.at(static_cast<std::size_t>(index));
    }
    [[nodiscard]] const Key& key(int index) const { return m_keys.at(static_cast<std::size_t>(index)); }
    [[nodiscard]] int pressed() const { return m_pressed; }
    [[nodiscard]] const QString& title() const { return m_title; } ///< "Schnellwahltasten - Obst..."

  private:
    std::array<QString, Groups> m_groups;
    std::array<Key, Keys> m_keys;
    int m_pressed = 0;
    QString m_title;
};

} // namespace till
