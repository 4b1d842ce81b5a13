#include "Emitter.h"

namespace jet {

namespace {

class SqliteEmitter final : public Emitter {
  public:
    void quoteName(QByteArray& out, QStringView name) const override {
        out += '"';
        for (const char c : name.toUtf8()) {
            if (c == '"') out += '"';
            out += c;
        }
        out += '"';
    }

    void parameter(QByteArray& out, int number, Type) const override {
        out += '?';
        out += QByteArray::number(number);
    }

    void literal(QByteArray& out, const Value& typed) const override {
        struct Visitor {
            QByteArray& out;
            void operator()(std::monostate) const { out += "NULL"; }
            void operator()(bool b) const { out += b ? "(-1)" : "0"; }
            void operator()(qint64 i) const { number(QByteArray::number(i)); }
            void operator()(double d) const {
                QByteArray text = QByteArray::number(d, 'g', 17);
                if (!text.contains('.') && !text.contains('e')) text += ".0";
                number(text);
            }
            void operator()(Currency c) const { number(QByteArray::number(c.scaled())); }
            void operator()(DateTime t) const { (*this)(t.days); }
            void operator()(const QString& s) const {
                const QByteArray bytes = s.toUtf8();
                if (bytes.contains('\0')) {
                    out += "CAST(X'" + bytes.toHex() + "' AS TEXT)";
                    return;
                }
                out += '\'';
                for (const char c : bytes) {
                    if (c == '\'') out += '\'';
                    out += c;
                }
                out += '\'';
            }
            // "--" would begin a comment.
            void number(const QByteArray& text) const {
                out += text.startsWith('-') ? '(' + text + ')' : text;
            }
        };
        std::visit(Visitor{out}, typed.data());
    }

    void truthLiteral(QByteArray& out, bool truth, Type type) const override {
        out += !truth ? "0" : type == Type::Currency ? "(-10000)" : "(-1)";
    }
    void null(QByteArray& out, Type) const override { out += "NULL"; }
    std::size_t mostParameters() const override { return 200000; }

    void call(Writer& w, const char* function, std::span<Expr* const> arguments) const override {
        w.out += function;
        w.out += '(';
        if (!arguments.empty()) {
            w.out += '\'';
            for (const Expr* e : arguments)
                w.out += letterOf(e->type);
            w.out += "', ";
            w.list(arguments);
        }
        w.out += ')';
    }

    void clock(Writer& w, const char* function) const override { call(w, function, {}); }
    void untyped(Writer& w, const Expr* e, Type) const override { w.operand(e); }

    void convert(Writer& w, Expr* from, Type to) const override {
        const auto through = [&](const char* function) {
            call(w, function, std::span<Expr* const>(&from, 1));
        };
        const auto around = [&](const char* before, const char* after) {
            w.out += before;
            w.operand(from);
            w.out += after;
        };
        switch (to) {
        case Type::Boolean:
            if (isText(from->type)) return through("jet_tobool");
            return around("", " <> 0");
        case Type::Byte:
            return through("jet_tobyte");
        case Type::Short:
            return through("jet_toshort");
        case Type::Long:
            return through("jet_tolong");
        case Type::Single:
        case Type::Double:
            if (from->type == Type::Currency) return around("(", " / 10000.0)");
            return through("jet_todouble");
        case Type::Currency:
            if (isWhole(from->type)) return around("(", " * 10000)");
            return through("jet_tocurrency");
        case Type::Date:
            return through("jet_todate");
        case Type::Text:
        case Type::Memo:
            if (isWhole(from->type)) return around("CAST(", " AS TEXT)");
            return through("jet_totext");
        case Type::Null:
            w.value(from);
        }
    }

    void like(Writer& w, const Expr* e) const override {
        const bool ansi = e->form == CallForm::Distinct;
        const bool ranged = w.beginLikeRange(e);
        if (e->negated) w.out += "NOT ";
        call(w, ansi ? "jet_alike" : "jet_like", e->operands);
        if (ranged) w.out += ')';
    }

