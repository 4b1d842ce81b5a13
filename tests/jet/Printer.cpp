#include "Printer.h"

#include "jet/Parser.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

QStringView sign(Op op) {
    switch (op) {
    case Op::Equal:
        return u" = ";
    case Op::NotEqual:
        return u" <> ";
    case Op::Less:
        return u" < ";
    case Op::LessEqual:
        return u" <= ";
    case Op::Greater:
        return u" > ";
    case Op::GreaterEqual:
        return u" >= ";
    case Op::Add:
        return u" + ";
    case Op::Subtract:
        return u" - ";
    case Op::Multiply:
        return u" * ";
    case Op::Divide:
        return u" / ";
    case Op::IntDivide:
        return u" \\ ";
    case Op::Mod:
        return u" MOD ";
    case Op::Power:
        return u" ^ ";
    case Op::Concat:
        return u" & ";
    case Op::Xor:
        return u" XOR ";
    case Op::Eqv:
        return u" EQV ";
    case Op::Imp:
        return u" IMP ";
    case Op::None:
        break;
    }
    return u" ";
}

} // namespace

QString printed(QStringView text) {
    Tree tree;
    tree.text = text.toString();
    Parser(tree.text, tree).statement();
    return Printer::print(tree);
}

QString Printer::print(const Tree& tree) {
    Printer printer(tree);
    printer.statement();
    return printer.m_out;
}

void Printer::statement() {
    switch (m_tree.kind) {
    case Kind::Select:
    case Kind::SelectInto:
        if (m_tree.transform) {
            m_out += u"TRANSFORM ";
            expr(m_tree.transform);
            m_out += u' ';
        }
        query(m_tree.query);
        if (m_tree.pivot) {
            m_out += u" PIVOT ";
            expr(m_tree.pivot);
            if (!m_tree.pivotHeads.empty()) {
                m_out += u" IN (";
                list(m_tree.pivotHeads);
                m_out += u')';
            }
        }
        return;
    case Kind::Insert:
        return insert();
    case Kind::Update:
        return update();
    case Kind::Delete:
        return remove();
    default:
        structure();
    }
}

void Printer::name(QStringView name) {
    const QChar open = name.contains(u']') ? u'`' : u'[';
    m_out += open;
    m_out += name;
    m_out += open == u'[' ? u']' : u'`';
}

void Printer::list(std::span<Expr* const> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i) m_out += u", ";
        expr(values[i]);
    }
}

void Printer::query(const Query* q) {
    for (std::size_t i = 0; i < q->legs.size(); ++i) {
        const Leg& leg = q->legs[i];
        if (i) m_out += leg.all ? u" UNION ALL " : u" UNION ";
        if (leg.nested) {
            m_out += u'(';
            query(leg.nested);
            m_out += u')';
        } else {
            select(leg.select, q == m_tree.query && i == 0);
        }
    }
    for (std::size_t i = 0; i < q->orderBy.size(); ++i) {
        m_out += i ? u", " : u" ORDER BY ";
        expr(q->orderBy[i].expr);
        if (q->orderBy[i].descending) m_out += u" DESC";
    }
}

void Printer::select(const Select* s, bool outermost) {
    m_out += u"SELECT ";
    if (s->quantifier == Quantifier::Distinct) m_out += u"DISTINCT ";
    if (s->quantifier == Quantifier::DistinctRow) m_out += u"DISTINCTROW ";
    if (s->top >= 0) m_out += u"TOP "_s + QString::number(s->top) + (s->percent ? u" PERCENT "_s : u" "_s);
    for (std::size_t i = 0; i < s->items.size(); ++i) {
        const SelectItem& item = s->items[i];
        if (i) m_out += u", ";
        if (item.expr) {
            expr(item.expr);
        } else {
            if (!item.qualifier.isEmpty()) {
                name(item.qualifier);
                m_out += u'.';
            }
            m_out += u'*';
        }
        if (!item.alias.isEmpty()) {
            m_out += u" AS ";
            name(item.alias);
        }
    }
    if (outermost && m_tree.kind == Kind::SelectInto) {
        m_out += u" INTO ";
        name(m_tree.into);
    }
    if (!s->from.empty()) {
        m_out += u" FROM ";
        from(s->from);
    }
    if (s->where) {
        m_out += u" WHERE ";
        expr(s->where);
    }
    if (!s->groupBy.empty()) {
        m_out += u" GROUP BY ";
        list(s->groupBy);
    }
    if (s->having) {
        m_out += u" HAVING ";
        expr(s->having);
    }
}

void Printer::from(std::span<Source* const> sources) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (i) m_out += u", ";
        source(sources[i]);
    }
}

void Printer::source(const Source* s) {
    switch (s->form) {
    case Source::Form::Table:
        name(s->name);
        break;
    case Source::Form::Derived:
        m_out += u'(';
        query(s->query);
        m_out += u')';
        break;
    case Source::Form::Join: {
        auto side = [&](const Source* part) {
            const bool nested = part->form == Source::Form::Join;
            if (nested) m_out += u'(';
            source(part);
            if (nested) m_out += u')';
        };
        side(s->left);
        m_out += s->join == JoinKind::Left    ? u" LEFT JOIN "
                 : s->join == JoinKind::Right ? u" RIGHT JOIN "
                 : s->join == JoinKind::Cross ? u" CROSS JOIN "
                                              : u" INNER JOIN ";
        side(s->right);
        if (s->on) {
            m_out += u" ON ";
            expr(s->on);
        }
        return;
    }
    }
    if (!s->alias.isEmpty()) {
        m_out += u" AS ";
        name(s->alias);
    }
}

