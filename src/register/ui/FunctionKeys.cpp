#include "FunctionKeys.h"

#include <ui/Commands.h>

#include <QKeyEvent>
#include <QKeySequence>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum class Ctrl { Without, With, Either };

struct Binding {
    Qt::Key key;
    Ctrl ctrl;
    QStringView function;
    [[nodiscard]] bool fits(bool pressed) const {
        return ctrl == Ctrl::Either || (ctrl == Ctrl::With) == pressed;
    }
};

constexpr Binding table[]{
    {Qt::Key_Escape, Ctrl::Either, u"cmdClear"},  {Qt::Key_F1, Ctrl::Without, u"cmdArtikelPreis"},
    {Qt::Key_F1, Ctrl::With, u"FileOpenLade"},    {Qt::Key_F2, Ctrl::Without, u"cmdRabatt"},
    {Qt::Key_F2, Ctrl::With, u"FileLangText"},    {Qt::Key_F3, Ctrl::Either, u"cmdSearch"},
    {Qt::Key_F4, Ctrl::Without, u"cmdKunde"},     {Qt::Key_F4, Ctrl::With, u"FileLangText"},
    {Qt::Key_F5, Ctrl::Either, u"cmdStorno"},     {Qt::Key_F6, Ctrl::Either, u"FileSaveTemp"},
    {Qt::Key_F7, Ctrl::Either, u"FileLoadTemp"},  {Qt::Key_F8, Ctrl::Without, u"cmdPfand"},
    {Qt::Key_F8, Ctrl::With, u"FileBonHistorie"}, {Qt::Key_F9, Ctrl::Without, u"cmdAuftrag"},
    {Qt::Key_F9, Ctrl::With, u"FileReklamation"}, {Qt::Key_F10, Ctrl::Either, u"cmdTotal"},
    {Qt::Key_F11, Ctrl::Without, u"cmdKarte"},    {Qt::Key_F11, Ctrl::With, u"FileAngebote"},
    {Qt::Key_F12, Ctrl::Without, u"cmdExit"},     {Qt::Key_F12, Ctrl::With, u"FileLieferscheine"},
    {Qt::Key_P, Ctrl::With, u"FilePrintLast"},    {Qt::Key_Z, Ctrl::With, u"FileUndo"},
};

} // namespace

QString FunctionKeys::find(const QKeyEvent& key) const {
    const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
    const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
    if (key.modifiers().testFlag(Qt::AltModifier)) return {};
    if (!ctrl) {
        // One key of the German keyboard: plain it gives "<", with Shift ">".
        if (key.key() == Qt::Key_Greater || (key.key() == Qt::Key_Less && shift)) return u"cmdFunction"_s;
        if (key.key() == Qt::Key_Less) return u"cmdExit"_s;
        if (key.key() == Qt::Key_S && shift && m_shortCut) return u"ShortCutFocus"_s;
        if (key.key() == Qt::Key_F8 && m_f8IsPrice) return u"cmdArtikelPreis"_s;
    }
    if (key.key() == Qt::Key_Z && shift) return {};
    const auto found = std::find_if(std::begin(table), std::end(table), [&](const Binding& binding) {
        return binding.key == key.key() && binding.fits(ctrl);
    });
    return found == std::end(table) ? QString() : found->function.toString();
}

QString FunctionKeys::ShownKey(const QString& function) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const Binding& binding) { return binding.function == function; });
    if (found == std::end(table)) return {};
    const int key = found->key | (found->ctrl == Ctrl::With ? int(Qt::ControlModifier) : 0);
    return ShortcutText(QKeySequence(key).toString(QKeySequence::PortableText));
}
