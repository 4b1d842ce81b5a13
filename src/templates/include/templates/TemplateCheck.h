#pragma once

#include <templates/PropertiesList.h>
#include <templates/TemplateKind.h>

#include <QSizeF>
#include <QString>

/// Why a document of this kind cannot be printed with these properties, in German and with the key that is at
/// fault: what its amounts stand in is missing, as in a file that is no such template, or a column lies
/// beyond the paper. `sheet` is the paper in millimetres where the template names none, empty when nobody
/// knows it. "" when there is nothing to say.
[[nodiscard]] QString templateFault(const PropertiesList& list, TemplateKind kind, QSizeF sheet);
