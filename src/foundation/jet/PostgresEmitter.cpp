#include "Emitter.h"
#include "PostgresCalls.h"

#include <text/RuntimeError.h>

#include <QCryptographicHash>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

constexpr qsizetype longestName = 63;
constexpr qsizetype hashLength = 8;
// The protocol counts parameters in 16 bits; some are left for the keys and limits that the store adds.
constexpr std::size_t parameterLimit = 65000;

const char* typeOf(Type type) {
    switch (type) {
    case Type::Boolean:
        return "smallint";
    case Type::Byte:
    case Type::Short:
    case Type::Long:
        return "bigint";
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return "double precision";
    case Type::Currency:
        return "numeric";
    case Type::Text:
    case Type::Memo:
    case Type::Null:
        break;
    }
    return "text";
}

QByteArray quotedText(const QString& text) {
    if (text.contains(QChar(0)))
        throw RuntimeError(3421, u"Das Zeichen mit der Nummer 0 kann nicht gespeichert werden."_s);
    QByteArray bytes = text.toUtf8();
    return '\'' + bytes.replace('\'', "''") + '\'';
}

/// Rows of a table are named by a hidden column; Null stands before everything, text is compared under a
/// collation without case. Whole numbers in expressions are bigint, whatever a column keeps.
class PostgresEmitter final : public Emitter {
  public:
    void quoteName(QByteArray& out, QStringView name) const override { out += postgresName(name); }

    void parameter(QByteArray& out, int number, Type type) const override {
        out += '$';
        out += QByteArray::number(number);
        out += "::";
        out += typeOf(type);
    }

    void literal(QByteArray& out, const Value& typed) const override {
        struct Visitor {
            QByteArray& out;
            void operator()(std::monostate) const { out += "NULL"; }
            void operator()(bool b) const { out += b ? "(-1)" : "0"; }
            void operator()(qint64 i) const { quoted(QByteArray::number(i), "bigint"); }
            void operator()(double d) const { quoted(QByteArray::number(d, 'g', 17), "double precision"); }
            void operator()(Currency c) const {
                const qint64 scaled = c.scaled();
                QByteArray digits = QByteArray::number(std::abs(scaled / 10000)) + '.' +
                                    QByteArray::number(10000 + std::abs(scaled % 10000)).mid(1);
                quoted(scaled < 0 ? '-' + digits : digits, "numeric");
            }
            void operator()(DateTime t) const { (*this)(t.days); }
            void operator()(const QString& s) const { out += quotedText(s) + "::text"; }
            void quoted(const QByteArray& number, const char* type) const {
                out += '\'' + number + "'::" + type;
            }
        };
        std::visit(Visitor{out}, typed.data());
    }

    void truthLiteral(QByteArray& out, bool truth, Type type) const override {
        out += truth ? "(-1)" : "0";
        if (type != Type::Boolean && type != Type::Null) out += QByteArray("::") + typeOf(type);
    }
    void null(QByteArray& out, Type type) const override { out += QByteArray("NULL::") + typeOf(type); }
    std::size_t mostParameters() const override { return parameterLimit; }

