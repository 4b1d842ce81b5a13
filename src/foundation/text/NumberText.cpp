#include "NumberText.h"

#include "Digits.h"

#include <text/Convert.h>

#include <charconv>
#include <cmath>

namespace {

char16_t* put(char16_t* out, const char* begin, const char* end) {
    while (begin != end)
        *out++ = static_cast<char16_t>(*begin++);
    return out;
}

char16_t* zeros(char16_t* out, int count) {
    while (count-- > 0)
        *out++ = u'0';
    return out;
}

} // namespace

QString plainText(const Digits& n, char16_t decimalPoint, bool leadingZero) {
    if (!n.finite) return n.negative ? QStringLiteral("-1,#INF") : QStringLiteral("1,#INF");
    if (n.isZero()) return QStringLiteral("0");
    char16_t buffer[64];
    char16_t* out = buffer;
    if (n.negative) *out++ = u'-';
    const char* const end = n.d + n.count;
    if (n.point > 0 && (n.point <= n.places || (n.count > 15 && n.point <= 19))) {
        const int whole = std::min(n.point, n.count);
        out = zeros(put(out, n.d, n.d + whole), n.point - whole);
        if (n.count > n.point) {
            *out++ = decimalPoint;
            out = put(out, n.d + n.point, end);
        }
    } else if (n.point <= 0 && n.count - n.point <= n.places) {
        if (leadingZero) *out++ = u'0';
        *out++ = decimalPoint;
        out = put(zeros(out, -n.point), n.d, end);
    } else {
        *out++ = static_cast<char16_t>(n.d[0]);
        if (n.count > 1) {
            *out++ = decimalPoint;
            out = put(out, n.d + 1, end);
        }
        const int exponent = n.point - 1;
        *out++ = u'E';
        *out++ = exponent < 0 ? u'-' : u'+';
        char digits[8];
        const auto last = std::to_chars(digits, digits + sizeof digits, std::abs(exponent)).ptr;
        if (last - digits < 2) *out++ = u'0';
        out = put(out, digits, last);
    }
    return QString(reinterpret_cast<const QChar*>(buffer), out - buffer);
}

QString NumberText(double value) {
    if (std::isnan(value)) return QStringLiteral("-1,#IND");
    return plainText(Digits::of(value), u',');
}
