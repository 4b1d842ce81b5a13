#include "Binder.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

void Binder::expr(Expr*& e, Scope* scope) {
    if (e->bound) return;
    e->bound = true;
    switch (e->kind) {
    case ExprKind::Literal:
        switch (e->literalClass) {
        case LiteralClass::Integer:
            e->type = Type::Long;
            break;
        case LiteralClass::BigInteger:
        case LiteralClass::Money:
        case LiteralClass::Double:
            e->type = Type::Double;
            break;
        case LiteralClass::Text:
        case LiteralClass::PrefixedPattern:
            e->type = Type::Text;
            break;
        case LiteralClass::Date:
            e->type = Type::Date;
            break;
        }
        return;
    case ExprKind::True:
    case ExprKind::False:
        e->type = Type::Boolean;
        return;
    case ExprKind::Null:
        return;
    case ExprKind::Name:
        return name(e, scope);
    case ExprKind::Negate:
    case ExprKind::Plus: {
        operands(e, scope);
        Expr*& a = e->operands[0];
        if (isText(a->type)) convert(a, Type::Double);
        e->type = a->type == Type::Boolean ? Type::Long : a->type == Type::Date ? Type::Double : a->type;
        return;
    }
    case ExprKind::Not:
    case ExprKind::All:
    case ExprKind::Any:
        operands(e, scope);
        for (Expr*& a : e->operands)
            toCondition(a);
        e->type = Type::Boolean;
        e->condition = true;
        return;
    case ExprKind::Binary: {
        operands(e, scope);
        binary(e);
        const bool singles = std::all_of(e->operands.begin(), e->operands.end(),
                                         [](const Expr* a) { return a->type == Type::Single; });
        if (singles && (e->op == Op::Add || e->op == Op::Subtract || e->op == Op::Multiply)) {
            e->type = Type::Double; // computed so, then narrowed
            e = wrap(e, Type::Single);
        }
        return;
    }
    case ExprKind::Between:
        operands(e, scope);
        align(e->operands);
        e->type = Type::Boolean;
        e->condition = true;
        return;
    case ExprKind::In:
    case ExprKind::Scalar:
    case ExprKind::Exists:
    case ExprKind::Compare:
        return subquery(e, scope);
    case ExprKind::Like:
        operands(e, scope);
        return like(e);
    case ExprKind::IsNull:
        operands(e, scope);
        e->type = Type::Boolean;
        e->condition = true;
        return;
    case ExprKind::Call:
        return call(e, scope);
    case ExprKind::Convert:
        return;
    }
}

void Binder::operands(Expr* e, Scope* scope) {
    for (Expr*& a : e->operands) {
        expr(a, scope);
        e->aggregate = e->aggregate || a->aggregate;
    }
}

void Binder::toCondition(Expr*& e) {
    if (isText(e->type)) convert(e, Type::Boolean);
}

void Binder::binary(Expr* e) {
    Expr*& a = e->operands[0];
    Expr*& b = e->operands[1];
    switch (e->op) {
    case Op::Equal:
    case Op::NotEqual:
    case Op::Less:
    case Op::LessEqual:
    case Op::Greater:
    case Op::GreaterEqual:
        compare(a, b, e->op == Op::Equal || e->op == Op::NotEqual);
        e->type = Type::Boolean;
        e->condition = true;
        return;
    case Op::Xor:
    case Op::Eqv:
    case Op::Imp:
        toCondition(a);
        toCondition(b);
        e->type = Type::Boolean;
        e->condition = true;
        return;
    case Op::Concat:
        convert(a, Type::Text);
        convert(b, Type::Text);
        e->type = a->type == Type::Memo || b->type == Type::Memo ? Type::Memo : Type::Text;
        return;
    default:
        return arithmetic(e);
    }
}

void Binder::arithmetic(Expr* e) {
    Expr*& a = e->operands[0];
    Expr*& b = e->operands[1];
    const bool textA = isText(a->type), textB = isText(b->type);
    if (e->op == Op::Add && (textA || textB) && (textA || a->type == Type::Null) &&
        (textB || b->type == Type::Null)) {
        e->type = commonType(a->type, b->type);
        return;
    }
    if (textA) convert(a, Type::Double);
    if (textB) convert(b, Type::Double);
    const Type ta = a->type, tb = b->type;
    switch (e->op) {
    case Op::Add:
    case Op::Subtract: {
        if (ta == Type::Date || tb == Type::Date) {
            if (ta == Type::Currency) convert(a, Type::Double);
            if (tb == Type::Currency) convert(b, Type::Double);
            e->type = ta == tb && e->op == Op::Subtract ? Type::Double : Type::Date;
            return;
        }
        Type type = commonType(ta, tb);
        if (isWhole(type)) type = Type::Long;
        if (type == Type::Currency || ta == Type::Currency || tb == Type::Currency) {
            convert(a, type);
            convert(b, type);
        }
        e->type = type;
        return;
    }
    case Op::Multiply:
        if ((ta == Type::Currency && (tb == Type::Currency || isWhole(tb))) ||
            (tb == Type::Currency && isWhole(ta))) {
            e->type = Type::Currency;
            return;
        }
        if (ta == Type::Currency) convert(a, Type::Double);
        if (tb == Type::Currency) convert(b, Type::Double);
        e->type = isWhole(ta) && isWhole(tb) ? Type::Long : Type::Double;
        return;
    case Op::IntDivide:
    case Op::Mod:
        e->type = Type::Long;
        return;
    default:
        if (ta == Type::Currency) convert(a, Type::Double);
        if (tb == Type::Currency) convert(b, Type::Double);
        e->type = Type::Double;
    }
}

