#include "Parser.h"
#include "ParserNesting.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

void raiseTooComplex(qsizetype place) {
    throw RuntimeError(3360, u"Die Abfrage ist zu komplex oder zu tief geschachtelt."_s, {}, place);
}

Parser::Parser(QStringView text, Tree& tree, bool lifting)
    : m_text(text)
    , m_tree(tree)
    , m_lexer(text, lifting)
    , m_firstValue(tree.values.size()) {
    m_tokens.reserve(std::size_t(text.size()) / 4 + 8);
    do {
        m_tokens.push_back(m_lexer.next());
    } while (m_tokens.back().kind != Tok::End);
    for (Value& value : m_lexer.values)
        m_tree.values.push_back(std::move(value));
}

const Value& Parser::valueOf(const Token& token) const {
    return m_tree.values[m_firstValue + std::size_t(token.value)];
}

const Token& Parser::peek(int ahead) const {
    return m_tokens[std::min(m_at + std::size_t(ahead), m_tokens.size() - 1)];
}

Token Parser::take() {
    const Token token = peek();
    if (m_at + 1 < m_tokens.size()) ++m_at;
    return token;
}

bool Parser::accept(Tok kind) {
    if (!is(kind)) return false;
    take();
    return true;
}

bool Parser::accept(Word word) {
    if (!is(word)) return false;
    take();
    return true;
}

bool Parser::isWord(QStringView word) const {
    return is(Tok::Name) && m_lexer.nameOf(peek()).compare(word, Qt::CaseInsensitive) == 0;
}

bool Parser::acceptWord(QStringView word) {
    if (!isWord(word)) return false;
    take();
    return true;
}

void Parser::expect(Tok kind, const QString& what) {
    if (!accept(kind)) fail(what);
}

void Parser::expect(Word word, const QString& what) {
    if (!accept(word)) fail(what);
}

QStringView Parser::name(const QString& what) {
    if (!isName()) fail(what);
    return m_lexer.nameOf(take());
}

void Parser::fail(const QString& what) const { raiseSyntax(what, m_text, peek().pos); }

void Parser::atEnd() {
    while (accept(Tok::Semicolon)) {
    }
    if (!is(Tok::End)) fail(u"Hier endet die Anweisung, oder ein Operator fehlt."_s);
}

// A SELECT, or one in parentheses of its own that a UNION, an ORDER BY or nothing follows: "((SELECT ..) +
// 1)" and
// "((SELECT ..) AS a INNER JOIN ..)" only look alike.
bool Parser::startsQuery() const {
    if (is(Word::Select)) return true;
    std::size_t at = m_at;
    while (m_tokens[at].kind == Tok::Open && at - m_at <= std::size_t(maxDepth))
        ++at;
    if (at == m_at || m_tokens[at].word != Word::Select) return false;
    int depth = 0;
    for (at = m_at; m_tokens[at].kind != Tok::End; ++at) {
        if (m_tokens[at].kind == Tok::Open) ++depth;
        if (m_tokens[at].kind == Tok::Close && --depth == 0) break;
    }
    if (m_tokens[at].kind == Tok::End) return true;
    const Token& next = m_tokens[at + 1];
    return next.kind == Tok::Close || next.word == Word::Union || next.word == Word::Order;
}

Query* Parser::query() {
    const Nesting nesting(*this);
    Query* q = m_tree.arena.make<Query>();
    q->pos = peek().pos;
    const int outside = std::exchange(m_height, 0);
    std::vector<Leg> legs{leg()};
    while (is(Word::Union)) {
        take();
        const bool all = accept(Word::All);
        if (!all && is(Word::Distinct)) take();
        legs.push_back(leg());
        legs.back().all = all;
        if (legs.size() > 400) raiseTooComplex(peek().pos);
    }
    q->legs = m_tree.arena.copy(legs);
    orderBy(*q);
    q->height = m_height + 1;
    if (q->height >= maxHeight) raiseTooComplex(q->pos);
    m_height = std::max(outside, q->height);
    return q;
}

