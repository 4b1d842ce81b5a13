#include <templates/Units.h>
#include <templates/ValueText.h>

#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

const QLocale& german() {
    static const QLocale locale(QLocale::German, QLocale::Germany);
    return locale;
}

QImage pictureOf(const QByteArray& bytes) {
    PropertiesList list;
    list.insert(u"", {u"bild"_s, {}, {}, PropertyType::Picture, bytes, {}, {}});
    return list.Picture(u"bild");
}

QString millimetres(const QSizeF& size) {
    return german().toString(size.width(), 'f', 1) + u" × "_s + german().toString(size.height(), 'f', 1) +
           u" mm"_s;
}

QString pictureText(const QByteArray& bytes) {
    if (bytes.isEmpty()) return u"kein Bild"_s;
    const QImage picture = pictureOf(bytes);
    return picture.isNull() ? u"nicht lesbar"_s : millimetres(naturalSize(picture));
}

QString firstLine(const QString& text) {
    const qsizetype end = text.indexOf(u'\n');
    return end < 0 ? text : text.first(end).trimmed() + u" …"_s;
}

} // namespace

NumberFormat numberFormat(const Property& property) {
    const QString pattern = property.format.section(u' ', 0, 0);
    const qsizetype point = pattern.indexOf(u'.');
    if (pattern.isEmpty()) return {};
    return {point < 0 ? 0 : static_cast<int>(std::min(pattern.size() - point - 1, qsizetype{4})),
            property.format.section(u' ', 1)};
}

QString fontText(const QFont& font) {
    QString text = font.family() + u' ' + german().toString(font.pointSizeF(), 'g', 4) + u" pt"_s;
    if (font.bold()) text += u", fett"_s;
    if (font.italic()) text += u", kursiv"_s;
    if (font.underline()) text += u", unterstrichen"_s;
    return text;
}

QString valueText(const Property& property) {
    switch (property.type) {
    case PropertyType::Boolean:
        return std::get<bool>(property.value) ? u"Ja"_s : u"Nein"_s;
    case PropertyType::Choice: {
        const int value = std::get<int>(property.value);
        return property.choices.value(value - 1, QString::number(value));
    }
    case PropertyType::Text:
        return firstLine(std::get<QString>(property.value));
    case PropertyType::Font:
        return fontText(std::get<QFont>(property.value));
    case PropertyType::Picture:
        return pictureText(std::get<QByteArray>(property.value));
    case PropertyType::Cm:
    case PropertyType::Point:
        break;
    }
    const NumberFormat format = numberFormat(property);
    const QString number = german().toString(std::get<double>(property.value), 'f', format.decimals);
    return format.unit.isEmpty() ? number : number + u' ' + format.unit;
}

QString storableText(QString text) {
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(QChar::ParagraphSeparator, u'\n');
    QString kept;
    for (const char32_t c : text.toUcs4()) {
        const bool control = (c < 0x20 && c != u'\t' && c != u'\n') || c == 0xFFFE || c == 0xFFFF;
        if (!control) kept += QChar::fromUcs4(c);
    }
    return kept;
}

QString pictureFault(const QByteArray& bytes) {
    const Property property{u"bild"_s, {}, {}, PropertyType::Picture, bytes, {}, {}};
    if (!IsStorable(property))
        return u"Das Bild ist größer als 4 MB. Verkleinern Sie es und wählen Sie es erneut."_s;
    if (pictureOf(bytes).isNull()) {
        return u"Die Datei enthält kein Bild, das gedruckt werden kann. Möglich sind PNG, JPEG, BMP, GIF und "
               "WebP mit höchstens 25 Millionen Bildpunkten."_s;
    }
    return {};
}

QString pictureRemark(const PropertiesList& list, const Property& property) {
    const QByteArray& bytes = std::get<QByteArray>(property.value);
    if (bytes.isEmpty()) return u"Kein Bild"_s;
    const QImage picture = list.Picture(property.key);
    if (picture.isNull()) return u"Das Bild ist nicht lesbar."_s;
    const QSizeF size = naturalSize(picture), paper = paperSize(list);
    QString text = u"%1, %2 × %3 Punkte"_s.arg(millimetres(size)).arg(picture.width()).arg(picture.height());
    const double left = list.Number(property.key + u"_left"_s) * twipsPerPosition * mmPerTwip;
    if (!paper.isEmpty() && left + size.width() > paper.width())
        text += u"\nDas Bild ragt über den rechten Papierrand."_s;
    return text;
}
