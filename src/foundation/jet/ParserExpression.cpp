#include "Parser.h"
#include "ParserNesting.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

Expr* Parser::make(ExprKind kind, qsizetype pos) {
    Expr* e = m_tree.arena.make<Expr>();
    e->kind = kind;
    e->pos = pos;
    return e;
}

// Whoever walks the tree does so by recursion, so that its height has a limit of its own beside that of
// nesting: long rows of operators lean to the left.
Expr* Parser::done(Expr* e, qsizetype end) {
    e->end = end;
    int height = e->query ? e->query->height : 0;
    for (const Expr* operand : e->operands)
        height = std::max(height, operand->height);
    if (height >= maxHeight) raiseTooComplex(e->pos);
    e->height = height + 1;
    m_height = std::max(m_height, e->height);
    return e;
}

std::span<Expr*> Parser::operands(std::initializer_list<Expr*> list) {
    return m_tree.arena.copy(std::vector<Expr*>(list));
}

Expr* Parser::makeBinary(Op op, Expr* a, Expr* b) {
    Expr* e = make(ExprKind::Binary, a->pos);
    e->op = op;
    e->operands = operands({a, b});
    return done(e, b->end);
}

Expr* Parser::wholeExpression() {
    Expr* e = expression();
    atEnd();
    return e;
}

Expr* Parser::expression() {
    const Nesting nesting(*this);
    return logic(0);
}

// From the loosest: IMP, EQV, XOR, OR, AND.
Expr* Parser::logic(int level) {
    static constexpr Word words[] = {Word::Imp, Word::Eqv, Word::Xor, Word::Or, Word::And};
    static constexpr Op ops[] = {Op::Imp, Op::Eqv, Op::Xor};
    if (level == 5) return negation();
    Expr* first = logic(level + 1);
    if (!is(words[level])) return first;
    if (level >= 3) {
        std::vector<Expr*> all{first};
        while (accept(words[level]))
            all.push_back(logic(level + 1));
        Expr* e = make(level == 3 ? ExprKind::Any : ExprKind::All, first->pos);
        e->operands = m_tree.arena.copy(all);
        return done(e, all.back()->end);
    }
    while (accept(words[level]))
        first = makeBinary(ops[level], first, logic(level + 1));
    return first;
}

Expr* Parser::negation() {
    // A row of NOTs is counted, not descended into.
    const qsizetype pos = peek().pos;
    bool negated = false, any = false;
    while (accept(Word::Not)) {
        negated = !negated;
        any = true;
    }
    Expr* e = comparison();
    if (!any) return e;
    for (int i = negated ? 1 : 2; i > 0; --i) {
        Expr* n = make(ExprKind::Not, pos);
        n->operands = operands({e});
        e = done(n, e->end);
    }
    return e;
}

Expr* Parser::comparison() {
    Expr* left = binary(0);
    for (;;) {
        Op op = Op::None;
        switch (peek().kind) {
        case Tok::Equal:
            op = Op::Equal;
            break;
        case Tok::NotEqual:
            op = Op::NotEqual;
            break;
        case Tok::Less:
            op = Op::Less;
            break;
        case Tok::LessEqual:
            op = Op::LessEqual;
            break;
        case Tok::Greater:
            op = Op::Greater;
            break;
        case Tok::GreaterEqual:
            op = Op::GreaterEqual;
            break;
        default:
            break;
        }
        if (op == Op::None) {
            Expr* e = predicate(left);
            if (e == left) return left;
            left = e;
            continue;
        }
        take();
        if (is(Word::Any) || is(Word::Some) || is(Word::All)) {
            Expr* e = make(ExprKind::Compare, left->pos);
            e->op = op;
            e->negated = take().word == Word::All;
            e->operands = operands({left});
            expect(Tok::Open, u"Hier fehlt eine Unterabfrage in Klammern."_s);
            e->query = query();
            left = done(e, peek().end);
            expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        } else {
            left = makeBinary(op, left, is(Word::Not) ? negation() : binary(0));
        }
    }
}

