#include <access/ui/frmKasseWechselGeld.h>
#include <session/Globals.h>
#include <text/Convert.h>
#include <ui/TouchKey.h>

using namespace Qt::StringLiterals;

frmKasseWechselGeld::frmKasseWechselGeld(QWidget* parent)
    : NumberDialog(u"Wechselgeld..."_s, u"Bitte geben Sie den Anfangsbestand der Kasse ein."_s,
                   DigitPad::Decimal, parent) {
    pad()->key(DigitPad::Enter)->setObjectName(u"cmdOK"_s);
    setText(u"0,00"_s);
}

void frmKasseWechselGeld::ok() {
    gKassenBestand = CCur(Value(text()));
    accept();
}
