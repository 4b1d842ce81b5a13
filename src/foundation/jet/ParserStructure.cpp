#include "Parser.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

struct TypeName {
    const char16_t* name;
    Type type;
    bool autoNumber = false;
    bool sized = false;
};

constexpr TypeName typeNames[] = {
    {u"COUNTER", Type::Long, true},
    {u"AUTOINCREMENT", Type::Long, true},
    {u"AUTONUMBER", Type::Long, true},
    {u"IDENTITY", Type::Long, true},
    {u"LONG", Type::Long},
    {u"INTEGER", Type::Long},
    {u"INT", Type::Long},
    {u"INTEGER4", Type::Long},
    {u"SHORT", Type::Short},
    {u"SMALLINT", Type::Short},
    {u"INTEGER2", Type::Short},
    {u"BYTE", Type::Byte},
    {u"TINYINT", Type::Byte},
    {u"INTEGER1", Type::Byte},
    {u"SINGLE", Type::Single},
    {u"REAL", Type::Single},
    {u"FLOAT4", Type::Single},
    {u"IEEESINGLE", Type::Single},
    {u"DOUBLE", Type::Double},
    {u"FLOAT", Type::Double},
    {u"FLOAT8", Type::Double},
    {u"IEEEDOUBLE", Type::Double},
    {u"NUMBER", Type::Double},
    {u"NUMERIC", Type::Double},
    {u"DECIMAL", Type::Double},
    {u"DEC", Type::Double},
    {u"CURRENCY", Type::Currency},
    {u"MONEY", Type::Currency},
    {u"YESNO", Type::Boolean},
    {u"BIT", Type::Boolean},
    {u"BOOLEAN", Type::Boolean},
    {u"LOGICAL", Type::Boolean},
    {u"LOGICAL1", Type::Boolean},
    {u"DATETIME", Type::Date},
    {u"DATE", Type::Date},
    {u"TIME", Type::Date},
    {u"TIMESTAMP", Type::Date},
    {u"TEXT", Type::Text, false, true},
    {u"VARCHAR", Type::Text, false, true},
    {u"CHAR", Type::Text, false, true},
    {u"CHARACTER", Type::Text, false, true},
    {u"STRING", Type::Text, false, true},
    {u"NCHAR", Type::Text, false, true},
    {u"NVARCHAR", Type::Text, false, true},
    {u"ALPHANUMERIC", Type::Text, false, true},
    {u"MEMO", Type::Memo},
    {u"LONGTEXT", Type::Memo},
    {u"LONGCHAR", Type::Memo},
    {u"NOTE", Type::Memo},
    {u"NTEXT", Type::Memo},
    {u"HYPERLINK", Type::Memo},
};

} // namespace

std::pair<Type, int> Parser::dataType(bool& autoNumber) {
    const qsizetype pos = peek().pos;
    const QStringView word = is(Tok::Name) ? m_lexer.nameOf(peek()) : QStringView();
    Type type = Type::Null;
    bool sized = false;
    int size = 0;
    for (const TypeName& t : typeNames)
        if (word.compare(t.name, Qt::CaseInsensitive) == 0) {
            type = t.type, sized = t.sized, autoNumber = t.autoNumber;
            break;
        }
    if (word.compare(u"GUID", Qt::CaseInsensitive) == 0 ||
        word.compare(u"UNIQUEIDENTIFIER", Qt::CaseInsensitive) == 0)
        type = Type::Text, size = 40;
    if (type == Type::Null) raiseSyntax(u"Dieser Datentyp ist unbekannt."_s, m_text, pos);
    take();
    if (type == Type::Double && acceptWord(u"PRECISION")) {
    }
    if (sized && acceptWord(u"VARYING")) {
    }
    if (sized) size = 255;
    if (accept(Tok::Open)) {
        if (!is(Tok::Number)) fail(u"Hier fehlt eine Zahl."_s);
        const Token number = take();
        const Value& value = valueOf(number);
        const qint64 given = value.type() == Type::Long ? std::get<qint64>(value.data()) : 0;
        if (sized) {
            // What is longer than a Text column may be is a Memo.
            if (given < 1)
                raiseSyntax(u"Die Länge eines Textes liegt zwischen 1 und 255."_s, m_text, number.pos);
            size = int(std::min<qint64>(given, 256));
            if (size > 255) type = Type::Memo, size = 0;
        }
        if (accept(Tok::Comma)) {
            if (!is(Tok::Number)) fail(u"Hier fehlt eine Zahl."_s);
            take();
        }
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    }
    return {type, size};
}

