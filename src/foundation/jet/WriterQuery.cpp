#include "Binder.h"
#include "Emitter.h"

namespace jet {

namespace {

const Expr* plain(const Expr* e) {
    while (e && e->target)
        e = e->target;
    return e;
}

bool isConstant(const Expr* e) {
    return e->kind == ExprKind::Literal || e->kind == ExprKind::True || e->kind == ExprKind::False ||
           e->kind == ExprKind::Null;
}

bool collatedOutput(const Output& o) {
    const Expr* e = plain(o.expr);
    return e && e->collated;
}

const Expr* orderExpr(const OrderItem& item, const Select* s) {
    return plain(item.position ? s->outputs[std::size_t(item.position - 1)].expr : item.expr);
}

/// No two rows have the same value: nothing else needs to be looked at.
bool tellsRowsApart(const OrderItem& item, const Select* s) {
    const Expr* e = orderExpr(item, s);
    return e->kind == ExprKind::Name && e->source->table && s->from.size() == 1 && s->from[0] == e->source &&
           (e->column < 0 || e->source->table->columns[std::size_t(e->column)].autoNumber);
}

bool hasOuterJoin(const Source* s) {
    return s->form == Source::Form::Join && (s->join == JoinKind::Left || s->join == JoinKind::Right ||
                                             hasOuterJoin(s->left) || hasOuterJoin(s->right));
}

bool hasDerived(const Source* s) {
    if (s->form != Source::Form::Join) return s->form == Source::Form::Derived;
    return hasDerived(s->left) || hasDerived(s->right);
}

/// First or Last stand in it.
bool asksForRows(const Expr* e) {
    e = plain(e);
    if (!e || !e->aggregate) return false;
    if (e->kind == ExprKind::Call && e->function && e->function->form == FunctionInfo::Form::Aggregate &&
        e->function->result == FunctionInfo::Result::First)
        return true;
    return std::any_of(e->operands.begin(), e->operands.end(), asksForRows);
}

/// It chooses the rows before something that may fail meets them: no condition from outside may come first.
bool guardsItself(const Query* q) {
    const Select* s = q->legs.size() == 1 ? q->legs[0].select : nullptr;
    if (!s || s->top >= 0 || (!s->where && s->from.size() < 2 && !s->having)) return false;
    return std::any_of(s->outputs.begin(), s->outputs.end(),
                       [](const Output& o) { return o.expr && mayFail(o.expr); });
}

/// Its rows come as those of the one derived table that it reads.
bool passesOn(const Select* s, const Query* q) {
    return q->orderBy.empty() && s->from.size() == 1 && s->from[0]->form == Source::Form::Derived &&
           !s->grouped && s->groupBy.empty() && s->quantifier != Quantifier::Distinct && s->hidden.empty();
}

QByteArray helper(const char* stem, std::size_t number) {
    return QByteArray("\"%") + stem + QByteArray::number(qulonglong(number)) + '"';
}

} // namespace

void Writer::query(const Query* q, Rows rows) {
    if (q->legs.size() == 1 && q->legs[0].select) return select(q->legs[0].select, q, rows);
    if (q->legs.size() == 1 && q->orderBy.empty()) return query(q->legs[0].nested, rows);
    compound(q, rows);
}

// A UNION that drops doubles, or has an ORDER BY, is put in order as a whole; what UNION ALL appends to it
// comes behind, each part in its own order.
void Writer::compound(const Query* q, Rows rows) {
    const std::size_t count = q->legs.size();
    std::size_t head = count; // as many parts as the last UNION drops doubles of
    while (head > 1 && q->legs[head - 1].all)
        --head;
    const bool ordered = rows == Rows::Ordered || !q->orderBy.empty();
    const bool whole = head == count || !q->orderBy.empty();
    // Texts that are alike are in no order yet, and only a query around it can tell one.
    const bool around =
        ordered && whole && head < count &&
        std::any_of(q->outputs.begin(), q->outputs.end(), [](const Output& o) { return isText(o.type); });
    if (around) out += "SELECT * FROM (";
    if (head > 1) {
        if (head < count) out += "SELECT * FROM (";
        united(q, head);
        if (head < count) {
            if (ordered && !whole) orderBy(q, nullptr);
            out += ") AS \"%u\"";
        }
    } else {
        leg(q->legs[0], whole ? Rows::Free : rows);
    }
    for (std::size_t i = head; i < count; ++i) {
        out += " UNION ALL ";
        leg(q->legs[i], whole ? Rows::Free : rows);
    }
    if (around) out += ") AS \"%o\"";
    if (whole && ordered) orderBy(q, nullptr, around ? Terms::Names : Terms::Positions);
}

// The first parts without doubles.
void Writer::united(const Query* q, std::size_t count) {
    const bool texts =
        std::any_of(q->outputs.begin(), q->outputs.end(), [](const Output& o) { return isText(o.type); });
    auto parts = [&](const char* joiner) {
        for (std::size_t i = 0; i < count; ++i) {
            if (i) out += joiner;
            leg(q->legs[i], Rows::Free);
        }
    };
    if (!texts) return parts(" UNION ");
    auto columns = [&](auto&& text) {
        for (std::size_t i = 0; i < q->outputs.size(); ++i) {
            if (i) out += ", ";
            const Output& o = q->outputs[i];
            QByteArray column;
            m_engine.quoteName(column, o.name);
            if (isText(o.type))
                text(column);
            else
                out += column;
        }
    };
    out += "SELECT ";
    columns([&](const QByteArray& column) {
        alike(column);
        out += " AS " + column;
    });
    out += " FROM (";
    parts(" UNION ALL ");
    out += ") AS \"%a\" GROUP BY ";
    columns([&](const QByteArray& column) { out += column + m_engine.collation(); });
}

void Writer::leg(const Leg& l, Rows rows) {
    const bool wrapped = l.nested || l.select->top >= 0 || (rows == Rows::Ordered && !l.select->from.empty());
    Query alone;
    Leg legs[] = {l};
    if (!l.nested) {
        alone.legs = legs;
        alone.outputs = l.select->outputs;
        alone.named = true;
    }
    if (wrapped) out += "SELECT * FROM (";
    query(l.nested ? l.nested : &alone, rows);
    if (wrapped) out += ") AS \"%l\"";
}

void Writer::selectList(const Select* s, bool named, bool collated) {
    bool first = true;
    m_context.shown = true;
    for (const Output& o : s->outputs) {
        if (!first) out += ", ";
        first = false;
        if (collated && isText(plain(o.expr)->type))
            text(o.expr);
        else
            valueAs(o.expr, o.type);
        if (named) {
            out += " AS ";
            name(o.name);
        }
    }
    m_context.shown = false;
}

void Writer::outputNames(const Select* s) {
    bool first = true;
    for (const Output& o : s->outputs) {
        if (!first) out += ", ";
        first = false;
        name(o.name);
    }
}

// The texts of GROUP BY are made beforehand since the select list comes first.
Writer::Context Writer::enter(const Select* s, const Query* q, const Expr* more) {
    Context context;
    context.select = s;
    context.byRow = (more && asksForRows(more)) || (s->having && asksForRows(s->having));
    for (const Output& o : s->outputs)
        context.byRow = context.byRow || asksForRows(o.expr);
    for (const OrderItem& item : q->orderBy)
        context.byRow = context.byRow || asksForRows(orderExpr(item, s));
    if (context.byRow) context.derived = Rows::Ordered;
    Context outer = std::exchange(m_context, context);
    const QByteArray before = std::exchange(out, {});
    for (const Expr* e : s->groupBy) {
        e = plain(e);
        const bool everywhere = m_engine.comparesGroups() && e->kind != ExprKind::Name;
        if (isConstant(e) || (!everywhere && !isText(e->type))) continue;
        const bool bare = e->kind == ExprKind::Name || !m_engine.comparesGroups();
        out = bare ? "" : "(";
        sortTerm(e);
        if (!bare) out += ')';
        context.groups.push_back({e, out, everywhere});
    }
    out = before;
    m_context = std::move(outer);
    return context;
}

// A term of GROUP BY or ORDER BY. A bare number would stand for a column by its position, and an engine makes
// one of "x AND False" by itself.
void Writer::sortTerm(const Expr* e) {
    e = plain(e);
    const bool written = inGroup(e);
    text(e);
    if (written) return;
    const bool truth = e->type == Type::Boolean && e->kind != ExprKind::Name;
    const bool bare = e->kind == ExprKind::Literal && e->literal < 0 && !isText(e->type);
    if (truth || bare) out += " + 0";
}

// FROM to HAVING.
void Writer::selectBody(const Select* s) {
    auto groups = std::exchange(m_context.groups, {});
    if (!s->from.empty()) {
        out += " FROM ";
        from(s->from);
    }
    if (s->where) {
        out += " WHERE ";
        filter(s->where);
    }
    m_context.groups = std::move(groups);
    if (!s->groupBy.empty()) {
        out += " GROUP BY ";
        for (std::size_t i = 0; i < s->groupBy.size(); ++i) {
            if (i) out += ", ";
            sortTerm(s->groupBy[i]);
        }
    }
    if (s->having) {
        out += " HAVING ";
        filter(s->having);
    }
}

// A DISTINCT over texts is a GROUP BY over all its columns, since of texts that are alike one must be chosen.
void Writer::distinctSelect(const Select* s, const Query* q, Rows rows) {
    std::vector<Expr*> columns;
    for (const Output& o : s->outputs)
        if (!isConstant(plain(o.expr))) columns.push_back(o.expr);
    Select grouped = *s;
    grouped.quantifier = Quantifier::All;
    grouped.groupBy = columns;
    grouped.grouped = true;
    select(&grouped, q, rows);
}

void Writer::select(const Select* s, const Query* q, Rows rows) {
    if (s->quantifier == Quantifier::Distinct && !s->grouped && !s->from.empty() &&
        std::any_of(s->outputs.begin(), s->outputs.end(),
                    [](const Output& o) { return isText(o.expr->type) && !isConstant(plain(o.expr)); }))
        return distinctSelect(s, q, rows);
    const bool limited = s->top >= 0;
    const bool ordered = rows == Rows::Ordered || limited;
    const bool distinct = s->quantifier == Quantifier::Distinct;
    Context context = enter(s, q);
    if (ordered && passesOn(s, q)) context.derived = Rows::Ordered;
    const Context outer = std::exchange(m_context, std::move(context));
    const bool ties =
        limited &&
        (s->percent || !s->hidden.empty() ||
         (!q->orderBy.empty() && std::none_of(q->orderBy.begin(), q->orderBy.end(),
                                              [&](const OrderItem& i) { return tellsRowsApart(i, s); })));
    if (ties) {
        topWithTies(s, q);
    } else if (!s->hidden.empty()) {
        out += "SELECT ";
        outputNames(s);
        out += " FROM (";
        distinctRows(s, q);
        out += ") AS \"%d\"";
        if (ordered) orderBy(q, s, Terms::Names);
    } else {
        out += distinct ? "SELECT DISTINCT " : "SELECT ";
        selectList(s, q->named, q->named || distinct || !m_engine.collatesPositions());
        selectBody(s);
        if (ordered) orderBy(q, s);
        if (s->top >= 0) out += " LIMIT " + QByteArray::number(s->top);
    }
    m_context = outer;
}

// The rows of a DISTINCT with what else tells them apart and puts them in order.
void Writer::distinctRows(const Select* s, const Query* q) {
    out += "SELECT DISTINCT ";
    selectList(s, true, true);
    for (std::size_t i = 0; i < s->hidden.size(); ++i) {
        out += ", ";
        value(s->hidden[i]);
        out += " AS " + helper("k", i);
    }
    for (std::size_t i = 0; i < q->orderBy.size(); ++i) {
        if (q->orderBy[i].position) continue;
        out += ", ";
        text(q->orderBy[i].expr);
        out += " AS " + helper("o", i);
    }
    selectBody(s);
}

// TOP counts rows of equal rank as one; engines do not, so that the ranks are told by a window.
void Writer::topWithTies(const Select* s, const Query* q) {
    const bool distinct = s->quantifier == Quantifier::Distinct || !s->hidden.empty();
    auto windows = [&](Terms how) {
        const bool ranked = !q->orderBy.empty();
        if (ranked) {
            out += ", rank() OVER (ORDER BY ";
            orderTerms(q, s, how, false);
            out += ") AS \"%r\"";
        }
        out += ", row_number() OVER (";
        const qsizetype before = out.size();
        orderBy(q, s, how);
        if (out.size() > before) out.remove(before, 1);
        out += ") AS \"%n\"";
        if (s->percent) out += ", count(*) OVER () AS \"%c\"";
    };
    out += "SELECT ";
    outputNames(s);
    out += " FROM (SELECT ";
    if (distinct) {
        outputNames(s);
        windows(Terms::Names);
        out += " FROM (";
        distinctRows(s, q);
        out += ") AS \"%d\"";
    } else {
        selectList(s, true, true);
        windows(Terms::Expressions);
        selectBody(s);
    }
    out += q->orderBy.empty() ? ") AS \"%t\" WHERE \"%n\" <= " : ") AS \"%t\" WHERE \"%r\" <= ";
    const QByteArray top = QByteArray::number(s->top);
    out += s->percent ? "(\"%c\" * " + top + " + 99) / 100" : top;
    out += " ORDER BY \"%n\"";
}

void Writer::orderBy(const Query* q, const Select* s, Terms how) {
    const qsizetype before = out.size();
    out += " ORDER BY ";
    const qsizetype start = out.size();
    orderTerms(q, s, how, true);
    if (out.size() == start) out.truncate(before);
}

void Writer::orderTerms(const Query* q, const Select* s, Terms how, bool ties) {
    const auto outputs = s ? s->outputs : q->outputs;
    std::vector<bool> placed(outputs.size(), false);
    bool first = true, apart = false;
    for (std::size_t i = 0; i < q->orderBy.size(); ++i) {
        const OrderItem& item = q->orderBy[i];
        if (!first) out += ", ";
        first = false;
        const Output* o = item.position ? &outputs[std::size_t(item.position - 1)] : nullptr;
        if (o) placed[std::size_t(item.position - 1)] = true;
        if (how == Terms::Names) {
            if (o)
                columnTerm(*o);
            else
                out += helper("o", i);
        } else if (o && how == Terms::Positions) {
            out += QByteArray::number(item.position);
            if (s) collatePosition(*o);
        } else {
            sortTerm(o ? o->expr : item.expr);
        }
        out += m_engine.direction(item.descending);
        apart = apart || (s && tellsRowsApart(item, s));
    }
    if (ties && !apart) tieTerms(q, s, how, placed, first);
}

void Writer::columnTerm(const Output& o) {
    name(o.name);
    if (isText(o.type)) out += m_engine.collation();
}

// The columns of a UNION have their collation from its parts.
void Writer::collatePosition(const Output& o) {
    if (m_engine.collatesPositions() && isText(o.type) && !collatedOutput(o)) out += m_engine.collation();
}

// Rows of equal rank come in the order of their groups, of their columns where doubles were dropped, else of
// the tables' rows from left to right.
void Writer::tieTerms(const Query* q, const Select* s, Terms how, std::vector<bool>& placed, bool& first) {
    auto term = [&](auto&& write) {
        if (!first) out += ", ";
        first = false;
        write();
        out += m_engine.direction(false);
    };
    if (s && !s->hidden.empty()) {
        for (std::size_t i = 0; i < s->hidden.size(); ++i)
            term([&] { out += helper("k", i); });
        return;
    }
    if (!s || s->quantifier == Quantifier::Distinct) {
        const auto outputs = s ? s->outputs : q->outputs;
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            if (placed[i]) continue;
            term([&] {
                if (how == Terms::Names) return columnTerm(outputs[i]);
                out += QByteArray::number(qulonglong(i + 1));
                if (s) collatePosition(outputs[i]);
            });
        }
        for (std::size_t i = 0; !s && how == Terms::Names && i < outputs.size(); ++i)
            if (isText(outputs[i].type))
                term([&] {
                    name(outputs[i].name);
                    out += m_engine.byteCollation();
                });
        return;
    }
    if (s->grouped || !s->groupBy.empty()) {
        for (const Expr* g : s->groupBy) {
            const bool told = std::any_of(q->orderBy.begin(), q->orderBy.end(), [&](const OrderItem& item) {
                return sameExpr(orderExpr(item, s), g);
            });
            if (!told) term([&] { sortTerm(g); });
        }
        return;
    }
    if (m_context.derived == Rows::Ordered) return;
    for (const Source* source : s->from)
        keyTerms(source, {}, false, first);
}

