#pragma once

#include <zvt/protocol/Texts.h>

#include <QByteArray>
#include <QString>

class CSystem;

namespace zvt {

/// Section [ECTerminal] of konfig.ini. Times in milliseconds.
struct TerminalConfig {
    QString address; ///< host on the network; wins over `device`
    int port = 20007;
    QString device; ///< "COM1" or the path of a device
    int baud = 9600;
    int stopBits = 2;
    QByteArray password = QByteArray(3, '\0'); ///< packed digits
    Charset charset = Charset::Cp437;
    bool printReceipts = false; ///< by the till, not by the terminal
    int connectMs = 3000;       ///< until the terminal takes the connection
    int answerMs = 5000;        ///< until it answers a command, and acknowledges a block on a serial line
    int dialogueMs = 180000;    ///< until a dialogue ends, from each sign of life on
    int settleMs = 60000;       ///< for finding out how a payment ended
    int gapMs = 200;            ///< between two bytes of a serial block

    [[nodiscard]] bool isConfigured() const { return !address.isEmpty() || !device.isEmpty(); }
    /// Values that make no sense take their defaults.
    [[nodiscard]] static TerminalConfig Read(const CSystem& system, const QString& file);
};

} // namespace zvt
