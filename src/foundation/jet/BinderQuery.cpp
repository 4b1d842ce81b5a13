#include "Binder.h"
#include "Parser.h"

#include <text/RuntimeError.h>

#include <QSet>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

/// Tables in one FROM; engines join no more than 64.
constexpr std::size_t maxSources = 60;

/// The tables whose columns stand in an expression.
void collectSources(const Expr* e, std::vector<const Source*>& found) {
    while (e->target)
        e = e->target;
    if (e->kind == ExprKind::Name && e->source &&
        std::find(found.begin(), found.end(), e->source) == found.end())
        found.push_back(e->source);
    for (const Expr* operand : e->operands)
        collectSources(operand, found);
}

} // namespace

void Binder::table(Source* s) {
    s->table = m_catalogue.find(s->name);
    if (!s->table)
        fail(3078,
             u"Die Tabelle oder Abfrage '"_s + s->name + u"' wurde nicht gefunden (Stelle "_s +
                 QString::number(s->pos + 1) + u")."_s,
             s->pos);
    if (std::find(m_tables.begin(), m_tables.end(), s->table->name) == m_tables.end())
        m_tables.push_back(s->table->name);
}

void Binder::source(Source* s, Scope& scope, Scope* outer) {
    switch (s->form) {
    case Source::Form::Table:
        table(s);
        break;
    case Source::Form::Derived:
        if (s->alias.isEmpty()) {
            m_tree.names.push_back(u"%$"_s + QString::number(m_tree.names.size()));
            s->alias = m_tree.names.back();
        }
        s->query->named = true;
        query(s->query, outer);
        break;
    case Source::Form::Join: {
        source(s->left, scope, outer);
        source(s->right, scope, outer);
        if (!s->on) return;
        expr(s->on, &scope);
        toCondition(s->on);
        return;
    }
    }
    if (scope.sources.size() >= maxSources) raiseTooComplex(s->pos);
    const QStringView alias = s->alias.isEmpty() ? s->name : s->alias;
    for (const Source* other : scope.sources)
        if (alias.compare(other->alias.isEmpty() ? other->name : other->alias, Qt::CaseInsensitive) == 0)
            fail(3012, u"Der Name '"_s + alias + u"' steht zweimal in der FROM-Klausel."_s, s->pos);
    scope.sources.push_back(s);
}

void Binder::query(Query* q, Scope* outer) {
    const bool inAggregate = std::exchange(m_inAggregate, false);
    if (q->legs.size() == 1 && q->legs[0].select) {
        leg(q->legs[0], outer, q);
        q->outputs = q->legs[0].select->outputs;
    } else {
        for (Leg& l : q->legs)
            leg(l, outer, nullptr);
        unite(q);
        orderBy(q, nullptr, nullptr);
    }
    m_inAggregate = inAggregate;
}

void Binder::leg(Leg& l, Scope* outer, Query* whole) {
    if (l.nested) {
        l.nested->named = true;
        query(l.nested, outer);
    } else
        select(l.select, outer, whole);
}

void Binder::select(Select* s, Scope* outer, Query* whole) {
    Scope scope;
    scope.outer = outer;
    for (Source* from : s->from)
        source(from, scope, outer);
    scope.select = s;
    scope.aggregatesAllowed = true;
    expandItems(s, scope);
    const bool pivot = s == m_pivotSelect;
    if (pivot) {
        expr(m_tree.transform, &scope);
        if (!scope.sawAggregate)
            fail(3122, u"Nach TRANSFORM steht eine Aggregatfunktion."_s, m_tree.transform->pos);
    }
    scope.aggregatesAllowed = false;
    if (pivot) expr(m_tree.pivot, &scope);
    if (s->where) {
        expr(s->where, &scope);
        toCondition(s->where);
        if (s->where->aggregate) fail(3096, u"In WHERE darf keine Aggregatfunktion stehen."_s, s->where->pos);
    }
    for (Expr*& e : s->groupBy)
        expr(e, &scope);
    scope.aggregatesAllowed = true;
    if (s->having) {
        expr(s->having, &scope);
        toCondition(s->having);
        s->grouped = true;
    }
    if (whole) orderBy(whole, &scope, s);
    if (scope.sawAggregate) s->grouped = true;
    if (s->grouped) checkGrouping(s, whole);
    if (s->quantifier == Quantifier::DistinctRow) hideKeys(s, scope);
}

void Binder::addColumns(std::vector<Output>& outputs, Source* source) {
    const std::size_t count = source->table ? source->table->columns.size() : source->query->outputs.size();
    for (std::size_t i = 0; i < count; ++i) {
        Output o;
        o.expr = columnOf(source, int(i), source->pos);
        o.name = o.expr->name;
        outputs.push_back(o);
    }
}

