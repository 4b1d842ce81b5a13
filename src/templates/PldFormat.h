#pragma once

#include <templates/PropertiesList.h>

#include <QByteArray>

#include <array>
#include <optional>
#include <utility>
#include <vector>

/// The bytes of a template file: UTF-8, one element a property, in the order of the list. A person can read
/// and change them, and a comparison of two versions shows the properties that differ.
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <druckvorlage version="1">
///       <eigenschaft name="tabelle_top" typ="cm">
///         <bezeichnung>Abstand oben</bezeichnung>
///         <beschreibung>Oberkante der Tabelle auf dem Blatt</beschreibung>
///         <format>0.0 cm</format>
///         <wert>11.2</wert>
///       </eigenschaft>
///     </druckvorlage>
///
/// Numbers have a decimal point, truth values are "ja" and "nein", a font is told by the attributes of its
/// <wert>, a picture is the base64 of its file in lines of 76.
namespace pld {

inline constexpr qsizetype largestFile = 16 * 1024 * 1024;
inline constexpr int formatVersion = 1;

inline constexpr std::array<std::pair<PropertyType, QStringView>, 7> typeNames{{
    {PropertyType::Boolean, u"wahrheitswert"},
    {PropertyType::Cm, u"cm"},
    {PropertyType::Point, u"punkt"},
    {PropertyType::Choice, u"auswahl"},
    {PropertyType::Text, u"text"},
    {PropertyType::Font, u"schrift"},
    {PropertyType::Picture, u"bild"},
}};

/// std::nullopt for anything that is not a whole, sound template of this version.
[[nodiscard]] std::optional<std::vector<Property>> read(const QByteArray& bytes);
/// The properties must be storable.
[[nodiscard]] QByteArray write(const std::vector<Property>& properties);

} // namespace pld
