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

    void parameter(QByteArray& out, int number) const override {
        out += '?';
        out += QByteArray::number(number);
    }

    void literal(QByteArray& out, const Value& stored) const override {
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
        std::visit(Visitor{out}, stored.data());
    }

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
            if (from->type == Type::Currency) return around("(", " / 10000.0)");
            return through("jet_todate");
        case Type::Text:
        case Type::Memo:
            if (isWhole(from->type)) return around("CAST(", " AS TEXT)");
            return through("jet_totext");
        case Type::Null:
            w.value(from);
        }
    }

    // A constant beginning narrows the search to a part of the index; what is left is compared in full.
    void like(Writer& w, const Expr* e) const override {
        const Expr* text = e->operands[0];
        const Expr* pattern = e->operands[1];
        while (text->target)
            text = text->target;
        const bool ansi = e->form == CallForm::Distinct;
        const bool ranged = !e->negated && !ansi && text->kind == ExprKind::Name && text->source &&
                            text->source->table && isText(text->type) && pattern->kind == ExprKind::Literal &&
                            pattern->literal >= 0 && pattern->literalClass == LiteralClass::PrefixedPattern;
        if (ranged) {
            w.out += '(';
            w.value(text);
            w.out += " >= ";
            w.parameter(pattern, Encoding::LikePrefixLow);
            w.out += " AND ";
            w.value(text);
            w.out += " < ";
            w.parameter(pattern, Encoding::LikePrefixHigh);
            w.out += " AND ";
        }
        if (e->negated) w.out += "NOT ";
        call(w, ansi ? "jet_alike" : "jet_like", e->operands);
        if (ranged) w.out += ')';
    }

    void arithmetic(Writer& w, const Expr* e) const override {
        const Expr* a = e->operands[0];
        const Expr* b = e->operands[1];
        switch (e->op) {
        case Op::Divide:
            return call(w, "jet_divide", e->operands);
        case Op::IntDivide:
            return call(w, "jet_intdivide", e->operands);
        case Op::Mod:
            return call(w, "jet_mod", e->operands);
        case Op::Power:
            return call(w, "jet_power", e->operands);
        case Op::Multiply:
            if (a->type == Type::Currency && b->type == Type::Currency)
                return call(w, "jet_multiply", e->operands);
            break;
        default:
            break;
        }
        if (e->op == Op::Add && isText(e->type)) return row(w, e, " || ");
        row(w, e, e->op == Op::Add ? " + " : e->op == Op::Subtract ? " - " : " * ");
    }

    void concat(Writer& w, const Expr* e) const override {
        part(w, e->operands[0]);
        w.out += " || ";
        part(w, e->operands[1]);
    }

    void truth(Writer& w, const Expr* condition) const override {
        w.out += "-(";
        w.raw(condition);
        w.out += ')';
    }

    QByteArray rowKey() const override { return "_rowid_"; }
    QByteArray collation() const override { return " COLLATE GERMAN"; }

    void update(Writer& w, const Tree& tree) const override {
        const Source* target = tree.target;
        const auto& columns = target->table->columns;
        if (tree.from.size() == 1 && tree.from[0] == target) {
            w.out += "UPDATE ";
            w.source(target);
            w.out += " SET ";
            for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
                if (i) w.out += ", ";
                const Column& c = columns[std::size_t(tree.assignments[i].column)];
                w.name(c.name);
                w.out += " = ";
                w.assigned(tree.assignments[i].value, c);
            }
            if (tree.where) {
                w.out += " WHERE ";
                w.condition(tree.where);
            }
            return;
        }
        // The joined rows are read first, with the new values, then written to the rows they belong to.
        w.out += "UPDATE ";
        w.name(target->table->name);
        w.out += " AS \"%t\" SET ";
        for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
            if (i) w.out += ", ";
            w.name(columns[std::size_t(tree.assignments[i].column)].name);
            w.out += " = \"%q\".v" + QByteArray::number(qulonglong(i));
        }
        w.out += " FROM (SELECT ";
        w.columnName(target, -1);
        w.out += " AS k";
        for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
            w.out += ", ";
            w.assigned(tree.assignments[i].value, columns[std::size_t(tree.assignments[i].column)]);
            w.out += " AS v" + QByteArray::number(qulonglong(i));
        }
        w.out += " FROM ";
        w.from(tree.from);
        if (tree.where) {
            w.out += " WHERE ";
            w.condition(tree.where);
        }
        w.out += ") AS \"%q\" WHERE \"%t\"._rowid_ = \"%q\".k";
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
    // "a + b + c" is written as it stands: the left side of a row needs no parentheses.
    static void row(Writer& w, const Expr* e, const char* sign) {
        const Expr* a = e->operands[0];
        while (a->target)
            a = a->target;
        const bool additive = e->op == Op::Add || e->op == Op::Subtract;
        const bool joins = a->kind == ExprKind::Binary && !isText(e->type) && !isText(a->type) &&
                           ((additive && (a->op == Op::Add || a->op == Op::Subtract)) ||
                            (e->op == Op::Multiply && a->op == Op::Multiply && a->type != Type::Currency));
        if (joins)
            w.value(a);
        else
            w.operand(a);
        w.out += sign;
        w.operand(e->operands[1]);
    }

    static void part(Writer& w, const Expr* e) {
        while (e->target)
            e = e->target;
        if (e->kind == ExprKind::Literal) return w.value(e);
        if (e->kind == ExprKind::Binary && e->op == Op::Concat) return w.value(e);
        w.out += "ifnull(";
        w.value(e);
        w.out += ", '')";
    }
};

} // namespace

std::shared_ptr<const Emitter> sqliteEmitter() {
    static const auto emitter = std::make_shared<const SqliteEmitter>();
    return emitter;
}

} // namespace jet
