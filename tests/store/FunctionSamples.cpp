#include "FunctionSamples.h"

#include "jet/PostgresCalls.h"

#include <text/RuntimeError.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace samples {

Value Samples::value(char letter) {
    const std::size_t dice = below(40);
    if (dice == 0) return {};
    if (dice == 1 && letter != 'k') return any();
    switch (letter) {
    case 'w':
        return words();
    case 'x':
        return number();
    case 'a':
        return dateText();
    case 'f':
        return format(false);
    case 'g':
        return format(true);
    case 'p':
        return pattern();
    case 'i':
        return QString(of(std::vector{u"yyyy"_s, u"q"_s, u"M"_s, u"y"_s, u"d"_s, u"w"_s, u"WW"_s, u"ww"_s,
                                      u"h"_s, u"n"_s, u"s"_s, u"x"_s}));
    case 't': {
        const double day =
            of(std::vector<double>{0, 1, -1, 2, 46348, 45657, 45658, 36525, -657434, 2958465, 60});
        const double days = below(3) == 0 ? day : std::floor(double(below(80000)) - 10000);
        const double part =
            of(std::vector<double>{0, 0.5, 0.25, 0.604166666666667, 86399.0 / 86400, 0.9999999});
        return DateTime{days < 0 ? days - part : days + part};
    }
    case 'k':
        return qint64(below(8) == 0 ? of(std::vector<qint64>{-5, 0, 100, 2147483647, -2147483648})
                                    : qint64(below(12)) - 1);
    case 'm':
        return below(4) == 0 ? number() : Value(real());
    case 'c':
        return qint64(
            of(std::vector<qint64>{1,   9,   65, 97,   127, 128,   129,    150,   159,   160,    228,
                                   255, 256, -1, 8364, 945, 40000, -25536, 65535, 65536, -32769, 55296}));
    case 'y':
        return qint64(below(4) == 0 ? of(std::vector<qint64>{0, 29, 30, 99, 100, 9999, 10000, -1, 2147483647,
                                                             -2147483648})
                                    : qint64(1800 + below(400)));
    case 'q':
        return of(std::vector<double>{0, 1, 2, 3, 10, 12, 100, 1000, 10000.5, 0.5, -1, 1e6, 1e150});
    case 'r':
        return of(std::vector<double>{0, 0.01, 0.05, 0.005, 1e-9, -0.01, -1, -2, 1});
    default:
        return any();
    }
}

Value Samples::any() {
    switch (below(10)) {
    case 0:
        return below(2) == 0;
    case 1:
    case 2:
    case 3:
        return number();
    case 4:
        return value('t');
    case 5:
        return dateText();
    case 6:
        return words();
    default:
        return numberText();
    }
}

double Samples::real() {
    switch (below(6)) {
    case 0: // halves
        return (double(below(4000)) - 2000) / 2;
    case 1: // halves of the places behind the point
        return (double(below(200000)) - 100000 + 0.5) / of(std::vector<double>{10, 100, 1000, 10000});
    case 2:
        return of(std::vector<double>{0,
                                      0.1,
                                      1e15,
                                      1e14,
                                      999999999999999.0,
                                      123456789012345678.0,
                                      1e16,
                                      1e100,
                                      1e-5,
                                      1.5e-20,
                                      2147483647.5,
                                      -2147483648.5,
                                      2147483646.5,
                                      922337203685477.5,
                                      0.00005,
                                      0.99995,
                                      9223372036854775807.0,
                                      1.0 / 3,
                                      -2.0 / 3,
                                      255.5,
                                      32767.5,
                                      -0.5,
                                      1e22,
                                      3.4e38,
                                      3.5e38});
    case 3:
        return std::ldexp(double(m_random()) - 2147483648.0, int(below(80)) - 60);
    default:
        return std::round((double(below(2000000)) - 1000000) * 10) / 1000;
    }
}

