#pragma once

#include <QByteArray>
#include <QString>

/// The single-byte code page of devices and of written text files, and the reading of files that may be
/// either it or UTF-8. Windows-1252 here maps its five unassigned bytes to the control characters of the same
/// number, so decoding and encoding is a round trip for all 256 bytes.

[[nodiscard]] QString FromWindows1252(QByteArrayView bytes);
/// One byte for each UTF-16 unit; "?" for what the code page does not have.
[[nodiscard]] QByteArray ToWindows1252(QStringView text);
[[nodiscard]] bool FitsWindows1252(QStringView text);
[[nodiscard]] bool IsUtf8(QByteArrayView bytes);
/// True for a file that says it is UTF-16, of either byte order.
[[nodiscard]] bool HasUtf16Mark(QByteArrayView bytes);
/// What stands behind that mark, half a character at the end left out; the same bytes again, mark included.
[[nodiscard]] QString FromUtf16File(QByteArrayView bytes);
[[nodiscard]] QByteArray ToUtf16File(QStringView text, bool bigEndian);
/// Content of a text file: a byte order mark of UTF-8 or UTF-16, or valid UTF-8 decides, else Windows-1252.
/// The mark is dropped.
[[nodiscard]] QString FromFileBytes(QByteArrayView bytes);
