#include "NumberParser.h"

#include "Int128.h"

#include <text/RuntimeError.h>

#include <charconv>
#include <limits>

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\u00a0'; }
bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

QStringView withoutBlanks(QStringView text) {
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

int radixOf(QStringView text) {
    if (text.size() < 2 || text[0] != u'&') return 0;
    if (text[1] == u'H' || text[1] == u'h') return 16;
    return text[1] == u'O' || text[1] == u'o' ? 8 : 0;
}

int digitValue(QChar c, int radix) {
    int value = 99;
    if (isDigit(c)) value = c.unicode() - u'0';
    if (c >= u'a' && c <= u'f') value = c.unicode() - u'a' + 10;
    if (c >= u'A' && c <= u'F') value = c.unicode() - u'A' + 10;
    return value < radix ? value : -1;
}

/// Takes digits from `text`; false when they do not fit 64 bits.
bool takeBits(QStringView& text, int radix, quint64& bits) {
    const unsigned shift = radix == 16 ? 4 : 3;
    while (!text.isEmpty()) {
        const int value = digitValue(text.front(), radix);
        if (value < 0) break;
        if (bits >> (64 - shift)) return false;
        bits = (bits << shift) | static_cast<quint64>(value);
        text = text.mid(1);
    }
    return true;
}

/// The exponent behind "E" or "D", without touching `text` when there is none. Far exponents are cut, not
/// wrong: no double reaches them.
bool takeExponent(QStringView& text, qint64& exponent) {
    if (text.isEmpty() || !QStringView(u"eEdD").contains(text.front())) return false;
    QStringView rest = text.mid(1);
    bool negative = false;
    if (!rest.isEmpty() && (rest.front() == u'+' || rest.front() == u'-')) {
        negative = rest.front() == u'-';
        rest = rest.mid(1);
    }
    if (rest.isEmpty() || !isDigit(rest.front())) return false;
    qint64 value = 0;
    for (; !rest.isEmpty() && isDigit(rest.front()); rest = rest.mid(1))
        value = std::min<qint64>(value * 10 + (rest.front().unicode() - u'0'), 1'000'000'000);
    exponent += negative ? -value : value;
    text = rest;
    return true;
}

double decimalToDouble(const QVarLengthArray<char, 64>& digits, qint64 exponent) {
    if (digits.isEmpty()) return 0;
    // Beyond these a double is 0 or infinite whatever the digits are; the text below stays short.
    const qint64 magnitude = digits.size() + exponent;
    if (magnitude > 400) return std::numeric_limits<double>::infinity();
    if (magnitude < -400) return 0;
    QVarLengthArray<char, 96> buffer;
    buffer.append(digits.constData(), digits.size());
    buffer.append('e');
    char number[24];
    const auto end = std::to_chars(number, number + sizeof number, exponent).ptr;
    buffer.append(number, static_cast<qsizetype>(end - number));
    double value = 0;
    if (std::from_chars(buffer.constData(), buffer.constData() + buffer.size(), value).ec != std::errc())
        return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return value;
}

} // namespace

bool TypedNumber::parseBits(QStringView text) {
    const int radix = radixOf(text);
    text = text.mid(2);
    if (text.isEmpty() || !takeBits(text, radix, m_bits)) return false;
    m_isBits = true;
    if (!text.isEmpty() && text.front() == u'&') text = text.mid(1);
    return text.isEmpty();
}

bool TypedNumber::parse(QStringView text) {
    text = withoutBlanks(text);
    if (radixOf(text) != 0)
        return text.size() > 2 && digitValue(text[2], radixOf(text)) >= 0 && parseBits(text);

    bool sign = false, currency = false, bracket = false;
    while (!text.isEmpty() && !isDigit(text.front()) && text.front() != u',') {
        const QChar c = text.front();
        if ((c == u'+' || c == u'-') && !sign && !bracket) {
            sign = true;
            m_negative = c == u'-';
        } else if (c == u'(' && !sign && !bracket) {
            bracket = m_negative = true;
        } else if (c == u'€' && !currency) {
            currency = true;
        } else if (!isBlank(c)) {
            return false;
        }
        text = text.mid(1);
    }

    bool any = false, comma = false;
    for (; !text.isEmpty(); text = text.mid(1)) {
        const QChar c = text.front();
        if (isDigit(c)) {
            any = true;
            if (c != u'0' || !m_digits.isEmpty()) m_digits.append(static_cast<char>(c.unicode()));
            if (comma) --m_exponent;
        } else if (c == u',' && !comma) {
            comma = true;
        } else if (c != u'.' || comma || !any) {
            break;
        }
    }
    if (!any) return false;
    takeExponent(text, m_exponent);

    for (; !text.isEmpty(); text = text.mid(1)) {
        const QChar c = text.front();
        if ((c == u'+' || c == u'-') && !sign && !bracket) {
            sign = true;
            m_negative = c == u'-';
        } else if (c == u')' && bracket) {
            bracket = false;
            sign = true;
        } else if (c == u'€' && !currency) {
            currency = true;
        } else if (!isBlank(c)) {
            return false;
        }
    }
    return !bracket;
}

double TypedNumber::toDouble() const {
    if (m_isBits) return static_cast<double>(toBits(m_bits >> 32 ? 64 : 32));
    const double value = decimalToDouble(m_digits, m_exponent);
    return m_negative ? -value : value;
}

qint64 TypedNumber::scaled(int decimals) const {
    // The digits before `cut` count, the others decide the rounding.
    const qint64 cut = m_digits.size() + m_exponent + decimals;
    if (m_digits.isEmpty() || cut < 0) return 0;
    if (cut > 19) RaiseOverflow();
    Int128 value = 0;
    for (qsizetype i = 0; i < cut; ++i)
        value = value * 10 + (i < m_digits.size() ? m_digits[i] - '0' : 0);
    if (cut < m_digits.size()) {
        bool more = m_digits[cut] > '5';
        if (m_digits[cut] == '5') {
            more = value % 2 != 0;
            for (qsizetype i = cut + 1; i < m_digits.size() && !more; ++i)
                more = m_digits[i] != '0';
        }
        if (more) ++value;
    }
    if (m_negative) value = -value;
    if (value < std::numeric_limits<qint64>::min() || value > std::numeric_limits<qint64>::max())
        RaiseOverflow();
    return static_cast<qint64>(value);
}

Currency TypedNumber::toCurrency() const {
    if (m_isBits) return Currency::fromInteger(toBits(m_bits >> 32 ? 64 : 32));
    return Currency::fromScaled(scaled(4));
}

qint64 TypedNumber::toInteger() const {
    if (m_isBits) return toBits(m_bits >> 32 ? 64 : 32);
    return scaled(0);
}

qint64 TypedNumber::toBits(int bits) const {
    if (bits >= 64) return static_cast<qint64>(m_bits);
    if (m_bits >> bits) RaiseOverflow();
    const quint64 signBit = quint64{1} << (bits - 1);
    return static_cast<qint64>(m_bits) - (m_bits & signBit ? static_cast<qint64>(signBit) * 2 : 0);
}

double TypedNumber::leading(QStringView text) {
    QVarLengthArray<char16_t, 64> kept;
    for (const QChar c : text)
        if (!isBlank(c)) kept.append(c.unicode());
    text = QStringView(kept.constData(), kept.size());

    TypedNumber number;
    if (const int radix = radixOf(text)) {
        text = text.mid(2);
        if (!takeBits(text, radix, number.m_bits)) return std::numeric_limits<double>::max();
        const bool isLong = !text.isEmpty() && text.front() == u'&';
        const int bits = number.m_bits >> 32 ? 64 : number.m_bits >> 16 || isLong ? 32 : 16;
        return static_cast<double>(number.toBits(bits));
    }
    if (!text.isEmpty() && (text.front() == u'+' || text.front() == u'-')) {
        number.m_negative = text.front() == u'-';
        text = text.mid(1);
    }
    bool any = false, pointSeen = false;
    for (; !text.isEmpty(); text = text.mid(1)) {
        const QChar c = text.front();
        if (isDigit(c)) {
            any = true;
            if (c != u'0' || !number.m_digits.isEmpty())
                number.m_digits.append(static_cast<char>(c.unicode()));
            if (pointSeen) --number.m_exponent;
        } else if (c == u'.' && !pointSeen) {
            pointSeen = true;
        } else {
            break;
        }
    }
    if (!any) return 0;
    takeExponent(text, number.m_exponent);
    const double limit = std::numeric_limits<double>::max();
    return std::clamp(number.toDouble(), -limit, limit);
}