    void call(Writer& w, const char* function, std::span<Expr* const> arguments) const override {
        const PostgresCall call = postgresCall(function, arguments.size());
        if (call.native) return native(w, call, arguments);
        w.out += function;
        w.out += '(';
        const char* kind = call.kinds;
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            if (i) w.out += ", ";
            argument(w, arguments[i], *kind);
            if (kind[1]) ++kind;
        }
        w.out += ')';
    }

    void clock(Writer& w, const char* function) const override {
        const QByteArrayView name = function;
        w.givenParameter(name == "jet_date"   ? Encoding::Today
                         : name == "jet_time" ? Encoding::TimeOfDay
                         : name == "jet_now"  ? Encoding::Now
                                              : Encoding::Timer);
    }

    void convert(Writer& w, Expr* from, Type to) const override {
        const Type type = from->type;
        if (type == Type::Null && to != Type::Boolean) return untyped(w, from, to);
        switch (to) {
        case Type::Boolean:
            if (isText(type)) return conversion(w, "jet_tobool", from);
            w.operandAs(from, Type::Boolean);
            w.out += " <> 0";
            return;
        case Type::Byte:
            return conversion(w, "jet_tobyte", from);
        case Type::Short:
            return conversion(w, "jet_toshort", from);
        case Type::Long:
            return conversion(w, "jet_tolong", from);
        case Type::Single:
        case Type::Double:
            if (isText(type)) return conversion(w, "jet_todouble", from);
            return cast(w, from, to);
        case Type::Currency:
            if (isWhole(type)) return cast(w, from, to);
            return conversion(w, "jet_tocurrency", from);
        case Type::Date:
            return conversion(w, "jet_todate", from);
        case Type::Text:
        case Type::Memo:
            if (isWhole(type)) return cast(w, from, to);
            return conversion(w, "jet_totext", from);
        case Type::Null:
            w.operand(from);
        }
    }

    // Such a value is kept as a text. Beside a number an empty text counts as zero.
    void untyped(Writer& w, const Expr* e, Type type) const override {
        if (e->kind == ExprKind::Null) return null(w.out, type);
        if (isText(type)) return w.operand(e);
        w.out += "(CASE WHEN ";
        w.operand(e);
        w.out += QByteArray(" IS NOT NULL THEN 0::") + typeOf(type) + " END)";
    }

    // The expression made of the pattern has case and order written out and needs no collation, nor could it
    // be used with one that takes different texts for equal.
    void like(Writer& w, const Expr* e) const override {
        const Expr* pattern = e->operands[1];
        const bool ansi = e->form == CallForm::Distinct;
        if (pattern->kind != ExprKind::Literal) {
            if (e->negated) w.out += "NOT ";
            return call(w, ansi ? "jet_alike" : "jet_like", e->operands);
        }
        const bool ranged = w.beginLikeRange(e);
        w.operandAs(plain(e->operands[0]), Type::Text);
        w.out += e->negated ? " COLLATE \"C\" !~ " : " COLLATE \"C\" ~ ";
        w.parameter(pattern, ansi ? Encoding::AlikePattern : Encoding::LikePattern);
        if (ranged) w.out += ')';
    }

    void negate(Writer& w, const Expr* operand) const override {
        if (plain(operand)->type == Type::Null) return null(w.out, Type::Null);
        w.out += '-';
        number(w, operand);
    }

    void arithmetic(Writer& w, const Expr* e) const override {
        if (e->type == Type::Null) return null(w.out, Type::Null);
        if (const char* function = operatorFunction(*e)) return call(w, function, e->operands);
        const Expr* a = e->operands[0];
        const Expr* b = e->operands[1];
        if (e->op == Op::Add && isText(e->type)) {
            w.operandAs(a, Type::Text);
            w.out += " || ";
            return w.operandAs(b, Type::Text);
        }
        if (e->type == Type::Date) w.out += "jet_todate(";
        number(w, a);
        w.out += e->op == Op::Add ? " + " : e->op == Op::Subtract ? " - " : " * ";
        number(w, b);
        if (e->type == Type::Date) w.out += ')';
    }

    void absolute(Writer& w, const Expr* operand) const override {
        w.out += "abs(";
        number(w, operand);
        w.out += ')';
    }

    void beginning(Writer& w, const Expr* text, const Expr* count) const override {
        part(w, "left(", text, count);
    }
    void ending(Writer& w, const Expr* text, const Expr* count) const override {
        part(w, "right(", text, count);
    }

    void aggregate(Writer& w, const Expr* e, const QByteArray& filter) const override {
        using Form = FunctionInfo::Form;
        const FunctionInfo* f = e->function;
        const Expr* of = e->operands.empty() ? nullptr : e->operands[0];
        const char* const distinct = e->form == CallForm::Distinct ? "DISTINCT " : "";
        auto plain = [&](const char* name, auto&& argument) {
            w.out += name;
            w.out += '(';
            w.out += distinct;
            argument();
            w.out += ')';
            w.out += filter;
        };
        switch (f->form) {
        case Form::Count:
            if (!filter.isEmpty()) w.out += "nullif(";
            plain("count", [&] { of ? w.text(of) : void(w.out += '*'); });
            if (!filter.isEmpty()) w.out += ", 0)";
            return;
        case Form::Sum:
            w.out += e->type == Type::Currency ? "(" : QByteArray("CAST(");
            plain("sum", [&] { number(w, of); });
            w.out += e->type == Type::Currency ? QByteArray(")") : QByteArray(" AS ") + typeOf(e->type) + ')';
            return;
        case Form::Avg:
            if (e->type == Type::Currency) {
                w.out += "jet_tocurrency(";
                plain("avg", [&] { number(w, of); });
                w.out += ')';
                return;
            }
            // The server's own fails where the squares of the values leave the range.
            w.out += '(';
            plain("sum", [&] { real(w, of); });
            w.out += " / nullif(";
            plain("count", [&] { real(w, of); });
            w.out += ", 0))";
            return;
        case Form::Min:
        case Form::Max:
            return plain(f->sql, [&] {
                w.text(of);
                // Of texts that are alike the first counts.
                if (isText(of->type) && !*distinct) order(w, true);
            });
        default:
            break;
        }
        const QByteArrayView name = f->sql;
        if (name == "jet_first" || name == "jet_last") {
            w.out += "(";
            plain("array_agg", [&] {
                w.text(of);
                if (!*distinct) order(w, name == "jet_last");
            });
            w.out += ")[1]";
            return;
        }
        // Sorted, so that the digits hang on the values alone.
        w.out += f->sql;
        w.out += '(';
        plain("array_agg", [&] {
            real(w, of);
            w.out += " ORDER BY ";
            real(w, of);
        });
        w.out += ')';
    }

    const char* otherwise() const override { return "coalesce"; }
    const char* sameness() const override { return " IS NOT DISTINCT FROM "; }

    bool yieldsTruth(const Expr* e) const override {
        if (e->condition) return true;
        if (e->type != Type::Boolean) return false;
        if (e->kind == ExprKind::Convert) return isText(e->operands[0]->type);
        return e->kind == ExprKind::Call && e->function &&
               e->function->result == FunctionInfo::Result::Boolean;
    }
    void truth(Writer& w, const Expr* e) const override {
        w.out += "-(";
        w.raw(e);
        w.out += ")::int";
    }
    void condition(Writer& w, const Expr* e) const override {
        if (w.inGroup(e)) {
            w.value(e);
            w.out += " <> 0";
        } else if (yieldsTruth(e)) {
            w.raw(e);
        } else if (e->kind == ExprKind::True || e->kind == ExprKind::False) {
            w.out += e->kind == ExprKind::True ? "true" : "false";
        } else if (e->kind == ExprKind::Null) {
            w.out += "NULL::boolean";
        } else {
            w.operandAs(e, Type::Long);
            w.out += " <> 0";
        }
    }

    bool reordersConditions() const override { return true; }

    QByteArray rowKey() const override { return "_rowid_"; }
    QByteArray collation() const override { return " COLLATE \"merivane\""; }
    QByteArray byteCollation() const override { return " COLLATE \"C\""; }
    const char* direction(bool descending) const override {
        return descending ? " DESC NULLS LAST" : " NULLS FIRST";
    }
    bool collatesPositions() const override { return false; }
    bool comparesGroups() const override { return true; }
    bool quantifies() const override { return true; }
    const char* comma() const override { return " CROSS JOIN "; }

    bool reachesNestedKeys() const override { return true; }
    bool ordersAggregates() const override { return true; }
    bool updatesByFirst() const override { return true; }

    // Left sides need no parentheses; of a RIGHT JOIN the sides are exchanged, so that it may follow a comma.
    void join(Writer& w, const Source* s) const override {
        const bool swapped = s->join == JoinKind::Right;
        const Source* right = swapped ? s->left : s->right;
        w.source(swapped ? s->right : s->left);
        const bool outer = swapped || s->join == JoinKind::Left;
        w.out += outer ? " LEFT JOIN " : s->on ? " JOIN " : " CROSS JOIN ";
        const bool nested = right->form == Source::Form::Join;
        if (nested) w.out += '(';
        w.source(right);
        if (nested) w.out += ')';
        if (!s->on) {
            if (outer) w.out += " ON true";
            return;
        }
        w.out += " ON ";
        w.filter(s->on);
    }

    void finish(QByteArray&, std::size_t) const override {}

  private:
    static const Expr* plain(const Expr* e) {
        while (e->target)
            e = e->target;
        return e;
    }

    static void cast(Writer& w, const Expr* e, Type type) {
        w.out += '(';
        w.value(e);
        w.out += QByteArray(")::") + typeOf(type);
    }

    // Whole numbers are widened, so that sums do not overflow the column's own range.
    void number(Writer& w, const Expr* e) const {
        e = plain(e);
        if (e->type == Type::Null) return untyped(w, e, Type::Long);
        if (!isWhole(e->type)) return w.operand(e);
        if (e->kind == ExprKind::Literal && e->type != Type::Boolean) return w.operand(e);
        cast(w, e, Type::Long);
    }

    void real(Writer& w, const Expr* e) const {
        e = plain(e);
        if (e->type == Type::Null) return untyped(w, e, Type::Double);
        if (isText(e->type)) {
            w.out += "jet_todouble(";
            w.value(e);
            w.out += ')';
            return;
        }
        const bool known = e->kind == ExprKind::Name || e->kind == ExprKind::Literal;
        if (known && typeOf(e->type) == QByteArrayView("double precision")) return w.operand(e);
        cast(w, e, Type::Double);
    }

    // By its own type, as the functions are told apart.
    void typed(Writer& w, const Expr* e) const {
        e = plain(e);
        switch (e->type) {
        case Type::Boolean:
            w.out += '(';
            condition(w, e);
            w.out += ')';
            return;
        case Type::Byte:
        case Type::Short:
        case Type::Long:
            return number(w, e);
        case Type::Single:
        case Type::Double:
            return real(w, e);
        case Type::Currency:
            if (e->kind == ExprKind::Name || e->kind == ExprKind::Literal) return w.operand(e);
            return cast(w, e, Type::Currency);
        case Type::Date:
            w.out += "ROW(";
            real(w, e);
            w.out += ")::jet_date";
            return;
        case Type::Text:
        case Type::Memo:
        case Type::Null:
            break;
        }
        w.operandAs(e, Type::Text);
    }

    void conversion(Writer& w, const char* function, const Expr* e) const {
        w.out += function;
        w.out += '(';
        typed(w, e);
        w.out += ')';
    }

    void argument(Writer& w, Expr* e, char kind) const {
        const Type type = plain(e)->type;
        switch (kind) {
        case 's':
            if (isText(type) || type == Type::Null) return w.operandAs(e, Type::Text);
            if (type == Type::Boolean) return conversion(w, "jet_totext", e); // in words
            return convert(w, e, Type::Text);
        case 'n':
            if (isWhole(type) || type == Type::Null) return number(w, e);
            return conversion(w, "jet_tolong", e);
        case 'd':
            return real(w, e);
        case 't':
            if (isText(type)) return conversion(w, "jet_todate", e);
            return real(w, e);
        case 'c':
            if (type == Type::Null) return untyped(w, plain(e), Type::Currency);
            if (type == Type::Currency) return w.operand(e);
            return convert(w, e, Type::Currency);
        default:
            typed(w, e);
        }
    }

    void native(Writer& w, const PostgresCall& call, std::span<Expr* const> arguments) const {
        for (const char* at = call.native; *at; ++at) {
            const std::size_t index = at[0] == '%' ? std::size_t(at[1] - '1') : arguments.size();
            if (index >= arguments.size()) {
                w.out += *at;
                continue;
            }
            const std::size_t last = std::char_traits<char>::length(call.kinds) - 1;
            const bool atom = at == call.native && !at[2];
            if (!atom) w.out += '(';
            argument(w, arguments[index], call.kinds[std::min(index, last)]);
            if (!atom) w.out += ')';
            ++at;
        }
    }

    static void part(Writer& w, const char* function, const Expr* text, const Expr* count) {
        w.out += function;
        w.valueAs(text, Type::Text);
        w.out += ", (";
        w.value(count);
        w.out += ")::int)";
    }

    static void order(Writer& w, bool descending) {
        const QByteArray keys = w.rowOrder(descending);
        if (!keys.isEmpty()) w.out += " ORDER BY " + keys;
    }
};

} // namespace

QByteArray postgresName(QStringView name) {
    QByteArray bytes = name.toUtf8();
    if (bytes.size() > longestName) {
        const QByteArray sum =
            QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex().left(hashLength);
        qsizetype length = longestName - hashLength - 1;
        while (length > 0 && (bytes[length] & 0xC0) == 0x80) // not inside a character
            --length;
        bytes = bytes.left(length) + '~' + sum;
    }
    return '"' + bytes.replace('"', "\"\"") + '"';
}

std::shared_ptr<const Emitter> postgresEmitter() {
    static const auto emitter = std::make_shared<const PostgresEmitter>();
    return emitter;
}

} // namespace jet
