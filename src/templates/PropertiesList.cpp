#include "PldFormat.h"

#include <text/RuntimeError.h>

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QSaveFile>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double largestNumber = 10000, largestFont = 1000;
constexpr qsizetype largestPicture = 4 * 1024 * 1024;
constexpr qint64 mostPixels = 25'000'000;

bool isPlainText(const QString& text) {
    return text.isValidUtf16() && std::ranges::none_of(text, [](QChar c) {
               const char16_t u = c.unicode();
               return (u < 0x20 && u != u'\t' && u != u'\n' && u != u'\r') || u == 0xFFFE || u == 0xFFFF;
           });
}

template <class T>
const T* valueOf(const Property* p) {
    return p == nullptr ? nullptr : std::get_if<T>(&p->value);
}

template <class T>
T valueOr(const Property* p, T otherwise) {
    const T* value = valueOf<T>(p);
    return value == nullptr ? otherwise : *value;
}

bool isValueOf(PropertyType type, const PropertyValue& value) {
    switch (type) {
    case PropertyType::Boolean:
        return std::holds_alternative<bool>(value);
    case PropertyType::Choice:
        return std::holds_alternative<int>(value);
    case PropertyType::Cm:
    case PropertyType::Point: {
        const double* number = std::get_if<double>(&value);
        return number != nullptr && std::abs(*number) <= largestNumber; // which NaN is not
    }
    case PropertyType::Text: {
        const QString* text = std::get_if<QString>(&value);
        return text != nullptr && isPlainText(*text);
    }
    case PropertyType::Font: {
        const QFont* font = std::get_if<QFont>(&value);
        return font != nullptr && !font->family().isEmpty() && isPlainText(font->family()) &&
               font->pointSizeF() > 0 && font->pointSizeF() <= largestFont;
    }
    case PropertyType::Picture: {
        const QByteArray* picture = std::get_if<QByteArray>(&value);
        return picture != nullptr && picture->size() <= largestPicture;
    }
    }
    return false;
}

} // namespace

bool IsStorable(const Property& property) {
    return !property.key.isEmpty() && isPlainText(property.key) && isPlainText(property.caption) &&
           isPlainText(property.description) && isPlainText(property.format) &&
           std::ranges::all_of(property.choices, isPlainText) && isValueOf(property.type, property.value);
}

bool PropertiesList::Load(const QString& path) {
    m_properties.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    // One byte more than the largest tells that there is more, also where a file has no size.
    auto properties = pld::read(file.read(pld::largestFile + 1));
    if (!properties) return false;
    m_properties = std::move(*properties);
    return true;
}

bool PropertiesList::Save(const QString& path) const {
    const QByteArray bytes = pld::write(m_properties);
    QSaveFile file(path);
    return bytes.size() <= pld::largestFile && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size() && file.commit();
}

const Property* PropertiesList::find(QStringView key) const {
    const auto at = std::ranges::find(m_properties, key, &Property::key);
    return at == m_properties.end() ? nullptr : &*at;
}

void PropertiesList::setValue(QStringView key, PropertyValue value) {
    const auto at = std::ranges::find(m_properties, key, &Property::key);
    if (at == m_properties.end() || !isValueOf(at->type, value)) RaiseInvalidCall();
    at->value = std::move(value);
}

void PropertiesList::insert(QStringView after, Property property) {
    if (find(property.key) != nullptr || !IsStorable(property)) RaiseInvalidCall();
    auto at = std::ranges::find(m_properties, after, &Property::key);
    if (at != m_properties.end()) ++at;
    m_properties.insert(at, std::move(property));
}

bool PropertiesList::Flag(QStringView key) const { return valueOr(find(key), false); }

double PropertiesList::Number(QStringView key) const {
    const Property* p = find(key);
    return valueOf<int>(p) != nullptr ? valueOr(p, 0) : valueOr(p, 0.0);
}

int PropertiesList::Choice(QStringView key) const { return valueOr(find(key), 0); }

QString PropertiesList::Text(QStringView key) const { return valueOr(find(key), QString()); }

QFont PropertiesList::Font(QStringView key) const { return valueOr(find(key), QFont()); }

QImage PropertiesList::Picture(QStringView key) const {
    QByteArray bytes = valueOr(find(key), QByteArray());
    if (bytes.isEmpty()) return {};
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    // Pixels only: drawings could refer to other files. Some kilobytes can claim to be a picture of
    // gigabytes.
    static const QList<QByteArray> formats{"png", "jpeg", "jpg", "bmp", "gif", "webp"};
    const QSize size = reader.size();
    if (!formats.contains(reader.format()) || qint64{size.width()} * size.height() > mostPixels) return {};
    return reader.read();
}