    void arithmetic(Writer& w, const Expr* e) const override {
        if (const char* function = operatorFunction(*e)) return call(w, function, e->operands);
        if (e->op == Op::Add && isText(e->type)) return row(w, e, " || ");
        if (e->type == Type::Date)
            w.out += "jet_todate('d', ";
        else if (mayOverflow(e))
            w.out += "jet_real(";
        row(w, e, e->op == Op::Add ? " + " : e->op == Op::Subtract ? " - " : " * ");
        if (e->type == Type::Date || mayOverflow(e)) w.out += ')';
    }

    void negate(Writer& w, const Expr* operand) const override {
        w.out += '-';
        w.operand(operand);
    }

    void absolute(Writer& w, const Expr* operand) const override { plainCall(w, "abs", operand); }

    void beginning(Writer& w, const Expr* text, const Expr* count) const override {
        w.out += "substr(";
        w.value(text);
        w.out += ", 1, ";
        w.value(count);
        w.out += ')';
    }
    void ending(Writer& w, const Expr* text, const Expr* count) const override {
        w.out += "substr(";
        w.value(text);
        w.out += ", -";
        w.value(count);
        w.out += ", ";
        w.value(count);
        w.out += ')';
    }

    void aggregate(Writer& w, const Expr* e, const QByteArray& filter) const override {
        using Form = FunctionInfo::Form;
        const FunctionInfo* f = e->function;
        const bool money = f->form == Form::Avg && e->type == Type::Currency;
        const bool countCell = f->form == Form::Count && !filter.isEmpty();
        const bool real = (f->form == Form::Sum || f->form == Form::Avg) && isReal(e->type);
        if (real) w.out += "jet_real(";
        if (money) w.out += "jet_tocurrency('d', ";
        if (countCell) w.out += "nullif(";
        w.out += f->sql;
        w.out += '(';
        if (e->form == CallForm::Distinct) w.out += "DISTINCT ";
        if (e->operands.empty()) {
            w.out += '*';
        } else if (f->form == Form::Aggregate) {
            w.out += '\'';
            w.out += letterOf(e->operands[0]->type);
            w.out += "', ";
            w.value(e->operands[0]);
            if (f->result == FunctionInfo::Result::First) {
                if (const QByteArray keys = w.rowOrder(false); !keys.isEmpty()) w.out += ", " + keys;
            }
        } else {
            w.text(e->operands[0]);
        }
        w.out += ')';
        w.out += filter;
        if (countCell) w.out += ", 0)";
        if (money) w.out += " / 10000.0)";
        if (real) w.out += ')';
    }

    const char* otherwise() const override { return "ifnull"; }
    const char* sameness() const override { return " IS "; }

    bool yieldsTruth(const Expr* e) const override { return e->condition; }
    void truth(Writer& w, const Expr* e) const override {
        w.out += "-(";
        w.raw(e);
        w.out += ')';
    }
    void condition(Writer& w, const Expr* e) const override { w.raw(e); }

    bool reordersConditions() const override { return false; }

    QByteArray rowKey() const override { return "_rowid_"; }
    QByteArray collation() const override { return " COLLATE GERMAN"; }
    QByteArray byteCollation() const override { return " COLLATE BINARY"; }
    const char* direction(bool descending) const override { return descending ? " DESC" : ""; }
    bool collatesPositions() const override { return true; }
    bool comparesGroups() const override { return false; }
    bool quantifies() const override { return false; }
    const char* comma() const override { return ", "; }

    bool reachesNestedKeys() const override { return false; }
    bool ordersAggregates() const override { return false; }
    bool updatesByFirst() const override { return false; }

