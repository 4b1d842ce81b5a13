#include "FunctionTable.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

using R = FunctionInfo::Result;
using F = FunctionInfo::Form;

// In alphabetical order: looked up by halving.
constexpr FunctionInfo functionTable[] = {
    {u"@@identity", "", 0, 0, R::Long, F::Identity},
    {u"abs", "abs", 1, 1, R::Number, F::Abs},
    {u"asc", "jet_asc", 1, 1, R::Long},
    {u"ascw", "jet_ascw", 1, 1, R::Long},
    {u"atn", "jet_atn", 1, 1, R::Double},
    {u"avg", "avg", 1, 1, R::Number, F::Avg},
    {u"cbool", "jet_cbool", 1, 1, R::Boolean},
    {u"cbyte", "jet_cbyte", 1, 1, R::Long},
    {u"ccur", "jet_ccur", 1, 1, R::Currency},
    {u"cdate", "jet_cdate", 1, 1, R::Date},
    {u"cdbl", "jet_cdbl", 1, 1, R::Double},
    {u"cdec", "jet_cdbl", 1, 1, R::Double},
    {u"choose", "", 2, -1, R::Common, F::Choose},
    {u"chr", "jet_chr", 1, 1, R::Text},
    {u"chrw", "jet_chrw", 1, 1, R::Text},
    {u"cint", "jet_cint", 1, 1, R::Long},
    {u"clng", "jet_clng", 1, 1, R::Long},
    {u"cos", "jet_cos", 1, 1, R::Double},
    {u"count", "count", 1, 1, R::Long, F::Count},
    {u"csng", "jet_csng", 1, 1, R::Single},
    {u"cstr", "jet_cstr", 1, 1, R::Text},
    {u"cvar", "jet_cvar", 1, 1, R::First},
    {u"cvdate", "jet_cdate", 1, 1, R::Date},
    {u"date", "jet_date", 0, 0, R::Date, F::Clock},
    {u"dateadd", "jet_dateadd", 3, 3, R::Date},
    {u"datediff", "jet_datediff", 3, 5, R::Long},
    {u"datepart", "jet_datepart", 2, 4, R::Long},
    {u"dateserial", "jet_dateserial", 3, 3, R::Date},
    {u"datevalue", "jet_datevalue", 1, 1, R::Date},
    {u"davg", "Avg", 2, 3, R::First, F::Domain},
    {u"day", "jet_day", 1, 1, R::Long},
    {u"dcount", "Count", 2, 3, R::First, F::Domain},
    {u"ddb", "jet_ddb", 4, 5, R::Double},
    {u"dlookup", "First", 2, 3, R::First, F::Domain},
    {u"dmax", "Max", 2, 3, R::First, F::Domain},
    {u"dmin", "Min", 2, 3, R::First, F::Domain},
    {u"dsum", "Sum", 2, 3, R::First, F::Domain},
    {u"eval", "", 1, 1, R::First, F::Eval},
    {u"exp", "jet_exp", 1, 1, R::Double},
    {u"first", "jet_first", 1, 1, R::First, F::Aggregate},
    {u"fix", "jet_fix", 1, 1, R::Number},
    {u"format", "jet_format", 1, 4, R::Text},
    {u"fv", "jet_fv", 3, 5, R::Double},
    {u"hex", "jet_hex", 1, 1, R::Text},
    {u"hour", "jet_hour", 1, 1, R::Long},
    {u"iif", "", 2, 3, R::Common, F::IIf},
    {u"instr", "jet_instr", 2, 4, R::Long},
    {u"instrrev", "jet_instrrev", 2, 4, R::Long},
    {u"int", "jet_int", 1, 1, R::Number},
    {u"isdate", "jet_isdate", 1, 1, R::Boolean},
    {u"isnull", "", 1, 1, R::Boolean, F::IsNull},
    {u"isnumeric", "jet_isnumeric", 1, 1, R::Boolean},
    {u"last", "jet_last", 1, 1, R::First, F::Aggregate},
    {u"lcase", "jet_lcase", 1, 1, R::Text},
    {u"left", "jet_left", 2, 2, R::Text, F::Left},
    {u"len", "length", 1, 1, R::Long, F::Len},
    {u"log", "jet_log", 1, 1, R::Double},
    {u"ltrim", "ltrim", 1, 1, R::Text, F::LTrim},
    {u"max", "max", 1, 1, R::First, F::Max},
    {u"mid", "jet_mid", 2, 3, R::Text},
    {u"min", "min", 1, 1, R::First, F::Min},
    {u"minute", "jet_minute", 1, 1, R::Long},
    {u"month", "jet_month", 1, 1, R::Long},
    {u"monthname", "jet_monthname", 1, 2, R::Text},
    {u"now", "jet_now", 0, 0, R::Date, F::Clock},
    {u"nper", "jet_nper", 3, 5, R::Double},
    {u"nz", "", 1, 2, R::Common, F::Nz},
    {u"oct", "jet_oct", 1, 1, R::Text},
    {u"partition", "jet_partition", 4, 4, R::Text},
    {u"pmt", "jet_pmt", 3, 5, R::Double},
    {u"pv", "jet_pv", 3, 5, R::Double},
    {u"replace", "jet_replace", 3, 6, R::Text},
    {u"right", "jet_right", 2, 2, R::Text, F::Right},
    {u"rnd", "jet_rnd", 0, 1, R::Double},
    {u"round", "jet_round", 1, 2, R::Number},
    {u"rtrim", "rtrim", 1, 1, R::Text, F::RTrim},
    {u"second", "jet_second", 1, 1, R::Long},
    {u"sgn", "jet_sgn", 1, 1, R::Long},
    {u"sin", "jet_sin", 1, 1, R::Double},
    {u"sln", "jet_sln", 3, 3, R::Double},
    {u"space", "jet_space", 1, 1, R::Text},
    {u"sqr", "jet_sqr", 1, 1, R::Double},
    {u"stdev", "jet_stdev", 1, 1, R::Double, F::Aggregate},
    {u"stdevp", "jet_stdevp", 1, 1, R::Double, F::Aggregate},
    {u"str", "jet_str", 1, 1, R::Text},
    {u"strcomp", "jet_strcomp", 2, 3, R::Long},
    {u"strconv", "jet_strconv", 2, 3, R::Text},
    {u"string", "jet_string", 2, 2, R::Text},
    {u"strreverse", "jet_strreverse", 1, 1, R::Text},
    {u"sum", "sum", 1, 1, R::Number, F::Sum},
    {u"switch", "", 2, -1, R::Common, F::Switch},
    {u"syd", "jet_syd", 4, 4, R::Double},
    {u"tan", "jet_tan", 1, 1, R::Double},
    {u"time", "jet_time", 0, 0, R::Date, F::Clock},
    {u"timer", "jet_timer", 0, 0, R::Double, F::Clock},
    {u"timeserial", "jet_timeserial", 3, 3, R::Date},
    {u"timevalue", "jet_timevalue", 1, 1, R::Date},
    {u"trim", "trim", 1, 1, R::Text, F::Trim},
    {u"typename", "jet_typename", 1, 1, R::Text},
    {u"ucase", "jet_ucase", 1, 1, R::Text},
    {u"val", "jet_val", 1, 1, R::Double},
    {u"var", "jet_var", 1, 1, R::Double, F::Aggregate},
    {u"varp", "jet_varp", 1, 1, R::Double, F::Aggregate},
    {u"weekday", "jet_weekday", 1, 2, R::Long},
    {u"weekdayname", "jet_weekdayname", 1, 3, R::Text},
    {u"year", "jet_year", 1, 1, R::Long},
};

} // namespace

const FunctionInfo* findFunction(QStringView name) {
    const auto* at = std::lower_bound(std::begin(functionTable), std::end(functionTable), name,
                                      [](const FunctionInfo& f, QStringView n) {
                                          return n.compare(QStringView(f.name), Qt::CaseInsensitive) > 0;
                                      });
    if (at == std::end(functionTable) || name.compare(QStringView(at->name), Qt::CaseInsensitive) != 0)
        return nullptr;
    return at;
}

} // namespace jet
