#pragma once

#include <QString>

#include <exception>

/// The one error type of the program: a number that callers react to, the place in the code and a German
/// description for people. "Cancelled" and "not found" are results, never errors.
///
/// Numbers in use: 5 invalid call, 6 overflow, 11 division by zero, 13 type mismatch, 53 file not found, 61
/// disk full, 70 permission denied, 94 invalid use of Null, 3021 no current record, 3022 duplicate key, 3024
/// store missing, 3026 disk full, 3027 read-only, 3031 password, 3050 cannot lock, 3061 unknown column or
/// parameter, 3075 syntax error, 3078 unknown table, 3163 text too long, 3167 row deleted, 3260 locked by
/// another till, 3265 no such item, 3343 not a store, 3464 type mismatch in criteria.
class RuntimeError : public std::exception {
  public:
    /// `Place` is the offset (UTF-16 units) into the statement or text that failed, -1 when there is none.
    RuntimeError(int Number_, QString Description_, QString Source_ = {}, qsizetype Place_ = -1)
        : Number(Number_)
        , Source(std::move(Source_))
        , Description(std::move(Description_))
        , Place(Place_)
        , m_what(Description.toUtf8()) {}

    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

    int Number;
    QString Source;
    QString Description;
    qsizetype Place;

  private:
    QByteArray m_what;
};

/// Raises error 13 "Typen unverträglich".
[[noreturn]] void RaiseTypeMismatch();
/// Raises error 6 "Überlauf".
[[noreturn]] void RaiseOverflow();
/// Raises error 94 "Unzulässige Verwendung von Null".
[[noreturn]] void RaiseInvalidNull();
/// Raises error 5 "Ungültiger Prozeduraufruf oder ungültiges Argument".
[[noreturn]] void RaiseInvalidCall();
/// Raises error 11 "Division durch Null".
[[noreturn]] void RaiseDivisionByZero();
