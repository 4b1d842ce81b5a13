#pragma once

#include "Tree.h"

namespace jet {

/// Recursive descent over the tokens of one statement. Nesting is limited, so that no text can exhaust the
/// stack: beyond the limit error 3360 is raised.
class Parser {
  public:
    Parser(QStringView text, Tree& tree, bool lifting = true);

    /// A whole statement or a bare table name.
    void statement();
    /// A single expression, e.g. criteria or a default.
    Expr* wholeExpression();

    static constexpr int maxDepth = 250;
    /// Nodes above each other in the tree.
    static constexpr int maxHeight = 1000;

  private:
    // Tokens
    [[nodiscard]] const Token& peek(int ahead = 0) const;
    Token take();
    [[nodiscard]] bool is(Tok kind) const { return peek().kind == kind; }
    [[nodiscard]] bool is(Word word) const { return peek().kind == Tok::Name && peek().word == word; }
    [[nodiscard]] const Value& valueOf(const Token& token) const;
    [[nodiscard]] bool isWord(QStringView word) const;
    bool accept(Tok kind);
    bool accept(Word word);
    bool acceptWord(QStringView word);
    void expect(Tok kind, const QString& what);
    void expect(Word word, const QString& what);
    [[nodiscard]] bool isName() const { return is(Tok::Name) || is(Tok::Quoted); }
    QStringView name(const QString& what);
    [[noreturn]] void fail(const QString& what) const;
    void atEnd();
    class Nesting;

    // Expressions
    Expr* expression();
    Expr* logic(int level);
    Expr* negation();
    Expr* comparison();
    Expr* binary(int level);
    Expr* sign();
    Expr* power();
    Expr* primary();
    Expr* nameOrCall();
    Expr* call(const Token& name);
    Expr* literal();
    Expr* predicate(Expr* left);
    Expr* makeBinary(Op op, Expr* a, Expr* b);
    Expr* done(Expr* e, qsizetype end);
    Expr* make(ExprKind kind, qsizetype pos);
    std::span<Expr*> operands(std::initializer_list<Expr*> list);
    std::vector<Expr*> list();

    // Queries
    Query* query();
    Leg leg();
    Select* select();
    void selectHead(Select& select);
    SelectItem selectItem();
    std::span<SelectItem> selectItems();
    std::span<Source*> sources();
    Source* joined();
    Source* source();
    void orderBy(Query& query);
    QStringView alias();
    [[nodiscard]] bool startsQuery() const;

    // Statements
    void selectStatement();
    void transformStatement();
    void insertStatement();
    void updateStatement();
    void deleteStatement();
    void createStatement();
    void createTable();
    void createIndex(bool unique);
    void alterStatement();
    void dropStatement();
    Column columnDefinition(Ddl::Index* index);
    void tableConstraint();
    std::vector<QString> columnList();
    std::pair<Type, int> dataType(bool& autoNumber);

    QStringView m_text;
    Tree& m_tree;
    Lexer m_lexer;
    std::size_t m_firstValue; ///< of this text among the tree's literals
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    int m_depth = 0, m_height = 0;
};

/// Raises 3360: the text is too deep or too long for a translation.
[[noreturn]] void raiseTooComplex(qsizetype place);

} // namespace jet
