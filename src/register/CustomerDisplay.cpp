#include "CustomerDisplay.h"

#include <register/Prices.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/Log.h>
#include <text/CodePage.h>
#include <text/Format.h>
#include <text/RuntimeError.h>
#include <text/Strings.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr int width = 20;
constexpr int restSeconds = 60; ///< of a display that takes no bytes
const QByteArray selectDisplay("\x1B\x3D\x02"), selectPrinter("\x1B\x3D\x01");

/// Exactly one row: filled with blanks or cut at the right.
QString row(const QString& text) { return text.leftJustified(width, u' ', true); }

/// The blanks in front of a text that ends at the right edge; raises 5 when the text is longer than a row.
QString indent(const QString& text) { return vb::Space(width - vb::Len(text)); }

/// The letters that displays have not; "ß" they have.
QString withoutUmlauts(QString text) {
    text.replace(u'ü', u"ue"_s).replace(u'Ü', u"Ue"_s);
    text.replace(u'ä', u"ae"_s).replace(u'Ä', u"Ae"_s);
    return text.replace(u'ö', u"oe"_s).replace(u'Ö', u"Oe"_s);
}

} // namespace

void CustomerDisplay::OpenComPort(int Port, bool& Opened) {
    Opened = false;
    if (Port < 1) return;
    try {
        mainCom.CommPort = Port;
        mainCom.PortOpen(true);
        Opened = mainCom.PortOpen();
    } catch (const RuntimeError&) { // told nowhere: the sale does not need a display
    }
}

template <typename Text>
void CustomerDisplay::show(const Text& text) {
    if (rests()) return;
    bool opened = false;
    OpenComPort(gKundenLCDPort, opened);
    if (!opened) return;
    const QByteArray clear = '\x1B' + ToWindows1252(vb::Chr(gKundenLCDClearCode));
    if (!reaches([&] {
            if (gEnabledIMDisplayModus) mainCom.Output(selectDisplay);
            mainCom.Output(clear);
        }))
        return;
    const QByteArray bytes = ToWindows1252(text());
    if (!reaches([&] {
            mainCom.Output(bytes);
            if (gEnabledIMDisplayModus) mainCom.Output(selectPrinter);
            mainCom.PortOpen(false);
        }))
        return;
    m_failed = {};
}

bool CustomerDisplay::rests() const {
    if (!m_failed.isValid()) return false;
    const qint64 since = m_failed.secsTo(Now());
    return since >= 0 && since < restSeconds;
}

template <typename Act>
bool CustomerDisplay::reaches(const Act& act) {
    try {
        act();
        return true;
    } catch (const RuntimeError& error) {
        WriteLog(u"Kundenanzeige: %1 - %2"_s.arg(error.Number).arg(error.Description));
    }
    try {
        Close();
    } catch (const RuntimeError&) { // what it did not take is told already
    }
    m_failed = Now();
    m_tell(u"Die Kundenanzeige antwortet nicht. Der Verkauf geht weiter."_s);
    return false;
}

void CustomerDisplay::ShowDefault() {
    show([] { return u"    Vielen Dank      fuer Ihren Einkauf "_s; });
}

void CustomerDisplay::ShowLine(const QString& name, const QString& anz, const QString& menge,
                               const QString& preis) {
    show([&] {
        const QString lower = withoutUmlauts(anz + u"x "_s + menge + u' ' + preis);
        return row(withoutUmlauts(name.left(width))) + row(indent(lower) + lower);
    });
}

void CustomerDisplay::ShowTotal(const QString& caption, bool rounded) {
    show([&] {
        // A rounded amount is shorter than the text that its place was measured by.
        const QString amount = rounded ? Format(Value(ReadMoney(caption)), u"###0.00") : caption;
        return u"Zu zahlender Betrag:\r"_s + row(indent(caption) + amount);
    });
}

void CustomerDisplay::Close() {
    if (mainCom.PortOpen()) mainCom.PortOpen(false);
}

} // namespace till
