#pragma once

#include <text/RuntimeError.h>
#include <text/Value.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class Database;
class Recordset;

namespace store {
std::unique_ptr<Database> OpenMoveTarget(const QString& name, const QString& connect);
/// The error of a write when the store's file was deleted, renamed or replaced while it was open. What was
/// written before can still be read, and saved with Database::SaveCopy.
inline constexpr int StoreGone = 3176;
} // namespace store

/// `Type` of OpenRecordset.
inline constexpr int dbOpenDynaset = 2;

/// In `Attributes` of a TableField: the store gives the number.
inline constexpr int dbAutoIncrField = 16;

/// A column of a TableDef, or one about to be appended to it.
class TableField {
  public:
    QString Name;
    ::Type Type = ::Type::Text;
    int Size = 0; ///< characters; Text only
    QString DefaultValue;
    bool AllowZeroLength = false;
    int Attributes = 0; ///< dbAutoIncrField for an AutoNumber
    int OrdinalPosition = 0;
    bool Required = false; ///< Null is refused
    friend bool operator==(const TableField&, const TableField&) = default;
};

/// An index of a TableDef.
class TableIndex {
  public:
    struct Column {
        QString Name;
        bool Descending = false;
        friend bool operator==(const Column&, const Column&) = default;
    };
    QString Name;
    std::vector<Column> Fields;
    bool Unique = false;
    bool Primary = false;
    friend bool operator==(const TableIndex&, const TableIndex&) = default;
};

/// The structure of one table. Changes through AppendField, DeleteField, RenameField and MoveField act at
/// once.
class TableDef {
  public:
    QString Name;
    std::vector<TableField> Fields;
    std::vector<TableIndex> Indexes;
    [[nodiscard]] TableField CreateField(const QString& name) const;
    [[nodiscard]] const TableField* Field(QStringView name) const; ///< exact spelling; nullptr when missing
    friend bool operator==(const TableDef&, const TableDef&) = default;
};

/// One connection to a store. Every statement is Jet SQL; there is no second way to the engine. Not
/// thread-safe: one thread, one Database.
///
/// A SQLite store is one file; ":memory:" is a store that lives with the connection. A name that begins with
/// "postgresql://" or "postgres://" is the connection URI of a server's database, in whose schema (the first
/// of the search path) the store lives. The server's password may stand in the URI, or better in the password
/// file or a service file; no message shows it.
class Database {
  public:
    /// Opens an existing store. `Connect` is ";PWD=" and the password; a store without one takes any. Raises
    /// 3024 missing file, 3031 wrong password, 3343 not a store of ours (the file stays untouched), 3050 no
    /// right to lock or write, 3045 in use by another process while `Exclusive`, or opened exclusively there,
    /// 3049 damaged, 3734 the unfinished target of a move. `ReadOnly` wins over `Exclusive`: such a
    /// connection is shared and every write raises 3027. On a server also 3151 not reachable, 3024 no such
    /// database, 3031 wrong password, 3029 not let in, 3011 a database without anything in it (CreateDatabase
    /// may fill it), 3343 a database with somebody else's tables.
    static std::unique_ptr<Database> OpenDatabase(const QString& Name, bool Exclusive = false,
                                                  bool ReadOnly = false, const QString& Connect = {});
    /// Makes an empty store without tables, or with what `Fill` puts into it: a new file, or the schema of an
    /// empty database on a server. Others see all of it or nothing. Raises 3204 when there is one already,
    /// 3343 when somebody else's tables stand there. With `MoveSource` the store is marked from its first
    /// moment, see <store/Transfer.h>, and opened exclusively.
    static std::unique_ptr<Database> CreateDatabase(const QString& Name, const QString& Connect = {},
                                                    const QString& MoveSource = {},
                                                    const std::function<void(Database&)>& Fill = {});
    /// Removes a store with everything in it: the file, or the schema on the server. Raises what an exclusive
    /// OpenDatabase does.
    static void DeleteDatabase(const QString& Name, const QString& Connect = {});

    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// `Source` is an SQL text or a bare table name. Raises the errors of <jet/Translator.h>.
    [[nodiscard]] std::unique_ptr<Recordset> OpenRecordset(const QString& Source, int Type = dbOpenDynaset);
    /// Runs anything that gives no rows; the number of rows affected. Raises likewise, and 3022 duplicate
    /// key, 3163 text too long, 3027 read-only, 3026 disk full, 3260 locked, StoreGone.
    qint64 Execute(const QString& SQL);
    /// Runs several writes of rows as one, in one trip to a server: all of them are done or none. Raises as
    /// Execute does, and 3219 for a change of structure.
    void ExecuteTogether(const QStringList& SQL);