std::vector<QString> Parser::columnList() {
    std::vector<QString> names;
    expect(Tok::Open, u"Hier fehlt eine Liste von Spalten in Klammern."_s);
    do {
        names.push_back(name(u"Hier fehlt der Name einer Spalte."_s).toString());
        if (!accept(Word::Asc)) accept(Word::Desc);
    } while (accept(Tok::Comma));
    expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    return names;
}

/// `index` receives the column's own key, if it has one.
Column Parser::columnDefinition(Ddl::Index* index) {
    Column column;
    column.name = name(u"Hier fehlt der Name einer Spalte."_s).toString();
    bool autoNumber = false;
    const auto [type, size] = dataType(autoNumber);
    column.type = type;
    column.size = size;
    column.autoNumber = autoNumber;
    QString constraint;
    for (;;) {
        if (accept(Word::Not)) {
            expect(Word::Null, u"Nach NOT folgt NULL."_s);
            column.required = true;
        } else if (accept(Word::Null)) {
            column.required = false;
        } else if (acceptWord(u"AUTOINCREMENT") || acceptWord(u"IDENTITY")) {
            column.autoNumber = true;
            if (is(Tok::Open)) {
                take();
                while (!is(Tok::Close) && !is(Tok::End))
                    take();
                expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
            }
        } else if (accept(Word::Default)) {
            const qsizetype from = peek().pos;
            Expr* e = binary(0);
            column.defaultText = m_text.mid(from, std::max(e->end, from) - from).toString();
            // The end of a parenthesised default is that of its inside: take the text up to the next token.
            column.defaultText = m_text.mid(from, peek().pos - from).trimmed().toString();
        } else if (accept(Word::Constraint)) {
            constraint = name(u"Hier fehlt ein Name."_s).toString();
        } else if (accept(Word::Primary)) {
            expect(Word::Key, u"Nach PRIMARY folgt KEY."_s);
            *index = {constraint, {column.name}, true, true};
            column.required = true;
        } else if (accept(Word::Unique)) {
            if (!index->primary) *index = {constraint, {column.name}, true, false};
        } else if (accept(Word::References)) {
            name(u"Der Name der Tabelle fehlt."_s);
            if (is(Tok::Open)) columnList();
        } else if (accept(Word::With)) {
            name(u"Hier fehlt ein Name."_s); // WITH COMPRESSION says how, not what
        } else {
            return column;
        }
    }
}

// [CONSTRAINT name] PRIMARY KEY (..), UNIQUE (..) or FOREIGN KEY (..) REFERENCES t (..).
void Parser::tableConstraint() {
    Ddl::Index index;
    if (accept(Word::Constraint)) index.name = name(u"Hier fehlt ein Name."_s).toString();
    if (accept(Word::Primary)) {
        expect(Word::Key, u"Nach PRIMARY folgt KEY."_s);
        index.primary = index.unique = true;
    } else if (accept(Word::Unique)) {
        index.unique = true;
    } else if (accept(Word::Foreign)) {
        expect(Word::Key, u"Nach FOREIGN folgt KEY."_s);
        columnList();
        expect(Word::References, u"Hier fehlt REFERENCES."_s);
        name(u"Der Name der Tabelle fehlt."_s);
        if (is(Tok::Open)) columnList();
        while (accept(Word::On)) { // ON DELETE CASCADE: relations are not kept
            take();
            take();
        }
        return;
    } else {
        fail(u"Erwartet wird PRIMARY KEY, UNIQUE oder FOREIGN KEY."_s);
    }
    index.columns = columnList();
    m_tree.ddl.indexes.push_back(index);
}

void Parser::createStatement() {
    take();
    const bool unique = accept(Word::Unique);
    if (is(Word::Index)) return createIndex(unique);
    if (unique || !is(Word::Table)) fail(u"Nach CREATE folgt TABLE oder INDEX."_s);
    createTable();
}

