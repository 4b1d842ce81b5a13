#pragma once

#include <store/SqlText.h>

#include <QString>

/// The rules of the customer search (frmKasseKundenSuche). The list shows the standard customer first, then
/// the customers that are not blocked, each under the key "ID" and the customer's id.
namespace till::CustomerSearch {

enum By { Number, Name, Town };

/// `text` is looked for anywhere in the name or town, and one with a digit also as the start of a number; by
/// number all are listed. Raises 3075 for a text that would end its literal.
[[nodiscard]] sql::Query Find(By by, const QString& text);
/// The key of the first customer whose number begins with `number`; "" when there is none. Raises what the
/// store raises.
[[nodiscard]] QString FindNumber(const QString& number);
/// The vehicles of a customer, as a statement.
[[nodiscard]] sql::Query Vehicles(const QString& key);

inline const QString StandardKey = QStringLiteral("ID0");
/// cmdOK: loads gKunde from the row and sets its Ergebnis 1. False, with the loss told, when the customer has
/// been deleted meanwhile. Raises 13 for a key that is none, and what the store raises.
[[nodiscard]] bool Choose(const QString& key);

/// gKunde becomes the customer of that KundenID, or the standard customer where there is none. Raises what
/// the store raises.
void Load(int KundenID);

} // namespace till::CustomerSearch
