#include "Binder.h"
#include "Emitter.h"
#include "Parser.h"

namespace jet {

const char* operatorFunction(const Expr& e) {
    switch (e.op) {
    case Op::Divide:
        return "jet_divide";
    case Op::IntDivide:
        return "jet_intdivide";
    case Op::Mod:
        return "jet_mod";
    case Op::Power:
        return "jet_power";
    case Op::Multiply: {
        const bool money = e.operands[0]->type == Type::Currency && e.operands[1]->type == Type::Currency;
        return money ? "jet_multiply" : nullptr;
    }
    default:
        return nullptr;
    }
}

void Writer::parameter(const Expr* literal, Encoding encoding) {
    if (literal->literal < 0) return m_engine.literal(out, encode(*literal->value, encoding));
    if (m_parameters.size() >= m_engine.mostParameters()) {
        m_hangsOnValues = true;
        return m_engine.literal(out, encode(*literal->value, encoding));
    }
    const Type type = encoding >= Encoding::LikePrefixLow ? Type::Text : literal->type;
    const int number = literal->literal + m_shift;
    // The parameters of one literal form a chain: with thousands of literals nobody can look through all.
    if (m_lastOf.size() <= std::size_t(number)) m_lastOf.resize(std::size_t(number) + 16, -1);
    m_previous.resize(m_parameters.size(), -1);
    int i = m_lastOf[std::size_t(number)];
    while (i >= 0 && m_parameters[std::size_t(i)].encoding != encoding)
        i = m_previous[std::size_t(i)];
    if (i < 0) {
        i = int(m_parameters.size());
        m_parameters.push_back({number, encoding, type});
        m_previous.push_back(m_lastOf[std::size_t(number)]);
        m_lastOf[std::size_t(number)] = i;
    }
    m_bound = true;
    m_engine.parameter(out, i + 1, type);
}

void Writer::givenParameter(Encoding what) {
    int& index = m_given[std::size_t(what) - std::size_t(Encoding::Today)];
    const Type type = what == Encoding::Identity ? Type::Long
                      : what == Encoding::Timer  ? Type::Double
                                                 : Type::Date;
    if (index < 0) {
        index = int(m_parameters.size());
        m_parameters.push_back({-1, what, type});
    }
    m_bound = true;
    m_engine.parameter(out, index + 1, type);
}

bool Writer::beginLikeRange(const Expr* like) {
    const Expr* text = like->operands[0];
    const Expr* pattern = like->operands[1];
    while (text->target)
        text = text->target;
    const bool column =
        text->kind == ExprKind::Name && text->source && text->source->table && isText(text->type);
    if (like->negated || like->ansi || !column || pattern->kind != ExprKind::Literal ||
        pattern->literal < 0 || pattern->literalClass != LiteralClass::PrefixedPattern)
        return false;
    out += '(';
    value(text);
    out += " >= ";
    parameter(pattern, Encoding::LikePrefixLow);
    out += " AND ";
    value(text);
    out += " < ";
    parameter(pattern, Encoding::LikePrefixHigh);
    out += " AND ";
    return true;
}

void Writer::columnName(const Source* s, int column) {
    name(!s->alias.isEmpty() ? s->alias : s->table ? QStringView(s->table->name) : s->name);
    out += '.';
    if (column < 0)
        out += m_engine.rowKey();
    else
        name(s->table ? QStringView(s->table->columns[std::size_t(column)].name)
                      : s->query->outputs[std::size_t(column)].name);
}

void Writer::checkSize() const {
    if (out.size() > 16'000'000) raiseTooComplex(-1);
}

namespace {

const Expr* plain(const Expr* e) {
    while (e->target)
        e = e->target;
    return e;
}

} // namespace

// The parts of a grouped select that stand in GROUP BY are written as they stand there. Two expressions of
// GROUP BY may differ in their literals alone; then these decide.
const Writer::Group* Writer::groupOf(const Expr* e) {
    const Group* found = nullptr;
    for (const Group& g : m_context.groups) {
        if (!(g.everywhere || m_context.shown) || e->kind != g.e->kind || !sameExpr(e, g.e)) continue;
        if (!found) {
            found = &g;
            continue;
        }
        m_hangsOnValues = true;
        if (!sameLiterals(e, found->e) && sameLiterals(e, g.e)) found = &g;
    }
    return found;
}

void Writer::group(const Group& g) {
    if (m_context.shown && isText(g.e->type))
        alike(g.text);
    else
        out += g.text;
}

// Of the texts of a group, which differ in case alone, the same one is shown whatever the engine met first.
void Writer::alike(const QByteArray& text) {
    out += "min(" + text + m_engine.byteCollation() + ')' + m_engine.collation();
}

void Writer::operand(const Expr* e) {
    e = plain(e);
    const bool atom =
        !m_engine.yieldsTruth(e) &&
        (e->kind == ExprKind::Literal || e->kind == ExprKind::Name || e->kind == ExprKind::Call ||
         e->kind == ExprKind::Scalar || e->kind == ExprKind::Null || e->kind == ExprKind::True ||
         e->kind == ExprKind::False || e->kind == ExprKind::Convert);
    if (!atom) out += '(';
    value(e);
    if (!atom) out += ')';
}

void Writer::operandAs(const Expr* e, Type type) {
    e = plain(e);
    if (e->type == Type::Null && type != Type::Null) return m_engine.untyped(*this, e, type);
    operand(e);
}

void Writer::value(const Expr* e) {
    e = plain(e);
    if (const Group* g = groupOf(e))
        group(*g);
    else if (m_engine.yieldsTruth(e))
        m_engine.truth(*this, e);
    else
        raw(e);
}

void Writer::valueAs(const Expr* e, Type type) {
    e = plain(e);
    if (e->type == Type::Null && type != Type::Null) return m_engine.untyped(*this, e, type);
    value(e);
}

void Writer::condition(const Expr* e) { m_engine.condition(*this, plain(e)); }

void Writer::text(const Expr* e) {
    e = plain(e);
    if (!isText(e->type) || e->collated || e->kind == ExprKind::Null) return value(e);
    if (const Group* g = groupOf(e)) return group(*g);
    operand(e);
    out += m_engine.collation();
}

void Writer::list(std::span<Expr* const> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i) out += ", ";
        value(values[i]);
    }
}

