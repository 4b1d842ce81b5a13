#include "DateParser.h"
#include "FormatParts.h"
#include "NumberParser.h"

#include <text/Convert.h>
#include <text/Format.h>

#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using namespace format;

struct Named {
    QStringView name;
    QStringView format; ///< empty when it is no pattern
    enum { Pattern, General, GeneralDate, YesNo, TrueFalse, OnOff } meaning = Pattern;
};
constexpr Named namedFormats[] = {
    {u"General Number", {}, Named::General},
    {u"Currency", u"#,##0.00 €"},
    {u"Euro", u"#,##0.00 €"},
    {u"Fixed", u"0.00"},
    {u"Standard", u"#,##0.00"},
    {u"Percent", u"0.00%"},
    {u"Scientific", u"0.00E+00"},
    {u"Yes/No", {}, Named::YesNo},
    {u"True/False", {}, Named::TrueFalse},
    {u"On/Off", {}, Named::OnOff},
    {u"General Date", {}, Named::GeneralDate},
    {u"Long Date", u"dddddd"},
    {u"Medium Date", u"dd-mmm-yy"},
    {u"Short Date", u"ddddd"},
    {u"Long Time", u"ttttt"},
    {u"Medium Time", u"hh:nn AM/PM"},
    {u"Short Time", u"hh:nn"},
};

const Named* findNamed(QStringView format) {
    if (format.size() < 4 || !format[0].isLetter()) return nullptr;
    for (const Named& named : namedFormats)
        if (format.size() == named.name.size() && format.compare(named.name, Qt::CaseInsensitive) == 0)
            return &named;
    return nullptr;
}

std::optional<Digits> digitsOf(const Value& value) {
    if (const auto* d = std::get_if<double>(&value.data())) {
        if (std::isnan(*d)) return {};
        return Digits::of(*d);
    }
    if (const auto* f = std::get_if<float>(&value.data())) {
        if (std::isnan(*f)) return {};
        return Digits::of(*f);
    }
    if (const auto* c = std::get_if<Currency>(&value.data())) return Digits::of(*c);
    if (const auto* i = std::get_if<qint64>(&value.data())) return Digits::of(*i);
    if (const auto* b = std::get_if<bool>(&value.data())) return Digits::of(qint64{*b ? -1 : 0});
    if (const auto* t = std::get_if<DateTime>(&value.data())) return Digits::of(t->days);
    if (const auto* text = std::get_if<QString>(&value.data())) {
        TypedNumber number;
        if (number.parse(*text)) return Digits::of(number.toDouble());
        if (const auto date = parseDate(*text)) return Digits::of(date->days);
    }
    return {};
}

std::optional<DateTime> dateOf(const Value& value) {
    if (const auto* date = std::get_if<DateTime>(&value.data())) return *date;
    if (const auto* text = std::get_if<QString>(&value.data()))
        if (const auto date = parseDate(*text)) return date;
    const auto digits = digitsOf(value);
    if (!digits) return {};
    const DateTime date{digits->toDouble()};
    if (!date.date().isValid()) return {};
    return date;
}

QString asNumber(const Value& value, QStringView pattern) {
    const auto digits = digitsOf(value);
    return digits && digits->finite ? formatNumber(*digits, pattern) : value.toText();
}

QString asDate(const Value& value, QStringView pattern, int firstDayOfWeek, int firstWeekOfYear) {
    const auto date = dateOf(value);
    return date ? formatDate(*date, pattern, firstDayOfWeek, firstWeekOfYear) : value.toText();
}

QString asWord(const Value& value, QStringView yes, QStringView no) {
    if (value.isText() && !IsNumeric(value)) {
        const QStringView word = std::get<QString>(value.data());
        if (word.compare(u"Wahr", Qt::CaseInsensitive) == 0) return yes.toString();
        if (word.compare(u"Falsch", Qt::CaseInsensitive) == 0) return no.toString();
    }
    const auto digits = digitsOf(value);
    if (!digits) return value.toText();
    return (digits->isZero() && digits->finite ? no : yes).toString();
}

QString asNamed(const Value& value, const Named& named) {
    switch (named.meaning) {
    case Named::Pattern:
        if (kindOf(named.format) == Kind::Date) return asDate(value, named.format, 1, 1);
        return asNumber(value, named.format);
    case Named::GeneralDate:
        return asDate(value, u"c", 1, 1);
    case Named::YesNo:
        return asWord(value, u"Ja", u"Nein");
    case Named::TrueFalse:
        return asWord(value, u"Wahr", u"Falsch");
    case Named::OnOff:
        return asWord(value, u"Ein", u"Aus");
    case Named::General:
        break;
    }
    if (value.type() == Type::Currency || value.type() == Type::Long || value.type() == Type::Single)
        return value.toText();
    const auto digits = digitsOf(value);
    return digits ? NumberText(digits->toDouble()) : value.toText();
}

QString ofNull(QStringView pattern) {
    const Kind kind = kindOf(pattern);
    if (kind == Kind::Text) return formatText({}, pattern);
    const Sections sections = split(pattern);
    return kind != Kind::Date && sections.has(3) ? literalText(sections.part[3]) : QString();
}

} // namespace

QString Format(const Value& value, QStringView format, int firstDayOfWeek, int firstWeekOfYear) {
    const Named* const named = findNamed(format);
    if (value.isNull()) return format.isEmpty() || named ? QString() : ofNull(format);
    if (format.isEmpty()) return value.toText();
    if (named) return asNamed(value, *named);
    switch (kindOf(format)) {
    case Kind::Date:
        return asDate(value, format, firstDayOfWeek, firstWeekOfYear);
    case Kind::Text:
        return formatText(value.toText(), format);
    case Kind::Literal:
        if (value.type() == Type::Date)
            return formatDate(*dateOf(value), format, firstDayOfWeek, firstWeekOfYear);
        break;
    case Kind::Number:
        break;
    }
    return asNumber(value, format);
}
