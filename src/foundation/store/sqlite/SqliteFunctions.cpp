#include "SqliteFunctions.h"

#include "../ColumnValue.h"
#include "../Engine.h"

#include <jet/Functions.h>
#include <text/Sort.h>

#include <QVarLengthArray>

#include <cmath>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace store {

namespace {

QString textOf(sqlite3_value* value) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return QString::fromUtf8(bytes, sqlite3_value_bytes(value));
}

Value byStorage(sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return static_cast<qint64>(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_NULL:
        return {};
    default:
        return textOf(value);
    }
}

Type typeOfLetter(char letter) {
    switch (letter) {
    case 'b':
        return Type::Boolean;
    case 'i':
        return Type::Long;
    case 'd':
        return Type::Double;
    case 'c':
        return Type::Currency;
    case 't':
        return Type::Date;
    case 's':
        return Type::Text;
    default:
        return Type::Null;
    }
}

using Arguments = QVarLengthArray<Value, 8>;

void readArguments(int count, sqlite3_value** values, Arguments& arguments) {
    if (count == 0) return;
    const auto* letters = reinterpret_cast<const char*>(sqlite3_value_text(values[0]));
    const int known = letters ? sqlite3_value_bytes(values[0]) : 0;
    for (int i = 1; i < count; ++i)
        arguments.append(decode(values[i], i <= known ? typeOfLetter(letters[i - 1]) : Type::Null));
}

void give(sqlite3_context* context, const Value& typed) {
    const Value value = encode(typed);
    if (const auto* number = std::get_if<qint64>(&value.data()))
        return sqlite3_result_int64(context, *number);
    if (const auto* number = std::get_if<double>(&value.data()))
        return sqlite3_result_double(context, *number);
    if (const auto* text = std::get_if<QString>(&value.data())) {
        const QByteArray bytes = text->toUtf8();
        return sqlite3_result_text64(context, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()),
                                     SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    sqlite3_result_null(context);
}

// No exception may pass through the engine: it is parked and the statement fails.
template <typename Act>
void guarded(sqlite3_context* context, PendingError& pending, Act act) {
    try {
        act();
    } catch (const RuntimeError& error) {
        if (!pending) pending = error;
        sqlite3_result_error(context, error.what(), -1);
    } catch (const std::exception& error) {
        sqlite3_result_error(context, error.what(), -1);
    }
}

struct FunctionData {
    const jet::Function* function;
    PendingError* pending;
};

void callFunction(sqlite3_context* context, int count, sqlite3_value** values) {
    const auto* data = static_cast<FunctionData*>(sqlite3_user_data(context));
    guarded(context, *data->pending, [&] {
        Arguments arguments;
        readArguments(count, values, arguments);
        give(context,
             data->function->call({arguments.constData(), static_cast<std::size_t>(arguments.size())}));
    });
}

struct AggregateData {
    const jet::Aggregate* aggregate;
    PendingError* pending;
};

void stepAggregate(sqlite3_context* context, int count, sqlite3_value** values) {
    const auto* data = static_cast<AggregateData*>(sqlite3_user_data(context));
    auto** accumulator =
        static_cast<jet::Accumulator**>(sqlite3_aggregate_context(context, sizeof(jet::Accumulator*)));
    if (!accumulator) return sqlite3_result_error_nomem(context);
    guarded(context, *data->pending, [&] {
        if (!*accumulator) *accumulator = data->aggregate->create().release();
        Arguments arguments;
        readArguments(count, values, arguments);
        (*accumulator)->step({arguments.constData(), static_cast<std::size_t>(arguments.size())});
    });
}

void finishAggregate(sqlite3_context* context) {
    const auto* data = static_cast<AggregateData*>(sqlite3_user_data(context));
    auto** kept = static_cast<jet::Accumulator**>(sqlite3_aggregate_context(context, 0));
    guarded(context, *data->pending, [&] {
        std::unique_ptr<jet::Accumulator> accumulator(kept ? *kept : nullptr);
        if (kept) *kept = nullptr;
        if (!accumulator) accumulator = data->aggregate->create();
        give(context, accumulator->result());
    });
}

// jet_real(x): what an operation of doubles gave, as long as it is a number.
void checkReal(sqlite3_context* context, int, sqlite3_value** values) {
    auto* pending = static_cast<PendingError*>(sqlite3_user_data(context));
    guarded(context, *pending, [&] {
        if (sqlite3_value_type(values[0]) == SQLITE_FLOAT && !std::isfinite(sqlite3_value_double(values[0])))
            RaiseOverflow();
        sqlite3_result_value(context, values[0]);
    });
}

// store_convert(value, "Text", "Long", "Column"): what a column keeps when its type changes.
void convertColumn(sqlite3_context* context, int, sqlite3_value** values) {
    auto* pending = static_cast<PendingError*>(sqlite3_user_data(context));
    guarded(context, *pending, [&] {
        const Value old = decode(values[0], typeNamed(textOf(values[1])));
        give(context, valueForType(old, typeNamed(textOf(values[2])), textOf(values[3])));
    });
}

int compareGerman(void*, int aLength, const void* a, int bLength, const void* b) {
    return CompareUtf8(static_cast<const char*>(a), aLength, static_cast<const char*>(b), bLength);
}

} // namespace