void Binder::like(Expr* e) {
    for (Expr*& a : e->operands)
        convert(a, Type::Text);
    e->type = Type::Boolean;
    e->condition = true;
}

void Binder::subquery(Expr* e, Scope* scope) {
    operands(e, scope);
    if (e->query) {
        e->query->named = e->kind == ExprKind::Compare;
        query(e->query, scope);
    }
    e->type = Type::Boolean;
    e->condition = true;
    if (e->kind == ExprKind::Exists) return;
    if (e->query && e->query->outputs.size() != 1)
        fail(3306, u"Diese Unterabfrage darf nur eine Spalte liefern."_s, e->query->pos);
    if (e->kind == ExprKind::Scalar) {
        e->type = e->query->outputs[0].type;
        e->condition = false;
        return;
    }
    if (!e->query) return align(e->operands);
    Expr*& left = e->operands[0];
    const Type from = left->type, to = e->query->outputs[0].type;
    if (isText(from) != isText(to) && from != Type::Null && to != Type::Null)
        convert(left, isText(to) ? Type::Text : to == Type::Date ? Type::Date : Type::Double);
    if (to == Type::Currency && left->type != Type::Currency && left->type != Type::Null) {
        if (fitsCurrency(left))
            convert(left, Type::Currency);
        else
            convertOutput(e->query, 0, Type::Double);
    } else if (left->type == Type::Currency && to != Type::Currency && to != Type::Null)
        convert(left, Type::Double);
}

void Binder::call(Expr*& e, Scope* scope) {
    const FunctionInfo* f = findFunction(e->name);
    if (!f) fail(3085, u"Undefinierte Funktion '"_s + e->name + u"' in Ausdruck."_s, e->pos);
    e->function = f;
    const int count = e->form == CallForm::Star ? 1 : int(e->operands.size());
    if (count < f->least || (f->most >= 0 && count > f->most) ||
        (e->form == CallForm::Star && f->form != FunctionInfo::Form::Count) ||
        (e->form == CallForm::Distinct && !f->isAggregate()) ||
        (f->form == FunctionInfo::Form::Switch && count % 2))
        fail(3075,
             u"Falsche Anzahl von Argumenten in der Funktion '"_s + e->name + u"' (Stelle "_s +
                 QString::number(e->pos + 1) + u")."_s,
             e->pos);
    if (f->isAggregate()) return aggregate(e, scope);
    operands(e, scope);
    using Result = FunctionInfo::Result;
    using Form = FunctionInfo::Form;
    auto& args = e->operands;
    switch (f->form) {
    case Form::IIf:
    case Form::Switch:
    case Form::Choose:
    case Form::Nz:
        return choice(e);
    case Form::Domain:
        return domain(e);
    case Form::Eval:
        return eval(e);
    case Form::IsNull:
        e->condition = true;
        break;
    case Form::Len:
    case Form::Trim:
    case Form::LTrim:
    case Form::RTrim:
    case Form::Left:
    case Form::Right:
        convert(args[0], Type::Text);
        break;
    default:
        break;
    }
    switch (f->result) {
    case Result::Text:
        e->type = Type::Text;
        break;
    case Result::Boolean:
        e->type = Type::Boolean;
        break;
    case Result::Long:
        e->type = Type::Long;
        break;
    case Result::Double:
        e->type = Type::Double;
        break;
    case Result::Single:
        e->type = Type::Single;
        break;
    case Result::Currency:
        e->type = Type::Currency;
        break;
    case Result::Date:
        e->type = Type::Date;
        break;
    case Result::Number:
        if (isText(args[0]->type)) convert(args[0], Type::Double);
        e->type = args[0]->type == Type::Boolean ? Type::Long
                  : args[0]->type == Type::Null  ? Type::Double
                                                 : args[0]->type;
        break;
    case Result::First:
    case Result::Common:
        e->type = args.empty() ? Type::Null : args[0]->type;
        break;
    }
}

