#include "platform/HiddenProgram.h"

#include <devices/CashDrawer.h>
#include <devices/PrintJob.h>
#include <devices/Printers.h>
#include <devices/SerialControl.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <text/CodePage.h>
#include <text/Convert.h>
#include <text/Strings.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int lpt1 = 10, lpt2 = 11, fontControl = 12, helperProgram = 13;
constexpr double fontSize = 9.5;

const QByteArray lineEnd("\r\n"), selectDrawer("\x1B\x3D\x00", 3), selectPrinter("\x1B\x3D\x01", 3);

/// Raises 13 for a code that is no number, 5 for one that is no byte.
QByteArray openSequence() { return '\x1B' + ToWindows1252(vb::Chr(CLng(Value(gKassenLadeOpenCode)))) + '\0'; }

/// What goes over a line: the device behind a shared port is selected first and given back at the end.
QList<QByteArray> framed(const QByteArray& open) {
    if (!gEnabledIMDisplayModus) return {open};
    return {selectDrawer, open, selectPrinter};
}

void writeLines(const QString& portText, const QList<QByteArray>& lines) {
    Port port = Port::Open(portText);
    for (const QByteArray& line : lines)
        port.write(line + lineEnd);
    port.close();
}

void bySerialControl(const QList<QByteArray>& messages) {
    SerialControl mainCom;
    mainCom.CommPort = gKassenLadePort;
    mainCom.PortOpen(true);
    for (const QByteArray& message : messages)
        mainCom.Output(message);
    mainCom.PortOpen(false);
}

void bySerialLine(DrawerOwner owner) {
    const QByteArray open = openSequence();
    const bool isKasse = owner == DrawerOwner::Kasse;
    if (gPrintDirectIO)
        writeLines(isKasse ? GetPortText(gKassenLadePort) : u"Com%1:"_s.arg(gKassenLadePort), {open});
    else if (isKasse)
        writeLines(GetPortText(gKassenLadePort), framed(open));
    else
        bySerialControl(framed(open));
}

/// The font maps the text to the printer's command, so the code goes out as it stands in the settings.
void byPrinterFont() {
    if (!HasPrinter(gBonDrucker)) return;
    const QString font = gSystem->ReadProfileString(u"KassenLade"_s, u"ControlFontName"_s, KonfigIni());
    PrintLine(gBonDrucker, u"Kassenlade"_s, font, fontSize, gKassenLadeOpenCode);
}

void byHelperProgram() {
    const QString program = gAppPath + u"OKL.exe"_s;
    if (!QFileInfo(program).isFile()) {
        MsgBox(
            u"Das System konnte die Datei "_s + program +
            u" zum Öffnen der Kassenlade nicht finden. Stellen Sie sicher, dass sich die Datei im Pfad der "
            u"Anwendung befinden oder ändern Sie die Konfiguration entsprechend ab."_s);
        return;
    }
    if (!devices::startHidden(program))
        throw RuntimeError(70, u"Zugriff verweigert: "_s + program + u" lässt sich nicht starten"_s);
}

void open(DrawerOwner owner) {
    switch (gKassenLadePort) {
    case lpt1:
    case lpt2:
        return writeLines(GetPortText(gKassenLadePort), {openSequence()});
    case fontControl:
        return byPrinterFont();
    case helperProgram:
        return byHelperProgram();
    default:
        return bySerialLine(owner);
    }
}

} // namespace

void OpenKassenLade(DrawerOwner owner) {
    if (gKassenLadePort < 1) return;
    Handle(owner == DrawerOwner::Kasse ? "frmKasse" : "frmMain", [owner] { open(owner); });
}
