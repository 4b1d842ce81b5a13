#include "Fuzz.h"
#include "IniFile.h"

#include <text/CodePage.h>

namespace {

using fuzz::require;

/// Names and values come back as they went in when blanks, quotes and control characters are left out.
QString plain(const QByteArray& bytes) {
    QString text = QString::fromUtf8(bytes);
    text.removeIf(
        [](QChar c) { return c.isSpace() || c < u' ' || c == u'"' || c == u'\'' || c == QChar(0xFEFF); });
    return text;
}

} // namespace

/// Four lines of section, key, value and another key, then the file: whatever it holds, it comes back byte
/// for byte when nothing is changed, a written value is read back, and no other key changes by it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QByteArray content(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString words[4];
    for (QString& word : words) {
        const qsizetype end = content.indexOf('\n');
        if (end < 0) return 0;
        word = plain(content.first(end));
        content.remove(0, end + 1);
    }
    const auto& [section, key, value, other] = words;
    try {
        IniFile file(content);
        require(file.bytes() == content);
        const QString before = file.value(section, other);
        const bool same = key.toCaseFolded() == other.toCaseFolded();
        file.setValue(section, key, value);
        const IniFile again(file.bytes());
        require(again.value(section, key) == value);
        require(same || again.value(section, other) == before);
        require(again.bytes() == file.bytes());
    } catch (const RuntimeError& error) {
        require(error.Number == 5 || error.Number == 321);
    }
    return 0;
}
