#include <access/ShellBar.h>
#include <text/RuntimeError.h>

#include <algorithm>

using namespace Qt::StringLiterals;

void ShellBar::Add(ShellEntry entry) {
    if (Find(entry.Key) != nullptr)
        throw RuntimeError(457, u"Der Eintrag "_s + entry.Key + u" ist bereits vorhanden."_s, u"ShellBar"_s);
    m_entries.push_back(std::move(entry));
}

void ShellBar::Remove(const QString& Key) {
    std::erase_if(m_entries, [&](const ShellEntry& e) { return e.Key == Key; });
}

const ShellEntry* ShellBar::Find(const QString& Key) const {
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const auto& e) { return e.Key == Key; });
    return found == m_entries.end() ? nullptr : &*found;
}

bool ShellBar::Click(const QString& Key) const {
    const ShellEntry* entry = Find(Key);
    if (entry == nullptr) return false;
    if (entry->Right != nullptr && !(gUser.*entry->Right)) {
        MsgBox(entry->Refusal, entry->RefusalIcon);
        return false;
    }
    // A copy: the act may rebuild the table.
    const std::function<void()> act = entry->Action;
    if (act) act();
    return true;
}
