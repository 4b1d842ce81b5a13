#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The templates as they were delivered, carried inside the program.

/// Their file names, e.g. "Kassenbon-58mm.pld".
[[nodiscard]] QStringList shippedTemplates();

/// Where PropertiesList::Load finds the delivered template for a file: the one of the same name, otherwise
/// the one of the same document. Empty when the name tells no document.
[[nodiscard]] QString shippedTemplateFor(const QString& path);

/// The bytes of a delivered template; raises 53 for a name that is none.
[[nodiscard]] QByteArray shippedTemplate(const QString& name);