Value Samples::number() {
    switch (below(4)) {
    case 0:
        return below(3) == 0
                   ? Value(of(std::vector<qint64>{0, 255, 256, 32767, 32768, -32769, 2147483647, 2147483648,
                                                  -2147483648, -2147483649, 1000000000000000000,
                                                  std::numeric_limits<qint64>::max()}))
                   : Value(qint64(below(2000)) - 1000);
    case 1:
        return Currency::fromScaled(
            below(4) == 0 ? of(std::vector<qint64>{5000, 15000, -25000, 1, -1, 12345, 99995,
                                                   std::numeric_limits<qint64>::max(), -9223372036854770000})
                          : qint64(below(4000000)) - 2000000);
    default:
        return real();
    }
}

QString Samples::words() {
    static const std::vector<QString> whole = {
        u""_s,      u" "_s,         u"Äpfel im Netz"_s, u"STRASSE"_s, u"Straße"_s,  u"müller's öl"_s,
        u"a-b c"_s, u"x\ty"_s,      u"Flussschiff"_s,   u"ŁÓDŹ"_s,    u"Σίσυφος"_s, u"ﬁn"_s,
        u"[x]*?"_s, u"a\\b.c^d$"_s, u"İstanbul"_s,      u"ŉ"_s,       u"ǅ"_s,       u"№5"_s};
    if (below(3) == 0) return of(whole);
    static const QString letters = u"aAbBcsSßẞäÄöéÉz019 -_.,*€"_s;
    QString text;
    for (std::size_t n = below(9); n > 0; --n)
        text += of(letters);
    return text;
}

QString Samples::numberText() {
    static const std::vector<QString> whole = {u"1.234,5"_s,
                                               u"-1,5"_s,
                                               u"(2,5)"_s,
                                               u"5 €"_s,
                                               u"€-3"_s,
                                               u"1e3"_s,
                                               u"1,5E-3"_s,
                                               u"&HFF"_s,
                                               u"&hffff"_s,
                                               u"&HFFFFFFFF"_s,
                                               u"&H100000000"_s,
                                               u"&O17"_s,
                                               u"&H8000&"_s,
                                               u"&H"_s,
                                               u"&HG"_s,
                                               u"1,2,3"_s,
                                               u",5"_s,
                                               u"."_s,
                                               u","_s,
                                               u"1..2"_s,
                                               u"+"_s,
                                               u"--1"_s,
                                               u"1-"_s,
                                               u"1 2"_s,
                                               u"(1)-"_s,
                                               u"€5€"_s,
                                               u"\u00a07\u00a0"_s,
                                               u"1e400"_s,
                                               u"1e-400"_s,
                                               u"9e99999999999"_s,
                                               u"2147483647,5"_s,
                                               u"2147483648"_s,
                                               u"0,00005"_s,
                                               u"0,00015"_s,
                                               u"12345678901234567890"_s,
                                               u"922337203685477,5807"_s,
                                               u"922337203685477,5808"_s,
                                               u"Wahr"_s,
                                               u" falsch "_s,
                                               u"Ja"_s,
                                               u"off"_s,
                                               u"3.5abc"_s,
                                               u" 12 34"_s,
                                               u"1D2"_s,
                                               u"1e"_s,
                                               u"&O777777"_s,
                                               u"&HFFFFFFFFFFFFFFFF"_s,
                                               u"&H1FFFFFFFFFFFFFFFF"_s,
                                               u"1,7976931348623157E308"_s,
                                               u"1,8E308"_s,
                                               u"-0"_s,
                                               u"0,30000000000000004"_s,
                                               u"- 5"_s,
                                               u"5 -"_s,
                                               u"€ 5-"_s,
                                               u"(€5)"_s,
                                               u"5)"_s,
                                               u"1.5.2026"_s};
    if (below(2) == 0) return of(whole);
    static const QString letters = u"0123456789.,+-eE €()&H"_s;
    QString text;
    for (std::size_t n = 1 + below(7); n > 0; --n)
        text += below(3) == 0 ? of(letters) : QChar(u'0' + char16_t(below(10)));
    return text;
}

