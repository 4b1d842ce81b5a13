#include "Binder.h"
#include "Emitter.h"
#include "Parser.h"

#include <jet/Translator.h>
#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace jet {

int Table::indexOf(QStringView column) const {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (column.compare(columns[i].name, Qt::CaseInsensitive) == 0) return int(i);
    return -1;
}

namespace {

/// How the head of a column meets a PIVOT expression of that type.
Encoding headEncoding(Type type) {
    if (type == Type::Boolean) return Encoding::Boolean;
    if (type == Type::Currency) return Encoding::Currency;
    if (type == Type::Date) return Encoding::Date;
    return isNumber(type) ? Encoding::Double : Encoding::Text;
}

} // namespace

struct Translator::Impl {
    const Catalogue& catalogue;
    std::shared_ptr<const Emitter> emitter;
    PivotHeads heads;

    void columns(const Query* q, Statement& s) const {
        for (const Output& o : q->outputs) {
            ResultColumn c;
            c.name = o.name.toString();
            c.type = o.type;
            if (o.source && o.source->table && o.column >= 0) {
                c.table = o.source->table->name;
                c.column = o.source->table->columns[std::size_t(o.column)].name;
            }
            s.columns.push_back(c);
        }
    }

    // Rows of one table, shown as they are, can be changed.
    [[nodiscard]] static bool changeable(const Query* q) {
        if (q->legs.size() != 1 || !q->legs[0].select) return false;
        const Select* s = q->legs[0].select;
        return s->from.size() == 1 && s->from[0]->form == Source::Form::Table && !s->grouped && s->top < 0 &&
               s->quantifier != Quantifier::Distinct;
    }

    void select(const Tree& tree, Writer& w, Statement& s) const {
        columns(tree.query, s);
        w.query(tree.query, Rows::Ordered);
        s.sql = w.out;
        // A set with thousands of literals is rather read at once than row by row.
        if (!changeable(tree.query) || s.parameters.size() > 2000) return;
        s.dynaset.emplace();
        w.dynaset(tree.query, *s.dynaset);
    }

    void pivot(const Tree& tree, Writer& w, Statement& s, QStringView text) const {
        s.reusable = false;
        std::vector<Value> values;
        const Type type = tree.pivot->type;
        if (tree.pivotHeads.empty()) {
            Statement question;
            question.reusable = false;
            question.tables = s.tables;
            question.columns.push_back({u"Kopf"_s, type, {}, {}});
            Writer head(*emitter, question.parameters);
            head.pivotHeads(tree);
            question.sql = head.out;
            if (!heads) throw RuntimeError(3129, u"TRANSFORM ist hier nicht möglich."_s);
            Lifted lifted;
            lift(text, lifted);
            values = heads(question, lifted.literals);
            if (values.size() > 1000) throw RuntimeError(3163, u"Zu viele Spaltenüberschriften."_s);
        } else {
            for (const Expr* e : tree.pivotHeads) {
                if (e->kind == ExprKind::Literal)
                    values.push_back(*e->value);
                else if (e->kind == ExprKind::Name)
                    values.emplace_back(e->name);
                else if (e->kind == ExprKind::Null)
                    values.emplace_back();
                else if (e->kind == ExprKind::True || e->kind == ExprKind::False)
                    values.emplace_back(e->kind == ExprKind::True);
                else
                    raiseSyntax(u"Nach PIVOT .. IN stehen nur Konstanten."_s, text, e->pos);
            }
        }
        columns(tree.query, s);
        std::vector<QByteArray> literals;
        for (const Value& v : values) {
            QByteArray literal;
            emitter->literal(literal, encode(v, headEncoding(type)));
            literals.push_back(literal);
            QString name = v.isNull()                  ? u"<>"_s
                           : v.type() == Type::Boolean ? (v.toBool() ? u"-1"_s : u"0"_s)
                                                       : v.toText();
            name.replace(u'.', u'_');
            for (int i = 1; std::any_of(
                     s.columns.begin(), s.columns.end(),
                     [&](const ResultColumn& c) { return c.name.compare(name, Qt::CaseInsensitive) == 0; });
                 ++i)
                name = v.toText() + QString::number(i);
            s.columns.push_back({name, tree.transform->type, {}, {}});
        }
        w.pivot(tree, literals);
        s.sql = w.out;
    }

