#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <vector>

/// The bytes of one ini file, line by line, so that whatever is not changed goes back as it came: comments,
/// order, blank lines, encoding (Windows-1252, UTF-8, or UTF-16 with its mark), line ends (those of Windows,
/// of Unix, or in a file without either the single CR).
///
/// What it holds: "[Section]" and "Key=Value", blanks around either do not count, names
/// compare without case, ";" at the start of a line is a comment, a value in a pair of quotes loses them, the
/// first of several equal keys counts.
class IniFile {
  public:
    IniFile() = default;
    /// Raises 321 for what is no text: zero bytes, or a UTF-16 that is cut or broken.
    explicit IniFile(const QByteArray& content);

    /// Null when the section or key is missing.
    [[nodiscard]] QString value(QStringView section, QStringView key) const;
    /// Changes the line of the key or adds it at the end of the section, which is added at the end of the
    /// file. A text that the file's encoding cannot hold makes the whole file UTF-8. Raises 5 for names that
    /// no file could give back ("", "=" or line breaks in them); line breaks in the value become blanks.
    void setValue(const QString& section, const QString& key, const QString& value);
    [[nodiscard]] QByteArray bytes() const;

  private:
    struct Line {
        QByteArray text; ///< without the line end
        QByteArray end;  ///< "\r\n", "\n", "\r", or "" at the end of the file
        bool isSection = false;
        QString section; ///< folded name of the section it stands in
        QString key;     ///< folded; empty unless it is a key line
    };

    void parse(const QByteArray& content);
    void parseLines(const QByteArray& content);
    [[nodiscard]] QByteArray lines() const;
    void classify(Line& line, QString& section) const;
    [[nodiscard]] QString decoded(QByteArrayView text) const;
    [[nodiscard]] QString valueOf(const Line& line) const;
    [[nodiscard]] QByteArray lineEnd() const;
    void place(const QString& section, const QString& key, const QByteArray& text);
    void convertToUtf8();

    enum class Wide { No, LittleEndian, BigEndian };
    Wide m_wide = Wide::No; ///< the file is UTF-16; in here it is UTF-8
    QByteArray m_mark;      ///< the byte order mark of UTF-8, if any
    bool m_utf8 = false;
    std::vector<Line> m_lines;
    QHash<QString, size_t> m_index; ///< section + '\n' + key -> line
};