void Parser::createTable() {
    take();
    m_tree.intoPos = peek().pos;
    const QStringView table = name(u"Der Name der Tabelle fehlt."_s);
    m_tree.ddl.table = table.toString();
    if (accept(Word::As)) { // CREATE TABLE t AS (SELECT ..) [WITH [NO] DATA]
        const bool open = accept(Tok::Open);
        m_tree.query = query();
        if (open) expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        m_tree.kind = Kind::SelectInto;
        m_tree.into = table;
        if (accept(Word::With)) {
            m_tree.emptyTable = accept(Word::No);
            if (!acceptWord(u"DATA")) fail(u"Hier fehlt DATA."_s);
        }
        return;
    }
    m_tree.kind = Kind::CreateTable;
    expect(Tok::Open, u"Hier fehlt die Liste der Spalten in Klammern."_s);
    do {
        const bool constraint = is(Word::Constraint) ||
                                ((is(Word::Primary) || is(Word::Foreign)) && peek(1).word == Word::Key) ||
                                (is(Word::Unique) && peek(1).kind == Tok::Open);
        if (constraint) {
            tableConstraint();
            continue;
        }
        Ddl::Index index;
        m_tree.ddl.add.push_back(columnDefinition(&index));
        if (!index.columns.empty()) m_tree.ddl.indexes.push_back(index);
    } while (accept(Tok::Comma));
    expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
}

void Parser::createIndex(bool unique) {
    take();
    Ddl& ddl = m_tree.ddl;
    m_tree.kind = Kind::CreateIndex;
    ddl.unique = unique;
    ddl.indexName = name(u"Der Name des Indexes fehlt."_s).toString();
    expect(Word::On, u"Hier fehlt ON."_s);
    m_tree.intoPos = peek().pos;
    ddl.table = name(u"Der Name der Tabelle fehlt."_s).toString();
    expect(Tok::Open, u"Hier fehlt eine Liste von Spalten in Klammern."_s);
    do {
        const QString column = name(u"Hier fehlt der Name einer Spalte."_s).toString();
        const bool descending = accept(Word::Desc);
        if (!descending) accept(Word::Asc);
        ddl.indexColumns.emplace_back(column, descending);
    } while (accept(Tok::Comma));
    expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    if (accept(Word::With)) {
        if (accept(Word::Primary))
            ddl.primary = ddl.unique = true;
        else if (acceptWord(u"DISALLOW") || acceptWord(u"IGNORE"))
            expect(Word::Null, u"Hier fehlt NULL."_s);
        else
            fail(u"Erwartet wird PRIMARY, DISALLOW NULL oder IGNORE NULL."_s);
    }
}

void Parser::alterStatement() {
    take();
    expect(Word::Table, u"Nach ALTER folgt TABLE."_s);
    Ddl& ddl = m_tree.ddl;
    m_tree.kind = Kind::AlterTable;
    m_tree.intoPos = peek().pos;
    ddl.table = name(u"Der Name der Tabelle fehlt."_s).toString();
    if (accept(Word::Add)) {
        if (is(Word::Constraint) || is(Word::Primary) || is(Word::Foreign) ||
            (is(Word::Unique) && peek(1).kind == Tok::Open))
            return tableConstraint();
        accept(Word::Column);
        const bool open = accept(Tok::Open);
        do {
            accept(Word::Column);
            Ddl::Index index;
            ddl.add.push_back(columnDefinition(&index));
            if (!index.columns.empty()) ddl.indexes.push_back(index);
        } while (accept(Tok::Comma));
        if (open) expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    } else if (accept(Word::Drop)) {
        if (accept(Word::Constraint)) {
            ddl.indexName = name(u"Hier fehlt ein Name."_s).toString();
            return;
        }
        do {
            accept(Word::Column);
            ddl.drop.push_back(name(u"Hier fehlt der Name einer Spalte."_s).toString());
        } while (accept(Tok::Comma));
    } else if (accept(Word::Alter)) {
        accept(Word::Column);
        Ddl::Index index;
        ddl.alterColumn = true;
        ddl.add.push_back(columnDefinition(&index));
        if (!index.columns.empty()) ddl.indexes.push_back(index);
    } else {
        fail(u"Erwartet wird ADD, DROP oder ALTER."_s);
    }
}

void Parser::dropStatement() {
    take();
    Ddl& ddl = m_tree.ddl;
    if (accept(Word::Index)) {
        m_tree.kind = Kind::DropIndex;
        ddl.indexName = name(u"Der Name des Indexes fehlt."_s).toString();
        expect(Word::On, u"Hier fehlt ON."_s);
        m_tree.intoPos = peek().pos;
        ddl.table = name(u"Der Name der Tabelle fehlt."_s).toString();
        return;
    }
    if (!accept(Word::Table)) fail(u"Nach DROP folgt TABLE oder INDEX."_s);
    m_tree.kind = Kind::DropTable;
    m_tree.intoPos = peek().pos;
    ddl.table = name(u"Der Name der Tabelle fehlt."_s).toString();
}

} // namespace jet
