#pragma once

#include "FunctionTable.h"
#include "Tree.h"
#include "Types.h"

#include <array>

namespace jet {

class Writer;

/// Whether the rows of a query must come in an order that both engines keep.
enum class Rows { Ordered, Free };

/// What differs between the engines: small operations, each of which writes one construct whose parts are
/// given.
class Emitter {
  public:
    virtual ~Emitter() = default;
    virtual void quoteName(QByteArray& out, QStringView name) const = 0;
    virtual void parameter(QByteArray& out, int number, Type type) const = 0;
    virtual void literal(QByteArray& out, const Value& typed) const = 0;
    virtual void truthLiteral(QByteArray& out, bool truth, Type type) const = 0; ///< -1 or 0 as a `type`
    virtual void null(QByteArray& out, Type type) const = 0;
    /// Parameters that one text may have; what is beyond stands in the text.
    [[nodiscard]] virtual std::size_t mostParameters() const = 0;

    virtual void call(Writer& w, const char* function, std::span<Expr* const> arguments) const = 0;
    /// Date(), Time(), Now() and Timer().
    virtual void clock(Writer& w, const char* function) const = 0;
    virtual void convert(Writer& w, Expr* from, Type to) const = 0;
    /// An operand of unknown type, which is Null or an empty text, where a `type` is due.
    virtual void untyped(Writer& w, const Expr* e, Type type) const = 0;
    virtual void like(Writer& w, const Expr* e) const = 0;
    virtual void negate(Writer& w, const Expr* operand) const = 0;
    virtual void arithmetic(Writer& w, const Expr* e) const = 0;
    virtual void absolute(Writer& w, const Expr* operand) const = 0;
    /// The first or last characters; the count is a literal.
    virtual void beginning(Writer& w, const Expr* text, const Expr* count) const = 0;
    virtual void ending(Writer& w, const Expr* text, const Expr* count) const = 0;
    /// `filter` is what restricts the rows, in the cell of a PIVOT.
    virtual void aggregate(Writer& w, const Expr* e, const QByteArray& filter) const = 0;
    /// Name of the function that gives its second argument where the first is Null.
    [[nodiscard]] virtual const char* otherwise() const = 0;
    [[nodiscard]] virtual const char* sameness() const = 0; ///< the sign for "equal, or both Null"

    /// The engine yields a truth of its own for the expression, not -1 and 0.
    [[nodiscard]] virtual bool yieldsTruth(const Expr* e) const = 0;
    virtual void truth(Writer& w, const Expr* e) const = 0;     ///< -1 and 0 for what yields a truth
    virtual void condition(Writer& w, const Expr* e) const = 0; ///< a truth of the engine for anything

    /// The engine looks at the conditions of an AND in an order of its own, and into derived tables, so that
    /// an expression may meet rows which an earlier condition is there to keep away from it.
    [[nodiscard]] virtual bool reordersConditions() const = 0;

    [[nodiscard]] virtual QByteArray rowKey() const = 0;
    [[nodiscard]] virtual QByteArray collation() const = 0;     ///< " COLLATE .."
    [[nodiscard]] virtual QByteArray byteCollation() const = 0; ///< by the bytes of UTF-8
    /// Stands behind a term of ORDER BY, so that Null comes before everything.
    [[nodiscard]] virtual const char* direction(bool descending) const = 0;
    /// A column that ORDER BY names by its position may get its collation there; else it needs it in the
    /// select list.
    [[nodiscard]] virtual bool collatesPositions() const = 0;
    /// What the select list and HAVING have from GROUP BY must be the same text.
    [[nodiscard]] virtual bool comparesGroups() const = 0;
    [[nodiscard]] virtual bool quantifies() const = 0;   ///< knows "x = ANY (SELECT ..)" and ALL
    [[nodiscard]] virtual const char* comma() const = 0; ///< between the tables of FROM
    virtual void join(Writer& w, const Source* s) const = 0;
    /// The row keys of tables in a join in parentheses can be named from outside.
    [[nodiscard]] virtual bool reachesNestedKeys() const = 0;
    /// An aggregate tells the order in which it wants its rows; else they come as they are read.
    [[nodiscard]] virtual bool ordersAggregates() const = 0;
    /// Of several rows that an UPDATE finds for one the engine takes the first, else the last.
    [[nodiscard]] virtual bool updatesByFirst() const = 0;
    /// Has the last word on a whole text.
    virtual void finish(QByteArray& text, std::size_t parameters) const = 0;
};

/// The function behind an arithmetic operator whose answers are not those of the engines' own signs, else
/// nullptr.
[[nodiscard]] const char* operatorFunction(const Expr& e);

/// Writes a bound tree as the text of an engine: the parts that all engines share.
class Writer {
  public:
    Writer(const Emitter& engine, std::vector<Parameter>& parameters)
        : m_engine(engine)
        , m_parameters(parameters) {}

    QByteArray out;

