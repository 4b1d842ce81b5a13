#pragma once

#include "Digits.h"

#include <text/DateTime.h>

#include <QString>
#include <QVarLengthArray>

/// The pieces that the three kinds of formats share.
namespace format {

/// Receives the result; most results fit without an allocation.
class Output {
  public:
    void put(char16_t c) { m_units.append(c); }
    void put(QStringView text) { m_units.append(text.utf16(), text.size()); }
    /// At least `width` digits.
    void number(int value, int width);
    [[nodiscard]] QString text() const {
        return QString(reinterpret_cast<const QChar*>(m_units.constData()), m_units.size());
    }

  private:
    QVarLengthArray<char16_t, 64> m_units;
};

enum class Kind { Number, Date, Text, Literal };
/// What the first placeholder of a format makes of it.
[[nodiscard]] Kind kindOf(QStringView format);

/// Walks over a format: escapes, quotes, fill characters and colours are understood here.
class Scanner {
  public:
    explicit Scanner(QStringView format)
        : m_at(format.utf16())
        , m_end(m_at + format.size()) {}

    /// The next unit with a meaning of its own, or 0 at the end. `literal` receives text that stands for
    /// itself instead, if that came first: then the result is 1.
    static constexpr char16_t isLiteral = 1;
    char16_t next(QStringView& literal);
    /// The units that follow, without understanding them.
    [[nodiscard]] QStringView rest() const { return {m_at, m_end}; }
    void skip(qsizetype count) { m_at += count; }
    /// Takes further units like `c`, whatever their case, up to `most`; how many there were.
    int run(char16_t c, int most);

  private:
    const char16_t* m_at;
    const char16_t* m_end;
};

struct Sections {
    QVarLengthArray<QStringView, 4> part; ///< at least one
    [[nodiscard]] bool has(int i) const { return i < part.size() && !part[i].isEmpty(); }
};
/// Up to four sections between ";"; what follows is ignored.
[[nodiscard]] Sections split(QStringView format);

[[nodiscard]] QString formatNumber(Digits number, QStringView format);
[[nodiscard]] QString formatDate(DateTime date, QStringView format, int firstDayOfWeek, int firstWeekOfYear);
[[nodiscard]] QString formatText(QStringView text, QStringView format);
/// The literal text of a section.
[[nodiscard]] QString literalText(QStringView section);

} // namespace format
