#include "FormatParts.h"
#include "Letters.h"

namespace format {

namespace {

/// What a section asks for.
struct TextShape {
    int places = 0;
    bool fromLeft = false;
    bool lower = false, upper = false;

    /// Both together leave the letters as they are.
    [[nodiscard]] Case letters() const {
        return lower == upper ? Case::Kept : lower ? Case::Lower : Case::Upper;
    }

    explicit TextShape(QStringView section) {
        Scanner scanner(section);
        QStringView literal;
        while (const char16_t c = scanner.next(literal)) {
            if (c == u'@' || c == u'&') ++places;
            if (c == u'!') fromLeft = true;
            lower = lower || c == u'<';
            upper = upper || c == u'>';
        }
    }
};

} // namespace

QString formatText(QStringView text, QStringView format) {
    const Sections sections = split(format);
    if (text.isEmpty()) return sections.has(1) ? literalText(sections.part[1]) : QString();
    const QStringView section = sections.part[0];
    const TextShape shape(section);
    const QString letters = inCase(text, shape.letters());
    if (shape.places == 0 && section.isEmpty()) return letters;

    const int size = static_cast<int>(letters.size());
    int empty = shape.fromLeft ? 0 : std::max(0, shape.places - size); // places to pass over before the text
    qsizetype at = shape.fromLeft && shape.places > 0 ? std::max(0, size - shape.places) : 0;
    Scanner scanner(section);
    Output out;
    QStringView literal;
    while (const char16_t c = scanner.next(literal)) {
        if (c == u'@' || c == u'&') {
            if (empty == 0 && at < size) {
                out.put(letters[at++].unicode());
                continue;
            }
            if (empty > 0) --empty;
            if (c == u'@') out.put(u' ');
        } else if (c == Scanner::isLiteral) {
            out.put(literal);
        } else if (c != u'!' && c != u'<' && c != u'>') {
            out.put(c);
        }
    }
    out.put(QStringView(letters).mid(at));
    return out.text();
}

} // namespace format