    void selectInto(Tree& tree, Writer& w, Statement& s) const {
        Ddl ddl;
        ddl.table = tree.into.toString();
        tree.query->named = true;
        w.out += "INSERT INTO ";
        w.name(tree.into);
        w.out += " (";
        for (const Output& o : tree.query->outputs) {
            Column c;
            c.name = o.name.toString();
            c.type = o.type == Type::Null ? Type::Text : o.type;
            if (c.type == Type::Text) c.size = 255;
            if (o.source && o.source->table && o.column >= 0) {
                const Column& from = o.source->table->columns[std::size_t(o.column)];
                c.size = from.size;
            }
            if (!ddl.add.empty()) w.out += ", ";
            w.name(o.name);
            ddl.add.push_back(c);
        }
        w.out += ") SELECT ";
        w.storedOutputs(*tree.query);
        w.out += " FROM (";
        w.query(tree.query, Rows::Ordered);
        w.out += ") AS \"%s\" WHERE true";
        if (!tree.emptyTable) s.sql = w.out;
        s.ddl = ddl;
        s.target = ddl.table;
    }
};

Translator::Translator(const Catalogue& catalogue, std::shared_ptr<const Emitter> emitter)
    : m_impl(new Impl{catalogue, std::move(emitter), {}}) {}

Translator::~Translator() = default;

void Translator::setPivotHeads(PivotHeads heads) { m_impl->heads = std::move(heads); }

std::shared_ptr<const Statement> Translator::translate(QStringView text) const {
    Tree tree;
    tree.text = text.toString();
    Parser(tree.text, tree).statement();
    Binder binder(m_impl->catalogue, tree);
    binder.statement();
    auto s = std::make_shared<Statement>();
    s->kind = tree.kind;
    s->tables = binder.tables();
    Writer w(*m_impl->emitter, s->parameters);
    w.out.reserve(text.size() * 2 + 64);
    switch (tree.kind) {
    case Kind::Select:
        if (tree.transform)
            m_impl->pivot(tree, w, *s, tree.text);
        else
            m_impl->select(tree, w, *s);
        break;
    case Kind::SelectInto:
        m_impl->selectInto(tree, w, *s);
        break;
    case Kind::Insert:
        w.insert(tree);
        s->sql = w.out;
        break;
    case Kind::Update:
        w.update(tree);
        s->sql = w.out;
        break;
    case Kind::Delete:
        w.remove(tree);
        s->sql = w.out;
        break;
    default:
        s->ddl = std::move(tree.ddl);
        s->target = s->ddl->table;
    }
    m_impl->emitter->finish(s->sql, s->parameters.size());
    if (w.hangsOnValues()) s->reusable = false;
    if (tree.table) s->target = tree.table->name;
    return s;
}

std::shared_ptr<const Statement> Translator::translateFind(const Statement& dynaset, int dynasetLiterals,
                                                           QStringView criteria) const {
    if (!dynaset.dynaset)
        throw RuntimeError(3251, u"Diese Operation wird für diesen Objekttyp nicht unterstützt."_s);
    Tree tree;
    tree.text = criteria.toString();
    Expr* e = Parser(tree.text, tree).wholeExpression();
    Source* base = tree.arena.make<Source>();
    base->name = dynaset.dynaset->table;
    // The criteria see the table under the name that it has in the dynaset.
    const QByteArray& from = dynaset.dynaset->from;
    if (const qsizetype at = from.indexOf("\" AS \""); at >= 0) {
        QByteArray alias = from.mid(at + 6);
        alias.chop(1);
        tree.names.push_back(QString::fromUtf8(alias).replace(u"\"\""_s, u"\""_s));
        base->alias = tree.names.back();
    }
    Binder binder(m_impl->catalogue, tree);
    e = binder.condition(e, base);
    auto s = std::make_shared<Statement>();
    s->parameters = dynaset.parameters;
    s->tables = binder.tables();
    s->columns.push_back({u"Schlüssel"_s, Type::Long, {}, {}});
    Writer w(*m_impl->emitter, s->parameters);
    w.shiftLiterals(dynasetLiterals);
    const Dynaset& d = *dynaset.dynaset;
    w.out = "SELECT " + d.key + " FROM " + d.from + " WHERE ";
    if (!d.where.isEmpty()) w.out += '(' + d.where + ") AND (";
    w.filter(e);
    if (!d.where.isEmpty()) w.out += ')';
    w.out += " ORDER BY " + (d.orderBy.isEmpty() ? d.key : d.orderBy) + " LIMIT 1";
    s->sql = w.out;
    return s;
}

} // namespace jet
