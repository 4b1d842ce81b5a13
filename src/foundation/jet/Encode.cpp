#include "FunctionParts.h"

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
        return literal;
    case Encoding::Boolean:
        return truthOf(literal);
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
        return literal.toCurrency();
    case Encoding::Date:
        return literal.toDate();
    case Encoding::Text:
        return literal.toText();
    case Encoding::LikePrefixLow:
        return prefixOf(literal.toText());
    case Encoding::LikePrefixHigh:
        return PrefixEnd(prefixOf(literal.toText()));
    case Encoding::LikePattern:
        return likeExpression(literal.toText());
    case Encoding::AlikePattern:
        return likeExpression(jetPattern(literal.toText()));
    case Encoding::Today:
    case Encoding::TimeOfDay:
    case Encoding::Now:
    case Encoding::Timer:
    case Encoding::Identity:
        break;
    }
    return {};
}

} // namespace

Value encode(const Value& literal, Encoding encoding) {
    if (isClock(encoding)) return clockValue(encoding);
    if (literal.isNull()) return {};
    try {
        return converted(literal, encoding);
    } catch (const RuntimeError& e) {
        if (e.Number == 13) raiseConflict();
        throw;
    }
}

Value encode(const Parameter& parameter, const std::vector<Value>& literals) {
    return encode(parameter.literal < 0 ? Value() : literals.at(std::size_t(parameter.literal)),
                  parameter.encoding);
}

} // namespace jet
