#pragma once

#include <text/RuntimeError.h>
#include <text/Value.h>

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class Database;

/// A dynaset: a key set that is read as far as it is needed, over rows that are read live. A set over one
/// table can be changed; joins, groups and unions are read-only (3027).
///
///     auto rs = gDB->OpenRecordset(u"SELECT * FROM Artikel WHERE Aktiv=-1"_s);
///     for (; !rs->Eof(); rs->MoveNext()) use(rs->Text(u"Name"));
class Recordset {
  public:
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    [[nodiscard]] bool Eof() const; ///< no current row: behind the last, or the set is empty
    void MoveNext();                ///< raises 3021 behind the end
    void MoveFirst();               ///< raises 3021 on an empty set
    void MoveLast();                ///< reads the whole key set; raises 3021 on an empty set
    /// Place of the current row in the set, from 0. A row that FindFirst or MoveToLastModified found reads
    /// the keys as far as its place; one that came after the set was read stands behind the last. Raises 3021
    /// without a row.
    [[nodiscard]] int AbsolutePosition();
    /// Moves there, reading the keys as far as needed. Raises 3021 for a place outside the set.
    void AbsolutePosition(int place);
    /// Rows seen so far: 0 for an empty set, at least 1 else, the full count after MoveLast.
    [[nodiscard]] int RecordCount() const;

    [[nodiscard]] QStringList FieldNames() const;
    [[nodiscard]] Type FieldType(QStringView name) const;
    /// Reads from the edit buffer while AddNew or Edit is open, else from the current row. Names compare
    /// without case, "Table.Column" is allowed. Raises 3265 unknown name, 3021 no current row, 3167 row
    /// deleted meanwhile.
    [[nodiscard]] Value Field(QStringView name) const;
    [[nodiscard]] Value Field(int index) const;
    /// As Field, with Null as "", 0, 0, 0 and False.
    [[nodiscard]] QString Text(QStringView name) const;
    [[nodiscard]] int Long(QStringView name) const;
    [[nodiscard]] double Number(QStringView name) const;
    [[nodiscard]] Currency Money(QStringView name) const;
    [[nodiscard]] bool Flag(QStringView name) const;
    /// Null gives a Null date: std::nullopt.
    [[nodiscard]] std::optional<DateTime> Date(QStringView name) const;

    /// Opens the edit buffer for a new row: defaults are filled, an AutoNumber is reserved and can be read at
    /// once.
    void AddNew();
    /// Opens the edit buffer on the current row. Raises 3021, 3167.
    void Edit();
    /// Puts a value into the edit buffer, converted to the column's type. Raises 3020 without AddNew or Edit,
    /// 3163 text too long, 3421 wrong type, 3265.
    void Set(QStringView name, const Value& value);
    /// Writes the buffer. After AddNew the current row stays where it was, as in DAO. Raises 3022, 3260,
    /// 3026; on an error the buffer stays open.
    void Update();
    void CancelUpdate(); ///< never raises
    [[nodiscard]] bool Editing() const;
    /// Deletes the current row; the position then has no row until the next move.
    void Delete();

    /// Moves to the first row that fulfils the criteria, through an index where there is one. When none does,
    /// NoMatch() is true and the position is undefined.
    void FindFirst(const QString& Criteria);
    [[nodiscard]] bool NoMatch() const;
    /// Moves to the row that Update wrote last, without asking the store. Raises 3021 when there is none.
    void MoveToLastModified();
    /// Marks the key set as stale; it is read anew at the next access, from the first row.
    void Requery();
    void Close();

    class Impl;
    explicit Recordset(std::unique_ptr<Impl> impl);

  private:
    std::unique_ptr<Impl> m_impl;
};
