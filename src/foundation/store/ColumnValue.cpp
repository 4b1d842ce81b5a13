#include "ColumnValue.h"

#include "Errors.h"

#include <text/Convert.h>

#include <limits>

namespace store {

namespace {

int whole(const Value& value, int low, int high) {
    const int number = value.toLong();
    if (number < low || number > high) RaiseOverflow();
    return number;
}

Value convert(const Value& value, Type type) {
    switch (type) {
    case Type::Boolean:
        return value.toBool();
    case Type::Byte:
        return whole(value, 0, 255);
    case Type::Short:
        return whole(value, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
    case Type::Long:
        return value.toLong();
    case Type::Single:
        return CSng(value);
    case Type::Double:
        return value.toDouble();
    case Type::Currency:
        return value.toCurrency();
    case Type::Date:
        return value.toDate();
    case Type::Text:
    case Type::Memo:
        return value.toText();
    case Type::Null:
        break;
    }
    return value;
}

// The engine counts code points, so does this; the first test spares nearly every text the walk.
bool longerThan(const QString& text, int size) {
    if (text.size() <= size) return false;
    qsizetype pairs = 0;
    for (const QChar c : text)
        if (c.isLowSurrogate()) ++pairs;
    return text.size() - pairs > size;
}

} // namespace

Value valueForType(const Value& value, Type type, const QString& column) {
    if (value.isNull()) return type == Type::Boolean ? Value(false) : value;
    try {
        return convert(value, type);
    } catch (const RuntimeError& error) {
        if (error.Number == 6) throw;
        raise(3421, column);
    }
}

Value valueForColumn(const Value& value, const jet::Column& column) {
    Value converted = valueForType(value, column.type, column.name);
    if (const QString* text = std::get_if<QString>(&converted.data())) {
        if (column.size > 0 && longerThan(*text, column.size)) raise(3163, column.name);
        if (text->isEmpty() && !column.allowZeroLength) raise(3315, column.name);
    }
    return converted;
}

} // namespace store
