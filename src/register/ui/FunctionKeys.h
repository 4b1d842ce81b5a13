#pragma once

#include <QString>

class QKeyEvent;

/// The key table of the register: which function a key of the keyboard starts. Functions are told by the key
/// of their command.
class FunctionKeys {
  public:
    /// `f8IsPrice`: F8 is a second key for the free price instead of the one for deposits. `shortCut`:
    /// Shift+S leads to the group keys and back.
    FunctionKeys(bool f8IsPrice, bool shortCut)
        : m_f8IsPrice(f8IsPrice)
        , m_shortCut(shortCut) {}

    /// What the key starts; "" for a key that belongs to the control with the focus.
    [[nodiscard]] QString find(const QKeyEvent& key) const;
    /// The first key of a function as a menu shows it: "Strg+F8"; "" for none.
    [[nodiscard]] static QString ShownKey(const QString& function);

  private:
    bool m_f8IsPrice;
    bool m_shortCut;
};
