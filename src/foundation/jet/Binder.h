#pragma once

#include "FunctionTable.h"
#include "Tree.h"
#include "Types.h"

#include <functional>

namespace jet {

/// Resolves the names of a tree against the catalogue, types every expression and puts in the conversions
/// that the types ask for.
class Binder {
  public:
    Binder(const Catalogue& catalogue, Tree& tree)
        : m_catalogue(catalogue)
        , m_tree(tree) {}

    /// Raises 3078, 3061, 3085, 3079, 3122, 3346 and others with their place.
    void statement();
    /// An expression over one table, e.g. criteria.
    Expr* condition(Expr* e, Source* source);
    /// The text of a column's default as a bound expression of the column's type; nullptr for none.
    Expr* defaultOf(const Column& column);

    [[nodiscard]] const std::vector<QString>& tables() const { return m_tables; }

  private:
    struct Scope {
        Scope* outer = nullptr;
        std::vector<Source*> sources;
        Select* select = nullptr;
        bool aggregatesAllowed = false;
        bool sawAggregate = false;
    };

    // Statements
    void insertStatement();
    void updateStatement();
    void deleteStatement();
    void transformStatement();
    void structure();
    void unresolvedNames();

    // Queries
    void query(Query* q, Scope* outer);
    void leg(Leg& leg, Scope* outer, Query* whole);
    void select(Select* s, Scope* outer, Query* whole);
    void expandItems(Select* s, Scope& scope);
    void nameOutputs(Select* s);
    void addColumns(std::vector<Output>& outputs, Source* source);
    void orderBy(Query* q, Scope* scope, Select* s);
    void unite(Query* q);
    void convertOutput(Query* q, std::size_t i, Type type);
    void assignOutput(Query* q, std::size_t i, const Column& column);
    void hideKeys(Select* s, Scope& scope);
    void source(Source* s, Scope& scope, Scope* outer);
    void table(Source* s);
    void checkGrouping(Select* s, const Query* whole);
    [[nodiscard]] bool covered(const Expr* e, const Select* s, const Scope& scope) const;

    // Names
    void name(Expr* e, Scope* scope);
    [[nodiscard]] int findColumn(const Source* source, QStringView name) const;
    void column(Expr* e, const Source* source, int index);
    Expr* columnOf(const Source* source, int index, qsizetype pos);

    // Expressions
    void expr(Expr*& e, Scope* scope);
    void operands(Expr* e, Scope* scope);
    void binary(Expr* e);
    void arithmetic(Expr* e);
    void call(Expr*& e, Scope* scope);
    void aggregate(Expr* e, Scope* scope);
    void choice(Expr* e);
    void subquery(Expr* e, Scope* scope);
    void like(Expr* e);
    void toCondition(Expr*& e);

    // Texts that are read as expressions
    void domain(Expr* e);
    void eval(Expr*& e);
    void withTexts(Expr* call, const std::function<void()>& read);
    QString spliced(Expr* argument, const Expr* call);
    Expr* readText(const QString& text, const Expr* call);
    [[nodiscard]] Expr* splicedFor(const Expr* e) const;

    // Types
    void compare(Expr*& a, Expr*& b, bool equality);
    void align(std::span<Expr*> operands);
    void convert(Expr*& e, Type type);
    void assign(Expr*& e, const Column& column);
    Expr* wrap(Expr* e, Type type);
    [[nodiscard]] static const Expr* plainLiteral(const Expr* e);
    [[nodiscard]] static bool fitsCurrency(const Expr* e);
    [[nodiscard]] static bool isFraction(const Expr* e);

    [[nodiscard]] QString textOf(const Expr* e) const;
    [[noreturn]] void fail(int number, const QString& text, qsizetype place) const;

    const Catalogue& m_catalogue;
    Tree& m_tree;
    std::vector<QString> m_tables;
    struct Unresolved {
        QString name;
        qsizetype pos;
    };
    std::vector<Unresolved> m_unresolved;
    std::vector<const Expr*> m_binding; ///< select list expressions that are being bound
    bool m_inAggregate = false;
    std::vector<Expr*> m_spliced;     ///< values of the text that is being read
    const Expr* m_textCall = nullptr; ///< the outermost call whose texts are being read
    int m_texts = 0;
    std::size_t m_aliasSize = 0;
    Select* m_pivotSelect = nullptr;
};

/// The same expression but for the values of literals.
[[nodiscard]] bool sameExpr(const Expr* a, const Expr* b);
/// Of expressions that are the same in this sense: their literals have the same values, too.
[[nodiscard]] bool sameLiterals(const Expr* a, const Expr* b);

/// The engine may raise an error when it computes this: a conversion that a text does not allow, a division.
[[nodiscard]] bool mayFail(const Expr* e);

} // namespace jet
