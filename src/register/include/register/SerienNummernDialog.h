#pragma once

#include <QString>
#include <QStringList>

/// The rules of the dialog that asks for the serial number of gArtikel (frmKasseSNAngabe).
namespace till::SerienNummernDialog {

[[nodiscard]] QStringList Free(); ///< the numbers of the article that are not sold
/// cmdEnter: the number becomes gArtikel.SNNummer; one that is not on file is recorded at once. False when
/// the dialog stays open with what is then in `text`: the number is sold, in the sale already, or none, which
/// is told. No text is no answer. Raises what the store raises.
[[nodiscard]] bool Confirm(QString& text);
void Cancel();

} // namespace till::SerienNummernDialog
