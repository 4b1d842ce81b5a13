#pragma once

#include <zvt/protocol/Apdu.h>
#include <zvt/protocol/Texts.h>

#include <QString>
#include <QStringList>

#include <optional>

namespace zvt {

inline constexpr int euro = 978;

/// Status information (04 0F): how a payment, reversal, refund or end of day went.
struct StatusInfo {
    std::optional<int> result;    ///< 0 means booked
    std::optional<qint64> amount; ///< cents
    std::optional<int> currency;
    QString receipt, trace, turnover; ///< digits, "" when they were not told
    QString date, time;               ///< "MMDD", "HHMMSS"
    QString cardName;                 ///< "" when neither name nor a known kind was told
    QString text;                     ///< what the terminal adds in its own words, in one line
    bool complete = true;             ///< every byte was understood

    [[nodiscard]] bool isBooked() const { return result == 0; }
    /// Both tell of the same act: what tells acts apart is equal as far as both know it. Means something only
    /// when they are isComparable.
    [[nodiscard]] bool isSameAct(const StatusInfo& other) const;
    /// Both hold a receipt number or both a trace number.
    [[nodiscard]] bool isComparable(const StatusInfo& other) const;
    /// Holds at least one number by which acts can be told apart.
    [[nodiscard]] bool isIdentified() const { return !receipt.isEmpty() || !trace.isEmpty(); }
};
[[nodiscard]] StatusInfo readStatus(const Apdu& apdu, Charset charset);

/// Intermediate status (04 FF).
struct StateInfo {
    int state = 0xFF;
    QString text;               ///< the terminal's own words, else ours; "" when there are none
    std::optional<int> minutes; ///< the time-out of the dialogue from now on
};
[[nodiscard]] StateInfo readState(const Apdu& apdu, Charset charset);

/// Lines of a receipt (06 D1, 06 D3). An empty text is an empty line.
[[nodiscard]] QStringList readLines(const Apdu& apdu, Charset charset);

/// What the completion (06 0F) of a status enquiry tells about the terminal.
struct TerminalInfo {
    QString version, device, serial;
    std::optional<int> status; ///< 0 means ready
};
[[nodiscard]] TerminalInfo readTerminal(const Apdu& apdu, Charset charset);

/// The reason in an abort (06 1E) or a refusal (84 xx).
struct Failure {
    int code = 0xFF;
    QString text;
};
/// Our words for a reason with the terminal's own behind them, unless these say nothing more.
[[nodiscard]] QString withOwnWords(const QString& reason, const QString& own);
[[nodiscard]] Failure readFailure(const Apdu& apdu, Charset charset);

} // namespace zvt