Leg Parser::leg() {
    Leg result;
    if (is(Tok::Open)) {
        take();
        result.nested = query();
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    } else if (is(Word::Table) && (peek(1).kind == Tok::Name || peek(1).kind == Tok::Quoted)) {
        take();
        Select* s = m_tree.arena.make<Select>();
        s->pos = peek().pos;
        s->items = m_tree.arena.copy(std::vector<SelectItem>{SelectItem{nullptr, {}, {}, s->pos}});
        s->from = m_tree.arena.copy(std::vector<Source*>{source()});
        result.select = s;
    } else {
        result.select = select();
    }
    return result;
}

void Parser::selectHead(Select& s) {
    for (bool more = true; more;) {
        if (accept(Word::Distinct))
            s.quantifier = Quantifier::Distinct;
        else if (accept(Word::DistinctRow))
            s.quantifier = Quantifier::DistinctRow;
        else if (is(Word::All) && peek(1).kind != Tok::Comma && peek(1).kind != Tok::Dot)
            take();
        else if (is(Word::Top) && peek(1).kind == Tok::Number) {
            take();
            const Token number = take();
            const Value& value = valueOf(number);
            const double n = value.type() == Type::Long ? double(std::get<qint64>(value.data())) : -1;
            if (n < 0 || n > std::numeric_limits<int>::max())
                raiseSyntax(u"Nach TOP steht eine ganze Zahl."_s, m_text, number.pos);
            s.top = int(n);
            s.percent = accept(Word::Percent);
        } else
            more = false;
    }
}

Select* Parser::select() {
    Select* s = m_tree.arena.make<Select>();
    s->pos = peek().pos;
    expect(Word::Select, u"Hier fehlt SELECT."_s);
    selectHead(*s);
    s->items = selectItems();
    if (is(Word::Into)) {
        if (m_tree.into.data()) fail(u"INTO steht hier falsch."_s);
        take();
        m_tree.kind = Kind::SelectInto;
        m_tree.intoPos = peek().pos;
        m_tree.into = name(u"Nach INTO fehlt der Name der neuen Tabelle."_s);
    }
    if (accept(Word::From)) s->from = sources();
    if (accept(Word::Where)) s->where = expression();
    if (is(Word::Group)) {
        take();
        expect(Word::By, u"Nach GROUP folgt BY."_s);
        s->groupBy = m_tree.arena.copy(list());
        s->grouped = true;
    }
    if (accept(Word::Having)) s->having = expression();
    return s;
}

std::span<SelectItem> Parser::selectItems() {
    std::vector<SelectItem> items;
    do {
        items.push_back(selectItem());
    } while (accept(Tok::Comma));
    return m_tree.arena.copy(items);
}

SelectItem Parser::selectItem() {
    SelectItem item;
    item.pos = peek().pos;
    if (accept(Tok::Star)) return item;
    if (isName() && (peek(1).kind == Tok::Dot || peek(1).kind == Tok::Bang) && peek(2).kind == Tok::Star) {
        item.qualifier = m_lexer.nameOf(take());
        take();
        take();
        return item;
    }
    item.expr = expression();
    item.alias = alias();
    return item;
}

// [AS] name; a bare word may stand without AS unless it goes on with the statement.
QStringView Parser::alias() {
    if (accept(Word::As)) {
        if (is(Tok::Text)) {
            const Token token = take();
            return m_text.mid(token.pos + 1, token.end - token.pos - 2);
        }
        return name(u"Nach AS fehlt ein Name."_s);
    }
    if (is(Tok::Quoted)) return m_lexer.nameOf(take());
    if (!is(Tok::Name)) return {};
    switch (peek().word) {
    case Word::From:
    case Word::Where:
    case Word::Group:
    case Word::Having:
    case Word::Order:
    case Word::Union:
    case Word::Inner:
    case Word::Left:
    case Word::Right:
    case Word::Full:
    case Word::Cross:
    case Word::Outer:
    case Word::Join:
    case Word::On:
    case Word::Into:
    case Word::Set:
    case Word::Pivot:
    case Word::Values:
    case Word::Select:
    case Word::With:
    case Word::And:
    case Word::Or:
    case Word::Not:
    case Word::Is:
    case Word::In:
    case Word::Like:
    case Word::Alike:
    case Word::Between:
    case Word::Xor:
    case Word::Eqv:
    case Word::Imp:
    case Word::Mod:
    case Word::Null:
    case Word::Asc:
    case Word::Desc:
        return {};
    default:
        return m_lexer.nameOf(take());
    }
}