QString Samples::dateText() {
    static const std::vector<QString> whole = {u"22.11.2026"_s,
                                               u"22.11.26"_s,
                                               u"1.2.29"_s,
                                               u"1.2.30"_s,
                                               u"2026-11-22"_s,
                                               u"11/22/2026"_s,
                                               u"22/11/2026"_s,
                                               u"22. November 2026"_s,
                                               u"22-Nov-26"_s,
                                               u"November 22, 2026"_s,
                                               u"Nov 2026"_s,
                                               u"14:30"_s,
                                               u"14:30:15"_s,
                                               u"2:30 PM"_s,
                                               u"12 am"_s,
                                               u"13 am"_s,
                                               u"13 pm"_s,
                                               u"24:00"_s,
                                               u"22.11.2026 14:30"_s,
                                               u"14:30 22.11.2026"_s,
                                               u"Sonntag, 22. November 2026"_s,
                                               u"So. 22.11.2026"_s,
                                               u"2026-11-22T14:30:00"_s,
                                               u"22.11."_s,
                                               u"22.11"_s,
                                               u"22.11. 14:30"_s,
                                               u"31.2.2026"_s,
                                               u"29.2.2028"_s,
                                               u"22. März 26"_s,
                                               u"mär 2026"_s,
                                               u"5. mrz"_s,
                                               u"1.1.100"_s,
                                               u"1.1.99"_s,
                                               u"31.12.9999"_s,
                                               u"30.12.1899"_s,
                                               u"2026.11.22"_s,
                                               u"99.1.2"_s,
                                               u"14:"_s,
                                               u"14:30:"_s,
                                               u"22.11.2026,"_s,
                                               u"22.11.2026T"_s,
                                               u"a 5"_s,
                                               u"22.11.2026 x"_s,
                                               u"22.11.2026 14:30:15:16"_s,
                                               u"2026-22-11"_s,
                                               u"ÄÖ"_s,
                                               u"0.0.0"_s,
                                               u"1 2 3"_s,
                                               u"22-11"_s,
                                               u"12/31"_s};
    if (below(2) == 0) return of(whole);
    static const std::vector<QString> parts = {u"22"_s, u"11"_s,  u"2026"_s,     u"26"_s, u"."_s,  u"."_s,
                                               u"-"_s,  u"/"_s,   u":"_s,        u":"_s,  u","_s,  u" "_s,
                                               u" "_s,  u"Nov"_s, u"November"_s, u"So"_s, u"PM"_s, u"14"_s,
                                               u"30"_s, u"T"_s,   u"7"_s};
    QString text;
    for (std::size_t n = 1 + below(9); n > 0; --n)
        text += of(parts);
    return text;
}

