#include "EnteredAmount.h"
#include "Limits.h"

#include <register/PfandDialog.h>
#include <session/gAngaben.h>
#include <text/Convert.h>

using namespace Qt::StringLiterals;

namespace till::PfandDialog {

QString Betrag() { return CStr(Value(gPfandAngabe.Betrag)); }
QString Anzahl() { return QString::number(gPfandAngabe.Anzahl); }

QChar AcceptKey(QChar key) {
    if (key == u'.') return u',';
    const bool taken = (key >= u'0' && key <= u'9') || key == u',' || key == u'*' || key == u'\b';
    return taken ? key : QChar();
}

bool MoveFactor(QString& input, QString& anzahl) {
    const qsizetype star = input.indexOf(u'*');
    if (star < 0) return false;
    const QString number = input.left(star);
    input.clear();
    if (!IsNumeric(number)) return true;
    if (const auto factor = Entered(number, [&] { return CInt(Value(number)); }))
        anzahl = QString::number(*factor);
    return true;
}

bool Confirm(QString& input, const QString& anzahl, bool comesBack) {
    int pieces = 1;
    if (IsNumeric(anzahl)) {
        const auto number = Entered(anzahl, [&] { return CInt(Value(anzahl)); });
        if (!number || !limits::IsQuantityMeant(*number)) return false;
        pieces = *number;
    }
    const auto amount = ReadEntered(input.isEmpty() ? u"0"_s : input);
    if (!amount) return false;
    if (!IsLargeAmountMeant(*amount, comesBack
                                         ? u"Sind Sie sicher, dass Sie Leergut über %1 buchen möchten?"_s
                                         : u"Sind Sie sicher, dass Sie Pfand über %1 buchen möchten?"_s)) {
        input.clear();
        return false;
    }
    gPfandAngabe.Anzahl = pieces;
    gPfandAngabe.Betrag = comesBack ? std::min(-*amount, Currency{}) : *amount;
    return true;
}

void Cancel() { gPfandAngabe = {false, 0, {}}; }

} // namespace till::PfandDialog
