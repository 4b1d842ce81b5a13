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
/// Content of a text file: a UTF-8 byte order mark or valid UTF-8 decides, else Windows-1252. The mark is
/// dropped.
[[nodiscard]] QString FromFileBytes(QByteArrayView bytes);