QString Samples::format(bool dates) {
    static const std::vector<QString> numbers = {u"0"_s,
                                                 u"0.00"_s,
                                                 u"###0.00"_s,
                                                 u"##,##0.00"_s,
                                                 u"#,##0"_s,
                                                 u"####0.00"_s,
                                                 u"#"_s,
                                                 u"#.##"_s,
                                                 u".00"_s,
                                                 u"#.0#"_s,
                                                 u"000"_s,
                                                 u"00,000"_s,
                                                 u"0.00 €"_s,
                                                 u"0%"_s,
                                                 u"0.0%%"_s,
                                                 u"0.00E+00"_s,
                                                 u"0.0e-0"_s,
                                                 u"##0.0E+0"_s,
                                                 u"#E+0"_s,
                                                 u".0E+0"_s,
                                                 u"0,"_s,
                                                 u"0.0,,"_s,
                                                 u"#,##0.00;(#,##0.00)"_s,
                                                 u"0;-0;\"null\""_s,
                                                 u"0;;\"z\";\"leer\""_s,
                                                 u";"_s,
                                                 u"0;"_s,
                                                 u"\"n: \"0"_s,
                                                 u"\\x0"_s,
                                                 u"[Red]0"_s,
                                                 u"*x0"_s,
                                                 u"0-00-00"_s,
                                                 u"#,###.00#"_s,
                                                 u"0.0.0"_s,
                                                 u"0E+"_s,
                                                 u"Fixed"_s,
                                                 u"Standard"_s,
                                                 u"percent"_s,
                                                 u"Scientific"_s,
                                                 u"Currency"_s,
                                                 u"Euro"_s,
                                                 u"General Number"_s,
                                                 u"Yes/No"_s,
                                                 u"True/False"_s,
                                                 u"on/off"_s,
                                                 u"@@@@@@"_s,
                                                 u"&&&&"_s,
                                                 u">@@"_s,
                                                 u"<"_s,
                                                 u"!@@@"_s,
                                                 u">"_s,
                                                 u"@;\"leer\""_s,
                                                 u"(@@) @@-@"_s,
                                                 u"!>&&<"_s,
                                                 u""_s,
                                                 u"\""_s,
                                                 u"\\"_s,
                                                 u"x"_s,
                                                 u"\"abc\""_s,
                                                 u"[x]0"_s,
                                                 u"0\"\"0"_s,
                                                 u"%"_s,
                                                 u"#,#"_s,
                                                 u"a;b"_s,
                                                 u"0.00E+0;(0)"_s};
    static const std::vector<QString> days = {u"dd.mm.yyyy"_s,
                                              u"mm.dd.yyyy"_s,
                                              u"mmmm yyyy"_s,
                                              u"d.m.yy"_s,
                                              u"ddd, dddd"_s,
                                              u"ddddd"_s,
                                              u"dddddd"_s,
                                              u"ddddddd"_s,
                                              u"hh:nn:ss"_s,
                                              u"h:m:s"_s,
                                              u"hh:mm"_s,
                                              u"h AM/PM"_s,
                                              u"hh:nn a/p"_s,
                                              u"h am/pm"_s,
                                              u"h AMPM"_s,
                                              u"ttttt"_s,
                                              u"tttt"_s,
                                              u"c"_s,
                                              u"w ww"_s,
                                              u"www"_s,
                                              u"q"_s,
                                              u"y yy yyy yyyy"_s,
                                              u"mmm mm m"_s,
                                              u"yyyy/mm/dd"_s,
                                              u"d\"d\"d"_s,
                                              u"d\\d"_s,
                                              u"h \"m\" m"_s,
                                              u"Long Date"_s,
                                              u"Short Date"_s,
                                              u"medium date"_s,
                                              u"General Date"_s,
                                              u"Long Time"_s,
                                              u"Short Time"_s,
                                              u"Medium Time"_s,
                                              u"yyyy;x"_s,
                                              u"\"am \" dd"_s,
                                              u"dd*xdd"_s,
                                              u"nn:ss m"_s,
                                              u"a"_s,
                                              u"hmm"_s,
                                              u"h:d:m"_s,
                                              u"mmmmm"_s,
                                              u"dd.mm. hh\"h\"mm"_s};
    if (below(5) != 0) return of(dates ? days : numbers);
    static const QString letters = u"0#.,%E+-;\"\\@&<>!dmyhnswqct/:a 0#"_s;
    QString text;
    for (std::size_t n = 1 + below(8); n > 0; --n)
        text += of(letters);
    return text;
}

QString Samples::pattern() {
    static const std::vector<QString> whole = {
        u"*"_s,     u""_s,       u"a*"_s,     u"*ss*"_s,    u"*ß*"_s,   u"?*"_s,   u"*[a-c]*"_s, u"[!a]*"_s,
        u"*#*"_s,   u"[a-z]*"_s, u"*[*?]*"_s, u"[]a*"_s,    u"[z-a]"_s, u"[abc"_s, u"*sss*"_s,   u"*[-a]*"_s,
        u"*[!]*"_s, u"[äöü]*"_s, u"*.*"_s,    u"*[a-]*"_s,  u"str*"_s,  u"%a_"_s,  u"*[!a-z]"_s, u"a[]b"_s,
        u"[!]"_s,   u"[[]x]*"_s, u"*\\*"_s,   u"*[0-9]*"_s, u"_*"_s,    u"*^*$"_s};
    if (below(2) == 0) return of(whole);
    static const QString letters = u"aAbcsSßäé0*?#[]!-*. "_s;
    QString text;
    for (std::size_t n = 1 + below(6); n > 0; --n)
        text += of(letters);
    return text;
}

