#pragma once

#include "FunctionTable.h"
#include "Tree.h"
#include "Types.h"

namespace jet {

class Writer;

/// What differs between the engines: small operations, each of which writes one construct whose parts are
/// given.
class Emitter {
  public:
    virtual ~Emitter() = default;
    virtual void quoteName(QByteArray& out, QStringView name) const = 0;
    virtual void parameter(QByteArray& out, int number) const = 0;
    /// A value in the engine's shapes: Null, qint64, double or QString.
    virtual void literal(QByteArray& out, const Value& stored) const = 0;
    virtual void call(Writer& w, const char* function, std::span<Expr* const> arguments) const = 0;
    virtual void convert(Writer& w, Expr* from, Type to) const = 0;
    virtual void like(Writer& w, const Expr* e) const = 0;
    virtual void arithmetic(Writer& w, const Expr* e) const = 0;
    virtual void concat(Writer& w, const Expr* e) const = 0;
    virtual void truth(Writer& w, const Expr* condition) const = 0; ///< -1 and 0 for a condition
    [[nodiscard]] virtual QByteArray rowKey() const = 0;
    [[nodiscard]] virtual QByteArray collation() const = 0; ///< " COLLATE .."
    virtual void update(Writer& w, const Tree& tree) const = 0;
    /// Has the last word on a whole text.
    virtual void finish(QByteArray& text, std::size_t parameters) const = 0;
};

/// Writes a bound tree as the text of an engine: the parts that all engines share.
class Writer {
  public:
    Writer(const Emitter& engine, std::vector<Parameter>& parameters)
        : m_engine(engine)
        , m_parameters(parameters) {}

    QByteArray out;

    /// An operand: put in parentheses unless it stands for itself.
    void operand(const Expr* e);
    void value(const Expr* e);     ///< truth values are -1 and 0
    void condition(const Expr* e); ///< anything that the engine takes for a truth
    void text(const Expr* e);      ///< a value with the collation told when the engine does not know it
    void raw(const Expr* e);
    void query(const Query* q);
    void from(std::span<Source* const> sources);
    void source(const Source* s);
    void name(QStringView name) { m_engine.quoteName(out, name); }
    void columnName(const Source* s, int column);
    void list(std::span<Expr* const> values);
    void dynaset(const Query* q, Dynaset& result);
    void insert(const Tree& tree);
    void remove(const Tree& tree);
    void assigned(const Expr* e, const Column& column);
    void pivotHeads(const Tree& tree);
    void pivot(const Tree& tree, const std::vector<QByteArray>& heads);
    void parameter(const Expr* literal, Encoding encoding);

    /// Literals are numbered on behind those of another text.
    void shiftLiterals(int by) { m_shift = by; }

  private:
    void comparison(const Expr* e);
    void between(const Expr* e);
    void inList(const Expr* e);
    void quantified(const Expr* e);
    void chain(std::span<Expr* const> operands, const char* joiner);
    void callExpr(const Expr* e);
    void aggregate(const Expr* e);
    void choice(const Expr* e);
    void leg(const Leg& leg, bool compound);
    void select(const Select* s, const Query* q);
    void selectBody(const Select* s);
    void selectList(const Select* s, bool named, bool collated);
    void topWithTies(const Select* s, const Query* q);
    void joinRow(const Source* s, std::vector<const Expr*>& conditions);
    void orderTerms(const Query* q, const Select* s, bool positions);
    void collate(const Expr* e);
    void checkSize() const;

    const Emitter& m_engine;
    std::vector<Parameter>& m_parameters;
    std::vector<int> m_lastOf, m_previous;
    QByteArray m_filter; ///< of the aggregates of a PIVOT's cell
    int m_shift = 0;
    bool m_bound = false; ///< a parameter was written
};

} // namespace jet
