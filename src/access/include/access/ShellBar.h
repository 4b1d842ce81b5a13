#pragma once

#include <session/MsgBox.h>
#include <session/gUser.h>

#include <QString>

#include <functional>
#include <vector>

/// One entry of the shell's bar.
struct ShellEntry {
    QString Key, Caption, ToolTip;
    bool Rechte::*Right = nullptr; ///< the right of gUser it takes; none for everybody
    std::function<void()> Action;
    QString Shortcut; ///< key sequence such as "F2", "" for none
    /// The refusal; the entry for settling a till words it differently.
    MsgIcon RefusalIcon = MsgIcon::Critical;
    QString Refusal = QStringLiteral("Sie haben nicht die nötigen Rechte um diese Aktion auszuführen.");
};

/// The shell's bar `mainButtonBar` as a table. A new area is one more entry:
///
///     bar.Add({u"Kunden"_s, u"Kunden"_s, u"Verwalten Sie Ihre Kunden"_s, &Rechte::R_Kunden, showKunden,
///     u"F4"_s});
class ShellBar {
  public:
    /// Entries stand in the order in which they were added. Raises 457 for a key that is there already.
    void Add(ShellEntry entry);
    /// Takes an entry away; unknown keys are ignored.
    void Remove(const QString& Key);
    [[nodiscard]] const std::vector<ShellEntry>& Entries() const { return m_entries; }
    /// nullptr when there is no such entry.
    [[nodiscard]] const ShellEntry* Find(const QString& Key) const;
    /// Tests the right, tells a refusal, else acts. True when it acted; False also for an unknown key.
    bool Click(const QString& Key) const;

  private:
    std::vector<ShellEntry> m_entries;
};
