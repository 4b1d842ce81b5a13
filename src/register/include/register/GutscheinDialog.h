#pragma once

#include <QString>
#include <QStringList>

/// The rules of the voucher dialog (frmKasseGutschein) over gGutscheinAngabe.
namespace till::GutscheinDialog {

enum class Field { None, WarenGruppe, Name, Betrag, SteuerSatz };

[[nodiscard]] QStringList WarenGruppen(); ///< groups of the articles on file
[[nodiscard]] QStringList SteuerSaetze(); ///< both rates as "0.0"
[[nodiscard]] QString SteuerSatz();       ///< the one to show
/// cmdOK. The first field that cannot be taken, which is told; None when the record is filled.
[[nodiscard]] Field Confirm(const QString& warenGruppe, const QString& name, const QString& betrag,
                            const QString& steuerSatz);
void Cancel();

} // namespace till::GutscheinDialog
