#pragma once

#include <templates/PropertiesList.h>

#include <QSizeF>

/// What the numbers of a template are on paper. A "centimetre" of a position is 544 twips and one of the
/// paper 480, not the 567 of a ruler. Widths of columns are true centimetres.

inline constexpr int twipsPerPosition = 544, twipsPerPaper = 480;
inline constexpr double mmPerTwip = 25.4 / 1440;

/// Size of the sheet in mm; empty when `page_size` names none.
[[nodiscard]] QSizeF paperSize(const PropertiesList& list);
/// Size in mm at which a picture is printed.
[[nodiscard]] QSizeF naturalSize(const QImage& picture);