// The key of a table's row is only Null where an outer join found none; elsewhere an index can serve it. An
// engine that does not see the key may see the counter, which is the same number.
void Writer::keyTerms(const Source* s, Place place, bool descending, bool& first) {
    if (s->form == Source::Form::Join) {
        Place left = place, right = place;
        left.mayMiss = left.mayMiss || s->join == JoinKind::Right;
        right.mayMiss = right.mayMiss || s->join == JoinKind::Left;
        left.nested = left.nested || (s->left->form == Source::Form::Join && s->join == JoinKind::Right);
        right.nested = right.nested || (s->right->form == Source::Form::Join &&
                                        (s->join == JoinKind::Left || hasOuterJoin(s->right)));
        keyTerms(s->left, left, descending, first);
        keyTerms(s->right, right, descending, first);
        return;
    }
    std::vector<int> columns;
    if (!s->table && m_context.byRow && m_engine.ordersAggregates()) {
        if (!first) out += ", ";
        first = false;
        name(s->alias);
        out += ".\"%k\"";
        out += m_engine.direction(descending);
        return;
    }
    if (!s->table) {
        for (std::size_t i = 0; i < s->query->outputs.size(); ++i)
            columns.push_back(int(i));
    } else if (!place.nested || m_engine.reachesNestedKeys()) {
        columns.push_back(-1);
    } else {
        for (std::size_t i = 0; i < s->table->columns.size(); ++i)
            if (s->table->columns[i].autoNumber) columns.push_back(int(i));
    }
    for (const int column : columns) {
        if (!first) out += ", ";
        first = false;
        columnName(s, column);
        if (!s->table || place.mayMiss)
            out += m_engine.direction(descending);
        else if (descending)
            out += " DESC";
        if (s->table || !isText(s->query->outputs[std::size_t(column)].type)) continue;
        // Texts that are alike are told apart, too.
        out += ", ";
        columnName(s, column);
        out += m_engine.byteCollation() + m_engine.direction(descending);
    }
}

