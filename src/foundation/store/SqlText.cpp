#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace sql {

namespace {

QString quoted(const QString& before, QStringView typed, const QString& behind) {
    for (qsizetype at = 0; at < typed.size(); ++at) {
        if (typed[at] != u'\'') continue;
        if (at + 1 < typed.size() && typed[at + 1] == u'\'') {
            ++at; // a pair stays inside the literal
            continue;
        }
        throw RuntimeError(
            3075,
            u"Syntaxfehler bei '%1' (Stelle %2): Das abschließende Anführungszeichen fehlt."_s.arg(
                typed.mid(at, 25).trimmed().toString(), QString::number(at + 1)),
            {}, at);
    }
    return u'\'' + before + typed.toString() + behind + u'\'';
}

} // namespace

QString text(QStringView typed) { return quoted({}, typed, {}); }
QString containing(QStringView typed) { return quoted(u"*"_s, typed, u"*"_s); }
QString startingWith(QStringView typed) { return quoted({}, typed, u"*"_s); }

QString doubled(QStringView typed) { return spoken(typed).replace(u'\'', u"''"_s); }
QString spoken(QStringView typed) { return typed.toString().replace(u"''"_s, u"'"_s); }

QString number(int value) { return QString::number(value); }
QString number(double value) {
    if (!std::isfinite(value)) RaiseOverflow();
    return NumberText(value).replace(u',', u'.');
}
QString number(Currency value) { return CStr(Value(value)).replace(u',', u'.'); }

QString date(QDate value) {
    if (!value.isValid()) RaiseInvalidCall();
    return u'#' + value.toString(u"MM.dd.yyyy"_s) + u'#';
}

QString date(DateTime value) {
    const QTime time = value.time();
    if (time == QTime(0, 0)) return date(value.date());
    return u'#' + value.date().toString(u"MM.dd.yyyy"_s) + time.toString(u" HH:mm:ss'#'"_s);
}

QString flag(bool value) { return value ? u"-1"_s : u"0"_s; }

int count(Database& db, const QString& from) {
    return db.OpenRecordset(u"SELECT COUNT(*) AS Anzahl FROM "_s + from)->Long(u"Anzahl");
}

std::vector<Value> firstColumn(Database& db, const QString& query) {
    std::vector<Value> values;
    for (const auto rs = db.OpenRecordset(query); !rs->Eof(); rs->MoveNext()) {
        Value value = rs->Field(0);
        if (!value.isNull() && value != Value(QString())) values.push_back(std::move(value));
    }
    return values;
}

QStringList firstTexts(Database& db, const QString& query) {
    QStringList texts;
    for (const Value& value : firstColumn(db, query))
        texts << value.toText();
    return texts;
}

} // namespace sql
