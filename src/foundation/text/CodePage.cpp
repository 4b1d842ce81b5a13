#include <text/CodePage.h>

#include <QStringDecoder>

#include <array>

namespace {

// Bytes 0x80 to 0x9F; all others carry the number of their character.
constexpr std::array<char16_t, 32> upper = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// The byte of a character, -1 when the code page has none.
int byteOf(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return unit;
    for (size_t i = 0; i < upper.size(); ++i)
        if (upper[i] == unit) return static_cast<int>(0x80 + i);
    return -1;
}

} // namespace

QString FromWindows1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        *out++ = byte >= 0x80 && byte < 0xA0 ? QChar(upper[byte - 0x80u]) : QChar(char16_t{byte});
    }
    return text;
}

QByteArray ToWindows1252(QStringView text) {
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char* out = bytes.data();
    for (const QChar c : text) {
        const int byte = byteOf(c.unicode());
        *out++ = byte < 0 ? '?' : static_cast<char>(byte);
    }
    return bytes;
}

bool FitsWindows1252(QStringView text) {
    for (const QChar c : text)
        if (byteOf(c.unicode()) < 0) return false;
    return true;
}

bool IsUtf8(QByteArrayView bytes) { return bytes.isEmpty() || bytes.isValidUtf8(); }

QString FromFileBytes(QByteArrayView bytes) {
    if (bytes.startsWith("\xEF\xBB\xBF")) return QString::fromUtf8(bytes.sliced(3));
    return IsUtf8(bytes) ? QString::fromUtf8(bytes) : FromWindows1252(bytes);
}
