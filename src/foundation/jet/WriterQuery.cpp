#include "Emitter.h"

namespace jet {

namespace {

bool collatedOutput(const Output& o) {
    const Expr* e = o.expr;
    while (e && e->target)
        e = e->target;
    return e && e->collated;
}

} // namespace

void Writer::query(const Query* q) {
    if (q->legs.size() == 1 && q->legs[0].select) return select(q->legs[0].select, q);
    for (std::size_t i = 0; i < q->legs.size(); ++i) {
        if (i) out += q->legs[i].all ? " UNION ALL " : " UNION ";
        leg(q->legs[i], q->legs.size() > 1 || !q->orderBy.empty());
    }
    if (q->orderBy.empty()) return;
    out += " ORDER BY ";
    orderTerms(q, nullptr, true);
}

void Writer::leg(const Leg& l, bool compound) {
    if (l.nested) {
        if (!compound) return query(l.nested);
        out += "SELECT * FROM (";
        query(l.nested);
        out += ')';
        return;
    }
    if (l.select->top < 0) return select(l.select, nullptr);
    Query limited;
    Leg legs[] = {l};
    limited.legs = legs;
    limited.outputs = l.select->outputs;
    limited.named = true;
    out += "SELECT * FROM (";
    query(&limited);
    out += ')';
}

void Writer::selectList(const Select* s, bool named, bool collated) {
    bool first = true;
    for (const Output& o : s->outputs) {
        if (!first) out += ", ";
        first = false;
        if (collated)
            text(o.expr);
        else
            value(o.expr);
        if (named) {
            out += " AS ";
            name(o.name);
        }
    }
}

// FROM to HAVING.
void Writer::selectBody(const Select* s) {
    if (!s->from.empty()) {
        out += " FROM ";
        from(s->from);
    }
    if (s->where) {
        out += " WHERE ";
        condition(s->where);
    }
    if (!s->groupBy.empty()) {
        out += " GROUP BY ";
        for (std::size_t i = 0; i < s->groupBy.size(); ++i) {
            if (i) out += ", ";
            text(s->groupBy[i]);
        }
    }
    if (s->having) {
        out += " HAVING ";
        condition(s->having);
    }
}

void Writer::select(const Select* s, const Query* q) {
    const bool distinct = s->quantifier == Quantifier::Distinct;
    if (s->top >= 0 && q) {
        bool ties = s->percent || !s->hidden.empty();
        for (const OrderItem& item : q->orderBy) {
            const Expr* e = item.position ? s->outputs[std::size_t(item.position - 1)].expr : item.expr;
            while (e->target)
                e = e->target;
            const bool unique = e->kind == ExprKind::Name && e->source->table && s->from.size() == 1 &&
                                s->from[0] == e->source && e->column >= 0 &&
                                e->source->table->columns[std::size_t(e->column)].autoNumber;
            if (unique) {
                ties = s->percent;
                break;
            }
            ties = true;
        }
        if (ties) return topWithTies(s, q);
    }
    const bool named = q && q->named;
    if (!s->hidden.empty()) {
        out += "SELECT ";
        bool first = true;
        for (const Output& o : s->outputs) {
            if (!first) out += ", ";
            first = false;
            name(o.name);
        }
        out += " FROM (SELECT DISTINCT ";
        selectList(s, true, true);
        for (std::size_t i = 0; i < s->hidden.size(); ++i) {
            out += ", ";
            value(s->hidden[i]);
            out += " AS \"%k" + QByteArray::number(qulonglong(i)) + '"';
        }
        selectBody(s);
        out += ')';
    } else {
        out += distinct ? "SELECT DISTINCT " : "SELECT ";
        selectList(s, named, named || distinct || !q);
        selectBody(s);
    }
    if (q && !q->orderBy.empty()) {
        out += " ORDER BY ";
        orderTerms(q, s, true);
    }
    if (s->top >= 0) out += " LIMIT " + QByteArray::number(s->top);
}

// TOP counts rows of equal rank as one; engines do not, so that the ranks are told by a window.
void Writer::topWithTies(const Select* s, const Query* q) {
    const bool distinct = s->quantifier == Quantifier::Distinct || !s->hidden.empty();
    auto window = [&](bool byPosition) {
        if (q->orderBy.empty()) {
            out += ", row_number() OVER () AS \"%r\"";
        } else {
            out += ", rank() OVER (ORDER BY ";
            bool first = true;
            for (const OrderItem& item : q->orderBy) {
                if (!first) out += ", ";
                first = false;
                if (byPosition && item.position)
                    name(s->outputs[std::size_t(item.position - 1)].name);
                else
                    text(item.position ? s->outputs[std::size_t(item.position - 1)].expr : item.expr);
                if (item.descending) out += " DESC";
            }
            out += ") AS \"%r\"";
        }
        if (s->percent) out += ", count(*) OVER () AS \"%n\"";
    };
    auto names = [&] {
        bool first = true;
        for (const Output& o : s->outputs) {
            if (!first) out += ", ";
            first = false;
            name(o.name);
        }
    };
    out += "SELECT ";
    names();
    out += " FROM (SELECT ";
    if (distinct) {
        names();
        window(true);
        out += " FROM (SELECT DISTINCT ";
        selectList(s, true, true);
        selectBody(s);
        out += ')';
    } else {
        selectList(s, true, true);
        window(false);
        selectBody(s);
    }
    out += ") WHERE \"%r\" <= ";
    const QByteArray top = QByteArray::number(s->top);
    out += s->percent ? "(\"%n\" * " + top + " + 99) / 100" : top;
    out += " ORDER BY \"%r\"";
}

void Writer::orderTerms(const Query* q, const Select* s, bool positions) {
    bool first = true;
    for (const OrderItem& item : q->orderBy) {
        if (!first) out += ", ";
        first = false;
        if (item.position && positions) {
            const Output& o = (s ? s->outputs : q->outputs)[std::size_t(item.position - 1)];
            out += QByteArray::number(item.position);
            if (isText(o.type) && !collatedOutput(o)) out += m_engine.collation();
        } else {
            text(item.position ? s->outputs[std::size_t(item.position - 1)].expr : item.expr);
        }
        if (item.descending) out += " DESC";
    }
}

void Writer::from(std::span<Source* const> sources) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (i) out += ", ";
        source(sources[i]);
    }
}