QByteArray Writer::rowOrder(bool descending) {
    const Select* s = m_context.select;
    const bool numbered = m_context.byRow && m_engine.ordersAggregates();
    if (!s || (!numbered && std::any_of(s->from.begin(), s->from.end(), hasDerived))) return {};
    const QByteArray before = std::exchange(out, {});
    bool first = true;
    for (const Source* source : s->from)
        keyTerms(source, {}, descending, first);
    return std::exchange(out, before);
}

void Writer::from(std::span<Source* const> sources) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (i) out += m_engine.comma();
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
    case Source::Form::Derived: {
        const bool numbered = m_context.byRow && m_engine.ordersAggregates();
        out += numbered ? "(SELECT row_number() OVER () AS \"%k\", \"%d\".* FROM (" : "(";
        query(s->query, m_context.derived);
        if (m_engine.reordersConditions() && guardsItself(s->query)) out += " OFFSET 0";
        if (numbered) out += ") AS \"%d\"";
        out += ") AS ";
        name(s->alias);
        return;
    }
    case Source::Form::Join:
        return m_engine.join(*this, s);
    }
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
    if (s->where) result.where = piece([&] { filter(s->where); });
    if (!q->orderBy.empty()) result.orderBy = piece([&] { orderTerms(q, s, Terms::Expressions, true); });
    m_bound = false;
    result.columns = piece([&] { selectList(s, false, false); });
    result.columnsBind = m_bound;
    out = whole;
}

} // namespace jet