    /// An operand: put in parentheses unless it stands for itself.
    void operand(const Expr* e);
    void operandAs(const Expr* e, Type type); ///< likewise, beside something of that type
    void value(const Expr* e);                ///< truth values are -1 and 0
    void valueAs(const Expr* e, Type type);   ///< likewise, beside something of that type
    void condition(const Expr* e);            ///< anything that the engine takes for a truth
    void filter(const Expr* e);               ///< a condition that chooses rows
    void text(const Expr* e); ///< a value with the collation told when the engine does not know it
    void raw(const Expr* e);
    void query(const Query* q, Rows rows);
    void from(std::span<Source* const> sources);
    void source(const Source* s);
    void name(QStringView name) { m_engine.quoteName(out, name); }
    void columnName(const Source* s, int column);
    void list(std::span<Expr* const> values);
    void dynaset(const Query* q, Dynaset& result);
    void insert(const Tree& tree);
    void update(const Tree& tree);
    void remove(const Tree& tree);
    void assigned(const Expr* e, const Column& column);
    /// The columns of a query as values of a new table's columns.
    void storedOutputs(const Query& q);
    void pivotHeads(const Tree& tree);
    void pivot(const Tree& tree, const std::vector<QByteArray>& heads);
    void parameter(const Expr* literal, Encoding encoding);
    /// A constant beginning of a LIKE's pattern narrows the search to a part of the index: writes "(range AND
    /// " in front of the whole comparison, which the caller then closes. False when nothing was written.
    [[nodiscard]] bool beginLikeRange(const Expr* like);
    /// A parameter that the clock or the store fills: Today and what follows it.
    void givenParameter(Encoding what);
    /// The row keys by which an aggregate sees the rows in their order, e.g. "\"a\"._rowid_", as terms of
    /// ORDER BY; empty where there is no row or none that could be told.
    [[nodiscard]] QByteArray rowOrder(bool descending);

    /// The expression stands in GROUP BY and is written as it stands there.
    [[nodiscard]] bool inGroup(const Expr* e) { return groupOf(e) != nullptr; }

    /// Literals are numbered on behind those of another text.
    void shiftLiterals(int by) { m_shift = by; }
    /// The text hangs on the values of literals.
    [[nodiscard]] bool hangsOnValues() const { return m_hangsOnValues; }

  private:
    /// An expression of GROUP BY and its text.
    struct Group {
        const Expr* e;
        QByteArray text;
        bool everywhere; ///< else only the select list needs it
    };
    /// What the select that is being written tells its parts.
    struct Context {
        const Select* select = nullptr;
        std::vector<Group> groups;
        Rows derived = Rows::Free; ///< of the derived tables it reads
        bool byRow = false;        ///< First or Last ask for the order of the rows
        bool shown = false;        ///< the select list is being written
    };
    /// Where a table stands in the joins of its FROM.
    struct Place {
        bool mayMiss = false; ///< an outer join may find no row of it
        bool nested = false;  ///< in parentheses on the right of another
    };
    /// How ORDER BY names a column of the select list.
    enum class Terms {
        Positions,
        Expressions,
        Names ///< those of a DISTINCT around which the rows are put in order
    };

    void comparison(const Expr* e);
    void loose(const Expr* e);
    void between(const Expr* e);
    void inList(const Expr* e);
    void quantified(const Expr* e);
    void scalar(const Query* q);
    void concat(const Expr* e);
    void concatPart(const Expr* e);
    void chain(std::span<Expr* const> operands, const char* joiner);
    void callExpr(const Expr* e);
    void choice(const Expr* e);
    void compound(const Query* q, Rows rows);
    void leg(const Leg& leg, Rows rows);
    void select(const Select* s, const Query* q, Rows rows);
    void distinctRows(const Select* s, const Query* q);
    void selectList(const Select* s, bool named, bool collated);
    void outputNames(const Select* s);
    void distinctSelect(const Select* s, const Query* q, Rows rows);
    void united(const Query* q, std::size_t count);
    void storedOutput(const Output& o, Type type);
    void alike(const QByteArray& text);
    void sortTerm(const Expr* e);
    void selectBody(const Select* s);
    void topWithTies(const Select* s, const Query* q);
    [[nodiscard]] Context enter(const Select* s, const Query* q, const Expr* more = nullptr);
    [[nodiscard]] const Group* groupOf(const Expr* e);
    void group(const Group& g);
    /// The terms of ORDER BY, with `ties` also what decides between rows of equal rank.
    void orderTerms(const Query* q, const Select* s, Terms how, bool ties);
    void tieTerms(const Query* q, const Select* s, Terms how, std::vector<bool>& placed, bool& first);
    void collatePosition(const Output& o);
    void columnTerm(const Output& o);
    void keyTerms(const Source* s, Place place, bool descending, bool& first);
    /// " ORDER BY .." unless there is nothing to put in order.
    void orderBy(const Query* q, const Select* s, Terms how = Terms::Positions);
    void collate(const Expr* e);
    void checkSize() const;

    const Emitter& m_engine;
    std::vector<Parameter>& m_parameters;
    std::vector<int> m_lastOf, m_previous;
    std::array<int, 5> m_given{-1, -1, -1, -1, -1};
    QByteArray m_filter; ///< of the aggregates of a PIVOT's cell
    Context m_context;
    int m_shift = 0;
    bool m_bound = false; ///< a parameter was written
    bool m_hangsOnValues = false;
};

} // namespace jet
