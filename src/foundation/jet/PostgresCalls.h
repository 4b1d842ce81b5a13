#pragma once

#include <cstddef>

namespace jet {

/// How PostgreSQL is asked for a function of the dialect. All functions live in the store's schema, which the
/// search path names, and are found by the types of their arguments.
///
/// `kinds` tells how each argument travels, the last letter serves all further ones:
///   s  text             converted to a text first, as jet_totext does
///   n  bigint           a whole number; what is none goes through jet_tolong
///   d  double precision a number; what is none goes through jet_todouble
///   t  double precision a date as days; what is none goes through jet_todate
///   c  numeric          money; what is none goes through jet_tocurrency
///   *  by its own type: boolean, bigint (Byte, Short, Long), real (Single), double precision, numeric
///      (Currency), jet_date (Date: ROW(days)::jet_date), text (Text, Memo, and Null, which is NULL::text)
///
/// A function gives boolean for Boolean, bigint for Long, double precision for Double, Single and Date,
/// numeric for Currency, text for Text; one whose type is that of its argument (FunctionInfo::Result::Number)
/// gives bigint, double precision or numeric as it was given them, and days for a jet_date. Null is NULL of
/// the type. So do the conversions jet_tobool, jet_tobyte, jet_toshort, jet_tolong, jet_todouble,
/// jet_tocurrency, jet_todate, jet_totext, all of kind "*" and NULL for NULL.
///
/// `native`, where there is one, is written instead of the call: %1, %2, .. stand for the arguments, each of
/// which is atomic or in parentheses. It must be one operand of an expression itself: a call, a cast or
/// something in parentheses.
struct PostgresCall {
    const char* function; ///< as FunctionInfo::sql and the writers name it, e.g. "jet_format"
    const char* kinds;
    const char* native = nullptr;
};

/// A function that the table does not name is called with kind "*" for all arguments.
[[nodiscard]] PostgresCall postgresCall(const char* function, std::size_t arguments);

} // namespace jet
