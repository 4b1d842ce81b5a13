#include <text/CodePage.h>

#include <QtEndian>

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

bool HasUtf16Mark(QByteArrayView bytes) {
    return bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
}

QString FromUtf16File(QByteArrayView bytes) {
    const bool big = bytes.startsWith("\xFE\xFF");
    QString text((bytes.size() - 2) / 2, Qt::Uninitialized);
    const char* from = bytes.data() + 2;
    for (QChar& c : text) {
        c = big ? qFromBigEndian<char16_t>(from) : qFromLittleEndian<char16_t>(from);
        from += 2;
    }
    return text;
}

QByteArray ToUtf16File(QStringView text, bool bigEndian) {
    QByteArray bytes((text.size() + 1) * 2, Qt::Uninitialized);
    char* to = bytes.data();
    const auto put = [&](char16_t unit) {
        bigEndian ? qToBigEndian(unit, to) : qToLittleEndian(unit, to);
        to += 2;
    };
    put(0xFEFF);
    for (const QChar c : text)
        put(c.unicode());
    return bytes;
}

QString FromFileBytes(QByteArrayView bytes) {
    if (HasUtf16Mark(bytes)) return FromUtf16File(bytes);
    if (bytes.startsWith("\xEF\xBB\xBF")) return QString::fromUtf8(bytes.sliced(3));
    return IsUtf8(bytes) ? QString::fromUtf8(bytes) : FromWindows1252(bytes);
}
