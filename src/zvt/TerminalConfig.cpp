#include <session/CSystem.h>
#include <session/Settings.h>
#include <zvt/TerminalConfig.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace zvt {

TerminalConfig TerminalConfig::Read(const CSystem& system, const QString& file) {
    const auto text = [&](const QString& key) {
        return system.ReadProfileString(u"ECTerminal"_s, key, file).trimmed();
    };
    const auto number = [&](const QString& key) {
        return SettingNumber(system, u"ECTerminal"_s, key, file).value_or(0);
    };
    const auto milliseconds = [&](const QString& key) { return static_cast<int>(number(key) * 1000); };
    TerminalConfig config;
    config.address = text(u"Adresse"_s);
    config.port = static_cast<int>(number(u"Port"_s));
    config.device = text(u"Geraet"_s);
    config.baud = static_cast<int>(number(u"Baudrate"_s));
    config.stopBits = static_cast<int>(number(u"StopBits"_s));
    const QByteArray password = text(u"Passwort"_s).toLatin1();
    if (password.size() == 6 && std::ranges::all_of(password, [](char c) { return c >= '0' && c <= '9'; }))
        config.password = QByteArray::fromHex(password);
    if (text(u"Zeichensatz"_s).contains(u"8859"_s)) config.charset = Charset::Latin1;
    config.printReceipts = text(u"BelegDruck"_s) == u"1"_s;
    config.connectMs = milliseconds(u"ZeitVerbindung"_s);
    config.answerMs = milliseconds(u"ZeitAntwort"_s);
    config.dialogueMs = milliseconds(u"ZeitVorgang"_s);
    config.settleMs = milliseconds(u"ZeitKlaerung"_s);
    return config;
}

} // namespace zvt