    // A RIGHT JOIN is the LEFT JOIN of its sides exchanged. A join in parentheses on the right would become a
    // subquery without row keys, so it comes first where the order does not matter, or is drawn into the row.
    void join(Writer& w, const Source* s) const override {
        const bool outer = s->join == JoinKind::Left || s->join == JoinKind::Right;
        const bool nestedRight = s->right->form == Source::Form::Join;
        const bool swapped =
            s->join == JoinKind::Right || (!outer && nestedRight && s->left->form != Source::Form::Join);
        const Source* left = swapped ? s->right : s->left;
        const Source* right = swapped ? s->left : s->right;
        w.source(left);
        std::vector<const Expr*> conditions;
        if (!outer) {
            joinRow(w, right, conditions);
        } else {
            const bool nested = right->form == Source::Form::Join;
            w.out += nested ? " LEFT JOIN (" : " LEFT JOIN ";
            w.source(right);
            if (nested) w.out += ')';
        }
        if (s->on) conditions.push_back(s->on);
        for (std::size_t i = 0; i < conditions.size(); ++i) {
            w.out += i ? " AND (" : conditions.size() > 1 ? " ON (" : " ON ";
            w.condition(conditions[i]);
            if (conditions.size() > 1) w.out += ')';
        }
    }

    // The engine keeps a list of numbered parameters and looks through all of it for each, so that thousands
    // take seconds. Where the number is the next one anyhow it is left out.
    void finish(QByteArray& text, std::size_t parameters) const override {
        if (parameters < 200) return;
        QByteArray result;
        result.reserve(text.size());
        qulonglong highest = 0;
        for (qsizetype i = 0; i < text.size();) {
            const char c = text[i];
            if (c == '\'' || c == '"') {
                const qsizetype end = text.indexOf(c, i + 1);
                const qsizetype length = end < 0 ? text.size() - i : end - i + 1;
                result.append(text.constData() + i, length);
                i += length;
                continue;
            }
            result += c;
            ++i;
            if (c != '?') continue;
            qsizetype end = i;
            while (end < text.size() && text[end] >= '0' && text[end] <= '9')
                ++end;
            const qulonglong number = text.mid(i, end - i).toULongLong();
            if (number != highest + 1) result.append(text.constData() + i, end - i);
            highest = std::max(highest, number);
            i = end;
        }
        text = result;
    }

  private:
    // The engine goes on with infinity, and with Null where that leads nowhere. Dates, money and whole
    // numbers are far from it.
    static bool mayOverflow(const Expr* e) {
        if (!isReal(e->type)) return false;
        return std::any_of(e->operands.begin(), e->operands.end(), [](const Expr* operand) {
            while (operand->target || operand->kind == ExprKind::Convert)
                operand = operand->target ? operand->target : operand->operands[0];
            return isReal(operand->type) || isText(operand->type);
        });
    }

    // "a + b + c" is written as it stands: the left side of a row needs no parentheses.
    static void row(Writer& w, const Expr* e, const char* sign) {
        const Expr* a = e->operands[0];
        while (a->target)
            a = a->target;
        const bool additive = e->op == Op::Add || e->op == Op::Subtract;
        const bool joins = a->kind == ExprKind::Binary && !isText(e->type) && !isText(a->type) &&
                           a->type != Type::Date && !mayOverflow(a) &&
                           ((additive && (a->op == Op::Add || a->op == Op::Subtract)) ||
                            (e->op == Op::Multiply && a->op == Op::Multiply && a->type != Type::Currency));
        if (joins)
            w.value(a);
        else
            w.operand(a);
        w.out += sign;
        w.operand(e->operands[1]);
    }

    // " JOIN a JOIN b ..": the tables of inner joins, their conditions gathered.
    static void joinRow(Writer& w, const Source* s, std::vector<const Expr*>& conditions) {
        const bool inner =
            s->form == Source::Form::Join && (s->join == JoinKind::Inner || s->join == JoinKind::Cross);
        if (inner) {
            joinRow(w, s->left, conditions);
            joinRow(w, s->right, conditions);
            if (s->on) conditions.push_back(s->on);
            return;
        }
        const bool nested = s->form == Source::Form::Join;
        w.out += nested ? " JOIN (" : " JOIN ";
        w.source(s);
        if (nested) w.out += ')';
    }

    static void plainCall(Writer& w, const char* function, const Expr* argument) {
        w.out += function;
        w.out += '(';
        w.value(argument);
        w.out += ')';
    }
};

} // namespace

std::shared_ptr<const Emitter> sqliteEmitter() {
    static const auto emitter = std::make_shared<const SqliteEmitter>();
    return emitter;
}

} // namespace jet
