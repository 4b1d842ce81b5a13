#include "Emitter.h"

namespace jet {

void Writer::assigned(const Expr* e, const Column& column) {
    const bool mayBeNull = column.type == Type::Boolean && e->kind != ExprKind::Literal &&
                           e->kind != ExprKind::True && e->kind != ExprKind::False;
    if (mayBeNull) out += "ifnull("; // a truth value is never Null
    value(e);
    if (mayBeNull) out += ", 0)";
}

void Writer::insert(const Tree& tree) {
    const Table& to = *tree.table;
    out += "INSERT INTO ";
    name(to.name);
    out += " (";
    bool first = true;
    auto column = [&](int index) {
        if (!first) out += ", ";
        first = false;
        name(to.columns[std::size_t(index)].name);
    };
    for (int index : tree.columnIndexes)
        column(index);
    for (const auto& [index, e] : tree.defaults)
        column(index);
    out += ')';
    auto defaults = [&] {
        for (const auto& [index, e] : tree.defaults) {
            out += ", ";
            assigned(e, to.columns[std::size_t(index)]);
        }
    };
    if (!tree.query) {
        out += " VALUES ";
        for (std::size_t r = 0; r < tree.rows.size(); ++r) {
            if (r) out += ", ";
            out += '(';
            for (std::size_t i = 0; i < tree.rows[r].size(); ++i) {
                if (i) out += ", ";
                assigned(tree.rows[r][i], to.columns[std::size_t(tree.columnIndexes[i])]);
            }
            defaults();
            out += ')';
        }
        return;
    }
    out += " SELECT ";
    for (std::size_t i = 0; i < tree.query->outputs.size(); ++i) {
        if (i) out += ", ";
        const bool truth = to.columns[std::size_t(tree.columnIndexes[i])].type == Type::Boolean;
        if (truth) out += "ifnull(";
        name(tree.query->outputs[i].name);
        if (truth) out += ", 0)";
    }
    defaults();
    out += " FROM (";
    query(tree.query);
    // The WHERE keeps the engine from reading what follows a SELECT as a conflict clause.
    out += ") WHERE true";
}

void Writer::remove(const Tree& tree) {
    const Source* target = tree.target;
    out += "DELETE FROM ";
    if (tree.from.size() == 1 && tree.from[0] == target) {
        source(target);
        if (tree.where) {
            out += " WHERE ";
            condition(tree.where);
        }
        return;
    }
    name(target->table->name);
    out += " WHERE " + m_engine.rowKey() + " IN (SELECT ";
    columnName(target, -1);
    out += " FROM ";
    from(tree.from);
    if (tree.where) {
        out += " WHERE ";
        condition(tree.where);
    }
    out += ')';
}

void Writer::pivotHeads(const Tree& tree) {
    const Select* s = tree.query->legs[0].select;
    Select heads = *s;
    heads.groupBy = {};
    heads.having = nullptr;
    out += "SELECT DISTINCT ";
    text(tree.pivot);
    selectBody(&heads);
    out += " ORDER BY 1";
}

void Writer::pivot(const Tree& tree, const std::vector<QByteArray>& heads) {
    const Query* q = tree.query;
    const Select* s = q->legs[0].select;
    out += "SELECT ";
    selectList(s, false, false);
    for (const QByteArray& head : heads) {
        const QByteArray before = std::exchange(out, {});
        operand(tree.pivot);
        if (isText(tree.pivot->type) && !tree.pivot->collated) out += m_engine.collation();
        m_filter = " FILTER (WHERE " + out + " IS " + head + ')';
        out = before;
        out += ", ";
        value(tree.transform);
        m_filter.clear();
    }
    selectBody(s);
    if (q->orderBy.empty()) {
        if (!s->groupBy.empty()) {
            out += " ORDER BY ";
            for (std::size_t i = 0; i < s->groupBy.size(); ++i) {
                if (i) out += ", ";
                text(s->groupBy[i]);
            }
        }
        return;
    }
    out += " ORDER BY ";
    orderTerms(q, s, true);
}

} // namespace jet
