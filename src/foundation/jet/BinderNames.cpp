#include "Binder.h"
#include "Parser.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

// Nodes that the expression has when all that it names is written out, counted up to a limit.
std::size_t sizeOf(const Expr* root) {
    std::vector<const Expr*> open{root};
    std::size_t size = 0;
    for (; !open.empty() && size < 5000; ++size) {
        const Expr* e = open.back();
        open.pop_back();
        if (e->target) open.push_back(e->target);
        open.insert(open.end(), e->operands.begin(), e->operands.end());
    }
    return size;
}

} // namespace

void Binder::fail(int number, const QString& text, qsizetype place) const {
    throw RuntimeError(number, text, {}, place);
}

QString Binder::textOf(const Expr* e) const {
    if (m_textCall) { // places in its texts are none in that of the statement
        if (e->kind == ExprKind::Name)
            return e->qualifier.isEmpty() ? e->name.toString() : e->qualifier + u"."_s + e->name;
        e = m_textCall;
    }
    return QStringView(m_tree.text).mid(e->pos, std::max<qsizetype>(0, e->end - e->pos)).toString();
}

int Binder::findColumn(const Source* source, QStringView name) const {
    if (source->table) return source->table->indexOf(name);
    if (!source->query) return -1;
    const auto& outputs = source->query->outputs;
    for (std::size_t i = 0; i < outputs.size(); ++i)
        if (outputs[i].name.compare(name, Qt::CaseInsensitive) == 0) return int(i);
    for (std::size_t i = 0; i < outputs.size(); ++i) // "a.Nummer" is found as Nummer
        if (outputs[i].source && outputs[i].source->table && outputs[i].column >= 0 &&
            outputs[i].name.endsWith(QString(u'.' + name), Qt::CaseInsensitive))
            return int(i);
    return -1;
}

void Binder::column(Expr* e, const Source* source, int index) {
    e->source = source;
    e->column = index;
    if (source->table) {
        const Column& c = source->table->columns[std::size_t(index)];
        e->type = c.type;
        e->collated = isText(c.type);
    } else {
        const Output& o = source->query->outputs[std::size_t(index)];
        e->type = o.type;
        e->collated = isText(o.type);
    }
}

Expr* Binder::columnOf(const Source* source, int index, qsizetype pos) {
    Expr* e = m_tree.arena.make<Expr>();
    e->kind = ExprKind::Name;
    e->pos = e->end = pos;
    e->bound = true;
    e->qualifier = source->alias.isEmpty() ? source->name : source->alias;
    e->name = source->table ? QStringView(source->table->columns[std::size_t(index)].name)
                            : source->query->outputs[std::size_t(index)].name;
    column(e, source, index);
    return e;
}

void Binder::name(Expr* e, Scope* scope) {
    if (Expr* value = splicedFor(e)) {
        m_aliasSize += sizeOf(value);
        if (m_aliasSize > 20000) raiseTooComplex(e->pos);
        e->target = value;
        e->type = value->type;
        e->condition = value->condition;
        return;
    }
    for (Scope* s = scope; s; s = s->outer) {
        const Source* found = nullptr;
        int index = -1;
        for (const Source* source : s->sources) {
            if (!e->qualifier.isEmpty() &&
                e->qualifier.compare(source->alias.isEmpty() ? source->name : source->alias,
                                     Qt::CaseInsensitive) != 0)
                continue;
            const int at = findColumn(source, e->name);
            if (at < 0) continue;
            if (found)
                fail(3079,
                     u"Das Feld '"_s + textOf(e) +
                         u"' kann sich auf mehr als eine der Tabellen in der FROM-Klausel beziehen."_s,
                     e->pos);
            found = source;
            index = at;
        }
        if (found) return column(e, found, index);
        if (!e->qualifier.isEmpty() || !s->select) continue;
        for (SelectItem& item : s->select->items) {
            if (!item.expr || item.alias.isEmpty() || item.alias.compare(e->name, Qt::CaseInsensitive) != 0)
                continue;
            if (item.expr == e || std::find(m_binding.begin(), m_binding.end(), item.expr) != m_binding.end())
                continue;
            if (!item.expr->bound) {
                m_binding.push_back(item.expr);
                expr(item.expr, s);
                m_binding.pop_back();
            }
            // Expressions that name each other again and again would grow without bound when they are written
            // out.
            m_aliasSize += sizeOf(item.expr);
            if (m_aliasSize > 20000) raiseTooComplex(e->pos);
            e->target = item.expr;
            e->type = item.expr->type;
            e->condition = item.expr->condition;
            e->aggregate = item.expr->aggregate;
            return;
        }
    }
    if (e->qualifier.isEmpty() && !e->spacedName) {
        if (const FunctionInfo* f = findFunction(e->name); f && f->least == 0 && f->most == 0) {
            e->kind = ExprKind::Call;
            e->bound = false;
            return call(e, scope);
        }
    }
    m_unresolved.push_back({textOf(e), e->pos});
}

void Binder::unresolvedNames() {
    if (m_unresolved.empty()) return;
    QString list;
    for (const Unresolved& u : m_unresolved) {
        if (!list.isEmpty()) list += u", "_s;
        list += u"'"_s + u.name + u"' (Stelle "_s + QString::number(u.pos + 1) + u")"_s;
        if (list.size() > 300) {
            list += u", ..."_s;
            break;
        }
    }
    fail(3061,
         u"Zu wenige Parameter, erwartet "_s + QString::number(m_unresolved.size()) + u": unbekannt "_s +
             (m_unresolved.size() == 1 ? u"ist "_s : u"sind "_s) + list + u"."_s,
         m_unresolved.front().pos);
}

} // namespace jet
