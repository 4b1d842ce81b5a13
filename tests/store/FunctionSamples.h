#pragma once

#include <text/Value.h>

#include <QStringList>

#include <random>

/// Arguments for the functions of the dialect, and how the server is called with them.
namespace samples {

/// The same row of values for the same seed.
class Samples {
  public:
    explicit Samples(unsigned seed)
        : m_random(seed) {}

    /// v any value, w a text of words, x a number, a a text that may be a date, f a format of numbers and
    /// texts, g one of dates, p a pattern of LIKE, i an interval, t a date, k a small whole number, m a
    /// number, c the number of a character, y a year, q an amount, r a rate. Each now and then is Null or
    /// something else altogether.
    Value value(char letter);

  private:
    std::size_t below(std::size_t n) { return m_random() % n; }
    template <class List>
    auto of(const List& list) {
        return list[below(std::size(list))];
    }
    Value any();
    Value number();
    double real();
    QString words();
    QString numberText();
    QString dateText();
    QString format(bool dates);
    QString pattern();

    std::mt19937 m_random;
};

/// The call as it stands in a translated statement.
[[nodiscard]] QString callOf(const char* function, const std::vector<Value>& arguments);
/// Whether an argument already fails to be what the function is called with.
[[nodiscard]] bool misfits(const char* function, const std::vector<Value>& arguments);
/// A text as element of an array in the server's notation.
[[nodiscard]] QString quotedElement(const QString& text);

} // namespace samples
