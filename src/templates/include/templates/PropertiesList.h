#pragma once

#include <QFont>
#include <QImage>
#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

/// The print templates of a shop: a list of typed properties in a fixed order, one file a document type with
/// the extension ".pld".

enum class PropertyType { Boolean, Cm, Point, Choice, Text, Font, Picture };

/// Cm and Point hold a double, Choice an int. A Picture keeps the bytes of its file, so that nothing is lost
/// on the way through the designer; empty means no picture.
using PropertyValue = std::variant<bool, double, int, QString, QFont, QByteArray>;

struct Property {
    QString key, caption, description;
    PropertyType type = PropertyType::Text;
    PropertyValue value;
    QString format;      ///< for the grid, e.g. "0.0 cm"
    QStringList choices; ///< captions of the values 1, 2, 3 of a Choice

    bool operator==(const Property&) const = default;
};

/// Whether a template can hold this: a key, a value of its type, numbers within +/-10,000, fonts with a
/// family and a size in points up to 1,000, pictures of at most 4 MB, texts without control characters other
/// than tabs and line breaks.
[[nodiscard]] bool IsStorable(const Property& property);

class PropertiesList {
  public:
    /// Replaces what the list held. False when the file is missing, damaged, larger than 16 MB or no
    /// template; the list is empty then.
    [[nodiscard]] bool Load(const QString& path);
    /// The file is written whole and has reached the disk, or stays as it was and the result is False.
    [[nodiscard]] bool Save(const QString& path) const;

    [[nodiscard]] const std::vector<Property>& properties() const { return m_properties; }
    [[nodiscard]] const Property* find(QStringView key) const; ///< nullptr when missing
    /// Raises 5 for a key that is missing or a value that the property cannot hold.
    void setValue(QStringView key, PropertyValue value);
    /// Behind `after`, at the end when there is no such key. Raises 5 for a key that is there already and for
    /// what cannot be stored.
    void insert(QStringView after, Property property);

    bool operator==(const PropertiesList&) const = default;

    // A key that is missing, or of another type, reads as False, 0, "", the default font and no picture.
    [[nodiscard]] bool Flag(QStringView key) const;
    [[nodiscard]] double Number(QStringView key) const; ///< cm, point and choice
    [[nodiscard]] int Choice(QStringView key) const;
    [[nodiscard]] QString Text(QStringView key) const;
    [[nodiscard]] QFont Font(QStringView key) const;
    [[nodiscard]] QImage Picture(QStringView key) const; ///< null image for none or one that cannot be read

  private:
    std::vector<Property> m_properties;
};
