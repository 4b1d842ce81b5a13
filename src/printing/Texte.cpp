#include <printing/Texte.h>
#include <session/Globals.h>
#include <text/CodePage.h>
#include <text/Convert.h>
#include <text/Format.h>
#include <text/RuntimeError.h>

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString withDate(const QString& text, QDate day) {
    const QString opening = u"DateAdd["_s;
    const qsizetype start = text.indexOf(opening, 0, Qt::CaseInsensitive);
    if (start < 0) return text;
    const qsizetype inside = start + opening.size();
    const qsizetype end = text.indexOf(u']', inside);
    if (end < 0) return text;
    const QString days = text.sliced(inside, end - inside);
    if (!IsNumeric(days)) return text;

    const QDate moved = day.addDays(CLng(Value(days)));
    if (!moved.isValid() || moved.year() < 100 || moved.year() > 9999) RaiseInvalidCall();
    QString expanded = text;
    return expanded.replace(opening + days + u']', moved.toString(u"dd.MM.yyyy"_s), Qt::CaseInsensitive);
}

} // namespace

QString ExpandTextMakros(const QString& Text, QDate BelegDatum, Currency Betrag) {
    QString text = withDate(Text, BelegDatum);
    return text.replace(u"[SUMME]"_s, Format(Value(Betrag), u"###0.00") + u' ' + gWaehrungsSymbol);
}

QString GetFussZeile(const QString& FileName, QDate BelegDatum) {
    const QString path = gDBPath + FileName;
    if (FileName.isEmpty() || !QFileInfo(path).isFile()) return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw RuntimeError(70, u"Zugriff verweigert: "_s + path);
    return withDate(FromFileBytes(file.readAll()), BelegDatum);
}
