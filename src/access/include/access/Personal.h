#pragma once

#include <access/PersonalRecord.h>

#include <functional>

/// The rules behind staff maintenance. What there is to say about a refusal has been said when a routine
/// returns; all raise what the store raises.

/// A statement of the staff list: what it selects and the order of its rows.
struct PersonalQuery {
    QString select, order;
};
/// Everybody. The rows have their ID, name, address, contact and whether they are blocked.
[[nodiscard]] PersonalQuery AllPersonal();
/// Those in whom `text` stands anywhere; the rows have only ID, name and address. Raises 3075 for a text that
/// would end the statement's.
[[nodiscard]] PersonalQuery SearchPersonal(const QString& text);

/// Reads a person's row from `personal`, a record set of the whole table. False when it was deleted
/// meanwhile.
[[nodiscard]] bool FindPersonal(Recordset& personal, int id, PersonalRecord& record);
/// Writes the record back, or as a new row when its ID is 0; gives the ID. 0 when the row was deleted
/// meanwhile.
[[nodiscard]] int WritePersonal(Recordset& personal, const PersonalRecord& record);
/// Asks, then deletes the person and the picture. Refuses when only one person at all may maintain the staff,
/// or when receipts name the person. True when it was deleted.
[[nodiscard]] bool DeletePersonal(int id);

/// How many people an export has.
[[nodiscard]] int CountPersonal();
/// Writes all people to a CSV file of the code page Windows-1252: a line of column names, then one for each
/// person, every value in double quotes (a quote inside is doubled), separated by ";", truth values "-1" and
/// "0". `advance` is called behind each person and stops the export by False: then the file stays as it was
/// and the result is False. Raises 70 when the file cannot be written.
[[nodiscard]] bool ExportPersonal(const QString& file, const std::function<bool()>& advance);