// IS [NOT] NULL, [NOT] BETWEEN, [NOT] IN, [NOT] LIKE behind `left`; `left` itself when there is none.
Expr* Parser::predicate(Expr* left) {
    if (is(Word::Is)) {
        take();
        Expr* e = make(ExprKind::IsNull, left->pos);
        e->negated = accept(Word::Not);
        e->operands = operands({left});
        done(e, peek().end);
        expect(Word::Null, u"Nach IS steht NULL oder NOT NULL."_s);
        return e;
    }
    const bool negated = is(Word::Not) && peek(1).kind == Tok::Name &&
                         (peek(1).word == Word::Between || peek(1).word == Word::In ||
                          peek(1).word == Word::Like || peek(1).word == Word::Alike);
    if (negated) take();
    if (accept(Word::Between)) {
        Expr* low = binary(0);
        expect(Word::And, u"Zu BETWEEN gehört AND."_s);
        Expr* high = binary(0);
        Expr* e = make(ExprKind::Between, left->pos);
        e->negated = negated;
        e->operands = operands({left, low, high});
        return done(e, high->end);
    }
    if (is(Word::Like) || is(Word::Alike)) {
        const bool ansi = take().word == Word::Alike;
        Expr* pattern = binary(0);
        Expr* e = make(ExprKind::Like, left->pos);
        e->negated = negated;
        e->ansi = ansi;
        e->operands = operands({left, pattern});
        return done(e, pattern->end);
    }
    if (is(Word::In)) {
        take();
        expect(Tok::Open, u"Nach IN folgt eine Klammer."_s);
        Expr* e = make(ExprKind::In, left->pos);
        e->negated = negated;
        std::vector<Expr*> all{left};
        if (startsQuery())
            e->query = query();
        else if (!is(Tok::Close)) {
            const std::vector<Expr*> items = list();
            all.insert(all.end(), items.begin(), items.end());
        }
        e->operands = m_tree.arena.copy(all);
        done(e, peek().end);
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        return e;
    }
    return left;
}

// From the loosest: &, + -, MOD, \, * /.
Expr* Parser::binary(int level) {
    if (level == 5) return sign();
    Expr* left = binary(level + 1);
    for (;;) {
        Op op = Op::None;
        const Tok kind = peek().kind;
        switch (level) {
        case 0:
            op = kind == Tok::Ampersand ? Op::Concat : Op::None;
            break;
        case 1:
            op = kind == Tok::Plus ? Op::Add : kind == Tok::Minus ? Op::Subtract : Op::None;
            break;
        case 2:
            op = is(Word::Mod) ? Op::Mod : Op::None;
            break;
        case 3:
            op = kind == Tok::Backslash ? Op::IntDivide : Op::None;
            break;
        default:
            op = kind == Tok::Star ? Op::Multiply : kind == Tok::Slash ? Op::Divide : Op::None;
            break;
        }
        if (op == Op::None) return left;
        take();
        left = makeBinary(op, left, binary(level + 1));
    }
}

Expr* Parser::sign() {
    const qsizetype pos = peek().pos;
    bool minus = false, any = false;
    for (;;) {
        if (accept(Tok::Minus))
            minus = !minus;
        else if (!accept(Tok::Plus))
            break;
        any = true;
    }
    Expr* e = power();
    if (!any) return e;
    Expr* n = make(minus ? ExprKind::Negate : ExprKind::Plus, pos);
    n->operands = operands({e});
    return done(n, e->end);
}

Expr* Parser::power() {
    Expr* left = primary();
    while (accept(Tok::Caret)) {
        if (is(Tok::Minus) || is(Tok::Plus)) {
            const Nesting nesting(*this);
            left = makeBinary(Op::Power, left, sign());
        } else {
            left = makeBinary(Op::Power, left, primary());
        }
    }
    return left;
}

Expr* Parser::literal() {
    const Token token = take();
    Expr* e = make(ExprKind::Literal, token.pos);
    e->end = token.end;
    e->literal = token.literal;
    e->literalClass = m_lexer.classOf(token);
    e->value = &valueOf(token);
    return e;
}

