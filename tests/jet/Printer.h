#pragma once

#include "jet/Tree.h"

namespace jet {

/// Writes a parsed tree as text of the dialect again: keywords in capitals, names in brackets, parentheses
/// around every operand that is more than a name or a literal. What it prints means the same when it is
/// parsed.
class Printer {
  public:
    [[nodiscard]] static QString print(const Tree& tree);

  private:
    explicit Printer(const Tree& tree)
        : m_tree(tree) {}

    void statement();
    void query(const Query* q);
    void select(const Select* s, bool outermost);
    void from(std::span<Source* const> sources);
    void source(const Source* s);
    void expr(const Expr* e);
    void operand(const Expr* e);
    void literal(const Value& value);
    void list(std::span<Expr* const> list);
    void name(QStringView name);
    void insert();
    void update();
    void remove();
    void structure();
    void column(const Column& c);
    void index(const Ddl::Index& index);
    void columnNames(const std::vector<QString>& names);

    const Tree& m_tree;
    QString m_out;
};

/// The statement printed from its tree. Raises 3075 and 3360.
[[nodiscard]] QString printed(QStringView text);

} // namespace jet
