#include <session/CSystem.h>
#include <zvt/TerminalConfig.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace zvt {

TerminalConfig TerminalConfig::Read(const CSystem& system, const QString& file) {
    const auto text = [&](const QString& key) {
        return system.ReadProfileString(u"ECTerminal"_s, key, file).trimmed();
    };
    const auto number = [&](const QString& key, int fallback, int least, int most) {
        bool ok = false;
        const int value = text(key).toInt(&ok);
        return ok && value >= least && value <= most ? value : fallback;
    };
    const auto seconds = [&](const QString& key, int fallback) {
        const QString value = text(key);
        bool ok = false;
        const double wanted = QString(value).replace(u',', u'.').toDouble(&ok);
        constexpr double hour = 3600;
        return ok && wanted > 0 && wanted <= hour ? std::max(1, static_cast<int>(wanted * 1000)) : fallback;
    };
    TerminalConfig config;
    config.address = text(u"Adresse"_s);
    config.port = number(u"Port"_s, config.port, 1, 65535);
    config.device = text(u"Geraet"_s);
    config.baud = number(u"Baudrate"_s, config.baud, 300, 921600);
    config.stopBits = number(u"StopBits"_s, config.stopBits, 1, 2);
    const QByteArray password = text(u"Passwort"_s).toLatin1();
    if (password.size() == 6 && std::ranges::all_of(password, [](char c) { return c >= '0' && c <= '9'; }))
        config.password = QByteArray::fromHex(password);
    if (text(u"Zeichensatz"_s).contains(u"8859"_s)) config.charset = Charset::Latin1;
    config.printReceipts = text(u"BelegDruck"_s) == u"1"_s;
    config.connectMs = seconds(u"ZeitVerbindung"_s, config.connectMs);
    config.answerMs = seconds(u"ZeitAntwort"_s, config.answerMs);
    config.dialogueMs = seconds(u"ZeitVorgang"_s, config.dialogueMs);
    config.settleMs = seconds(u"ZeitKlaerung"_s, config.settleMs);
    return config;
}

} // namespace zvt