void Binder::expandItems(Select* s, Scope& scope) {
    std::vector<Output> outputs;
    for (SelectItem& item : s->items) {
        if (!item.expr) {
            bool any = false;
            for (Source* source : scope.sources) {
                if (!item.qualifier.isEmpty() &&
                    item.qualifier.compare(source->alias.isEmpty() ? source->name : source->alias,
                                           Qt::CaseInsensitive) != 0)
                    continue;
                addColumns(outputs, source);
                any = true;
            }
            if (!any) {
                if (item.qualifier.isEmpty()) fail(3067, u"Zu * gehört eine Tabelle in FROM."_s, item.pos);
                m_unresolved.push_back({item.qualifier + u".*"_s, item.pos});
            }
            continue;
        }
        m_binding.push_back(item.expr);
        expr(item.expr, &scope);
        m_binding.pop_back();
        Output o;
        o.expr = item.expr;
        o.name = item.alias;
        outputs.push_back(o);
    }
    for (Output& o : outputs) {
        const Expr* e = o.expr;
        while (e->target)
            e = e->target;
        o.type = e->type;
        if (e->kind == ExprKind::Name && e->source) {
            o.source = e->source;
            o.column = e->column;
        }
    }
    s->outputs = m_tree.arena.copy(outputs);
    nameOutputs(s);
}

// Columns that would share a name are told apart by their table, everything else by a number.
void Binder::nameOutputs(Select* s) {
    auto key = [](QStringView name) { return name.toString().toCaseFolded(); };
    QHash<QString, int> seen;
    for (Output& o : s->outputs) {
        if (o.name.isEmpty()) {
            if (o.expr->kind == ExprKind::Name)
                o.name = o.source && o.source->table && o.expr->source
                             ? QStringView(o.source->table->columns[std::size_t(o.column)].name)
                             : o.expr->name;
            else {
                const auto position = &o - s->outputs.data();
                m_tree.names.push_back(u"Ausdr"_s + QString::number(1000 + position));
                o.name = m_tree.names.back();
            }
        }
        ++seen[key(o.name)];
    }
    if (seen.size() == qsizetype(s->outputs.size())) return;
    QSet<QString> taken;
    QHash<QString, int> numbers;
    for (Output& o : s->outputs) {
        QString name = o.name.toString();
        if (seen[key(o.name)] > 1 && o.expr->kind == ExprKind::Name && o.source) {
            const QStringView alias = o.source->alias.isEmpty() ? o.source->name : o.source->alias;
            name = alias + u"."_s + name;
        }
        int& last = numbers[key(o.name)];
        while (taken.contains(key(name)))
            name = o.name + QString::number(++last);
        taken.insert(key(name));
        if (name != o.name) {
            m_tree.names.push_back(name);
            o.name = m_tree.names.back();
        }
    }
}

void Binder::orderBy(Query* q, Scope* scope, Select* s) {
    const auto outputs = s ? s->outputs : q->outputs;
    for (OrderItem& item : q->orderBy) {
        Expr* e = item.expr;
        if (e->kind == ExprKind::Literal && e->literal < 0 && e->literalClass == LiteralClass::Integer) {
            const qint64 n = std::get<qint64>(e->value->data());
            if (n < 1 || n > qint64(outputs.size()))
                fail(3075, u"ORDER BY nennt die Spalte "_s + QString::number(n) + u", die es nicht gibt."_s,
                     e->pos);
            item.position = int(n);
            continue;
        }
        if (e->kind == ExprKind::Name && (e->qualifier.isEmpty() || !s)) {
            for (std::size_t i = 0; i < outputs.size(); ++i)
                if (outputs[i].name.compare(e->name, Qt::CaseInsensitive) == 0) {
                    item.position = int(i + 1);
                    break;
                }
            if (item.position) continue;
        }
        if (!s) {
            // Of a UNION also the columns of the first part may be named with their table.
            for (std::size_t i = 0; i < outputs.size() && !item.position; ++i)
                if (e->kind == ExprKind::Name &&
                    outputs[i].name.endsWith(QString(u'.' + e->name), Qt::CaseInsensitive))
                    item.position = int(i + 1);
            if (!item.position) {
                fail(3351,
                     u"Der Ausdruck '"_s + textOf(e) + u"' in ORDER BY ist keine Spalte der UNION-Abfrage."_s,
                     e->pos);
            }
            continue;
        }
        expr(item.expr, scope);
        for (std::size_t i = 0; i < outputs.size() && !item.position; ++i)
            if (outputs[i].expr && e->kind != ExprKind::Literal && sameExpr(outputs[i].expr, item.expr) &&
                e->kind == ExprKind::Name)
                item.position = int(i + 1);
        if (s->quantifier == Quantifier::Distinct && !item.position)
            for (std::size_t i = 0; i < outputs.size() && !item.position; ++i)
                if (sameExpr(outputs[i].expr, item.expr)) item.position = int(i + 1);
        if (s->quantifier == Quantifier::Distinct && !item.position)
            fail(3093, u"Die Klausel ORDER BY ("_s + textOf(e) + u") steht mit DISTINCT in Konflikt."_s,
                 e->pos);
    }
}

