#include "PostgresCalls.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace jet {

namespace {

// In alphabetical order: looked up by halving.
constexpr PostgresCall calls[] = {
    {"jet_alike", "ss"},      {"jet_asc", "s"},        {"jet_ascw", "s"},
    {"jet_atn", "d"},         {"jet_chr", "n"},        {"jet_chrw", "n"},
    {"jet_cos", "d"},         {"jet_cvar", "*", "%1"}, {"jet_dateadd", "sdt"},
    {"jet_datediff", "sttn"}, {"jet_datepart", "stn"}, {"jet_dateserial", "n"},
    {"jet_day", "t"},         {"jet_ddb", "d"},        {"jet_divide", "d", "(%1 / %2)"},
    {"jet_exp", "d"},         {"jet_format", "*snn"},  {"jet_fv", "d"},
    {"jet_hour", "t"},        {"jet_instr", "ss"},     {"jet_instrrev", "ssn"},
    {"jet_lcase", "s"},       {"jet_left", "sn"},      {"jet_like", "ss"},
    {"jet_log", "d"},         {"jet_mid", "sn"},       {"jet_minute", "t"},
    {"jet_month", "t"},       {"jet_monthname", "n"},  {"jet_multiply", "c"},
    {"jet_nper", "d"},        {"jet_partition", "n"},  {"jet_pmt", "d"},
    {"jet_power", "d"},       {"jet_pv", "d"},         {"jet_replace", "sssn"},
    {"jet_right", "sn"},      {"jet_rnd", "d"},        {"jet_round", "*n"},
    {"jet_second", "t"},      {"jet_sin", "d"},        {"jet_sln", "d"},
    {"jet_space", "n"},       {"jet_sqr", "d"},        {"jet_strcomp", "ssn"},
    {"jet_strconv", "sn"},    {"jet_string", "n*"},    {"jet_strreverse", "s"},
    {"jet_syd", "d"},         {"jet_tan", "d"},        {"jet_timeserial", "n"},
    {"jet_ucase", "s"},       {"jet_val", "s"},        {"jet_weekday", "tn"},
    {"jet_weekdayname", "n"}, {"jet_year", "t"},
};

bool before(const PostgresCall& call, std::string_view name) {
    return std::string_view(call.function) < name;
}

} // namespace

PostgresCall postgresCall(const char* function, std::size_t arguments) {
    const std::string_view name = function;
    if (name == "jet_instr" && arguments > 2) return {function, "nssn"}; // a start stands in front
    const auto* at = std::lower_bound(std::begin(calls), std::end(calls), name, before);
    if (at == std::end(calls) || at->function != name) return {function, "*"};
    return *at;
}

} // namespace jet
