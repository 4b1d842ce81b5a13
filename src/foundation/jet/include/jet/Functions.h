#pragma once

#include <text/Value.h>

#include <QByteArray>
#include <QDateTime>

#include <memory>
#include <span>
#include <vector>

namespace jet {

/// A scalar function that the emitted text calls and the engine must offer. Arguments arrive as typed values:
/// the emitted call carries a type letter per argument as its first argument (one text, e.g. jet_format('ct',
/// a, b)), from which the engine's glue decodes: b Boolean, i integer, d double, f Single, c Currency, t
/// date, s text, v by the engine's own type. The result is encoded by its shape: Boolean as -1/0, Currency as
/// ten-thousandths, dates as days. NULL decodes to Null whatever its letter.
/// A REAL under the letters c and i is an overflow (6). A RuntimeError that `call` raises ends the statement
/// and must reach the caller unchanged. Every name takes any number of arguments.
struct Function {
    QByteArray name;                                           ///< as emitted, e.g. "jet_format"
    Value (*call)(std::span<const Value> arguments) = nullptr; ///< may raise RuntimeError
    bool deterministic = true;
};
/// Beside them the engine offers jet_real(x), which raises 6 for a REAL that is no finite number and else
/// gives its argument.
[[nodiscard]] const std::vector<Function>& functions();

/// The clock behind Date(), Time(), Now() and the year of dates that are written without one; the system's
/// unless another is given. nullptr gives it back.
void setClock(QDateTime (*now)());

/// An aggregate beyond the engine's own (First, Last, StDev, StDevP, Var, VarP, ...), called with the same
/// letters.
class Accumulator {
  public:
    virtual ~Accumulator() = default;
    virtual void step(std::span<const Value> arguments) = 0;
    [[nodiscard]] virtual Value result() const = 0;
};
struct Aggregate {
    QByteArray name;
    std::unique_ptr<Accumulator> (*create)() = nullptr;
};
[[nodiscard]] const std::vector<Aggregate>& aggregates();

/// Name of the collation of text columns: without case, German order; compares with CompareText of
/// <text/Sort.h>.
inline constexpr const char* collationName = "GERMAN";

} // namespace jet
