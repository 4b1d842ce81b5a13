#pragma once

#include <QByteArray>
#include <QString>

namespace zvt {

/// How a terminal writes its texts.
enum class Charset { Cp437, Latin1 };

/// Control characters become blanks; ends at the first NUL.
[[nodiscard]] QString decodeText(const QByteArray& bytes, Charset charset);

/// What a terminal does at the moment, in German; "" for a state that says nothing of its own.
[[nodiscard]] QString stateText(int state);
/// The reason behind a result code, in German, with the code when it is not among the known ones.
[[nodiscard]] QString resultText(int code);
/// Name of a kind of card; "" for one that is not known.
[[nodiscard]] QString cardTypeName(int type);

} // namespace zvt
