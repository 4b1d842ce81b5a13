#pragma once

#include <text/Value.h>

#include <QStringView>

namespace jet {

/// What the binder and the emitters know of a function of the dialect.
struct FunctionInfo {
    /// How its type follows.
    enum class Result : std::uint8_t {
        Text,
        Boolean,
        Long,
        Double,
        Currency,
        Date,
        Single,
        Number, ///< that of the first argument, Double unless it is a number
        First,  ///< that of the first argument
        Common, ///< the widest of the values among which it chooses
    };
    /// Those that are more than a call.
    enum class Form : std::uint8_t {
        Call,
        IIf,
        Switch,
        Choose,
        Nz,
        IsNull,
        Len,
        Left,
        Right,
        Trim,
        LTrim,
        RTrim,
        Abs,
        Clock,
        Identity,
        Domain, ///< DLookup and the like: texts that make a subquery
        Eval,   ///< a text that is an expression
        Count,
        Sum,
        Avg,
        Min,
        Max,
        Aggregate,
    };
    const char16_t* name;
    const char* sql; ///< as emitted
    int least, most; ///< arguments; -1: no limit
    Result result;
    Form form = Form::Call;

    [[nodiscard]] bool isAggregate() const { return form >= Form::Count; }
};

/// nullptr for an unknown name; without case.
[[nodiscard]] const FunctionInfo* findFunction(QStringView name);

} // namespace jet