void Writer::source(const Source* s) {
    switch (s->form) {
    case Source::Form::Table:
        name(s->table->name);
        if (!s->alias.isEmpty()) {
            out += " AS ";
            name(s->alias);
        }
        return;
    case Source::Form::Derived:
        out += '(';
        query(s->query);
        out += ") AS ";
        name(s->alias);
        return;
    case Source::Form::Join:
        break;
    }
    // A RIGHT JOIN is the LEFT JOIN of its sides exchanged. A join in parentheses on the right would become a
    // subquery without row keys, so it comes first where the order does not matter, or is drawn into the row.
    const bool outer = s->join == JoinKind::Left || s->join == JoinKind::Right;
    const bool nestedRight = s->right->form == Source::Form::Join;
    const bool swapped =
        s->join == JoinKind::Right || (!outer && nestedRight && s->left->form != Source::Form::Join);
    const Source* left = swapped ? s->right : s->left;
    const Source* right = swapped ? s->left : s->right;
    source(left);
    std::vector<const Expr*> conditions;
    if (!outer) {
        joinRow(right, conditions);
    } else {
        const bool nested = right->form == Source::Form::Join;
        out += nested ? " LEFT JOIN (" : " LEFT JOIN ";
        source(right);
        if (nested) out += ')';
    }
    if (s->on) conditions.push_back(s->on);
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        out += i ? " AND (" : conditions.size() > 1 ? " ON (" : " ON ";
        condition(conditions[i]);
        if (conditions.size() > 1) out += ')';
    }
}

// " JOIN a JOIN b ..": the tables of inner joins, their conditions gathered.
void Writer::joinRow(const Source* s, std::vector<const Expr*>& conditions) {
    const bool inner =
        s->form == Source::Form::Join && (s->join == JoinKind::Inner || s->join == JoinKind::Cross);
    if (inner) {
        joinRow(s->left, conditions);
        joinRow(s->right, conditions);
        if (s->on) conditions.push_back(s->on);
        return;
    }
    const bool nested = s->form == Source::Form::Join;
    out += nested ? " JOIN (" : " JOIN ";
    source(s);
    if (nested) out += ')';
}

void Writer::dynaset(const Query* q, Dynaset& result) {
    const Select* s = q->legs[0].select;
    const Source* base = s->from[0];
    auto piece = [&](auto&& write) {
        out.clear();
        write();
        return std::exchange(out, {});
    };
    const QByteArray whole = std::exchange(out, {});
    result.table = base->table->name;
    result.from = piece([&] { source(base); });
    result.key = piece([&] { columnName(base, -1); });
    if (s->where) result.where = piece([&] { condition(s->where); });
    if (!q->orderBy.empty()) result.orderBy = piece([&] { orderTerms(q, s, false); });
    m_bound = false;
    result.columns = piece([&] { selectList(s, false, false); });
    result.columnsBind = m_bound;
    out = whole;
}

} // namespace jet