// The parts of a UNION get the types that hold the values of all.
void Binder::unite(Query* q) {
    std::vector<Output> outputs;
    for (const Leg& l : q->legs) {
        const auto part = l.nested ? l.nested->outputs : l.select->outputs;
        if (outputs.empty()) {
            outputs.assign(part.begin(), part.end());
            continue;
        }
        if (part.size() != outputs.size())
            fail(3307, u"Die Abfragen einer UNION haben nicht gleich viele Spalten."_s,
                 l.nested ? l.nested->pos : l.select->pos);
        for (std::size_t i = 0; i < part.size(); ++i)
            outputs[i].type = commonType(outputs[i].type, part[i].type);
    }
    for (std::size_t i = 0; i < outputs.size(); ++i)
        for (Leg& l : q->legs) {
            if (l.nested)
                convertOutput(l.nested, i, outputs[i].type);
            else if (Output& o = l.select->outputs[i]; o.expr) {
                convert(o.expr, outputs[i].type);
                o.type = outputs[i].type;
            }
        }
    for (Output& o : outputs) {
        o.expr = nullptr;
        o.source = nullptr;
        o.column = -1;
    }
    q->outputs = m_tree.arena.copy(outputs);
}

void Binder::convertOutput(Query* q, std::size_t i, Type type) {
    for (Leg& l : q->legs) {
        if (l.nested) {
            convertOutput(l.nested, i, type);
        } else {
            convert(l.select->outputs[i].expr, type);
            l.select->outputs[i].type = type;
        }
    }
    q->outputs[i].type = type;
}

void Binder::assignOutput(Query* q, std::size_t i, const Column& column) {
    for (Leg& l : q->legs) {
        if (l.nested) {
            assignOutput(l.nested, i, column);
        } else {
            assign(l.select->outputs[i].expr, column);
            l.select->outputs[i].type = column.type;
        }
    }
    q->outputs[i].type = column.type;
}

// DISTINCTROW leaves one row for each combination of rows of the tables that show a column.
void Binder::hideKeys(Select* s, Scope& scope) {
    if (s->grouped || scope.sources.size() < 2) return;
    std::vector<const Source*> shown;
    for (const Output& o : s->outputs)
        collectSources(o.expr, shown);
    std::erase_if(shown, [&](const Source* source) { // one of a query around this is the same in every row
        return std::find(scope.sources.begin(), scope.sources.end(), source) == scope.sources.end();
    });
    if (shown.empty() || shown.size() == scope.sources.size()) return;
    std::vector<Expr*> keys;
    for (const Source* source : shown) {
        if (!source->table) return;
        Expr* key = m_tree.arena.make<Expr>();
        key->kind = ExprKind::Name;
        key->bound = true;
        key->source = source;
        key->type = Type::Long;
        keys.push_back(key); // column -1 is the row key
    }
    s->hidden = m_tree.arena.copy(keys);
}

void Binder::checkGrouping(Select* s, const Query* whole) {
    auto check = [&](const Expr* e) {
        Scope none;
        if (!covered(e, s, none))
            fail(3122,
                 u"Die Abfrage schließt den Ausdruck '"_s + textOf(e) +
                     u"' nicht als Teil einer Aggregatfunktion ein."_s,
                 e->pos);
    };
    for (const Output& o : s->outputs)
        check(o.expr);
    if (s->having) check(s->having);
    if (!whole) return;
    for (const OrderItem& item : whole->orderBy)
        if (!item.position) check(item.expr);
}

bool Binder::covered(const Expr* e, const Select* s, const Scope& scope) const {
    while (e->target)
        e = e->target;
    for (const Expr* g : s->groupBy)
        if (sameExpr(e, g)) return true;
    if (e->kind == ExprKind::Call && e->function && e->function->isAggregate()) return true;
    if (e->kind == ExprKind::Name) {
        if (!e->source) return true;
        std::vector<const Source*> open(s->from.begin(), s->from.end());
        while (!open.empty()) { // a column of an outer query is as good as a constant
            const Source* source = open.back();
            open.pop_back();
            if (source == e->source) return false;
            if (source->left) open.push_back(source->left);
            if (source->right) open.push_back(source->right);
        }
        return true;
    }
    for (const Expr* operand : e->operands)
        if (!covered(operand, s, scope)) return false;
    return true;
}

} // namespace jet