// Long rows of AND and OR are written as a balanced tree, since engines limit the height of theirs.
void Writer::chain(std::span<Expr* const> operands, const char* joiner) {
    if (operands.size() > 64) {
        const std::size_t half = operands.size() / 2;
        out += '(';
        chain(operands.first(half), joiner);
        out += ')';
        out += joiner;
        out += '(';
        chain(operands.subspan(half), joiner);
        out += ')';
        return;
    }
    for (std::size_t i = 0; i < operands.size(); ++i) {
        if (i) out += joiner;
        loose(operands[i]);
    }
}

// A condition beside others.
void Writer::loose(const Expr* e) {
    e = plain(e);
    const bool bracketed = e->kind == ExprKind::All || e->kind == ExprKind::Any || e->kind == ExprKind::Not ||
                           e->kind == ExprKind::Binary || e->kind == ExprKind::Convert ||
                           e->kind == ExprKind::Between;
    if (bracketed) out += '(';
    condition(e);
    if (bracketed) out += ')';
}

// "IsNumeric(x) AND CLng(x) > 5": what may fail waits for what stands before it. The rest is told as well
// outside of that, so that an index can serve it.
void Writer::filter(const Expr* e) {
    e = plain(e);
    const auto& terms = e->operands;
    std::size_t failing = 1;
    if (e->kind == ExprKind::All && m_engine.reordersConditions())
        while (failing < terms.size() && !mayFail(terms[failing]))
            ++failing;
    else
        failing = terms.size();
    if (e->kind != ExprKind::All || failing >= terms.size()) return condition(e);
    for (const Expr* term : terms) {
        if (mayFail(term)) continue;
        loose(term);
        out += " AND ";
    }
    out += "CASE WHEN ";
    chain(std::span<Expr* const>(terms).first(failing), " AND ");
    out += " THEN ";
    chain(std::span<Expr* const>(terms).subspan(failing), " AND ");
    out += " END";
}

