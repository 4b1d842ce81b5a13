#include "FunctionKeys.h"

#include <QKeyEvent>

std::optional<Taste> FunctionKeys::find(const QKeyEvent& key) const {
    const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
    const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
    const bool alt = key.modifiers().testFlag(Qt::AltModifier);
    if (alt) return {};
    switch (key.key()) {
    case Qt::Key_Escape:
        return Taste::Clear;
    case Qt::Key_F5:
        return Taste::Storno;
    case Qt::Key_F10:
        return Taste::Total;
    default:
        break;
    }
    if (ctrl && key.key() == Qt::Key_F1) return Taste::OpenLade;
    if (ctrl && key.key() == Qt::Key_P) return Taste::PrintLast;
    if (ctrl) return {};
    switch (key.key()) {
    case Qt::Key_F1:
        return Taste::ArtikelPreis;
    case Qt::Key_F2:
        return Taste::Rabatt;
    case Qt::Key_F4:
        return Taste::Kunde;
    case Qt::Key_F8:
        if (m_f8IsPrice) return Taste::ArtikelPreis;
        return {};
    case Qt::Key_F11:
        return Taste::Karte;
    case Qt::Key_F12:
        return Taste::Exit;
    // One key of the German keyboard: plain it gives "<", with Shift ">".
    case Qt::Key_Less:
        return shift ? Taste::Function : Taste::Exit;
    case Qt::Key_Greater:
        return Taste::Function;
    case Qt::Key_S:
        if (shift && m_shortCut) return Taste::ShortCutFocus;
        return {};
    default:
        return {};
    }
}
