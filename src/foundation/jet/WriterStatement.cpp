#include "Emitter.h"

namespace jet {

void Writer::assigned(const Expr* e, const Column& column) {
    const bool mayBeNull = column.type == Type::Boolean && e->kind != ExprKind::Literal &&
                           e->kind != ExprKind::True && e->kind != ExprKind::False;
    if (mayBeNull) { // a truth value is never Null
        out += m_engine.otherwise();
        out += '(';
    }
    valueAs(e, column.type);
    if (mayBeNull) out += ", 0)";
}

void Writer::storedOutput(const Output& o, Type type) {
    const bool truth = type == Type::Boolean; // never Null
    if (truth) {
        out += m_engine.otherwise();
        out += '(';
    }
    name(o.name);
    if (truth) out += ", 0)";
}

void Writer::storedOutputs(const Query& q) {
    for (std::size_t i = 0; i < q.outputs.size(); ++i) {
        if (i) out += ", ";
        storedOutput(q.outputs[i], q.outputs[i].type);
    }
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
        storedOutput(tree.query->outputs[i], to.columns[std::size_t(tree.columnIndexes[i])].type);
    }
    defaults();
    out += " FROM (";
    query(tree.query, Rows::Ordered);
    // The WHERE keeps an engine from reading what follows a SELECT as a conflict clause.
    out += ") AS \"%s\" WHERE true";
}

void Writer::update(const Tree& tree) {
    const Source* target = tree.target;
    const auto& columns = target->table->columns;
    auto column = [&](std::size_t i) -> const Column& {
        return columns[std::size_t(tree.assignments[i].column)];
    };
    out += "UPDATE ";
    if (tree.from.size() == 1 && tree.from[0] == target) {
        source(target);
        out += " SET ";
        for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
            if (i) out += ", ";
            name(column(i).name);
            out += " = ";
            assigned(tree.assignments[i].value, column(i));
        }
        if (tree.where) {
            out += " WHERE ";
            filter(tree.where);
        }
        return;
    }
    // The joined rows are read first, with the new values, then written to the rows they belong to.
    name(target->table->name);
    out += " AS \"%t\" SET ";
    for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
        if (i) out += ", ";
        name(column(i).name);
        out += " = \"%q\".v" + QByteArray::number(qulonglong(i));
    }
    out += " FROM (SELECT ";
    if (m_engine.updatesByFirst()) {
        out += "DISTINCT ON (";
        columnName(target, -1);
        out += ") ";
    }
    columnName(target, -1);
    out += " AS k";
    for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
        out += ", ";
        assigned(tree.assignments[i].value, column(i));
        out += " AS v" + QByteArray::number(qulonglong(i));
    }
    out += " FROM ";
    from(tree.from);
    if (tree.where) {
        out += " WHERE ";
        filter(tree.where);
    }
    // Of several rows that are found for one the last counts.
    out += " ORDER BY ";
    bool first = !m_engine.updatesByFirst();
    if (!first) columnName(target, -1);
    for (const Source* s : tree.from)
        keyTerms(s, {}, m_engine.updatesByFirst(), first);
    out += ") AS \"%q\" WHERE \"%t\"." + m_engine.rowKey() + " = \"%q\".k";
}

void Writer::remove(const Tree& tree) {
    const Source* target = tree.target;
    out += "DELETE FROM ";
    if (tree.from.size() == 1 && tree.from[0] == target) {
        source(target);
        if (tree.where) {
            out += " WHERE ";
            filter(tree.where);
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
        filter(tree.where);
    }
    out += ')';
}

void Writer::pivotHeads(const Tree& tree) {
    const Select* s = tree.query->legs[0].select;
    Select heads = *s;
    heads.groupBy = {};
    heads.having = nullptr;
    const QByteArray before = std::exchange(out, {});
    text(tree.pivot);
    const QByteArray head = std::exchange(out, before);
    if (isText(tree.pivot->type)) {
        out += "SELECT ";
        alike(head);
        selectBody(&heads);
        out += " GROUP BY " + head;
    } else {
        out += "SELECT DISTINCT " + head;
        selectBody(&heads);
    }
    out += " ORDER BY 1";
    out += m_engine.direction(false);
}

void Writer::pivot(const Tree& tree, const std::vector<QByteArray>& heads) {
    const Query* q = tree.query;
    const Select* s = q->legs[0].select;
    Context outer = std::exchange(m_context, enter(s, q, tree.transform));
    out += "SELECT ";
    selectList(s, false, !m_engine.collatesPositions());
    for (const QByteArray& head : heads) {
        const QByteArray before = std::exchange(out, {});
        const auto groups = std::exchange(m_context.groups, {});
        operand(tree.pivot);
        m_context.groups = groups;
        if (isText(tree.pivot->type) && !tree.pivot->collated) out += m_engine.collation();
        m_filter = " FILTER (WHERE " + out + m_engine.sameness() + head + ')';
        out = before;
        out += ", ";
        value(tree.transform);
        m_filter.clear();
    }
    selectBody(s);
    orderBy(q, s);
    m_context = std::move(outer);
}

} // namespace jet
