#include "PostgresValue.h"

#include "PostgresErrors.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;

namespace store {

namespace {

constexpr unsigned oidBoolean = 16;
constexpr unsigned oidBigint = 20;
constexpr unsigned oidSmallint = 21;
constexpr unsigned oidInteger = 23;
constexpr unsigned oidDouble = 701;
constexpr unsigned oidNumeric = 1700;

QByteArray moneyText(Currency money) {
    const qint64 scaled = money.scaled();
    const quint64 size = scaled < 0 ? 0 - static_cast<quint64>(scaled) : static_cast<quint64>(scaled);
    return (scaled < 0 ? "-" : "") + QByteArray::number(size / 10000) + '.' +
           QByteArray::number(size % 10000).rightJustified(4, '0');
}

double real(const char* text, int length) {
    double value = 0;
    const auto [end, fault] = std::from_chars(text, text + length, value);
    if (fault == std::errc::result_out_of_range || !std::isfinite(value)) RaiseOverflow();
    if (fault != std::errc() || end != text + length) RaiseTypeMismatch();
    return value;
}

qint64 whole(const char* text, int length) {
    qint64 value = 0;
    const auto [end, fault] = std::from_chars(text, text + length, value);
    if (fault == std::errc() && end == text + length) return value;
    // A sum of whole numbers comes as a decimal number.
    const double number = real(text, length);
    if (number != std::trunc(number) || std::abs(number) >= 9.2e18) RaiseOverflow();
    return static_cast<qint64>(number);
}

// "-12.34567" as ten-thousandths, half to even.
Currency money(const char* text, int length) {
    const char* const end = text + length;
    const bool negative = text < end && *text == '-';
    if (negative) ++text;
    const quint64 most = static_cast<quint64>(std::numeric_limits<qint64>::max()) + (negative ? 1 : 0);
    quint64 scaled = 0;
    int decimals = -1;
    int rest = 0; // of the digits behind the fourth: below, at or above a half
    for (; text < end; ++text) {
        if (*text == '.' && decimals < 0) {
            decimals = 0;
            continue;
        }
        if (*text < '0' || *text > '9') RaiseOverflow();
        const int digit = *text - '0';
        if (decimals < 4) {
            if (scaled > (most - static_cast<quint64>(digit)) / 10) RaiseOverflow();
            scaled = scaled * 10 + static_cast<quint64>(digit);
            if (decimals >= 0) ++decimals;
        } else if (decimals == 4) {
            rest = digit * 2;
            ++decimals;
        } else if (digit != 0) {
            rest |= 1;
        }
    }
    for (int i = std::max(decimals, 0); i < 4; ++i) {
        if (scaled > most / 10) RaiseOverflow();
        scaled *= 10;
    }
    if (rest > 10 || (rest == 10 && scaled % 2 == 1)) ++scaled;
    if (scaled > most) RaiseOverflow();
    return Currency::fromScaled(static_cast<qint64>(negative ? 0 - scaled : scaled));
}

bool truth(const char* text, int length) {
    if (length == 1 && (*text == 't' || *text == 'f')) return *text == 't';
    return real(text, length) != 0;
}

Value byLetter(const char* text, int length) {
    if (length == 0) return QString(u""_s);
    const char* rest = text + 1;
    const int left = length - 1;
    switch (*text) {
    case 'b':
        return truth(rest, left);
    case 'i':
        return whole(rest, left);
    case 'd':
        return real(rest, left);
    case 'c':
        return money(rest, left);
    case 't':
        return DateTime{real(rest, left)};
    default:
        return QString::fromUtf8(rest, left);
    }
}

} // namespace

std::optional<QByteArray> postgresText(const Value& value) {
    struct Visitor {
        std::optional<QByteArray> operator()(std::monostate) const { return {}; }
        std::optional<QByteArray> operator()(bool b) const { return b ? "-1" : "0"; }
        std::optional<QByteArray> operator()(qint64 i) const { return QByteArray::number(i); }
        std::optional<QByteArray> operator()(double d) const {
            char text[32];
            const auto [end, fault] = std::to_chars(text, text + sizeof(text), d);
            return QByteArray(text, static_cast<qsizetype>(end - text));
        }
        std::optional<QByteArray> operator()(float f) const { return (*this)(double(f)); }
        std::optional<QByteArray> operator()(Currency c) const { return moneyText(c); }
        std::optional<QByteArray> operator()(DateTime t) const { return (*this)(t.days); }
        std::optional<QByteArray> operator()(const QString& s) const {
            if (s.contains(QChar(0)))
                raiseTold(3421, u"Das Zeichen mit der Nummer 0 kann nicht gespeichert werden."_s);
            return s.toUtf8();
        }
    };
    return std::visit(Visitor{}, value.data());
}

Value decodePostgres(const char* text, int length, Type type, unsigned oid) {
    switch (type) {
    case Type::Boolean:
        return truth(text, length);
    case Type::Byte:
    case Type::Short:
    case Type::Long:
        return whole(text, length);
    case Type::Single:
        return static_cast<float>(real(text, length));
    case Type::Double:
        return real(text, length);
    case Type::Currency:
        return money(text, length);
    case Type::Date:
        return DateTime{real(text, length)};
    case Type::Text:
    case Type::Memo:
        return QString::fromUtf8(text, length);
    case Type::Null:
        break;
    }
    switch (oid) {
    case oidBoolean:
        return truth(text, length);
    case oidSmallint:
    case oidInteger:
    case oidBigint:
        return whole(text, length);
    case oidDouble:
        return real(text, length);
    case oidNumeric:
        return money(text, length);
    default:
        return byLetter(text, length);
    }
}

QByteArray postgresArray(const std::vector<std::optional<QByteArray>>& texts) {
    QByteArray array = "{";
    for (const auto& text : texts) {
        if (array.size() > 1) array += ',';
        if (!text) {
            array += "NULL";
            continue;
        }
        array += '"';
        for (const char c : *text) {
            if (c == '"' || c == '\\') array += '\\';
            array += c;
        }
        array += '"';
    }
    return array + '}';
}

} // namespace store
