#include "Binder.h"
#include "Parser.h"

#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

// Functions whose arguments are texts of the dialect: DLookup and the like, and Eval. They are read while the
// statement is translated. A text is put together from literals, which are read as they stand, and from
// values, which never become part of what is read: each is an operand, and a name stands for it.
namespace jet {

namespace {

/// In front of the number in such a name; no text may have it, so nobody else can write one.
constexpr char16_t marker = u'\uE0F0';
/// Such calls inside the texts of such calls.
constexpr int maxTexts = 4;

// What "a" & b & "c" joins, from left to right.
void collectPieces(Expr* e, std::vector<Expr*>& pieces) {
    while (e->target || e->kind == ExprKind::Convert)
        e = e->target ? e->target : e->operands[0];
    if (e->kind == ExprKind::Binary && (e->op == Op::Concat || (e->op == Op::Add && isText(e->type)))) {
        collectPieces(e->operands[0], pieces);
        collectPieces(e->operands[1], pieces);
    } else if (e->kind != ExprKind::Null)
        pieces.push_back(e);
}

// A literal that another statement of the same shape would have with another value is none to read.
bool isFixed(const Expr* e) {
    return e->kind == ExprKind::Literal && isText(e->value->type()) && e->literal < 0;
}

// Places inside of a text mean nothing outside of it.
void movePlaces(Expr* e, const Expr* call) {
    e->pos = call->pos;
    e->end = call->end;
    for (Expr* operand : e->operands)
        movePlaces(operand, call);
}

bool hasQuery(const Expr* e) {
    return e->query || std::any_of(e->operands.begin(), e->operands.end(), hasQuery);
}

} // namespace

Expr* Binder::splicedFor(const Expr* e) const {
    if (!e->qualifier.isEmpty() || e->name.isEmpty() || e->name.front() != marker) return nullptr;
    bool number = false;
    const std::size_t at = e->name.mid(1).toULongLong(&number);
    return number && at < m_spliced.size() ? m_spliced[at] : nullptr;
}

QString Binder::spliced(Expr* argument, const Expr* call) {
    std::vector<Expr*> pieces;
    collectPieces(argument, pieces);
    QString text;
    char16_t closes = 0; // what ends the quotes, brackets or date that the text is in
    qsizetype opened = 0;
    bool joined = false;
    for (Expr* piece : pieces) {
        if (!isFixed(piece)) {
            if (piece->kind == ExprKind::Literal && !isText(piece->value->type())) {
                // Being joined made a text of it where it stands.
                piece = m_tree.arena.make<Expr>(*piece);
                piece->bound = false;
                piece->encoding = Encoding::AsIs;
                expr(piece, nullptr);
            }
            const QString name = u'[' + QString(QChar(marker)) + QString::number(m_spliced.size()) + u']';
            if (closes == u'\'' || closes == u'"') {
                if (!std::exchange(joined, true)) text.insert(opened, u'(');
                text += QChar(closes) + u" & "_s + name + u" & "_s + QChar(closes);
            } else if (closes)
                fail(3075,
                     u"Ein Wert kann in '"_s + call->name + u"' kein Teil eines Namens oder Datums sein."_s,
                     piece->pos);
            else if (isText(piece->type))
                fail(3075,
                     u"In '"_s + call->name +
                         u"' kann ein Text, der nicht fest in der Anweisung steht, nur zwischen "
                         u"Anführungszeichen eingesetzt werden."_s,
                     piece->pos);
            else
                text += name;
            m_spliced.push_back(piece);
            continue;
        }
        const QString part = piece->value->toText();
        for (qsizetype i = 0; i < part.size(); ++i) {
            const char16_t c = part[i].unicode();
            if (c == marker) fail(3075, u"Dieses Zeichen hat hier keinen Sinn."_s, piece->pos);
            const bool quote = c == u'\'' || c == u'"';
            if (!closes && (quote || c == u'[' || c == u'`' || c == u'#')) {
                closes = c == u'[' ? u']' : c;
                opened = text.size();
                joined = false;
            } else if (closes == c) {
                if (quote && i + 1 < part.size() && part[i + 1] == c)
                    text += part[i++];
                else {
                    text += c;
                    if (joined) text += u')';
                    closes = 0;
                    continue;
                }
            }
            text += c;
        }
    }
    m_tree.names.push_back(text);
    return text;
}

Expr* Binder::readText(const QString& text, const Expr* call) {
    Expr* e = Parser(text, m_tree, false).wholeExpression();
    // A table of the subquery could hide the one from which a value comes.
    if (!m_spliced.empty() && hasQuery(e))
        fail(3075, u"Neben eingesetzten Werten ist keine Unterabfrage möglich."_s, call->pos);
    movePlaces(e, call);
    return e;
}

void Binder::withTexts(Expr* call, const std::function<void()>& read) {
    if (call->aggregate)
        fail(3096, u"Im Text von '"_s + call->name + u"' darf keine Aggregatfunktion stehen."_s, call->pos);
    if (m_texts >= maxTexts) raiseTooComplex(call->pos);
    const bool inAggregate = std::exchange(m_inAggregate, false);
    const Expr* outerCall = std::exchange(m_textCall, m_textCall ? m_textCall : call);
    std::vector<Expr*> outer = std::exchange(m_spliced, {});
    const std::size_t known = m_unresolved.size();
    ++m_texts;
    try {
        read();
    } catch (const RuntimeError& error) {
        // Nothing goes on behind an error: what was set aside need not come back.
        throw RuntimeError(error.Number, u"Im Text von '"_s + call->name + u"': "_s + error.Description, {},
                           call->pos);
    }
    --m_texts;
    for (std::size_t i = known; i < m_unresolved.size(); ++i)
        m_unresolved[i].pos = call->pos;
    call->operands = m_tree.arena.copy(m_spliced);
    m_spliced = std::move(outer);
    m_textCall = outerCall;
    m_inAggregate = inAggregate;
}

// A subquery that sees its one table and nothing of what stands around it.
void Binder::domain(Expr* e) {
    withTexts(e, [&] {
        const auto arguments = e->operands;
        const QString what = spliced(arguments[0], e);
        QString table = spliced(arguments[1], e).trimmed();
        if (table.startsWith(u'[') && table.endsWith(u']')) table = table.mid(1, table.size() - 2);
        if (table.contains(marker))
            fail(3075, u"Der Name der Tabelle steht fest in der Anweisung."_s, e->pos);
        const QString criteria = arguments.size() > 2 ? spliced(arguments[2], e) : QString();

        Arena& arena = m_tree.arena;
        Expr* value = arena.make<Expr>();
        value->kind = ExprKind::Call;
        value->name = m_tree.names.emplace_back(QLatin1StringView(e->function->sql));
        value->pos = e->pos;
        value->end = e->end;
        if (what.trimmed() == u'*' && e->function->name == u"dcount"_s)
            value->form = CallForm::Star;
        else
            value->operands = arena.copy(std::vector<Expr*>{readText(what, e)});
        Source* source = arena.make<Source>();
        source->name = m_tree.names.emplace_back(table);
        source->pos = e->pos;
        Select* s = arena.make<Select>();
        s->pos = e->pos;
        s->items = arena.copy(std::vector<SelectItem>{{value, {}, {}, e->pos}});
        s->from = arena.copy(std::vector<Source*>{source});
        if (!criteria.trimmed().isEmpty()) s->where = readText(criteria, e);
        Query* q = arena.make<Query>();
        q->pos = e->pos;
        q->legs = arena.copy(std::vector<Leg>{{s, nullptr, false}});
        query(q, nullptr);
        // The engine must not take a value from around for one of this table, which may stand there, too.
        source->alias = m_tree.names.emplace_back(u"%d"_s + QString::number(m_tree.names.size()));
        e->query = q;
    });
    e->kind = ExprKind::Scalar;
    e->type = e->query->outputs[0].type;
}

void Binder::eval(Expr*& e) {
    Expr* meant = nullptr;
    withTexts(e, [&] {
        meant = readText(spliced(e->operands[0], e), e);
        expr(meant, nullptr);
    });
    e = meant->target ? meant->target : meant;
}

} // namespace jet
