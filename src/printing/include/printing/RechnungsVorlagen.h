#pragma once

#include <QString>
#include <QStringList>

/// The closing texts for invoices: text files with the ending ".rvl" in gDBPath, which frmRechnungsVorlage
/// offers. They may hold the macros of ExpandTextMakros.
namespace vorlagen {

/// File names in the order in which a person looks for them.
[[nodiscard]] QStringList Names();
/// The whole text of a file. Raises 53 when it has gone, 70 when it cannot be read.
[[nodiscard]] QString Read(const QString& name);
/// Replaces the text of a file, which stays as it was when that fails. False after telling why.
[[nodiscard]] bool Save(const QString& name, const QString& text);
/// Asks for a name and makes a file with the usual text. Its file name; "" when none was made, which is told
/// unless the person gave no name.
[[nodiscard]] QString Create();

} // namespace vorlagen
