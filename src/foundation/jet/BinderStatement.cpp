#include "Binder.h"
#include "Parser.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

void Binder::statement() {
    switch (m_tree.kind) {
    case Kind::Select:
    case Kind::SelectInto:
        if (m_tree.transform) m_pivotSelect = m_tree.query->legs[0].select;
        query(m_tree.query, nullptr);
        if (m_tree.kind == Kind::SelectInto && m_catalogue.find(m_tree.into))
            fail(3010, u"Die Tabelle '"_s + m_tree.into + u"' ist bereits vorhanden."_s, m_tree.intoPos);
        break;
    case Kind::Insert:
        insertStatement();
        break;
    case Kind::Update:
        updateStatement();
        break;
    case Kind::Delete:
        deleteStatement();
        break;
    default:
        structure();
    }
    unresolvedNames();
}

Expr* Binder::condition(Expr* e, Source* s) {
    Scope scope;
    table(s);
    scope.sources.push_back(s);
    expr(e, &scope);
    toCondition(e);
    unresolvedNames();
    return e;
}

Expr* Binder::defaultOf(const Column& column) {
    QStringView text = QStringView(column.defaultText).trimmed();
    if (text.startsWith(u'=')) text = text.mid(1);
    if (text.isEmpty()) {
        if (column.type != Type::Boolean) return nullptr;
        text = u"0";
    }
    Parser parser(text, m_tree, false);
    Expr* e = parser.wholeExpression();
    expr(e, nullptr);
    assign(e, column);
    return e;
}

void Binder::insertStatement() {
    Source* s = m_tree.arena.make<Source>();
    s->name = m_tree.into;
    s->pos = m_tree.intoPos;
    table(s);
    const Table& to = *s->table;
    m_tree.table = &to;
    std::vector<int>& indexes = m_tree.columnIndexes;
    if (m_tree.query) {
        m_tree.query->named = true;
        query(m_tree.query, nullptr);
    }
    auto fill = [&](QStringView column, qsizetype pos) {
        const int index = to.indexOf(column);
        if (index < 0)
            fail(3127,
                 u"Das Feld '"_s + column + u"' ist in der Tabelle '"_s + to.name +
                     u"' unbekannt (Stelle "_s + QString::number(pos + 1) + u")."_s,
                 pos);
        if (std::find(indexes.begin(), indexes.end(), index) != indexes.end())
            fail(3063, u"Das Feld '"_s + column + u"' ist zweimal genannt."_s, pos);
        indexes.push_back(index);
    };
    for (const NameAt& c : m_tree.columns)
        fill(c.name, c.pos);
    if (m_tree.columns.empty() && m_tree.query) { // the names of the query's columns tell where they go
        for (const Output& o : m_tree.query->outputs)
            fill(o.name, o.expr ? o.expr->pos : m_tree.query->pos);
    } else if (m_tree.columns.empty()) {
        for (std::size_t i = 0; i < to.columns.size(); ++i)
            indexes.push_back(int(i));
    }
    auto checkCount = [&](std::size_t count, qsizetype pos) {
        if (count != indexes.size())
            fail(3346,
                 u"Die Anzahl der Werte ("_s + QString::number(count) + u") und der Zielfelder ("_s +
                     QString::number(indexes.size()) + u") ist nicht gleich."_s,
                 pos);
    };
    for (auto& row : m_tree.rows) {
        checkCount(row.size(), row.empty() ? m_tree.intoPos : row.front()->pos);
        for (std::size_t i = 0; i < row.size(); ++i) {
            expr(row[i], nullptr);
            assign(row[i], to.columns[std::size_t(indexes[i])]);
        }
    }
    if (m_tree.query) {
        checkCount(m_tree.query->outputs.size(), m_tree.query->pos);
        for (std::size_t i = 0; i < indexes.size(); ++i)
            assignOutput(m_tree.query, i, to.columns[std::size_t(indexes[i])]);
    }
    for (std::size_t i = 0; i < to.columns.size(); ++i) {
        const Column& c = to.columns[i];
        if (c.autoNumber || std::find(indexes.begin(), indexes.end(), int(i)) != indexes.end()) continue;
        if (Expr* e = defaultOf(c)) m_tree.defaults.emplace_back(int(i), e);
    }
}

