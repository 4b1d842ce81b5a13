#include "Binder.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

Encoding encodingOf(Type type) {
    switch (type) {
    case Type::Boolean:
        return Encoding::Boolean;
    case Type::Byte:
        return Encoding::Byte;
    case Type::Short:
        return Encoding::Short;
    case Type::Long:
        return Encoding::Integer;
    case Type::Single:
        return Encoding::Single;
    case Type::Double:
        return Encoding::Double;
    case Type::Currency:
        return Encoding::Currency;
    case Type::Date:
        return Encoding::Date;
    case Type::Text:
    case Type::Memo:
        return Encoding::Text;
    case Type::Null:
        break;
    }
    return Encoding::AsIs;
}

/// Both are kept alike, so that one may stand for the other.
bool sameStorage(Type from, Type to) {
    if (from == to || from == Type::Null || to == Type::Null) return true;
    if (isText(from) && isText(to)) return true;
    if (to == Type::Double || to == Type::Single) return isReal(from) || isWhole(from) || from == Type::Date;
    if (to == Type::Boolean || to == Type::Date) return false; // not each number is a date
    return isWhole(from) && isWhole(to);
}

} // namespace

// A literal, perhaps with a sign.
const Expr* Binder::plainLiteral(const Expr* e) {
    while (e->kind == ExprKind::Negate || e->kind == ExprKind::Plus)
        e = e->operands[0];
    return e->kind == ExprKind::Literal ? e : nullptr;
}

bool Binder::fitsCurrency(const Expr* e) {
    if (e->type == Type::Currency || isWhole(e->type)) return true;
    const Expr* literal = plainLiteral(e);
    return literal &&
           (literal->literalClass == LiteralClass::Integer || literal->literalClass == LiteralClass::Money);
}

Expr* Binder::wrap(Expr* e, Type type) {
    Expr* c = m_tree.arena.make<Expr>();
    c->kind = ExprKind::Convert;
    c->pos = e->pos;
    c->end = e->end;
    c->type = type;
    c->bound = true;
    c->aggregate = e->aggregate;
    c->condition = type == Type::Boolean && !isText(e->type);
    c->operands = m_tree.arena.copy(std::vector<Expr*>{e});
    return c;
}

void Binder::convert(Expr*& e, Type type) {
    if (e->kind == ExprKind::Null) {
        e->type = type;
        return;
    }
    if (e->kind == ExprKind::Literal) {
        if (isText(e->type) != isText(type) || !sameStorage(e->type, type)) {
            e->encoding = encodingOf(type);
            e->type = type;
        }
        return;
    }
    if ((e->kind == ExprKind::Negate || e->kind == ExprKind::Plus) && plainLiteral(e) && isNumber(type) &&
        type != Type::Boolean && isNumber(e->type)) {
        convert(e->operands[0], type);
        e->type = type;
        return;
    }
    if (sameStorage(e->type, type)) return;
    e = wrap(e, type);
}

// Brings two sides of a comparison to one footing. A column stays bare where that is possible, so that its
// index can serve.
void Binder::compare(Expr*& a, Expr*& b, bool equality) {
    const Type ta = a->type, tb = b->type;
    if (ta == tb || ta == Type::Null || tb == Type::Null) return;
    if (isText(ta) && isText(tb)) return;
    if (isText(ta) || isText(tb)) {
        Expr*& text = isText(ta) ? a : b;
        Expr*& other = isText(ta) ? b : a;
        if (plainLiteral(text)) {
            const Type to = isWhole(other->type) && other->type != Type::Boolean ? Type::Double : other->type;
            return convert(text, to);
        }
        if (equality && plainLiteral(other)) return convert(other, Type::Text);
        return convert(text,
                       other->type == Type::Currency || isWhole(other->type) ? Type::Double : other->type),
               convert(other,
                       isWhole(other->type) || other->type == Type::Currency ? Type::Double : other->type);
    }
    if (ta == Type::Currency || tb == Type::Currency) {
        Expr*& money = ta == Type::Currency ? a : b;
        Expr*& other = ta == Type::Currency ? b : a;
        if (fitsCurrency(other)) return convert(other, Type::Currency);
        return convert(money, Type::Double);
    }
}

// The first operand against each of the others. A text that is no literal takes literals for texts, but
// beside a number that is none everything becomes a number; a literal text becomes what the others are.
void Binder::align(std::span<Expr*> operands) {
    bool texts = false;
    Type other = Type::Null, literal = Type::Null;
    for (const Expr* e : operands) {
        if (e->type == Type::Null) continue;
        if (isText(e->type))
            texts = texts || !plainLiteral(e);
        else if (plainLiteral(e))
            literal = e->type;
        else if (other != Type::Date)
            other = e->type;
    }
    if (texts) {
        const Type type = other == Type::Null ? Type::Text : other == Type::Date ? other : Type::Double;
        for (Expr*& e : operands)
            convert(e, type);
        return;
    }
    if (other == Type::Null) other = literal;
    if (other != Type::Null)
        for (Expr*& e : operands)
            if (isText(e->type)) convert(e, isWhole(other) && other != Type::Boolean ? Type::Double : other);
    const auto money = [](const Expr* e) { return e->type == Type::Currency; };
    if (std::any_of(operands.begin(), operands.end(), money)) {
        const bool exact = std::all_of(operands.begin(), operands.end(), [](const Expr* e) {
            return e->type == Type::Null || fitsCurrency(e);
        });
        for (Expr*& e : operands)
            if (exact ? isNumber(e->type) : money(e)) convert(e, exact ? Type::Currency : Type::Double);
    }
    for (Expr*& e : operands.subspan(1))
        compare(operands[0], e, true);
}

void Binder::assign(Expr*& e, const Column& column) {
    const Type to = column.type;
    if (e->kind == ExprKind::Null) {
        if (to == Type::Boolean) e->kind = ExprKind::False;
        e->type = to;
        return;
    }
    const Type from = e->type;
    if (plainLiteral(e) && !isText(to) && to != Type::Date) {
        // A whole number has its range with the sign, which the literal alone does not tell.
        if (e->kind != ExprKind::Literal && (isWhole(to) || !isNumber(from))) {
            e = wrap(e, to);
            return;
        }
        Expr* literal = e;
        while (literal->kind != ExprKind::Literal) {
            literal->type = to;
            literal = literal->operands[0];
        }
        literal->encoding = encodingOf(to);
        literal->type = to;
        return;
    }
    const bool computed = e->kind == ExprKind::Binary || e->kind == ExprKind::Negate ||
                          (e->kind == ExprKind::Call && e->function && e->function->isAggregate());
    switch (to) {
    case Type::Boolean:
        if (from != Type::Boolean) e = wrap(e, to);
        return;
    case Type::Byte:
    case Type::Short:
    case Type::Long:
        if (from == Type::Null || e->kind == ExprKind::True || e->kind == ExprKind::False) return;
        if (from != to || computed) e = wrap(e, to);
        return;
    case Type::Currency:
        if (from == Type::Currency && computed)
            e = wrap(e, to);
        else
            convert(e, to);
        return;
    default:
        convert(e, to);
    }
}

} // namespace jet