namespace {

QString quoted(const QString& text) {
    QString copy = text;
    return u'\'' + copy.replace(u'\'', u"''"_s) + u'\'';
}

/// A value under its own type.
QString typed(const Value& value) {
    struct Visitor {
        QString operator()(std::monostate) const { return u"NULL::text"_s; }
        QString operator()(bool b) const { return b ? u"true"_s : u"false"_s; }
        QString operator()(qint64 i) const { return u"'%1'::bigint"_s.arg(i); }
        QString operator()(double d) const {
            return u"'%1'::double precision"_s.arg(QString::number(d, 'g', 17));
        }
        QString operator()(float f) const { return u"'%1'::real"_s.arg(QString::number(double(f), 'g', 9)); }
        QString operator()(Currency c) const {
            return quoted(Value(c).toText().replace(u',', u'.')) + u"::numeric"_s;
        }
        QString operator()(DateTime t) const { return u"ROW(%1)::jet_date"_s.arg((*this)(t.days)); }
        QString operator()(const QString& s) const { return quoted(s) + u"::text"_s; }
    };
    return std::visit(Visitor{}, value.data());
}

QString argument(const Value& value, char kind) {
    const Type type = value.type();
    const QString text = typed(value);
    const auto through = [&](const char* function) { return QLatin1String(function) + u'(' + text + u')'; };
    switch (kind) {
    case 's':
        return type == Type::Null || type == Type::Text ? text : through("jet_totext");
    case 'n':
        return type == Type::Null ? u"NULL::bigint"_s : type == Type::Long ? text : through("jet_tolong");
    case 'd':
        return type == Type::Null     ? u"NULL::double precision"_s
               : type == Type::Double ? text
                                      : through("jet_todouble");
    case 't':
        return type == Type::Null ? u"NULL::double precision"_s : through("jet_todate");
    case 'c':
        return type == Type::Null       ? u"NULL::numeric"_s
               : type == Type::Currency ? text
                                        : through("jet_tocurrency");
    default:
        return text;
    }
}

} // namespace

QString callOf(const char* function, const std::vector<Value>& arguments) {
    const jet::PostgresCall call = jet::postgresCall(function, arguments.size());
    QStringList parts;
    const char* kind = call.kinds;
    for (const Value& value : arguments) {
        parts.append(argument(value, *kind));
        if (kind[1]) ++kind;
    }
    if (!call.native) return QLatin1String(function) + u'(' + parts.join(u", ") + u')';
    QString text = QLatin1String(call.native);
    for (qsizetype i = parts.size(); i > 0; --i)
        text.replace(u'%' + QString::number(i), u'(' + parts[i - 1] + u')');
    return text;
}

bool misfits(const char* function, const std::vector<Value>& arguments) {
    const char* kind = jet::postgresCall(function, arguments.size()).kinds;
    for (const Value& value : arguments) {
        try {
            if (*kind == 'n' && !value.isNull()) std::ignore = value.toLong();
            if (*kind == 'd' && !value.isNull()) std::ignore = value.toDouble();
            if (*kind == 'c' && !value.isNull()) std::ignore = value.toCurrency();
            if (*kind == 't' && !value.isNull()) std::ignore = value.toDate();
        } catch (const RuntimeError&) {
            return true;
        }
        if (kind[1]) ++kind;
    }
    return false;
}

QString quotedElement(const QString& text) {
    QString copy = text;
    return u'"' + copy.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s) + u'"';
}

} // namespace samples
