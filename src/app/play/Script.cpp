#include "Script.h"

#include <text/RuntimeError.h>

#include <QMap>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace play {

namespace {

/// How many words each verb needs at least.
const QMap<QString, int>& verbs() {
    static const QMap<QString, int> table{
        {u"note"_s, 1}, {u"clock"_s, 1}, {u"window"_s, 1}, {u"scan"_s, 1},    {u"type"_s, 1},
        {u"key"_s, 1},  {u"press"_s, 1}, {u"menu"_s, 1},   {u"choose"_s, 2},  {u"box"_s, 2},
        {u"see"_s, 2},  {u"lines"_s, 1}, {u"booked"_s, 2}, {u"receipt"_s, 1}, {u"stock"_s, 2},
        {u"shot"_s, 1}, {u"page"_s, 1},  {u"form"_s, 1},   {u"query"_s, 2}};
    return table;
}

} // namespace

std::pair<QString, QString> firstWord(const QString& text) {
    static const QRegularExpression blank(u"\\s"_s);
    const QString trimmed = text.trimmed();
    const qsizetype end = trimmed.indexOf(blank);
    if (end < 0) return {trimmed, {}};
    return {trimmed.left(end), trimmed.mid(end).trimmed()};
}

QString Step::place() const {
    const QString row = u"Zeile %1"_s.arg(line);
    return script.isEmpty() ? row : script + u", "_s + row;
}

QList<Step> parseScript(const QByteArray& text, const QString& name) {
    QList<Step> steps;
    int number = 0;
    for (const QString& line : QString::fromUtf8(text).split(u'\n')) {
        ++number;
        const auto [verb, argument] = firstWord(line);
        if (verb.isEmpty() || verb.startsWith(u'#')) continue;
        const Step step{name, number, verb, argument};
        const auto known = verbs().constFind(verb);
        const auto fail = [&](const QString& what) {
            throw RuntimeError(5, step.place() + u": "_s + what, u"Script"_s);
        };
        if (known == verbs().constEnd()) fail(u"\"%1\" ist kein Schritt."_s.arg(verb));
        if (argument.isEmpty() || (*known == 2 && firstWord(argument).second.isEmpty())) {
            fail(u"\"%1\" braucht %2 Angaben."_s.arg(verb).arg(*known));
        }
        steps.append(step);
    }
    return steps;
}

} // namespace play