void Writer::raw(const Expr* e) {
    checkSize();
    while (e->target)
        e = e->target;
    switch (e->kind) {
    case ExprKind::Literal:
        return parameter(e, e->encoding);
    case ExprKind::True:
    case ExprKind::False:
        return m_engine.truthLiteral(out, e->kind == ExprKind::True, e->type);
    case ExprKind::Null:
        return m_engine.null(out, e->type);
    case ExprKind::Name:
        return columnName(e->source, e->column);
    case ExprKind::Negate:
        return m_engine.negate(*this, e->operands[0]);
    case ExprKind::Plus:
        return operand(e->operands[0]);
    case ExprKind::Not:
        out += "NOT (";
        condition(e->operands[0]);
        out += ')';
        return;
    case ExprKind::All:
        return chain(e->operands, " AND ");
    case ExprKind::Any:
        return chain(e->operands, " OR ");
    case ExprKind::Binary:
        switch (e->op) {
        case Op::Equal:
        case Op::NotEqual:
        case Op::Less:
        case Op::LessEqual:
        case Op::Greater:
        case Op::GreaterEqual:
            return comparison(e);
        case Op::Xor:
        case Op::Eqv:
            out += "(NOT (";
            condition(e->operands[0]);
            out += e->op == Op::Xor ? ")) <> (NOT (" : ")) = (NOT (";
            condition(e->operands[1]);
            out += "))";
            return;
        case Op::Imp:
            out += "NOT (";
            condition(e->operands[0]);
            out += ") OR (";
            condition(e->operands[1]);
            out += ')';
            return;
        case Op::Concat:
            return concat(e);
        default:
            return m_engine.arithmetic(*this, e);
        }
    case ExprKind::Between:
        return between(e);
    case ExprKind::In:
        return inList(e);
    case ExprKind::Like:
        return m_engine.like(*this, e);
    case ExprKind::IsNull:
        operand(e->operands[0]);
        out += e->negated ? " IS NOT NULL" : " IS NULL";
        return;
    case ExprKind::Call:
        return callExpr(e);
    case ExprKind::Scalar:
        return scalar(e->query);
    case ExprKind::Exists:
        out += "EXISTS (";
        query(e->query, Rows::Free);
        out += ')';
        return;
    case ExprKind::Compare:
        return quantified(e);
    case ExprKind::Convert:
        return m_engine.convert(*this, e->operands[0], e->type);
    }
}

namespace {

const char* comparisonSign(Op op) {
    switch (op) {
    case Op::Equal:
        return " = ";
    case Op::NotEqual:
        return " <> ";
    case Op::Less:
        return " < ";
    case Op::LessEqual:
        return " <= ";
    case Op::Greater:
        return " > ";
    default:
        return " >= ";
    }
}

} // namespace

void Writer::collate(const Expr* e) {
    if (isText(e->type)) out += m_engine.collation();
}

void Writer::comparison(const Expr* e) {
    const Expr* a = plain(e->operands[0]);
    const Expr* b = plain(e->operands[1]);
    operandAs(a, b->type);
    if ((isText(a->type) || isText(b->type)) && !a->collated && !b->collated) out += m_engine.collation();
    out += comparisonSign(e->op);
    operandAs(b, a->type);
}

namespace {

/// That of the first operand which has one.
Type commonTypeOf(std::span<Expr* const> operands) {
    for (const Expr* e : operands)
        if (e->type != Type::Null) return e->type;
    return Type::Null;
}

} // namespace

void Writer::between(const Expr* e) {
    const Expr* a = plain(e->operands[0]);
    const Type type = commonTypeOf(e->operands);
    operandAs(a, type);
    if (isText(a->type) && !a->collated) collate(a);
    out += e->negated ? " NOT BETWEEN " : " BETWEEN ";
    operandAs(e->operands[1], type);
    out += " AND ";
    operandAs(e->operands[2], type);
}

void Writer::inList(const Expr* e) {
    const Expr* a = plain(e->operands[0]);
    const Type type = e->query ? e->query->outputs[0].type : commonTypeOf(e->operands);
    operandAs(a, type);
    if (isText(a->type) && !a->collated) collate(a);
    out += e->negated ? " NOT IN (" : " IN (";
    if (e->query) {
        query(e->query, Rows::Free);
    } else {
        for (std::size_t i = 1; i < e->operands.size(); ++i) {
            if (i > 1) out += ", ";
            valueAs(e->operands[i], type);
        }
    }
    out += ')';
}

// x op ANY (q), x op ALL (q). Where no row decides, one that compares with Null leaves it open.
void Writer::quantified(const Expr* e) {
    auto left = [&] {
        operandAs(e->operands[0], e->query->outputs[0].type);
        collate(e->operands[0]);
        out += comparisonSign(e->op);
    };
    if (m_engine.quantifies()) {
        left();
        out += e->negated ? "ALL (" : "ANY (";
        query(e->query, Rows::Free);
        out += ')';
        return;
    }
    out += e->negated ? "(SELECT CASE WHEN count(*) FILTER (WHERE NOT c) THEN 0 "
                      : "(SELECT CASE WHEN count(*) FILTER (WHERE c) THEN 1 ";
    out += e->negated ? "WHEN count(c) < count(*) THEN NULL ELSE 1 END FROM (SELECT "
                      : "WHEN count(c) < count(*) THEN NULL ELSE 0 END FROM (SELECT ";
    left();
    out += "\"%any\".";
    name(e->query->outputs[0].name);
    out += " AS c FROM (";
    query(e->query, Rows::Free);
    out += ") AS \"%any\"))";
}

