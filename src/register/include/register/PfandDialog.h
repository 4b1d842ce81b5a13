#pragma once

#include <QChar>
#include <QString>

/// The rules of the deposit dialog (frmKassePfand) over gPfandAngabe.
namespace till::PfandDialog {

[[nodiscard]] QString Betrag(); ///< what txtInput opens with
[[nodiscard]] QString Anzahl(); ///< and txtAnzahl
/// The character that a typed one puts into txtInput; a null character when it is swallowed.
[[nodiscard]] QChar AcceptKey(QChar key);
/// A "*" in txtInput moves the number before it to txtAnzahl. False when there is none.
bool MoveFactor(QString& input, QString& anzahl);
/// cmdEnter and cmdRetour: fills the record, with a negative amount for what comes back. False when the
/// dialog stays open with what is then in `input`. Raises 13 for a text that is no amount.
[[nodiscard]] bool Confirm(QString& input, const QString& anzahl, bool comesBack);
void Cancel();

} // namespace till::PfandDialog
