#include "Parser.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

void Parser::statement() {
    if (is(Tok::End)) fail(u"Die Anweisung ist leer."_s);
    if (isName() &&
        (peek(1).kind == Tok::End || (peek(1).kind == Tok::Semicolon && peek(2).kind == Tok::End))) {
        Select* s = m_tree.arena.make<Select>();
        s->items = m_tree.arena.copy(std::vector<SelectItem>{SelectItem{}});
        s->from = m_tree.arena.copy(std::vector<Source*>{source()});
        Query* q = m_tree.arena.make<Query>();
        q->legs = m_tree.arena.copy(std::vector<Leg>{Leg{s, nullptr, false}});
        m_tree.query = q;
        return atEnd();
    }
    if (is(Tok::Open)) {
        selectStatement();
        return atEnd();
    }
    if (isWord(u"PARAMETERS")) { // their names are unknown to whoever uses them: nobody is asked here
        while (!is(Tok::Semicolon) && !is(Tok::End))
            take();
        expect(Tok::Semicolon, u"Nach PARAMETERS fehlt das Semikolon."_s);
    }
    switch (peek().word) {
    case Word::Select:
    case Word::Table:
        selectStatement();
        break;
    case Word::Transform:
        transformStatement();
        break;
    case Word::Insert:
        insertStatement();
        break;
    case Word::Update:
        updateStatement();
        break;
    case Word::Delete:
        deleteStatement();
        break;
    case Word::Create:
        createStatement();
        break;
    case Word::Alter:
        alterStatement();
        break;
    case Word::Drop:
        dropStatement();
        break;
    default:
        fail(u"Erwartet wird SELECT, INSERT, UPDATE, DELETE, TRANSFORM, CREATE, ALTER oder DROP."_s);
    }
    if (m_tree.kind == Kind::Select && accept(Word::With)) { // rights of the owner mean nothing here
        if (!acceptWord(u"OWNERACCESS")) fail(u"Hier fehlt OWNERACCESS OPTION."_s);
        expect(Word::Option, u"Hier fehlt OPTION."_s);
    }
    atEnd();
}

void Parser::selectStatement() { m_tree.query = query(); }

void Parser::transformStatement() {
    take();
    m_tree.transform = expression();
    alias();
    m_tree.query = query();
    expect(Word::Pivot, u"Zu TRANSFORM gehört PIVOT."_s);
    m_tree.pivot = expression();
    if (m_tree.query->legs.size() != 1 || !m_tree.query->legs[0].select)
        raiseSyntax(u"TRANSFORM verträgt kein UNION."_s, m_text, m_tree.query->pos);
    // The parser reads "PIVOT x IN (..)" as one expression; the list is taken off again.
    if (m_tree.pivot->kind == ExprKind::In && !m_tree.pivot->query) {
        for (Expr* e : m_tree.pivot->operands.subspan(1))
            m_tree.pivotHeads.push_back(e);
        m_tree.pivot = m_tree.pivot->operands[0];
    }
}

void Parser::insertStatement() {
    take();
    m_tree.kind = Kind::Insert;
    expect(Word::Into, u"Nach INSERT folgt INTO."_s);
    m_tree.intoPos = peek().pos;
    m_tree.into = name(u"Nach INTO fehlt der Name der Tabelle."_s);
    if (is(Tok::Open) && !startsQuery()) {
        take();
        do {
            NameAt column;
            column.pos = peek().pos;
            column.name = name(u"Hier fehlt der Name einer Spalte."_s);
            if (accept(Tok::Dot)) column.name = name(u"Hier fehlt der Name einer Spalte."_s);
            m_tree.columns.push_back(column);
        } while (accept(Tok::Comma));
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    }
    if (accept(Word::Values)) {
        do {
            expect(Tok::Open, u"Nach VALUES folgt eine Klammer."_s);
            m_tree.rows.push_back(m_tree.arena.copy(list()));
            expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        } while (accept(Tok::Comma));
        return;
    }
    if (!is(Word::Select) && !is(Tok::Open) && !is(Word::Table)) fail(u"Hier fehlt VALUES oder SELECT."_s);
    m_tree.query = query();
}

void Parser::updateStatement() {
    take();
    m_tree.kind = Kind::Update;
    m_tree.from = sources();
    expect(Word::Set, u"Zu UPDATE gehört SET."_s);
    do {
        Assignment a;
        a.pos = peek().pos;
        a.name = name(u"Hier fehlt der Name einer Spalte."_s);
        while (accept(Tok::Dot) || accept(Tok::Bang)) {
            a.qualifier = a.name;
            a.name = name(u"Hier fehlt der Name einer Spalte."_s);
        }
        expect(Tok::Equal, u"Hier fehlt ein Gleichheitszeichen."_s);
        a.value = expression();
        m_tree.assignments.push_back(a);
    } while (accept(Tok::Comma));
    if (accept(Word::Where)) m_tree.where = expression();
}

void Parser::deleteStatement() {
    take();
    m_tree.kind = Kind::Delete;
    if (is(Word::DistinctRow) || is(Word::Distinct)) take();
    if (!is(Word::From)) {
        if (!accept(Tok::Star)) {
            m_tree.deleteFrom = name(u"Hier fehlt FROM."_s);
            while (accept(Tok::Dot) || accept(Tok::Bang)) {
                if (accept(Tok::Star)) break;
                m_tree.deleteFrom = name(u"Hier fehlt *."_s);
            }
            while (accept(Tok::Comma)) { // more columns of the same table mean nothing
                name(u"Hier fehlt der Name einer Spalte."_s);
                if (accept(Tok::Dot) && !accept(Tok::Star)) name(u"Hier fehlt der Name einer Spalte."_s);
            }
        }
    }
    expect(Word::From, u"Hier fehlt FROM."_s);
    m_tree.from = sources();
    if (accept(Word::Where)) m_tree.where = expression();
}

} // namespace jet