    /// The engine's text for a statement, as it would run; nothing is run.
    [[nodiscard]] QString Translated(const QString& SQL);
    /// Runs a query once and hands its rows over as they come, without keeping them: `columns` once, with
    /// names and types (Null: told row by row), then `row` for each. Neither may use this Database. Raises
    /// 3219 when the text gives no rows.
    void ForEachRow(const QString& SQL, const std::function<void(const std::vector<TableField>&)>& columns,
                    const std::function<void(const std::vector<Value>&)>& row);
    /// True for a text that gives rows.
    [[nodiscard]] bool IsQuery(const QString& SQL);

    [[nodiscard]] std::vector<TableDef> TableDefs() const;
    [[nodiscard]] std::optional<TableDef> FindTableDef(QStringView name) const; ///< exact spelling
    [[nodiscard]] TableDef CreateTableDef(const QString& name) const;
    /// Changes of structure are one transaction each. Raise 3010 table exists, 3376 no such table, 3380
    /// column exists, 3381 no such column, 3280 column of a unique index, 3125 impossible name, 3191, 3264,
    /// 3292.
    void AppendTableDef(const TableDef& table);
    void DeleteTableDef(const QString& name);
    /// Behind the last column; existing rows get Null (False in a Boolean).
    void AppendField(const QString& table, const TableField& field);
    void DeleteField(const QString& table, const QString& field);
    void RenameField(const QString& table, const QString& from, const QString& to);
    /// Positions count from 0; beyond the end means last.
    void MoveField(const QString& table, const QString& field, int ordinalPosition);

    /// Engine and version for the status bars, "SQLite 3.40.1".
    [[nodiscard]] QString Version() const;
    /// A German sentence when the store stands where it is not safe (a network folder), else empty.
    [[nodiscard]] QString Warning() const;
    /// For imports that write thousands of rows: all of them reach the disk with CommitTrans or none does.
    /// Other tills cannot write meanwhile. Raise 3219 when one is open already or none is.
    void BeginTrans();
    void CommitTrans();
    void Rollback();
    /// Raises 3031 when `Old` is not the password, 3621 unless the store is open exclusively.
    void NewPassword(const QString& Old, const QString& New);
    /// Writes a copy of everything that can be read into a new file, also when the store's own file has gone;
    /// the file is there complete or not at all. Raises 3204 when there is one already, 3024 no such folder,
    /// 3050, 3026, 3049 when what can be read is damaged, and 3251 on a server, which has its own ways.
    void SaveCopy(const QString& File);
    /// Questions that travelled to a server and back so far; 0 for a file.
    [[nodiscard]] qint64 RoundTrips() const;

    /// Opens a further connection to the same store, which only reads: for another thread, in which it may be
    /// called. Not for ":memory:". Raises what OpenDatabase does.
    [[nodiscard]] std::function<std::unique_ptr<Database>()> Reader() const;
    /// A number that changes when another connection has written anything; nullopt on a server, which does
    /// not tell.
    [[nodiscard]] std::optional<qint64> ForeignChanges();

    /// Ends the connection; what is still open on it raises 3420 from then on.
    void Close();

    class Impl;
    [[nodiscard]] Impl& impl() const { return *m_impl; }

  private:
    friend std::unique_ptr<Database> store::OpenMoveTarget(const QString& name, const QString& connect);
    explicit Database(std::unique_ptr<Impl> impl);
    static std::unique_ptr<Database> open(const QString& name, bool exclusive, bool readOnly,
                                          const QString& connect);
    std::unique_ptr<Impl> m_impl;
};
