#pragma once

#include <templates/PropertiesList.h>

/// How the designer shows values: in German, in one line.

/// What a format text such as "0.0 cm" asks for.
struct NumberFormat {
    int decimals = 1;
    QString unit; ///< "cm"
};
[[nodiscard]] NumberFormat numberFormat(const Property& property);

/// "4,7 cm", "Zentriert", "Inter 8,5 pt, fett", "Ja", the first line of a text, the size of a picture.
[[nodiscard]] QString valueText(const Property& property);
[[nodiscard]] QString fontText(const QFont& font);

/// Without the characters that no template can hold, as they may come from the clipboard; line breaks become
/// "\n".
[[nodiscard]] QString storableText(QString text);

/// Why these bytes cannot be a picture of a template; empty when they can.
[[nodiscard]] QString pictureFault(const QByteArray& bytes);
/// What a person should know of the picture: its size on paper, and when that is more than the paper offers.
[[nodiscard]] QString pictureRemark(const PropertiesList& list, const Property& property);