Expr* Parser::primary() {
    switch (peek().kind) {
    case Tok::Number:
    case Tok::Text:
    case Tok::Date:
        return literal();
    case Tok::Quoted:
        return nameOrCall();
    case Tok::Open: {
        const Token open = take();
        Expr* e = nullptr;
        if (startsQuery()) {
            e = make(ExprKind::Scalar, open.pos);
            e->query = query();
        } else {
            e = expression();
        }
        if (e->kind == ExprKind::Scalar && e->pos == open.pos) done(e, peek().end);
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        return e;
    }
    case Tok::Name:
        break;
    default:
        fail(u"Hier fehlt ein Ausdruck."_s);
    }
    const bool called = peek(1).kind == Tok::Open,
               dotted = peek(1).kind == Tok::Dot || peek(1).kind == Tok::Bang;
    if (dotted) return nameOrCall();
    auto constant = [&](ExprKind kind) {
        const Token token = take();
        Expr* e = make(kind, token.pos);
        e->end = token.end;
        return e;
    };
    switch (peek().word) {
    case Word::True:
    case Word::Yes:
    case Word::On:
        return constant(ExprKind::True);
    case Word::False:
    case Word::No:
    case Word::Off:
        return constant(ExprKind::False);
    case Word::Null:
        return constant(ExprKind::Null);
    case Word::Exists: {
        if (!called) return nameOrCall();
        Expr* e = make(ExprKind::Exists, take().pos);
        take();
        e->query = query();
        done(e, peek().end);
        expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
        return e;
    }
    case Word::Not:
        return negation();
    case Word::Left:
    case Word::Right:
    case Word::If:
        if (called) return nameOrCall();
        fail(u"Hier fehlt ein Ausdruck."_s);
    case Word::Select:
    case Word::From:
    case Word::Where:
    case Word::Group:
    case Word::Having:
    case Word::Order:
    case Word::Union:
    case Word::Inner:
    case Word::Join:
    case Word::As:
    case Word::And:
    case Word::Or:
    case Word::Xor:
    case Word::Eqv:
    case Word::Imp:
    case Word::Mod:
    case Word::Is:
    case Word::In:
    case Word::Like:
    case Word::Between:
    case Word::Into:
    case Word::Set:
    case Word::Pivot:
        fail(u"Hier fehlt ein Ausdruck."_s);
    default:
        return nameOrCall();
    }
}

Expr* Parser::nameOrCall() {
    const Token first = take();
    if (is(Tok::Open)) return call(first);
    Expr* e = make(ExprKind::Name, first.pos);
    e->name = m_lexer.nameOf(first);
    e->spacedName = first.kind == Tok::Quoted;
    e->end = first.end;
    while (is(Tok::Dot) || is(Tok::Bang)) {
        take();
        if (!isName()) fail(u"Nach dem Punkt fehlt ein Name."_s);
        const Token part = take();
        e->qualifier = e->name;
        e->name = m_lexer.nameOf(part);
        e->spacedName = true;
        e->end = part.end;
    }
    return e;
}

Expr* Parser::call(const Token& name) {
    const Nesting nesting(*this);
    Expr* e = make(ExprKind::Call, name.pos);
    e->name = m_lexer.nameOf(name);
    if (e->name.endsWith(u'$')) e->name.chop(1);
    take();
    if (is(Tok::Star) && peek(1).kind == Tok::Close) {
        take();
        e->form = CallForm::Star;
    } else if (!is(Tok::Close)) {
        if (is(Word::Distinct) && peek(1).kind != Tok::Close && peek(1).kind != Tok::Comma) {
            take();
            e->form = CallForm::Distinct;
        }
        e->operands = m_tree.arena.copy(list());
    }
    done(e, peek().end);
    expect(Tok::Close, u"Eine schließende Klammer fehlt."_s);
    return e;
}

std::vector<Expr*> Parser::list() {
    std::vector<Expr*> all;
    do {
        // A left-out argument stands for Null, as in Replace(a, b, c, , 2).
        if (is(Tok::Comma)) {
            all.push_back(make(ExprKind::Null, peek().pos));
            all.back()->end = peek().pos;
        } else {
            all.push_back(expression());
        }
    } while (accept(Tok::Comma));
    return all;
}

} // namespace jet
