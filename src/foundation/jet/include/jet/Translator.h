#pragma once

#include <text/Value.h>

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// The Jet SQL dialect: text in, prepared text of an engine out. See docs/jet-sql.md for the dialect.
namespace jet {

struct Column {
    QString name;
    Type type = Type::Text;
    int size = 0;        ///< characters of a Text column, else 0
    QString defaultText; ///< Jet expression, e.g. "0", "Date()", "\"Deutschland\""; empty for none
    bool allowZeroLength = true;
    bool required = false; ///< NOT NULL
    bool autoNumber = false;
};

struct Table {
    QString name;
    std::vector<Column> columns; ///< in ordinal order
    /// Position in `columns`, -1 when there is none; names compare without case.
    [[nodiscard]] int indexOf(QStringView column) const;
};

/// What the binder asks about the store. Implemented by the store, and by a plain map in tests.
class Catalogue {
  public:
    virtual ~Catalogue() = default;
    /// nullptr when there is no such table; names compare without case. Valid until the structure changes.
    [[nodiscard]] virtual const Table* find(QStringView table) const = 0;
};

/// SelectInto carries a `ddl` that creates the table and an INSERT text that then fills it (prepare it only
/// after the table exists; empty when the table stays empty).
enum class Kind {
    Select,
    Insert,
    Update,
    Delete,
    SelectInto,
    CreateTable,
    DropTable,
    AlterTable,
    CreateIndex,
    DropIndex
};

/// A value that the engine returns is decoded by `type`, whatever its storage class: -1/0 (any number but 0)
/// is a Boolean, an INTEGER may stand for a Double. A REAL where a Currency or a whole number is due is an
/// overflow: error 6, since the engine widens silently.
struct ResultColumn {
    QString name; ///< unique among the columns; unnamed expressions are "Ausdr1000", "Ausdr1001", ...
    Type type = Type::Null; ///< Null when it can only be told row by row: by the storage class
    QString table, column;  ///< where it comes from unchanged, else empty
};

/// How a literal of the text travels to the engine, or what of the clock of <jet/Functions.h> does; see
/// encode().
enum class Encoding {
    AsIs,
    Boolean,
    Byte,
    Short,
    Integer,
    Single,
    Double,
    Currency,
    Date,
    Text,
    LikePrefixLow,
    LikePrefixHigh,
    LikePattern,  ///< the pattern as a regular expression
    AlikePattern, ///< likewise, its wildcards being % and _
    Today,
    TimeOfDay,
    Now,
    Timer,   ///< seconds since midnight
    Identity ///< the AutoNumber that the connection gave last; the store puts it in
};

/// What to bind for a literal, by its meaning: a Boolean as bool, money as Currency, a date as DateTime; each
/// engine makes its own shape from that. Raises 3464 where the literal has no such meaning, 6 out of range,
/// 93 for a pattern that is none.
[[nodiscard]] Value encode(const Value& literal, Encoding encoding);

struct Parameter {
    int literal = 0; ///< index into the literals that `lift` found, -1 for what the clock or the store gives
    Encoding encoding = Encoding::AsIs;
    Type type = Type::Null; ///< of the parameter in the text; a whole number may be bound for a Double
};
/// What to bind for a parameter.
[[nodiscard]] Value encode(const Parameter& parameter, const std::vector<Value>& literals);

/// Change of structure, carried out by the store in its own way (it keeps the catalogue). Physical tables and
/// columns carry the catalogue's spelling, are row-id tables (the emitted texts use _rowid_) and text columns
/// are declared with the collation. The store enforces text sizes (3163), zero-length texts and required
/// columns by constraints of its own; defaults of columns that an INSERT does not name are written out by the
/// translation, except AutoNumbers, which it leaves to the store.
struct Ddl {
    QString table;
    std::vector<Column> add;   ///< CREATE TABLE, ALTER TABLE ADD and ALTER COLUMN
    std::vector<QString> drop; ///< ALTER TABLE DROP
    bool alterColumn = false;
    QString indexName;
    std::vector<std::pair<QString, bool>> indexColumns; ///< name, descending
    bool unique = false, primary = false;
    struct Index {
        QString name;
        std::vector<QString> columns;
        bool unique = false, primary = false;
    };
    std::vector<Index> indexes; ///< those told inside CREATE TABLE and ALTER TABLE ADD CONSTRAINT
};

/// The pieces of "SELECT columns FROM one table WHERE .. ORDER BY .." from which the store builds a dynaset
/// whose rows can be changed. Each is an engine expression; parameters in them are those of the statement,
/// numbered alike.
struct Dynaset {
    QString table;            ///< base table, as the catalogue spells it
    QByteArray from;          ///< "\"Artikel\" AS \"a\""
    QByteArray key;           ///< expression of the row key, e.g. "\"a\".rowid"
    QByteArray where;         ///< empty for none
    QByteArray orderBy;       ///< empty for none
    QByteArray columns;       ///< select list
    bool columnsBind = false; ///< parameters stand in the select list
};

/// One translated statement: immutable, shared by the cache.
struct Statement {
    Kind kind = Kind::Select;
    QByteArray sql; ///< UTF-8 text for the engine, parameters as ?1, ?2, ... or $1, $2, ...
    std::vector<Parameter> parameters; ///< the first of them is parameters[0]
    std::vector<ResultColumn> columns; ///< of a Select
    std::optional<Dynaset> dynaset;    ///< of a Select whose rows can be changed
    std::optional<Ddl> ddl;
    QString target;              ///< table changed by Insert, Update, Delete
    std::vector<QString> tables; ///< base tables read or written
    bool reusable = true;        ///< false: the translation hangs on the data (TRANSFORM), never cache it
};

/// A statement's text with its literals lifted out: equal shapes share one translation. Literals that decide
/// the translation itself (after TOP, positions in ORDER BY, ...) stay in the shape.
struct Lifted {
    QString shape;
    std::vector<Value> literals;
};

/// One pass of the lexer, no allocation beyond the result. Raises 3075 for text that is not even tokens.
void lift(QStringView text, Lifted& result);

/// Runs a query on behalf of the translation: the column heads of a PIVOT come from the data.
using PivotHeads = std::function<std::vector<Value>(const Statement&, const std::vector<Value>& literals)>;

/// The statement printed from its tree: keywords in capitals, names in brackets, all parentheses. It means
/// the same. Raises 3075 and 3360.
[[nodiscard]] QString printed(QStringView text);

class Emitter; ///< one per engine

/// Emitter for SQLite; the functions that its text calls are those of <jet/Functions.h>.
std::shared_ptr<const Emitter> sqliteEmitter();
/// Emitter for PostgreSQL 15; the functions that its text calls are told in PostgresCalls.h.
std::shared_ptr<const Emitter> postgresEmitter();
/// A name of the catalogue or an alias as identifier of PostgreSQL. Its names have 63 bytes: a longer one
/// loses its end to a sum that tells it from others which begin alike.
[[nodiscard]] QByteArray postgresName(QStringView name);

class Translator {
  public:
    Translator(const Catalogue& catalogue, std::shared_ptr<const Emitter> emitter);
    ~Translator();

    void setPivotHeads(PivotHeads heads);

    /// `text` is a statement or a bare table name. Raises 3075 (syntax), 3078 (unknown table), 3061 (unknown
    /// column), 3085 (unknown function), 3464 and others with the place in `text`.
    [[nodiscard]] std::shared_ptr<const Statement> translate(QStringView text) const;
    /// The dynaset's rows that also fulfil `criteria` (an expression over the base table's columns): a Select
    /// of the key alone, in the dynaset's order, limited to one row. Parameters of the dynaset come first,
    /// then those of the criteria, whose literals are numbered on behind the dynaset's.
    [[nodiscard]] std::shared_ptr<const Statement>
    translateFind(const Statement& dynaset, int dynasetLiterals, QStringView criteria) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace jet
