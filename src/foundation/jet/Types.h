#pragma once

#include <text/Value.h>

namespace jet {

[[nodiscard]] constexpr bool isText(Type t) { return t == Type::Text || t == Type::Memo; }
[[nodiscard]] constexpr bool isWhole(Type t) {
    return t == Type::Boolean || t == Type::Byte || t == Type::Short || t == Type::Long;
}
[[nodiscard]] constexpr bool isReal(Type t) { return t == Type::Single || t == Type::Double; }
[[nodiscard]] constexpr bool isNumber(Type t) { return isWhole(t) || isReal(t) || t == Type::Currency; }

/// The letter under which a value of this type travels into a function of the engine.
[[nodiscard]] constexpr char letterOf(Type t) {
    switch (t) {
    case Type::Boolean:
        return 'b';
    case Type::Byte:
    case Type::Short:
    case Type::Long:
        return 'i';
    case Type::Single:
        return 'f';
    case Type::Double:
        return 'd';
    case Type::Currency:
        return 'c';
    case Type::Date:
        return 't';
    case Type::Text:
    case Type::Memo:
        return 's';
    case Type::Null:
        break;
    }
    return 'v';
}

/// The type that can hold values of both.
[[nodiscard]] constexpr Type commonType(Type a, Type b) {
    if (a == b || b == Type::Null) return a;
    if (a == Type::Null) return b;
    if (isText(a) || isText(b)) return a == Type::Memo || b == Type::Memo ? Type::Memo : Type::Text;
    if (a == Type::Date || b == Type::Date) return Type::Date;
    if (isReal(a) || isReal(b)) return Type::Double;
    if (a == Type::Currency || b == Type::Currency) return Type::Currency;
    return Type::Long;
}

} // namespace jet
