#include "Emitter.h"
#include "Parser.h"

namespace jet {

void Writer::parameter(const Expr* literal, Encoding encoding) {
    if (literal->literal < 0) return m_engine.literal(out, encode(*literal->value, encoding));
    const int number = literal->literal + m_shift;
    // The parameters of one literal form a chain: with thousands of literals nobody can look through all.
    if (m_lastOf.size() <= std::size_t(number)) m_lastOf.resize(std::size_t(number) + 16, -1);
    m_previous.resize(m_parameters.size(), -1);
    int i = m_lastOf[std::size_t(number)];
    while (i >= 0 && m_parameters[std::size_t(i)].encoding != encoding)
        i = m_previous[std::size_t(i)];
    if (i < 0) {
        i = int(m_parameters.size());
        m_parameters.push_back(
            {number, encoding, encoding >= Encoding::LikePrefixLow ? Type::Text : literal->type});
        m_previous.push_back(m_lastOf[std::size_t(number)]);
        m_lastOf[std::size_t(number)] = i;
    }
    m_bound = true;
    m_engine.parameter(out, i + 1);
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

void Writer::operand(const Expr* e) {
    while (e->target)
        e = e->target;
    const bool atom = !e->condition && (e->kind == ExprKind::Literal || e->kind == ExprKind::Name ||
                                        e->kind == ExprKind::Call || e->kind == ExprKind::Scalar ||
                                        e->kind == ExprKind::Null || e->kind == ExprKind::True ||
                                        e->kind == ExprKind::False || e->kind == ExprKind::Convert);
    if (!atom) out += '(';
    value(e);
    if (!atom) out += ')';
}

void Writer::value(const Expr* e) {
    while (e->target)
        e = e->target;
    if (e->condition)
        m_engine.truth(*this, e);
    else
        raw(e);
}

void Writer::condition(const Expr* e) { raw(e); }

void Writer::text(const Expr* e) {
    while (e->target)
        e = e->target;
    if (!isText(e->type) || e->collated || e->kind == ExprKind::Null) return value(e);
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
        const Expr* e = operands[i];
        while (e->target)
            e = e->target;
        const bool loose = e->kind == ExprKind::All || e->kind == ExprKind::Any || e->kind == ExprKind::Not ||
                           e->kind == ExprKind::Binary || e->kind == ExprKind::Convert ||
                           e->kind == ExprKind::Between;
        if (loose) out += '(';
        condition(e);
        if (loose) out += ')';
    }
}

void Writer::raw(const Expr* e) {
    checkSize();
    while (e->target)
        e = e->target;
    switch (e->kind) {
    case ExprKind::Literal:
        return parameter(e, e->encoding);
    case ExprKind::True: {
        out += e->type == Type::Currency ? "(-10000)" : "(-1)";
        return;
    }
    case ExprKind::False:
        out += '0';
        return;
    case ExprKind::Null:
        out += "NULL";
        return;
    case ExprKind::Name:
        return columnName(e->source, e->column);
    case ExprKind::Negate:
        out += '-';
        return operand(e->operands[0]);
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
            return m_engine.concat(*this, e);
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
        out += '(';
        query(e->query);
        out += ')';
        return;
    case ExprKind::Exists:
        out += "EXISTS (";
        query(e->query);
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

const Expr* plain(const Expr* e) {
    while (e->target)
        e = e->target;
    return e;
}

} // namespace

void Writer::collate(const Expr* e) {
    if (isText(e->type)) out += m_engine.collation();
}

void Writer::comparison(const Expr* e) {
    const Expr* a = plain(e->operands[0]);
    const Expr* b = plain(e->operands[1]);
    operand(a);
    if ((isText(a->type) || isText(b->type)) && !a->collated && !b->collated) out += m_engine.collation();
    out += comparisonSign(e->op);
    operand(b);
}

void Writer::between(const Expr* e) {
    const Expr* a = plain(e->operands[0]);
    operand(a);
    if (isText(a->type) && !a->collated) collate(a);
    out += e->negated ? " NOT BETWEEN " : " BETWEEN ";
    operand(e->operands[1]);
    out += " AND ";
    operand(e->operands[2]);
}

void Writer::inList(const Expr* e) {
    const Expr* a = plain(e->operands[0]);
    operand(a);
    if (isText(a->type) && !a->collated) collate(a);
    out += e->negated ? " NOT IN (" : " IN (";
    if (e->query)
        query(e->query);
    else
        list(e->operands.subspan(1));
    out += ')';
}

// x op ANY (q): there is a row that fulfils it; x op ALL (q): there is none that does not.
void Writer::quantified(const Expr* e) {
    out += e->negated ? "NOT EXISTS (SELECT 1 FROM (" : "EXISTS (SELECT 1 FROM (";
    query(e->query);
    out += ") AS \"%any\" WHERE ";
    if (e->negated) out += "NOT (";
    operand(e->operands[0]);
    collate(e->operands[0]);
    out += comparisonSign(e->op);
    out += "\"%any\".";
    name(e->query->outputs[0].name);
    if (e->negated) out += ')';
    out += ')';
}

void Writer::callExpr(const Expr* e) {
    using Form = FunctionInfo::Form;
    const FunctionInfo* f = e->function;
    const auto& args = e->operands;
    if (f->isAggregate()) return aggregate(e);
    auto plainCall = [&](const char* functionName) {
        out += functionName;
        out += '(';
        list(args);
        out += ')';
    };
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
    case Form::Abs:
        return plainCall(f->sql);
    case Form::Left:
        if (!countKnown) return m_engine.call(*this, f->sql, args);
        out += "substr(";
        value(args[0]);
        out += ", 1, ";
        value(args[1]);
        out += ')';
        return;
    case Form::Right:
        if (!countKnown) return m_engine.call(*this, f->sql, args);
        out += "substr(";
        value(args[0]);
        out += ", -";
        value(args[1]);
        out += ", ";
        value(args[1]);
        out += ')';
        return;
    default:
        return m_engine.call(*this, f->sql, args);
    }
}

void Writer::aggregate(const Expr* e) {
    using Form = FunctionInfo::Form;
    const FunctionInfo* f = e->function;
    const bool money = f->form == Form::Avg && e->type == Type::Currency;
    const bool countCell = f->form == Form::Count && !m_filter.isEmpty();
    if (money) out += "jet_tocurrency('d', ";
    if (countCell) out += "nullif(";
    out += f->sql;
    out += '(';
    if (e->form == CallForm::Distinct) out += "DISTINCT ";
    if (e->operands.empty()) {
        out += '*';
    } else if (f->form == Form::Aggregate) {
        out += '\'';
        out += letterOf(e->operands[0]->type);
        out += "', ";
        value(e->operands[0]);
    } else {
        text(e->operands[0]);
    }
    out += ')';
    out += m_filter;
    if (countCell) out += ", 0)";
    if (money) out += " / 10000.0)";
}

void Writer::choice(const Expr* e) {
    using Form = FunctionInfo::Form;
    const auto& args = e->operands;
    switch (e->function->form) {
    case Form::IIf:
        out += "CASE WHEN ";
        condition(args[0]);
        out += " THEN ";
        value(args[1]);
        if (args.size() > 2) {
            out += " ELSE ";
            value(args[2]);
        }
        break;
    case Form::Switch:
        out += "CASE";
        for (std::size_t i = 0; i + 1 < args.size(); i += 2) {
            out += " WHEN ";
            condition(args[i]);
            out += " THEN ";
            value(args[i + 1]);
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
            value(args[i]);
        }
        break;
    default:
        out += "ifnull(";
        value(args[0]);
        out += ", ";
        if (args.size() > 1)
            value(args[1]);
        else
            out += isText(e->type) || e->type == Type::Null ? "''" : "0";
        out += ')';
        return;
    }
    out += " END";
}

} // namespace jet
