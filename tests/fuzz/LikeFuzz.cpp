#include "Fuzz.h"

#include <text/Sort.h>

namespace {

int sign(int n) { return n < 0 ? -1 : n > 0 ? 1 : 0; }

int compare(const QString& a, const QString& b) {
    const QByteArray x = a.toUtf8(), y = b.toUtf8();
    const int order = sign(CompareText(a, b));
    fuzz::require(sign(CompareText(b, a)) == -order);
    fuzz::require(sign(CompareUtf8(x.constData(), x.size(), y.constData(), y.size())) == order);
    return order;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Lines lines(data, size);
    const QString text = lines[0], pattern = lines[1], other = lines[2];

    const int error = fuzz::errorOf([&] { return LikeText(text, pattern); });
    fuzz::require(error == 0 || error == 93);
    if (error == 0 && LikeText(text, pattern))
        fuzz::require(LikeText(text.toCaseFolded(), pattern) || text.contains(u'ẞ'));

    const int order = compare(text, other);
    const int next = compare(other, pattern);
    if (order <= 0 && next <= 0) fuzz::require(compare(text, pattern) <= 0);
    if (order >= 0 && next >= 0) fuzz::require(compare(text, pattern) >= 0);
    compare(text, text + other);
    if (SortablePrefix(text) == text) fuzz::require(CompareText(text + other, text) >= 0);

    // What a pattern with a plain beginning finds lies in the range of that beginning.
    qsizetype plain = 0;
    while (plain < pattern.size() && !QStringView(u"*?#[").contains(pattern[plain]))
        ++plain;
    const QString prefix = pattern.left(plain);
    if (prefix.isValidUtf16() && LikeText(text, prefix + u'*')) {
        const QStringView start = SortablePrefix(prefix);
        fuzz::require(CompareText(text, start) >= 0);
        fuzz::require(CompareText(text, PrefixEnd(start)) <= 0);
    }

    // Bytes that are no text still have one order.
    const char* const bytes = reinterpret_cast<const char*>(data);
    const auto half = static_cast<qsizetype>(size / 2), rest = static_cast<qsizetype>(size) - half;
    fuzz::require(sign(CompareUtf8(bytes, half, bytes + half, rest)) ==
                  -sign(CompareUtf8(bytes + half, rest, bytes, half)));
    return 0;
}
