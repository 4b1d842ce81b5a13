#include "DateParser.h"
#include "DateText.h"
#include "NumberParser.h"
#include "NumberText.h"

#include <text/Convert.h>
#include <text/RuntimeError.h>
#include <text/Value.h>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

TypedNumber numberIn(const QString& text) {
    TypedNumber number;
    if (!number.parse(text)) RaiseTypeMismatch();
    return number;
}

double inRange(double value) {
    if (!std::isfinite(value)) RaiseOverflow();
    return value;
}

qint64 roundToInteger(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -0x1p63 && rounded < 0x1p63)) RaiseOverflow();
    return static_cast<qint64>(rounded);
}

qint64 roundToInteger(Currency value) {
    qint64 whole = value.scaled() / 10000;
    const qint64 rest = std::abs(value.scaled() % 10000);
    if (rest > 5000 || (rest == 5000 && whole % 2 != 0)) whole += value.scaled() < 0 ? -1 : 1;
    return whole;
}

DateTime dateOfDays(double days) {
    if (!(days > -657435.0 && days < 2958466.0)) RaiseOverflow();
    return {days};
}

qint64 toBits(const Value& value, int bits) {
    qint64 whole = 0;
    if (value.isText()) {
        const TypedNumber number = numberIn(std::get<QString>(value.data()));
        if (number.isBitPattern()) return number.toBits(bits);
        whole = number.toInteger();
    } else {
        whole = value.toInteger();
    }
    const qint64 limit = qint64{1} << (bits - 1);
    if (whole < -limit || whole >= limit) RaiseOverflow();
    return whole;
}

} // namespace

Type Value::type() const {
    constexpr Type types[] = {Type::Null,     Type::Boolean, Type::Long, Type::Double,
                              Type::Currency, Type::Date,    Type::Text, Type::Single};
    return types[m_data.index()];
}

bool Value::isNumber() const {
    const Type t = type();
    return t == Type::Boolean || t == Type::Long || t == Type::Single || t == Type::Double ||
           t == Type::Currency;
}

bool Value::toBool() const {
    if (const auto* text = std::get_if<QString>(&m_data)) {
        const QStringView word = QStringView(*text).trimmed();
        if (word.compare(u"Wahr", Qt::CaseInsensitive) == 0 ||
            word.compare(u"True", Qt::CaseInsensitive) == 0)
            return true;
        if (word.compare(u"Falsch", Qt::CaseInsensitive) == 0 ||
            word.compare(u"False", Qt::CaseInsensitive) == 0)
            return false;
    }
    return toDouble() != 0;
}

int Value::toLong() const { return static_cast<int>(toBits(*this, 32)); }

qint64 Value::toInteger() const {
    return std::visit(Overloaded{[](std::monostate) -> qint64 { RaiseInvalidNull(); },
                                 [](bool b) -> qint64 { return b ? -1 : 0; }, [](qint64 i) { return i; },
                                 [](double d) { return roundToInteger(d); },
                                 [](float f) { return roundToInteger(double(f)); },
                                 [](Currency c) { return roundToInteger(c); },
                                 [](DateTime d) { return roundToInteger(d.days); },
                                 [](const QString& s) { return numberIn(s).toInteger(); }},
                      m_data);
}

double Value::toDouble() const {
    return std::visit(Overloaded{[](std::monostate) -> double { RaiseInvalidNull(); },
                                 [](bool b) { return b ? -1.0 : 0.0; },
                                 [](qint64 i) { return static_cast<double>(i); }, [](double d) { return d; },
                                 [](float f) { return double(f); }, [](Currency c) { return c.toDouble(); },
                                 [](DateTime d) { return d.days; },
                                 [](const QString& s) { return inRange(numberIn(s).toDouble()); }},
                      m_data);
}

Currency Value::toCurrency() const {
    return std::visit(Overloaded{[](std::monostate) -> Currency { RaiseInvalidNull(); },
                                 [](bool b) { return Currency::fromScaled(b ? -10000 : 0); },
                                 [](qint64 i) { return Currency::fromInteger(i); },
                                 [](double d) { return Currency::fromDouble(d); },
                                 [](float f) { return Currency::fromDouble(double(f)); },
                                 [](Currency c) { return c; },
                                 [](DateTime d) { return Currency::fromDouble(d.days); },
                                 [](const QString& s) { return numberIn(s).toCurrency(); }},
                      m_data);
}

DateTime Value::toDate() const {
    if (const auto* date = std::get_if<DateTime>(&m_data)) return *date;
    if (const auto* text = std::get_if<QString>(&m_data)) {
        const auto date = parseDate(*text);
        if (!date) RaiseTypeMismatch();
        return *date;
    }
    return dateOfDays(toDouble());
}

QString Value::toText() const {
    return std::visit(
        Overloaded{[](std::monostate) -> QString { RaiseInvalidNull(); },
                   [](bool b) { return b ? u"Wahr"_s : u"Falsch"_s; },
                   [](qint64 i) { return QString::number(i); }, [](double d) { return NumberText(d); },
                   [](float f) { return plainText(Digits::of(f), u','); },
                   [](Currency c) { return plainText(Digits::of(c), u','); },
                   [](DateTime d) { return generalDate(d); }, [](const QString& s) { return s; }},
        m_data);
}

bool IsNumeric(const Value& value) {
    if (const auto* text = std::get_if<QString>(&value.data())) return IsNumeric(QStringView(*text));
    return value.isNumber();
}

bool IsNumeric(QStringView text) {
    TypedNumber number;
    return number.parse(text) && std::isfinite(number.toDouble());
}

bool IsDate(const Value& value) {
    if (const auto* text = std::get_if<QString>(&value.data())) return parseDate(*text).has_value();
    return value.type() == Type::Date;
}

bool CBool(const Value& value) { return value.toBool(); }

int CByte(const Value& value) {
    const qint64 whole = value.isText() ? toBits(value, 16) : value.toInteger();
    if (whole < 0 || whole > 255) RaiseOverflow();
    return static_cast<int>(whole);
}

int CInt(const Value& value) { return static_cast<int>(toBits(value, 16)); }
int CLng(const Value& value) { return value.toLong(); }
double CDbl(const Value& value) { return value.toDouble(); }

float CSng(const Value& value) {
    const double number = value.toDouble();
    if (!(std::abs(number) < 0x1.ffffffp127)) RaiseOverflow();
    return static_cast<float>(number);
}

Currency CCur(const Value& value) { return value.toCurrency(); }
DateTime CDate(const Value& value) { return value.toDate(); }
QString CStr(const Value& value) { return value.toText(); }

double Val(QStringView text) { return TypedNumber::leading(text); }

QString Str(const Value& value) {
    if (const auto* b = std::get_if<bool>(&value.data())) return *b ? u"True"_s : u"False"_s;
    if (value.type() == Type::Date) return value.toText();
    Digits digits;
    if (const auto* c = std::get_if<Currency>(&value.data()))
        digits = Digits::of(*c);
    else if (const auto* i = std::get_if<qint64>(&value.data()))
        digits = Digits::of(*i);
    else if (const auto* f = std::get_if<float>(&value.data()))
        digits = Digits::of(*f);
    else
        digits = Digits::of(value.toDouble());
    const QString text = plainText(digits, u'.', false);
    return text.startsWith(u'-') ? text : u' ' + text;
}

double RoundHalfEven(double value, int digits) {
    Digits n = Digits::of(value);
    if (!n.finite) return value;
    n.round(std::clamp(digits, -400, 400), Digits::Tie::Even);
    return n.toDouble();
}