// IIf, Switch, Choose and Nz: the values are brought to the one type that holds them all.
void Binder::choice(Expr* e) {
    using Form = FunctionInfo::Form;
    const Form form = e->function->form;
    auto& args = e->operands;
    std::vector<Expr**> values;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const bool isCondition = (form == Form::IIf && i == 0) || (form == Form::Switch && i % 2 == 0);
        if (isCondition)
            toCondition(args[i]);
        else if (!(form == Form::Choose && i == 0))
            values.push_back(&args[i]);
    }
    // A number that is written with decimals joins money as money.
    bool money = false, allMoney = true;
    Type type = Type::Null;
    for (Expr* const* v : values) {
        type = commonType(type, (*v)->type);
        money = money || (*v)->type == Type::Currency;
        allMoney = allMoney && ((*v)->kind == ExprKind::Null || fitsCurrency(*v));
    }
    if (money && allMoney) type = Type::Currency;
    for (Expr** v : values)
        convert(*v, type);
    e->type = type;
}

void Binder::aggregate(Expr* e, Scope* scope) {
    if (m_inAggregate || !scope || !scope->aggregatesAllowed)
        fail(3096, u"Eine Aggregatfunktion ('"_s + e->name + u"') darf hier nicht stehen."_s, e->pos);
    scope->sawAggregate = true;
    e->aggregate = true;
    m_inAggregate = true;
    operands(e, scope);
    m_inAggregate = false;
    e->aggregate = true;
    e->type = Type::Long;
    if (e->operands.empty()) return;
    using Form = FunctionInfo::Form;
    Expr*& a = e->operands[0];
    switch (e->function->form) {
    case Form::Count:
        break;
    case Form::Sum:
        if (isText(a->type)) convert(a, Type::Double);
        e->type = a->type == Type::Currency ? Type::Currency : isWhole(a->type) ? Type::Long : Type::Double;
        break;
    case Form::Avg:
        if (isText(a->type)) convert(a, Type::Double);
        e->type = a->type == Type::Currency ? Type::Currency : Type::Double;
        break;
    case Form::Aggregate:
        e->type = e->function->result == FunctionInfo::Result::First ? a->type : Type::Double;
        break;
    default:
        e->type = a->type;
    }
}

namespace {

const Expr* meant(const Expr* e) {
    while (e->kind == ExprKind::Convert)
        e = e->operands[0];
    while (e->target)
        e = e->target;
    return e;
}

} // namespace

bool sameExpr(const Expr* a, const Expr* b) {
    a = meant(a);
    b = meant(b);
    if (a == b) return true;
    if (a->kind != b->kind || a->op != b->op || a->negated != b->negated || a->form != b->form ||
        a->ansi != b->ansi)
        return false;
    if (a->query || b->query || a->operands.size() != b->operands.size()) return false;
    if (a->kind == ExprKind::Name) return a->source && a->source == b->source && a->column == b->column;
    if (a->kind == ExprKind::Call && a->function != b->function) return false;
    for (std::size_t i = 0; i < a->operands.size(); ++i)
        if (!sameExpr(a->operands[i], b->operands[i])) return false;
    return true;
}

bool sameLiterals(const Expr* a, const Expr* b) {
    a = meant(a);
    b = meant(b);
    if (a->kind == ExprKind::Literal && b->kind == ExprKind::Literal) return *a->value == *b->value;
    for (std::size_t i = 0; i < a->operands.size() && i < b->operands.size(); ++i)
        if (!sameLiterals(a->operands[i], b->operands[i])) return false;
    return true;
}

bool mayFail(const Expr* e) {
    while (e->target)
        e = e->target;
    switch (e->kind) {
    case ExprKind::Binary:
        if (e->op == Op::Divide || e->op == Op::IntDivide || e->op == Op::Mod || e->op == Op::Power)
            return true;
        break;
    case ExprKind::Like:
        if (e->operands[1]->kind != ExprKind::Literal) return true;
        break;
    case ExprKind::Convert: {
        const Type from = e->operands[0]->type;
        const bool widens = isText(e->type) || (isReal(e->type) && !isText(from)) ||
                            (e->type == Type::Currency && isWhole(from)) ||
                            (e->type == Type::Boolean && !isText(from));
        if (!widens) return true;
        break;
    }
    case ExprKind::Call: {
        if (e->function->form != FunctionInfo::Form::Call) break;
        // These fail with no argument, but for those of a date that are given a text.
        static constexpr std::string_view safe[] = {
            "jet_day",        "jet_format",   "jet_hour",  "jet_instr",   "jet_isdate", "jet_isnumeric",
            "jet_lcase",      "jet_minute",   "jet_month", "jet_replace", "jet_second", "jet_strcomp",
            "jet_strreverse", "jet_typename", "jet_ucase", "jet_weekday", "jet_year"};
        const std::string_view name = e->function->sql;
        if (!std::binary_search(std::begin(safe), std::end(safe), name)) return true;
        const bool reads = e->function->result == FunctionInfo::Result::Long;
        if (reads && name != "jet_instr" && name != "jet_strcomp" && isText(e->operands[0]->type))
            return true;
        break;
    }
    default:
        break;
    }
    return std::any_of(e->operands.begin(), e->operands.end(), mayFail);
}

} // namespace jet
