#pragma once

#include <text/Currency.h>
#include <text/DateTime.h>

#include <QString>

#include <cstdint>
#include <variant>

/// The types of the store. `Null` is also the type of an expression about which nothing is known.
enum class Type : std::uint8_t {
    Null,
    Boolean,
    Byte,
    Short,
    Long,
    Single,
    Double,
    Currency,
    Date,
    Text,
    Memo
};

/// A value of any of the store's types, with Visual Basic's conversions in the German locale. In memory there
/// are fewer shapes than column types: Byte, Short and Long are an integer, Text and Memo a text.
class Value {
  public:
    Value() = default; ///< Null
    Value(bool b)
        : m_data(b) {}
    Value(int i)
        : m_data(static_cast<qint64>(i)) {}
    Value(qint64 i)
        : m_data(i) {}
    Value(double d)
        : m_data(d) {}
    Value(float f)
        : m_data(f) {}
    Value(Currency c)
        : m_data(c) {}
    Value(DateTime d)
        : m_data(d) {}
    Value(const QString& s)
        : m_data(s) {}
    Value(QString&& s)
        : m_data(std::move(s)) {}
    Value(QStringView s)
        : m_data(s.toString()) {}
    Value(const char16_t* s)
        : m_data(QString::fromUtf16(s)) {}
    Value(const void*) = delete;

    /// Null, Boolean, Long, Single, Double, Currency, Date or Text.
    [[nodiscard]] Type type() const;
    [[nodiscard]] bool isNull() const { return m_data.index() == 0; }
    [[nodiscard]] bool isText() const { return std::holds_alternative<QString>(m_data); }
    [[nodiscard]] bool isNumber() const; ///< Boolean, Long, Single, Double or Currency by shape

    /// Visual Basic conversions (CBool, CLng, CDbl, CCur, CDate, CStr). Raise 94 for Null, 13 where the value
    /// has no such meaning, 6 outside the range of the target.
    [[nodiscard]] bool toBool() const;
    [[nodiscard]] int toLong() const;       ///< 32 bits, half to even
    [[nodiscard]] qint64 toInteger() const; ///< 64 bits, half to even
    [[nodiscard]] double toDouble() const;
    [[nodiscard]] Currency toCurrency() const;
    [[nodiscard]] DateTime toDate() const;
    /// True is "Wahr", numbers carry a decimal comma, dates are dd.mm.yyyy, with hh:mm:ss unless midnight.
    [[nodiscard]] QString toText() const;

    /// The same shape and value; Null equals Null. Not the comparison of SQL.
    friend bool operator==(const Value&, const Value&) = default;

    [[nodiscard]] const auto& data() const { return m_data; }

  private:
    std::variant<std::monostate, bool, qint64, double, Currency, DateTime, QString, float> m_data;
};