void Binder::updateStatement() {
    Scope scope;
    for (Source* s : m_tree.from)
        source(s, scope, nullptr);
    for (Assignment& a : m_tree.assignments) {
        Source* found = nullptr;
        for (Source* s : scope.sources) {
            if (!a.qualifier.isEmpty() &&
                a.qualifier.compare(s->alias.isEmpty() ? s->name : s->alias, Qt::CaseInsensitive) != 0)
                continue;
            if (findColumn(s, a.name) < 0) continue;
            if (found)
                fail(3079,
                     u"Das Feld '"_s + a.name + u"' kann sich auf mehr als eine der Tabellen beziehen."_s,
                     a.pos);
            found = s;
        }
        if (!found) {
            m_unresolved.push_back(
                {(a.qualifier.isEmpty() ? QString() : a.qualifier + u"."_s) + a.name, a.pos});
            expr(a.value, &scope);
            continue;
        }
        if (!found->table || (m_tree.target && m_tree.target != found))
            fail(3073, u"Die Abfrage kann nur die Spalten einer Tabelle ändern."_s, a.pos);
        m_tree.target = found;
        a.column = findColumn(found, a.name);
        for (const Assignment& other : m_tree.assignments)
            if (&other != &a && other.column == a.column)
                fail(3063, u"Das Feld '"_s + a.name + u"' ist zweimal genannt."_s, a.pos);
        expr(a.value, &scope);
        assign(a.value, found->table->columns[std::size_t(a.column)]);
    }
    if (m_tree.where) {
        expr(m_tree.where, &scope);
        toCondition(m_tree.where);
    }
    if (m_tree.target) m_tree.table = m_tree.target->table;
}

void Binder::deleteStatement() {
    Scope scope;
    for (Source* s : m_tree.from)
        source(s, scope, nullptr);
    for (Source* s : scope.sources) {
        const QStringView alias = s->alias.isEmpty() ? s->name : s->alias;
        if (!s->table ||
            (!m_tree.deleteFrom.isEmpty() && m_tree.deleteFrom.compare(alias, Qt::CaseInsensitive) != 0 &&
             m_tree.deleteFrom.compare(s->name, Qt::CaseInsensitive) != 0))
            continue;
        m_tree.target = s;
        break;
    }
    if (!m_tree.target || (m_tree.deleteFrom.isEmpty() && scope.sources.size() > 1))
        fail(3128, u"Geben Sie die Tabelle an, deren Datensätze gelöscht werden sollen."_s,
             m_tree.from.empty() ? 0 : m_tree.from[0]->pos);
    m_tree.table = m_tree.target->table;
    if (m_tree.where) {
        expr(m_tree.where, &scope);
        toCondition(m_tree.where);
    }
}

// Tables and columns that a change of structure names must exist, and new ones must not.
void Binder::structure() {
    Ddl& ddl = m_tree.ddl;
    const Table* table = m_catalogue.find(ddl.table);
    if (m_tree.kind == Kind::CreateTable) {
        if (table) fail(3010, u"Die Tabelle '"_s + ddl.table + u"' ist bereits vorhanden."_s, m_tree.intoPos);
        Table made;
        for (const Column& c : ddl.add) {
            if (made.indexOf(c.name) >= 0)
                fail(3191, u"Das Feld '"_s + c.name + u"' ist mehr als einmal definiert."_s, m_tree.intoPos);
            made.columns.push_back(c);
        }
        for (const Ddl::Index& index : ddl.indexes)
            for (const QString& c : index.columns)
                if (made.indexOf(c) < 0) m_unresolved.push_back({c, m_tree.intoPos});
        return;
    }
    if (!table) {
        const int number = m_tree.kind == Kind::DropTable ? 3376 : 3078;
        fail(number,
             u"Die Tabelle '"_s + ddl.table + u"' wurde nicht gefunden (Stelle "_s +
                 QString::number(m_tree.intoPos + 1) + u")."_s,
             m_tree.intoPos);
    }
    ddl.table = table->name;
    m_tables.push_back(table->name);
    auto mustExist = [&](const QString& column) {
        if (table->indexOf(column) < 0) m_unresolved.push_back({column, m_tree.intoPos});
    };
    for (const auto& [column, descending] : ddl.indexColumns)
        mustExist(column);
    for (const QString& column : ddl.drop)
        mustExist(column);
    for (const Column& c : ddl.add) {
        if (ddl.alterColumn)
            mustExist(c.name);
        else if (table->indexOf(c.name) >= 0)
            fail(3380,
                 u"Das Feld '"_s + c.name + u"' gibt es in der Tabelle '"_s + table->name + u"' schon."_s,
                 m_tree.intoPos);
    }
    for (const Ddl::Index& index : ddl.indexes)
        for (const QString& c : index.columns)
            if (std::none_of(ddl.add.begin(), ddl.add.end(),
                             [&](const Column& a) { return a.name.compare(c, Qt::CaseInsensitive) == 0; }))
                mustExist(c);
}

} // namespace jet
