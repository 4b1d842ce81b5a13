#include "FormatParts.h"
#include "NumberText.h"

#include <algorithm>
#include <cmath>

namespace format {

namespace {

enum class Item { End, Literal, Zero, Optional, Point, Exponent };

/// Reads a section of a number format twice: first to learn its shape, then to write.
class NumberScanner {
  public:
    explicit NumberScanner(QStringView section)
        : m_scanner(section) {}

    QStringView literal;       ///< of a Literal
    bool percent = false;      ///< the literal counts
    bool comma = false;        ///< the literal is a "," and is not shown
    bool signedAlways = false; ///< of an Exponent: "E+"
    int exponentDigits = 0;
    char16_t exponentSign = u'E';

    Item next() {
        percent = comma = false;
        const char16_t c = m_scanner.next(literal);
        switch (c) {
        case 0:
            return Item::End;
        case Scanner::isLiteral:
            return Item::Literal;
        case u'0':
            return Item::Zero;
        case u'#':
            return Item::Optional;
        case u'.':
            if (m_pointSeen) break;
            m_pointSeen = true;
            return Item::Point;
        case u',':
            comma = true;
            break;
        case u'%':
            percent = true;
            break;
        case u'e':
        case u'E':
            if (!m_exponentSeen && startExponent(c)) return Item::Exponent;
            break;
        default:
            break;
        }
        m_unit = c;
        literal = {&m_unit, 1};
        return Item::Literal;
    }

  private:
    bool startExponent(char16_t letter) {
        const QStringView rest = m_scanner.rest();
        if (rest.isEmpty() || (rest[0] != u'+' && rest[0] != u'-')) return false;
        m_exponentSeen = true;
        signedAlways = rest[0] == u'+';
        exponentSign = letter;
        m_scanner.skip(1);
        while (m_scanner.run(u'0', 1) == 1)
            exponentDigits = std::min(exponentDigits + 1, 12);
        while (m_scanner.run(u'0', 1) == 1 || m_scanner.run(u'#', 1) == 1) {
        }
        return true;
    }

    Scanner m_scanner;
    char16_t m_unit = 0;
    bool m_pointSeen = false;
    bool m_exponentSeen = false;
};

/// What a section asks for.
struct Shape {
    int wholePlaces = 0;
    int firstZero = -1; ///< of the whole places, -1 when none is forced
    int decimals = 0;
    int forcedDecimals = 0;
    int percents = 0;
    int thousands = 0; ///< how often the number is divided by 1000
    bool grouped = false;
    bool exponent = false;

    [[nodiscard]] bool hasPlaces() const { return wholePlaces + decimals > 0; }

    explicit Shape(QStringView section) {
        NumberScanner scanner(section);
        bool behindPoint = false;
        int commas = 0;
        for (Item item = scanner.next(); item != Item::End; item = scanner.next()) {
            switch (item) {
            case Item::Zero:
            case Item::Optional:
                if (behindPoint) {
                    ++decimals;
                    if (item == Item::Zero) forcedDecimals = decimals;
                    break;
                }
                if (item == Item::Zero && firstZero < 0) firstZero = wholePlaces;
                ++wholePlaces;
                grouped = grouped || commas > 0;
                commas = 0;
                break;
            case Item::Point:
                behindPoint = true;
                break;
            case Item::Exponent:
                exponent = true;
                break;
            default:
                if (scanner.percent) ++percents;
                if (scanner.comma && !behindPoint && wholePlaces > 0) ++commas;
            }
        }
        thousands = commas;
    }
};

class NumberWriter {
  public:
    NumberWriter(QStringView section, const Shape& shape, const Digits& digits, int exponent)
        : m_scanner(section)
        , m_shape(shape)
        , m_digits(digits)
        , m_exponent(exponent) {}

    void write(Output& out) {
        int place = 0;
        int decimal = 0;
        bool behindPoint = false;
        for (Item item = m_scanner.next(); item != Item::End; item = m_scanner.next()) {
            switch (item) {
            case Item::Zero:
            case Item::Optional:
                if (behindPoint)
                    decimalPlace(out, ++decimal, item == Item::Zero);
                else
                    wholePlace(out, place++);
                break;
            case Item::Point:
                behindPoint = true;
                if (m_shape.wholePlaces == 0 && m_shape.decimals > 0) leading(out, 0);
                out.put(u',');
                break;
            case Item::Exponent:
                exponent(out);
                break;
            default:
                if (!m_scanner.comma) out.put(m_scanner.literal);
            }
        }
    }

  private:
    void digit(Output& out, int power) const {
        out.put(static_cast<char16_t>(m_digits.at(power)));
        if (m_shape.grouped && power > 0 && power % 3 == 0) out.put(u'.');
    }

    /// The digits that the format has no place for.
    void leading(Output& out, int places) const {
        for (int power = m_digits.point - 1; power >= places; --power)
            digit(out, power);
    }

    void wholePlace(Output& out, int place) const {
        const int power = m_shape.wholePlaces - 1 - place;
        if (place == 0) leading(out, m_shape.wholePlaces);
        const bool forced = m_shape.firstZero >= 0 && place >= m_shape.firstZero;
        if (forced || power < m_digits.point) digit(out, power);
    }

    void decimalPlace(Output& out, int decimal, bool forced) const {
        const int significant = m_digits.count - m_digits.point;
        if (forced || decimal <= m_shape.forcedDecimals || decimal <= significant)
            out.put(static_cast<char16_t>(m_digits.at(-decimal)));
    }

    void exponent(Output& out) const {
        out.put(m_scanner.exponentSign);
        if (m_exponent < 0)
            out.put(u'-');
        else if (m_scanner.signedAlways)
            out.put(u'+');
        out.number(std::abs(m_exponent), m_scanner.exponentDigits);
    }

    NumberScanner m_scanner;
    const Shape& m_shape;
    const Digits& m_digits;
    int m_exponent;
};

/// Brings a number into the shape's places; returns the exponent that is told apart.
int fit(Digits& n, const Shape& shape) {
    if (!n.isZero()) n.point += 2 * shape.percents - 3 * shape.thousands;
    if (!shape.exponent) {
        n.round(shape.decimals, Digits::Tie::Away);
        return 0;
    }
    if (n.isZero()) return 0;
    int exponent = n.point - shape.wholePlaces;
    n.point = shape.wholePlaces;
    n.round(shape.decimals, Digits::Tie::Away);
    if (n.point > shape.wholePlaces) { // 9,99 became 10,0
        --n.point;
        ++exponent;
    }
    return exponent;
}

} // namespace

QString formatNumber(Digits n, QStringView format) {
    const Sections sections = split(format);
    QStringView section = sections.part[0];
    bool ownSign = true;
    if (n.negative && !n.isZero() && sections.has(1)) {
        section = sections.part[1];
        ownSign = false;
    }
    if (sections.has(2)) { // also for what its own section would show as zero
        Digits shown = n;
        if (const Shape shape(section); shape.hasPlaces()) static_cast<void>(fit(shown, shape));
        if (shown.isZero()) {
            section = sections.part[2];
            n.negative = false;
        }
    }
    if (section.isEmpty()) return plainText(n, u',');
    const Shape shape(section);
    const int exponent = fit(n, shape);
    Output out;
    if (n.negative && ownSign && (!n.isZero() || !shape.hasPlaces())) out.put(u'-');
    NumberWriter(section, shape, n, exponent).write(out);
    return out.text();
}

} // namespace format