Value encode(const Value& value) {
    struct Visitor {
        Value operator()(std::monostate) const { return {}; }
        Value operator()(bool b) const { return qint64(b ? -1 : 0); }
        Value operator()(qint64 i) const { return i; }
        Value operator()(double d) const { return d; }
        Value operator()(Currency c) const { return c.scaled(); }
        Value operator()(DateTime t) const { return t.days; }
        Value operator()(const QString& s) const { return s; }
    };
    return std::visit(Visitor{}, value.data());
}

Value decode(sqlite3_value* value, Type type) {
    const int storage = sqlite3_value_type(value);
    if (storage == SQLITE_NULL) return {};
    const bool number = storage == SQLITE_INTEGER || storage == SQLITE_FLOAT;
    switch (type) {
    case Type::Boolean:
        if (number) return sqlite3_value_double(value) != 0;
        break;
    case Type::Byte:
    case Type::Short:
    case Type::Long:
        if (storage == SQLITE_FLOAT) RaiseOverflow();
        break;
    case Type::Currency:
        if (storage == SQLITE_FLOAT) RaiseOverflow();
        if (number) return Currency::fromScaled(sqlite3_value_int64(value));
        break;
    case Type::Single:
    case Type::Double:
        if (number) return sqlite3_value_double(value);
        break;
    case Type::Date:
        if (number) return DateTime{sqlite3_value_double(value)};
        break;
    case Type::Text:
    case Type::Memo:
        return textOf(value);
    case Type::Null:
        break;
    }
    return byStorage(value);
}

void registerFunctions(sqlite3* db, PendingError& pending) {
    const auto check = [&](int code) {
        if (code != SQLITE_OK) raiseSqlite(db, code, pending, SqliteTask::Open, {});
    };
    for (const jet::Function& function : jet::functions()) {
        const int flags =
            SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.deterministic ? SQLITE_DETERMINISTIC : 0);
        check(sqlite3_create_function_v2(
            db, function.name.constData(), -1, flags, new FunctionData{&function, &pending}, callFunction,
            nullptr, nullptr, [](void* data) { delete static_cast<FunctionData*>(data); }));
    }
    for (const jet::Aggregate& aggregate : jet::aggregates())
        check(sqlite3_create_function_v2(db, aggregate.name.constData(), -1, SQLITE_UTF8 | SQLITE_INNOCUOUS,
                                         new AggregateData{&aggregate, &pending}, nullptr, stepAggregate,
                                         finishAggregate,
                                         [](void* data) { delete static_cast<AggregateData*>(data); }));
    check(sqlite3_create_function_v2(db, "jet_real", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                                     &pending, checkReal, nullptr, nullptr, nullptr));
    check(sqlite3_create_function_v2(db, "store_convert", 4, SQLITE_UTF8 | SQLITE_DETERMINISTIC, &pending,
                                     convertColumn, nullptr, nullptr, nullptr));
    check(sqlite3_create_collation_v2(db, jet::collationName, SQLITE_UTF8, nullptr, compareGerman, nullptr));
}

} // namespace store