void Printer::literal(const Value& value) {
    if (value.isText()) {
        m_out += u'\'' + value.toText().replace(u'\'', u"''"_s) + u'\'';
    } else if (value.type() == Type::Date) {
        m_out += u'#' + value.toDate().toQDateTime().toString(u"yyyy-MM-dd hh:mm:ss"_s) + u'#';
    } else if (value.type() == Type::Long) {
        m_out += QString::number(value.toInteger());
    } else {
        QString text = QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        if (!text.contains(u'.') && !text.contains(u'e')) text += u".0"_s;
        m_out += text;
    }
}

void Printer::operand(const Expr* e) {
    const bool atom = e->kind == ExprKind::Literal || e->kind == ExprKind::Name ||
                      e->kind == ExprKind::Call || e->kind == ExprKind::True || e->kind == ExprKind::False ||
                      e->kind == ExprKind::Null || e->kind == ExprKind::Scalar;
    if (!atom) m_out += u'(';
    expr(e);
    if (!atom) m_out += u')';
}

void Printer::expr(const Expr* e) {
    auto a = [&](std::size_t i) { operand(e->operands[i]); };
    auto row = [&](QStringView joiner) {
        for (std::size_t i = 0; i < e->operands.size(); ++i) {
            if (i) m_out += joiner;
            a(i);
        }
    };
    auto subquery = [&] {
        m_out += u'(';
        query(e->query);
        m_out += u')';
    };
    const QStringView no = e->negated ? QStringView(u" NOT") : QStringView();
    switch (e->kind) {
    case ExprKind::Literal:
        return literal(*e->value);
    case ExprKind::True:
        m_out += u"True";
        return;
    case ExprKind::False:
        m_out += u"False";
        return;
    case ExprKind::Null:
        m_out += u"Null";
        return;
    case ExprKind::Name:
        if (!e->qualifier.isEmpty()) {
            name(e->qualifier);
            m_out += u'.';
        }
        if (!e->spacedName && e->qualifier.isEmpty())
            m_out += e->name; // a bare word may be a function without parentheses
        else
            name(e->name);
        return;
    case ExprKind::Negate:
        m_out += u'-';
        return a(0);
    case ExprKind::Plus:
        m_out += u'+';
        return a(0);
    case ExprKind::Not:
        m_out += u"NOT ";
        return a(0);
    case ExprKind::Binary:
        a(0);
        m_out += sign(e->op);
        return a(1);
    case ExprKind::All:
        return row(u" AND ");
    case ExprKind::Any:
        return row(u" OR ");
    case ExprKind::Between:
        a(0);
        m_out += no;
        m_out += u" BETWEEN ";
        a(1);
        m_out += u" AND ";
        return a(2);
    case ExprKind::In:
        a(0);
        m_out += no;
        m_out += u" IN ";
        if (e->query) return subquery();
        m_out += u'(';
        list(e->operands.subspan(1));
        m_out += u')';
        return;
    case ExprKind::Like:
        a(0);
        m_out += no;
        m_out += e->ansi ? u" ALIKE " : u" LIKE ";
        return a(1);
    case ExprKind::IsNull:
        a(0);
        m_out += e->negated ? u" IS NOT NULL" : u" IS NULL";
        return;
    case ExprKind::Call:
        m_out += e->name;
        m_out += u'(';
        if (e->form == CallForm::Star) m_out += u'*';
        if (e->form == CallForm::Distinct) m_out += u"DISTINCT ";
        list(e->operands);
        m_out += u')';
        return;
    case ExprKind::Scalar:
        return subquery();
    case ExprKind::Exists:
        m_out += u"EXISTS ";
        return subquery();
    case ExprKind::Compare:
        a(0);
        m_out += sign(e->op);
        m_out += e->negated ? u"ALL " : u"ANY ";
        return subquery();
    case ExprKind::Convert:
        return expr(e->operands[0]);
    }
}

void Printer::insert() {
    m_out += u"INSERT INTO ";
    name(m_tree.into);
    for (std::size_t i = 0; i < m_tree.columns.size(); ++i) {
        m_out += i ? u", " : u" (";
        name(m_tree.columns[i].name);
    }
    if (!m_tree.columns.empty()) m_out += u')';
    m_out += u' ';
    if (m_tree.query) return query(m_tree.query);
    for (std::size_t i = 0; i < m_tree.rows.size(); ++i) {
        m_out += i ? u", (" : u"VALUES (";
        list(m_tree.rows[i]);
        m_out += u')';
    }
}

void Printer::update() {
    m_out += u"UPDATE ";
    from(m_tree.from);
    for (std::size_t i = 0; i < m_tree.assignments.size(); ++i) {
        const Assignment& assignment = m_tree.assignments[i];
        m_out += i ? u", " : u" SET ";
        if (!assignment.qualifier.isEmpty()) {
            name(assignment.qualifier);
            m_out += u'.';
        }
        name(assignment.name);
        m_out += u" = ";
        expr(assignment.value);
    }
    if (!m_tree.where) return;
    m_out += u" WHERE ";
    expr(m_tree.where);
}

void Printer::remove() {
    m_out += u"DELETE ";
    if (!m_tree.deleteFrom.isEmpty()) {
        name(m_tree.deleteFrom);
        m_out += u".* ";
    }
    m_out += u"FROM ";
    from(m_tree.from);
    if (!m_tree.where) return;
    m_out += u" WHERE ";
    expr(m_tree.where);
}

} // namespace jet
