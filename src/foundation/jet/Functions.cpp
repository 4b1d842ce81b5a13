#include "FunctionParts.h"

#include <jet/Functions.h>
#include <text/Convert.h>
#include <text/Format.h>
#include <text/Numbers.h>
#include <text/RuntimeError.h>
#include <text/Sort.h>
#include <text/Strings.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

using Arguments = std::span<const Value>;

bool anyNull(Arguments a) {
    return std::any_of(a.begin(), a.end(), [](const Value& v) { return v.isNull(); });
}

/// Null as soon as an argument is Null.
template <Value (*F)(Arguments)>
Value strict(Arguments a) {
    return anyNull(a) ? Value() : F(a);
}

int whole(const Value& v) { return v.toLong(); }
int wholeAt(Arguments a, std::size_t i, int otherwise) {
    return i < a.size() && !a[i].isNull() ? a[i].toLong() : otherwise;
}

// Conversions that the types ask for. They differ from the functions of the same kind in that Null stays
// Null.
Value toBool(Arguments a) {
    const Value& v = a[0];
    return v.isText() ? encode(v, Encoding::Boolean) : Value(v.toBool());
}
Value toByte(Arguments a) { return CByte(a[0]); }
Value toShort(Arguments a) { return CInt(a[0]); }
Value toLong(Arguments a) { return CLng(a[0]); }
Value toDouble(Arguments a) { return a[0].toDouble(); }
Value toCurrency(Arguments a) { return a[0].toCurrency(); }
Value toDate(Arguments a) { return a[0].toDate(); }
Value toText(Arguments a) { return a[0].toText(); }

// Operators.
Value divide(Arguments a) {
    const double by = a[1].toDouble();
    if (by == 0) RaiseDivisionByZero();
    const double result = a[0].toDouble() / by;
    if (!std::isfinite(result)) RaiseOverflow();
    return result;
}
Value intDivide(Arguments a) { return vb::IntegerDivide(a[0], a[1]); }
Value modulo(Arguments a) { return vb::Mod(a[0], a[1]); }
Value power(Arguments a) { return vb::Power(a[0].toDouble(), a[1].toDouble()); }
Value multiply(Arguments a) { return a[0].toCurrency() * a[1].toCurrency(); }
// The engine takes these for truths of its own, 1 and 0.
Value like(Arguments a) { return int(LikeText(a[0].toText(), a[1].toText())); }
Value alike(Arguments a) { return int(LikeText(a[0].toText(), jetPattern(a[1].toText()))); }

// Conversion functions of the dialect: Null raises 94.
Value cBool(Arguments a) { return a[0].isText() ? toBool(a) : Value(CBool(a[0])); }
Value cByte(Arguments a) { return CByte(a[0]); }
Value cInt(Arguments a) { return CInt(a[0]); }
Value cLng(Arguments a) { return CLng(a[0]); }
Value cDbl(Arguments a) { return CDbl(a[0]); }
Value cSng(Arguments a) { return double(CSng(a[0])); }
Value cCur(Arguments a) { return CCur(a[0]); }
Value cDate(Arguments a) { return CDate(a[0]); }
Value cStr(Arguments a) { return CStr(a[0]); }
Value cVar(Arguments a) { return a[0]; }
Value val(Arguments a) { return Val(a[0].toText()); }
Value str(Arguments a) { return Str(a[0]); }
Value hex(Arguments a) { return vb::Hex(a[0]); }
Value oct(Arguments a) { return vb::Oct(a[0]); }
Value isNumeric(Arguments a) { return IsNumeric(a[0]); }
Value isDate(Arguments a) { return IsDate(a[0]); }
Value typeName(Arguments a) {
    switch (a[0].type()) {
    case Type::Null:
        return u"Null"_s;
    case Type::Boolean:
        return u"Boolean"_s;
    case Type::Byte:
    case Type::Short:
    case Type::Long:
        return u"Long"_s;
    case Type::Single:
    case Type::Double:
        return u"Double"_s;
    case Type::Currency:
        return u"Currency"_s;
    case Type::Date:
        return u"Date"_s;
    case Type::Text:
    case Type::Memo:
        break;
    }
    return u"String"_s;
}

Value format(Arguments a) {
    return Format(a[0], a.size() > 1 && !a[1].isNull() ? a[1].toText() : QString(), wholeAt(a, 2, 1),
                  wholeAt(a, 3, 1));
}

// Texts.
Value left(Arguments a) { return vb::Left(a[0].toText(), whole(a[1])); }
Value right(Arguments a) { return vb::Right(a[0].toText(), whole(a[1])); }
Value mid(Arguments a) {
    return a.size() > 2 ? vb::Mid(a[0].toText(), whole(a[1]), whole(a[2]))
                        : vb::Mid(a[0].toText(), whole(a[1]));
}
// InStr([start,] text, wanted[, compare]): the first argument is a start only when there are three.
Value inStr(Arguments a) {
    if (a.size() == 2) return vb::InStr(1, a[0].toText(), a[1].toText());
    return vb::InStr(whole(a[0]), a[1].toText(), a[2].toText(), wholeAt(a, 3, 1));
}
Value inStrRev(Arguments a) {
    return vb::InStrRev(a[0].toText(), a[1].toText(), wholeAt(a, 2, -1), wholeAt(a, 3, 1));
}
Value replace(Arguments a) {
    if (anyNull(a.first(3))) return {};
    return vb::Replace(a[0].toText(), a[1].toText(), a[2].toText(), wholeAt(a, 3, 1), wholeAt(a, 4, -1),
                       wholeAt(a, 5, 1));
}
Value strComp(Arguments a) { return vb::StrComp(a[0].toText(), a[1].toText(), wholeAt(a, 2, 1)); }
Value strConv(Arguments a) { return vb::StrConv(a[0].toText(), whole(a[1])); }
Value strReverse(Arguments a) { return vb::StrReverse(a[0].toText()); }
Value string(Arguments a) { return vb::String(whole(a[0]), a[1]); }
Value space(Arguments a) { return vb::Space(whole(a[0])); }
Value uCase(Arguments a) { return vb::UCase(a[0].toText()); }
Value lCase(Arguments a) { return vb::LCase(a[0].toText()); }
Value asc(Arguments a) { return vb::Asc(a[0].toText()); }
Value ascW(Arguments a) { return vb::AscW(a[0].toText()); }
Value chr(Arguments a) { return vb::Chr(whole(a[0])); }
Value chrW(Arguments a) { return vb::ChrW(whole(a[0])); }

