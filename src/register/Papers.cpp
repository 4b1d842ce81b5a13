#include "InOneGo.h"
#include "Sale.h"

#include <printing/Beleg.h>
#include <register/CustomerSearch.h>
#include <register/Papers.h>
#include <register/gMaschine.h>
#include <session/MsgBox.h>
#include <session/RowGone.h>
#include <session/SonderArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Recordset.h>
#include <store/Trouble.h>
#include <text/CodePage.h>
#include <text/Convert.h>

#include <QDir>
#include <QSaveFile>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace till {

namespace {

const QString csvMarker = u"CSV_LIEF_40"_s;

/// A field of the delivery file, which knows no quotes: what would end a field or a line becomes harmless.
QString csvField(QString text) {
    text.replace(u"\r\n"_s, u" "_s);
    for (const QChar lineEnd : {u'\r', u'\n'})
        text.replace(lineEnd, u' ');
    return text.replace(u';', u',').remove(u'"');
}

} // namespace

const PaperKind& KindOf(Papier papier) {
    static const PaperKind angebot{Papier::Angebot,
                                   u"Angebote"_s,
                                   u"AngebotsDetail"_s,
                                   u"AngebotID"_s,
                                   u"Angebot"_s,
                                   u"Das Angebot"_s,
                                   u"Sie müssen ein Kunden für das Angebot auswählen."_s,
                                   u"Beim Erstellen des Angebots ist ein Fehler aufgetreten."_s,
                                   u"Angebot drucken..."_s,
                                   u"Möchten Sie das Angebot jetzt ausdrucken?"_s,
                                   u"Möchten Sie dieses Angebot wirklich löschen?"_s,
                                   u"Angebot.pld"_s,
                                   1,
                                   false};
    static const PaperKind lieferung{Papier::Lieferung,
                                     u"Lieferung"_s,
                                     u"LieferungDetail"_s,
                                     u"LieferungID"_s,
                                     u"Lieferschein"_s,
                                     u"Der Lieferschein"_s,
                                     u"Sie müssen ein Kunden für den Lieferschein auswählen."_s,
                                     u"Beim Erstellen des Lieferscheins ist ein Fehler aufgetreten."_s,
                                     u"Lieferschein drucken..."_s,
                                     u"Möchten Sie den Lieferschein jetzt ausdrucken?"_s,
                                     u"Möchten Sie diese Lieferung wirklich löschen?"_s,
                                     u"Lieferschein.pld"_s,
                                     2,
                                     true};
    return papier == Papier::Angebot ? angebot : lieferung;
}

QString PaperHistory::where(int id) const { return u" WHERE "_s + m_kind.key + u'=' + sql::number(id); }

sql::Query PaperHistory::List(std::optional<QDate> day) const {
    const QString select = u"SELECT %1, Datum, Zeit, Kunde, Betrag_Gesamt%2 FROM %3"_s.arg(
        m_kind.key, m_kind.kind == Papier::Lieferung ? u", InRechnung"_s : QString(), m_kind.head);
    if (!day) return {select, m_kind.key + u" DESC"_s};
    return {select + u" WHERE Datum="_s + sql::date(*day), u"Zeit DESC"_s};
}

sql::Query PaperHistory::Lines(int id) const { return {u"SELECT * FROM "_s + m_kind.detail + where(id), {}}; }

bool PaperHistory::mayJoinOpenLines() const {
    const int open = m_sale.basket.rowCount();
    if (open == 0) return true;
    QString text =
        u"Im Verkauf stehen noch %1 offene Zeilen. Wenn Sie %2 dazu laden, werden alle zusammen auf dessen "
        "Kunden abgerechnet."_s.arg(open)
            .arg(m_kind.kind == Papier::Angebot ? u"das Angebot"_s : u"den Lieferschein"_s);
    if (m_kind.movesStock) text += u" Auch die offenen Zeilen bewegen dann keinen Bestand mehr."_s;
    return MsgBox(text + u"\n\nSollen die Zeilen trotzdem dazu?"_s, MsgIcon::Question, MsgButtons::YesNo,
                  u"Offener Verkauf..."_s, MsgAnswer::No) == MsgAnswer::Yes;
}

void PaperHistory::copyLine(const Recordset& from) {
    Recordset& rs = m_sale.basket.rsBestellung();
    rs.AddNew();
    rs.Set(u"Maschine", gMaschine);
    rs.Set(u"KundenNummer", gKunde.KundenID);
    rs.Set(u"PersonalNummer", gKassenUser.ID);
    for (const char16_t* column :
         {u"ArtikelNummer", u"ArtikelName", u"Buchungs_Menge", u"Menge", u"Einheit", u"EKPreis",
          u"SteuerSatz", u"SNNummer", u"WarenGruppe", u"LangText", u"Zusatz1", u"Zusatz2", u"PreisInfo"})
        rs.Set(column, from.Field(QStringView(column)));
    rs.Set(u"VKPreis", from.Money(u"VKPreis_Brutto"));
    rs.Set(u"VKPreis_Rabatt", from.Money(u"VKPreis_Brutto"));
    rs.Update();
}