// Of several rows the first counts.
void Writer::scalar(const Query* q) {
    const Select* s = q->legs.size() == 1 ? q->legs[0].select : nullptr;
    const bool single = s && ((s->grouped && s->groupBy.empty()) || s->from.empty());
    const bool limited = s && s->top >= 0;
    out += limited ? "(SELECT * FROM (" : "(";
    query(q, single ? Rows::Free : Rows::Ordered);
    if (limited) out += ") AS \"%s\"";
    if (!single) out += " LIMIT 1";
    out += ')';
}

// Null is an empty text.
void Writer::concat(const Expr* e) {
    concatPart(e->operands[0]);
    out += " || ";
    concatPart(e->operands[1]);
}

void Writer::concatPart(const Expr* e) {
    e = plain(e);
    if (e->kind == ExprKind::Literal || (e->kind == ExprKind::Binary && e->op == Op::Concat))
        return valueAs(e, Type::Text);
    out += m_engine.otherwise();
    out += '(';
    valueAs(e, Type::Text);
    out += ", '')";
}

void Writer::callExpr(const Expr* e) {
    using Form = FunctionInfo::Form;
    const FunctionInfo* f = e->function;
    const auto& args = e->operands;
    if (f->isAggregate()) {
        // Inside an aggregate everything is the rows' own.
        const auto groups = std::exchange(m_context.groups, {});
        m_engine.aggregate(*this, e, m_filter);
        m_context.groups = groups;
        return;
    }
    const bool countKnown = args.size() == 2 && args[1]->kind == ExprKind::Literal &&
                            args[1]->literalClass == LiteralClass::Integer;
    switch (f->form) {
    case Form::IIf:
    case Form::Switch:
    case Form::Choose:
    case Form::Nz:
        return choice(e);
    case Form::IsNull:
        operand(args[0]);
        out += " IS NULL";
        return;
    case Form::Len:
    case Form::Trim:
    case Form::LTrim:
    case Form::RTrim:
        out += f->sql;
        out += '(';
        valueAs(args[0], Type::Text);
        out += ')';
        return;
    case Form::Abs:
        return m_engine.absolute(*this, args[0]);
    case Form::Left:
        if (!countKnown) return m_engine.call(*this, f->sql, args);
        return m_engine.beginning(*this, args[0], args[1]);
    case Form::Right:
        if (!countKnown) return m_engine.call(*this, f->sql, args);
        return m_engine.ending(*this, args[0], args[1]);
    case Form::Clock:
        return m_engine.clock(*this, f->sql);
    case Form::Identity:
        return givenParameter(Encoding::Identity);
    default:
        return m_engine.call(*this, f->sql, args);
    }
}

void Writer::choice(const Expr* e) {
    using Form = FunctionInfo::Form;
    const auto& args = e->operands;
    switch (e->function->form) {
    case Form::IIf:
        out += "CASE WHEN ";
        condition(args[0]);
        out += " THEN ";
        valueAs(args[1], e->type);
        if (args.size() > 2) {
            out += " ELSE ";
            valueAs(args[2], e->type);
        }
        break;
    case Form::Switch:
        out += "CASE";
        for (std::size_t i = 0; i + 1 < args.size(); i += 2) {
            out += " WHEN ";
            condition(args[i]);
            out += " THEN ";
            valueAs(args[i + 1], e->type);
        }
        break;
    case Form::Choose:
        out += "CASE ";
        if (isWhole(args[0]->type))
            operand(args[0]);
        else
            m_engine.convert(*this, args[0], Type::Long);
        for (std::size_t i = 1; i < args.size(); ++i) {
            out += " WHEN " + QByteArray::number(qulonglong(i)) + " THEN ";
            valueAs(args[i], e->type);
        }
        break;
    default:
        out += m_engine.otherwise();
        out += '(';
        valueAs(args[0], e->type);
        out += ", ";
        if (args.size() > 1)
            valueAs(args[1], e->type);
        else
            out += isText(e->type) || e->type == Type::Null ? "''" : "0";
        out += ')';
        return;
    }
    out += " END";
}

} // namespace jet