std::span<Source*> Parser::sources() {
    std::vector<Source*> all;
    do {
        all.push_back(joined());
    } while (accept(Tok::Comma));
    return m_tree.arena.copy(all);
}

Source* Parser::joined() {
    const Nesting nesting(*this);
    Source* left = source();
    for (int length = 0;; ++length) {
        JoinKind kind = JoinKind::Inner;
        const qsizetype pos = peek().pos;
        if (is(Word::Join)) {
            take();
        } else if (is(Word::Inner) || is(Word::Left) || is(Word::Right) || is(Word::Cross)) {
            const Word word = take().word;
            if (word != Word::Inner) kind = word == Word::Left ? JoinKind::Left : JoinKind::Right;
            if (word == Word::Cross) kind = JoinKind::Cross;
            if (kind != JoinKind::Inner && kind != JoinKind::Cross) accept(Word::Outer);
            expect(Word::Join, u"Hier fehlt JOIN."_s);
        } else if (is(Word::Full)) {
            fail(u"FULL JOIN gibt es nicht; zwei Abfragen mit UNION leisten dasselbe."_s);
        } else {
            return left;
        }
        if (length > 200) raiseTooComplex(pos);
        Source* join = m_tree.arena.make<Source>();
        join->form = Source::Form::Join;
        join->join = kind;
        join->pos = pos;
        join->left = left;
        join->right = source();
        if (kind != JoinKind::Cross) {
            expect(Word::On, u"Zu JOIN gehört ON."_s);
            join->on = expression();
        }
        left = join;
    }
}

Source* Parser::source() {
    if (is(Tok::Open)) {
        const qsizetype pos = take().pos;
        if (startsQuery()) {
            Source* s = m_tree.arena.make<Source>();
            s->form = Source::Form::Derived;
            s->pos = pos;
            s->query = query();
            expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
            s->alias = alias();
            return s;
        }
        Source* s = joined();
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        return s;
    }
    Source* s = m_tree.arena.make<Source>();
    s->pos = peek().pos;
    if (is(Tok::Quoted) && peek(1).kind == Tok::Dot &&
        m_lexer.nameOf(peek()).trimmed().startsWith(u"SELECT ", Qt::CaseInsensitive)) {
        // "[SELECT ..]. AS a", the old spelling of a derived table.
        const Nesting nesting(*this);
        Parser inner(m_lexer.nameOf(take()), m_tree, false);
        inner.m_depth = m_depth;
        s->form = Source::Form::Derived;
        s->query = inner.query();
        inner.atEnd();
        m_height = std::max(m_height, s->query->height);
        take();
        s->alias = alias();
        return s;
    }
    s->name = name(u"Der Name der Tabelle fehlt."_s);
    while (accept(Tok::Dot))
        s->name = name(u"Der Name der Tabelle fehlt."_s);
    s->alias = alias();
    return s;
}

void Parser::orderBy(Query& q) {
    if (!is(Word::Order)) return;
    take();
    expect(Word::By, u"Nach ORDER folgt BY."_s);
    std::vector<OrderItem> items;
    do {
        OrderItem item;
        item.expr = expression();
        if (accept(Word::Desc))
            item.descending = true;
        else
            accept(Word::Asc);
        items.push_back(item);
    } while (accept(Tok::Comma));
    q.orderBy = m_tree.arena.copy(items);
}

} // namespace jet
