#include "Fuzz.h"

#include <text/Convert.h>
#include <text/Format.h>

namespace {

/// "c19900" money, "i7", "d1.5", "t46348.75" a date, "b", "n" Null, anything else a text.
Value valueOf(const QString& line) {
    const QString rest = line.mid(1);
    switch (line.isEmpty() ? u' ' : line[0].unicode()) {
    case u'c':
        return Currency::fromScaled(rest.toLongLong());
    case u'i':
        return rest.toLongLong();
    case u'd':
        return rest.toDouble();
    case u't':
        return DateTime{rest.toDouble()};
    case u'b':
        return rest.isEmpty();
    case u'n':
        return {};
    default:
        return line;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Lines lines(data, size);
    const Value value = valueOf(lines[0]);
    const int first = lines[2].toInt(), rule = lines[3].toInt();
    const QString text = Format(value, lines[1], first, rule); // never raises
    fuzz::require(Format(value, lines[1], first, rule) == text);
    if (const auto* money = std::get_if<Currency>(&value.data()))
        fuzz::require(CCur(Format(value, u"#,##0.0000")) == *money);
    if (const auto* number = std::get_if<qint64>(&value.data()))
        fuzz::require(Value(Format(value, u"#,##0")).toInteger() == *number);
    return 0;
}