bool PaperHistory::AddToOrder(int id) {
    const auto head = OpenRow(u"SELECT * FROM "_s + m_kind.head + where(id) + u';');
    if (!head) return false;
    if (m_kind.kind == Papier::Lieferung && head->Flag(u"InRechnung")) {
        MsgBox(u"Der von Ihnen gewählte Lieferschein wurde bereits als Rechnung erstellt."_s,
               MsgIcon::Information, MsgButtons::OK, u"Aktion nicht möglich..."_s);
        return false;
    }
    if (m_sale.isBooking || !m_sale.Settle() || !mayJoinOpenLines()) return false;
    CustomerSearch::Load(head->Long(u"KundenNummer"));
    Basket& basket = m_sale.basket;
    const bool noteBefore = basket.IsLieferscheinBon;
    const int numberBefore = basket.LieferungNummer;
    if (m_kind.movesStock) {
        basket.IsLieferscheinBon = true;
        basket.LieferungNummer = id;
    }
    try {
        InOneGo([&] {
            const auto lines = gDB->OpenRecordset(u"SELECT * FROM "_s + m_kind.detail + where(id) + u';');
            for (; !lines->Eof(); lines->MoveNext())
                copyLine(*lines);
        });
    } catch (const RuntimeError& error) {
        basket.CancelEdit();
        // Where nobody knows whether the lines came, they must not move the stock again.
        if (error.Number != store::outcomeUnknown) {
            basket.IsLieferscheinBon = noteBefore;
            basket.LieferungNummer = numberBefore;
        }
        throw;
    }
    return true;
}

bool PaperHistory::Delete(int id) {
    if (MsgBox(m_kind.deleteQuestion, MsgIcon::Question, MsgButtons::YesNo, u"Löschen..."_s) !=
        MsgAnswer::Yes)
        return false;
    const auto lines = gDB->OpenRecordset(u"SELECT * FROM "_s + m_kind.detail + where(id) + u';');
    QStringList writes;
    for (; !lines->Eof(); lines->MoveNext()) {
        if (lines->Text(u"ArtikelNummer") == SonderArtikel::Gutschein) {
            const QString number = lines->Text(u"SNNummer");
            // An offer has sold nothing: a voucher that was sold since is its buyer's.
            if (m_kind.kind == Papier::Angebot &&
                sql::count(*gDB, u"RechnungsDetail WHERE ArtikelNummer=%1 AND SNNummer=%2"_s.arg(
                                     sql::text(SonderArtikel::Gutschein), sql::text(number))) > 0)
                continue;
            gDB->Execute(u"DELETE FROM Gutscheine WHERE GutscheinID="_s + sql::number(CLng(Value(number))) +
                         u';');
        }
        writes << u"UPDATE Artikel SET IstBestand = (IstBestand + "_s +
                      sql::number(lines->Number(u"Menge") * lines->Number(u"Buchungs_Menge")) +
                      u") WHERE LagerAktiv=-1 AND Nummer="_s + sql::text(lines->Text(u"ArtikelNummer")) +
                      u';';
    }
    if (!m_kind.movesStock || !AskYesNo(u"Möchten Sie die Positionen in den Lagerbestand zurück buchen?"_s,
                                        u"Lagerbestand aktualisieren..."_s))
        writes.clear();
    // In one go: a note that is still there has not given its goods back.
    for (const QString& table : {m_kind.detail, m_kind.head})
        writes << u"DELETE FROM "_s + table + where(id) + u';';
    gDB->ExecuteTogether(writes);
    return true;
}

void PaperHistory::Print(int id) {
    const QScopedValueRollback customer(gKunde, KundeRecord(gKunde));
    Print_Formular(id, m_kind.vorlage, m_kind.form, m_sale.printDialogs());
}

void PaperHistory::SaveCsv(int id) {
    const auto file =
        ChooseFile({u"Lieferschein speichern"_s, u"CSV Datei    (*.csv)|*.csv"_s, u"unbenannt.csv"_s, true});
    if (!file) return;
    QByteArray content = ToWindows1252(csvMarker) + "\r\n";
    const auto lines = gDB->OpenRecordset(u"SELECT * FROM "_s + m_kind.detail + where(id) + u';');
    for (; !lines->Eof(); lines->MoveNext()) {
        QStringList fields;
        for (const char16_t* column :
             {u"ArtikelNummer", u"ArtikelName", u"LangText", u"WarenGruppe", u"Zusatz1", u"Zusatz2",
              u"Buchungs_Menge", u"Menge", u"Einheit", u"SteuerSatz", u"EKPreis", u"VKPreis_Brutto"})
            fields << csvField(lines->Text(column));
        content += ToWindows1252(fields.join(u';')) + "\r\n";
    }
    QSaveFile target(*file);
    if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size() || !target.commit())
        throw RuntimeError(70,
                           u"\"%1\" kann nicht geschrieben werden."_s.arg(QDir::toNativeSeparators(*file)));
    MsgBox(u"Ihre Lieferschein wurde ordnungsgemäß erstellt."_s);
}

} // namespace till
