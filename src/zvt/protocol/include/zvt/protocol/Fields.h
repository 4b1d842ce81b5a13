#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace zvt {

/// The digits of packed numbers, two a byte; a nibble above 9 is written as its letter ("E" hides a digit).
[[nodiscard]] QString bcdDigits(const QByteArray& bcd);
/// The number in packed digits; nothing for one that holds other nibbles or is longer than 18 digits.
[[nodiscard]] std::optional<qint64> bcdNumber(const QByteArray& bcd);
/// `number`, not negative, in `bytes` packed bytes; digits beyond them are lost.
[[nodiscard]] QByteArray bcd(qint64 number, int bytes);

/// One data object of a container. The tag holds all its bytes as one number, e.g. 0x1F40.
struct Tlv {
    int tag = 0;
    QByteArray value;
    std::vector<Tlv> parts; ///< of a constructed object

    [[nodiscard]] bool isConstructed() const;
    /// The first object of this tag among the parts, at any depth; nullptr when there is none.
    [[nodiscard]] const Tlv* find(int wanted) const;
};

/// The objects of a container, without its own tag and length. An object whose length lies ends the reading;
/// what came before it stays. Containers deeper than eight levels are left closed.
struct TlvList {
    std::vector<Tlv> objects;
    bool complete = true; ///< every byte was understood
    [[nodiscard]] const Tlv* find(int tag) const;
};
[[nodiscard]] TlvList decodeTlv(const QByteArray& bytes);
/// Tag, length and value.
[[nodiscard]] QByteArray encodeTlv(int tag, const QByteArray& value);

/// The fields of a data block in which a number in front of each says what follows.
struct Bitmaps {
    struct Field {
        int number = 0;
        QByteArray value; ///< without the length in front
    };
    std::vector<Field> fields;
    TlvList container;    ///< of field 06
    bool complete = true; ///< every byte was understood

    /// The value of the first such field; nullptr when there is none.
    [[nodiscard]] const QByteArray* find(int number) const;
};
/// Reads fields until the end or the first one that is unknown, cut off or has a length that lies; what came
/// before it stays.
[[nodiscard]] Bitmaps decodeBitmaps(const QByteArray& bytes);

/// The length in front of a field, `digits` bytes F0 to F9, and then so many bytes; moves `at` behind them.
/// Nothing when the length lies.
[[nodiscard]] std::optional<QByteArray> takeCounted(const QByteArray& bytes, qsizetype& at, int digits);

} // namespace zvt
