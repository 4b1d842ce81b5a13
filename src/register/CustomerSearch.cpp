#include <register/CustomerSearch.h>
#include <session/Globals.h>
#include <session/Keys.h>
#include <session/KundenFields.h>
#include <session/RowGone.h>
#include <store/Database.h>
#include <store/SqlText.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till::CustomerSearch {

namespace {

const QString active = u"SELECT * FROM Kunden WHERE Gesperrt=0"_s;

/// Inside a pattern; a bracket is a sign like any other there.
QString pattern(const QString& text) { return sql::doubled(text).replace(u'[', u"[[]"_s); }

/// `column` holds the text. Whoever types digits means a number as well, whichever column is chosen.
QString where(const QString& column, const QString& text) {
    const QString wanted = pattern(text);
    const QString condition = column + u" LIKE "_s + sql::containing(wanted);
    const bool digits = std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit(); });
    if (!digits) return active + u" AND "_s + condition;
    return active + u" AND ("_s + condition + u" OR KundenNummer LIKE "_s + sql::startingWith(wanted) + u')';
}

QString withID(const QString& key) { return u" WHERE KundenID="_s + sql::number(GetKeyID(key, 2)); }

} // namespace

sql::Query Find(By by, const QString& text) {
    switch (by) {
    case Number:
        break;
    case Name:
        return {where(u"Name_1"_s, text), u"Name_1 ASC"_s};
    case Town:
        return {where(u"Ort"_s, text), u"Name_1 ASC"_s};
    }
    return {active, u"KundenNummer ASC"_s};
}

QString FindNumber(const QString& number) {
    if (number.isEmpty()) return {};
    // A pattern with a fixed beginning is looked for in the index; every sign of a number means itself.
    QString wanted;
    for (const QChar c : sql::doubled(number))
        wanted += u"*?#["_s.contains(c) ? u'[' + QString(c) + u']' : QString(c);
    const auto rs = gDB->OpenRecordset(active + u" AND KundenNummer LIKE "_s + sql::startingWith(wanted) +
                                       u" ORDER BY KundenNummer ASC;"_s);
    return rs->Eof() ? QString() : u"ID"_s + rs->Text(u"KundenID");
}

sql::Query Vehicles(const QString& key) {
    return {u"SELECT * FROM KundenKFZInfo"_s + withID(key), u"ID ASC"_s};
}

bool Choose(const QString& key) {
    KundeRecord kunde = KundeRecord::Standard();
    if (key != StandardKey) {
        const auto rs = OpenRow(u"SELECT * FROM Kunden"_s + withID(key) + u';');
        if (!rs) return false;
        load(*rs, KundenFields(), kunde);
    }
    kunde.Ergebnis = 1;
    gKunde = kunde;
    return true;
}

void Load(int KundenID) {
    KundeRecord kunde = KundeRecord::Standard();
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM Kunden WHERE KundenID="_s + sql::number(KundenID) + u';');
    if (!rs->Eof()) load(*rs, KundenFields(), kunde);
    gKunde = kunde;
}

} // namespace till::CustomerSearch
