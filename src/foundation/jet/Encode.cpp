#include <jet/Translator.h>
#include <text/Convert.h>
#include <text/RuntimeError.h>
#include <text/Sort.h>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

[[noreturn]] void raiseConflict() { throw RuntimeError(3464, u"Datentypenkonflikt in Kriterienausdruck."_s); }

bool truthOf(const Value& literal) {
    if (!literal.isText()) return literal.toBool();
    const QString text = literal.toText().trimmed();
    for (const QString& word : {u"Wahr"_s, u"True"_s, u"Ja"_s, u"Yes"_s, u"Ein"_s, u"On"_s})
        if (text.compare(word, Qt::CaseInsensitive) == 0) return true;
    for (const QString& word : {u"Falsch"_s, u"False"_s, u"Nein"_s, u"No"_s, u"Aus"_s, u"Off"_s})
        if (text.compare(word, Qt::CaseInsensitive) == 0) return false;
    return CDbl(literal) != 0;
}

/// What stands before the first wildcard, as far as texts that begin with it lie side by side.
QString prefixOf(const QString& pattern) {
    qsizetype n = 0;
    while (n < pattern.size() && !u"*?#["_s.contains(pattern[n]))
        ++n;
    return SortablePrefix(QStringView(pattern).left(n)).toString();
}

Value converted(const Value& literal, Encoding encoding) {
    switch (encoding) {
    case Encoding::AsIs:
        return encode(literal);
    case Encoding::Boolean:
        return qint64(truthOf(literal) ? -1 : 0);
    case Encoding::Byte:
        return qint64(CByte(literal));
    case Encoding::Short:
        return qint64(CInt(literal));
    case Encoding::Integer:
        return qint64(CLng(literal));
    case Encoding::Single:
        static_cast<void>(CSng(literal)); // the range alone: the value keeps its digits
        return literal.toDouble();
    case Encoding::Double:
        return literal.toDouble();
    case Encoding::Currency:
        return literal.toCurrency().scaled();
    case Encoding::Date:
        return literal.toDate().days;
    case Encoding::Text:
        return literal.toText();
    case Encoding::LikePrefixLow:
        return prefixOf(literal.toText());
    case Encoding::LikePrefixHigh:
        return PrefixEnd(prefixOf(literal.toText()));
    }
    return {};
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

Value encode(const Value& literal, Encoding encoding) {
    if (literal.isNull()) return {};
    try {
        return converted(literal, encoding);
    } catch (const RuntimeError& e) {
        if (e.Number == 13) raiseConflict();
        throw;
    }
}

} // namespace jet