// Partition(number, start, stop, interval): the range " 1: 10" in which a number falls.
Value partition(Arguments a) {
    const qint64 number = a[0].toInteger(), start = a[1].toInteger(), stop = a[2].toInteger(),
                 step = a[3].toInteger();
    if (start < 0 || stop <= start || step < 1) RaiseInvalidCall();
    const qsizetype width = std::max(QString::number(start - 1).size(), QString::number(stop + 1).size());
    QString low, high;
    if (number < start) {
        high = QString::number(start - 1);
    } else if (number > stop) {
        low = QString::number(stop + 1);
    } else {
        const qint64 from = start + (number - start) / step * step;
        low = QString::number(from);
        high = QString::number(std::min(stop, from + step - 1));
    }
    return QString(low.rightJustified(width) + u':' + high.rightJustified(width));
}

// Numbers.
Value integer(Arguments a) { return vb::Int(a[0]); }
Value fix(Arguments a) { return vb::Fix(a[0]); }
Value sgn(Arguments a) { return vb::Sgn(a[0]); }
Value round(Arguments a) { return vb::Round(a[0], wholeAt(a, 1, 0)); }
Value sqr(Arguments a) { return vb::Sqr(a[0].toDouble()); }
Value exp(Arguments a) { return vb::Exp(a[0].toDouble()); }
Value log(Arguments a) { return vb::Log(a[0].toDouble()); }
Value sin(Arguments a) { return vb::Sin(a[0].toDouble()); }
Value cos(Arguments a) { return vb::Cos(a[0].toDouble()); }
Value tan(Arguments a) { return vb::Tan(a[0].toDouble()); }
Value atn(Arguments a) { return vb::Atn(a[0].toDouble()); }
Value rnd(Arguments a) { return vb::Rnd(a.empty() || a[0].isNull() ? 1 : a[0].toDouble()); }

std::vector<Function> makeFunctions() {
    std::vector<Function> list{
        {"jet_tobool", strict<toBool>},
        {"jet_tobyte", strict<toByte>},
        {"jet_toshort", strict<toShort>},
        {"jet_tolong", strict<toLong>},
        {"jet_todouble", strict<toDouble>},
        {"jet_tocurrency", strict<toCurrency>},
        {"jet_todate", strict<toDate>},
        {"jet_totext", strict<toText>},
        {"jet_divide", strict<divide>},
        {"jet_intdivide", strict<intDivide>},
        {"jet_mod", strict<modulo>},
        {"jet_power", strict<power>},
        {"jet_multiply", strict<multiply>},
        {"jet_like", strict<like>},
        {"jet_alike", strict<alike>},
        {"jet_cbool", cBool},
        {"jet_cbyte", cByte},
        {"jet_cint", cInt},
        {"jet_clng", cLng},
        {"jet_cdbl", cDbl},
        {"jet_csng", cSng},
        {"jet_ccur", cCur},
        {"jet_cdate", cDate},
        {"jet_cstr", cStr},
        {"jet_cvar", cVar},
        {"jet_val", val},
        {"jet_str", strict<str>},
        {"jet_hex", strict<hex>},
        {"jet_oct", strict<oct>},
        {"jet_isnumeric", isNumeric},
        {"jet_isdate", isDate},
        {"jet_typename", typeName},
        {"jet_format", format},
        {"jet_left", strict<left>},
        {"jet_right", strict<right>},
        {"jet_mid", strict<mid>},
        {"jet_instr", strict<inStr>},
        {"jet_instrrev", strict<inStrRev>},
        {"jet_replace", replace},
        {"jet_strcomp", strict<strComp>},
        {"jet_strconv", strict<strConv>},
        {"jet_strreverse", strict<strReverse>},
        {"jet_string", strict<string>},
        {"jet_space", strict<space>},
        {"jet_ucase", strict<uCase>},
        {"jet_lcase", strict<lCase>},
        {"jet_asc", strict<asc>},
        {"jet_ascw", strict<ascW>},
        {"jet_chr", strict<chr>},
        {"jet_chrw", strict<chrW>},
        {"jet_partition", strict<partition>},
        {"jet_int", strict<integer>},
        {"jet_fix", strict<fix>},
        {"jet_sgn", strict<sgn>},
        {"jet_round", strict<round>},
        {"jet_sqr", strict<sqr>},
        {"jet_exp", strict<exp>},
        {"jet_log", strict<log>},
        {"jet_sin", strict<sin>},
        {"jet_cos", strict<cos>},
        {"jet_tan", strict<tan>},
        {"jet_atn", strict<atn>},
        {"jet_rnd", rnd, false},
    };
    addDateFunctions(list);
    addFinanceFunctions(list);
    return list;
}

} // namespace

const std::vector<Function>& functions() {
    static const std::vector<Function> list = makeFunctions();
    return list;
}

} // namespace jet
