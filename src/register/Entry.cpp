#include "Entry.h"

#include "Sale.h"

#include <register/Prices.h>
#include <session/Bilder.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/Settings.h>
#include <session/SonderArtikel.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Strings.h>

#include <QScopeGuard>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// The price inside a code of 13 digits: `euros` digits from `position`, counted from 1, then two digits of
/// cents.
Currency codePrice(const QString& code, int position, int euros) {
    return ReadMoney(code.mid(position - 1, euros) + u',' + code.mid(position - 1 + euros, 2));
}
Currency pressPrice(const QString& code) { return codePrice(code, 9, 2); }

/// Shows a dialog. A dialog that cannot be shown (error 5) counts as one that was left without an answer.
void ask(RegisterScreen& screen, Dialog which) {
    try {
        screen.Show(which);
    } catch (const RuntimeError& error) {
        if (error.Number != 5) throw;
    }
    screen.MovePointerAway();
}

/// A line without an article on file.
ArtikelRecord freeRecord(const QString& nummer, const QString& name, const QString& group, Currency price,
                         double steuerSatz) {
    ArtikelRecord record;
    record.Nummer = nummer;
    record.Name = name;
    record.WarenGruppe = group;
    record.EKPreis = record.VKPreis = record.VKPreis2 = record.VKPreis3 = price;
    record.SteuerSatz = Currency::fromDouble(steuerSatz);
    record.Einheit = u"Stück"_s;
    record.Menge = 1;
    record.Aktiv = true;
    return record;
}

/// What else is on file for an article. Most have neither, so one question stands for two.
struct Extras {
    bool actionPrice, links;
};
Extras extrasOf(const QString& nummer) {
    const auto rs = gDB->OpenRecordset(
        u"SELECT (SELECT COUNT(*) FROM AktionsPreise WHERE ArtikelNummer=%1) AS Aktionen, "
        "(SELECT COUNT(*) FROM VerbundArtikel WHERE SourceArtikelNummer=%1) AS Verbund;"_s.arg(
            sql::text(nummer)));
    return {rs->Long(u"Aktionen") > 0, rs->Long(u"Verbund") > 0};
}

/// What a found article and a price template have in common.
ArtikelRecord readArticle(const Recordset& rs) {
    ArtikelRecord record;
    record.Nummer = rs.Text(u"Nummer");
    record.WarenGruppe = rs.Text(u"WarenGruppe");
    record.Name = rs.Text(u"Name");
    record.LangText = rs.Text(u"LangText");
    record.SteuerSatz = rs.Money(u"SteuerSatz");
    record.Einheit = rs.Text(u"Einheit");
    record.Menge = rs.Number(u"Menge");
    record.Rabatt = rs.Flag(u"Rabatt");
    record.Aktiv = rs.Flag(u"Aktiv");
    record.PreisAngabe = rs.Flag(u"PreisAngabe");
    record.VolumenAngabe = rs.Flag(u"VolumenAngabe");
    record.LagerAktiv = rs.Flag(u"LagerAktiv");
    record.SollBestand = rs.Number(u"SollBestand");
    record.IstBestand = rs.Number(u"IstBestand");
    record.SNAngabe = rs.Flag(u"SNAngabe");
    record.Zusatz1 = rs.Text(u"Zusatz1");
    record.Zusatz2 = rs.Text(u"Zusatz2");
    return record;
}

} // namespace

void Entry::Open() { m_rsArtikel = gDB->OpenRecordset(u"Artikel"_s); }

Recordset& Entry::rsArtikel() {
    if (!m_rsArtikel) throw RuntimeError(91, u"Die Artikel sind nicht geladen"_s, u"frmKasse"_s);
    return *m_rsArtikel;
}

void Entry::Enter() {
    m_sale.Trap([this] {
        m_sale.ClearPaid();
        decide();
    });
}

bool Entry::AddArtikelToBestellung() {
    return m_sale.Trap([this] {
        Clear();
        m_sale.basket.AddArtikelToBestellung(IsVerbundBuchung ? LineOrigin::Linked : LineOrigin::Own);
    });
}

void Entry::SetInput(const QString& text) {
    if (text == m_input) return;
    m_input = text;
    emit InputChanged(m_input);
    if (!m_input.isEmpty() && !IsVerbundBuchung) m_sale.panel.EntryBegan();
    examine();
}

void Entry::SetMal(const QString& text) {
    if (text == m_mal) return;
    m_mal = text;
    emit MalChanged(m_mal);
}

void Entry::Clear() {
    SetInput({});
    SetMal({});
}

void Entry::examine() {
    if (m_input.contains(u'*')) {
        QString factor = m_input;
        factor.remove(u'*');
        if (!gKFMinusBuchung) factor.remove(u'-');
        SetMal(factor);
        SetInput({});
    } else if (m_input.contains(u'+')) {
        plus();
    } else if (m_input.endsWith(u'-') && IsNumeric(QString(m_input).remove(u'-'))) {
        minus();
    }
}

bool Entry::voucherSelected() {
    return m_sale.basket.rsBestellung().Text(u"ArtikelNummer") == SonderArtikel::Gutschein;
}

void Entry::plus() {
    if (m_sale.basket.isEmpty() || voucherSelected()) return SetInput({});
    const QString number = QString(m_input).remove(u'+');
    AddQuantity(number.isEmpty() ? 1 : CLng(Value(number)));
}

void Entry::AddQuantity(int amount) {
    if (!m_sale.basket.isEmpty()) {
        m_sale.panel.EntryBegan();
        m_sale.basket.ChangeQuantity(amount);
    }
    SetInput({});
}

void Entry::minus() {
    if (m_sale.basket.isEmpty()) return;
    if (!voucherSelected()) {
        const double amount = CDbl(Value(QString(m_input).remove(u'-')));
        const double booked = m_sale.basket.rsBestellung().Number(u"Buchungs_Menge");
        if (booked <= amount)
            MsgBox(u"Die Anzahl konnte nicht veringert werden, da nur "_s + NumberText(booked) +
                   u" Aritkel gebucht sind."_s);
        else
            m_sale.basket.ChangeQuantity(-amount);
    }
    SetInput({});
}

int Entry::multiplier() const { return m_mal.isEmpty() ? 1 : CLng(Value(m_mal)); }

void Entry::decide() {
    bool orderSearchDone = false;
    for (Next next = Next::Again; next == Next::Again;) {
        const QString text = m_input;
        const QString trimmed = vb::Trim(text);
        if (trimmed.isEmpty()) return;
        m_mayHaveLinks = true;
        if (!orderSearchDone && trimmed.contains(u',') && IsNumeric(trimmed))
            next = freeAmount(trimmed);
        else
            next = lookup(text, orderSearchDone);
        if (next != Next::Add) continue;
        const bool expand = m_mayHaveLinks && !IsVerbundBuchung;
        if (AddArtikelToBestellung() && expand) BookVerbundArtikel(gArtikel.Nummer, gArtikel.Buchungs_Menge);
    }
}

Entry::Next Entry::freeAmount(const QString& trimmed) {
    const Currency amount = ReadMoney(trimmed);
    if (!gKFMinusBuchung && amount < Currency{}) {
        MsgBox(u"Sie können keine Minusbuchungen vornehmen. Bitte wenden Sie sich an Ihren Administrator."_s);
        Clear();
        return Next::End;
    }
    const QString service = u"SERVICE"_s, lastRate = u"LastSteuerSatz"_s,
                  showDialog = u"ShowManualArtikelDialog"_s;
    gFreierArtikel = {0, u"Diverser Artikel"_s, u"Diverses"_s, gVollerSteuerSatz};
    if (const auto rate = SettingNumber(*gSystem, service, lastRate, KonfigIni()))
        gFreierArtikel.SteuerSatz = *rate;
    const QString show = gSystem->ReadProfileString(service, showDialog, KonfigIni());
    if (show.isEmpty()) KeepSetting(service, showDialog, u"1"_s);
    if (show.isEmpty() || show == u"1"_s)
        ask(m_sale.screen, Dialog::FreierArtikel);
    else
        gFreierArtikel.Ergebnis = 1;
    if (gFreierArtikel.Ergebnis == 0) {
        Clear();
        return Next::End;
    }
    KeepSetting(service, lastRate, NumberText(gFreierArtikel.SteuerSatz));
    const int menge = multiplier();
    gArtikel = freeRecord(SonderArtikel::Diverses.toString(), gFreierArtikel.Name, gFreierArtikel.WarenGruppe,
                          amount, gFreierArtikel.SteuerSatz);
    gArtikel.Buchungs_Menge = menge;
    return Next::Add;
}

Entry::Next Entry::lookup(const QString& text, bool& orderSearchDone) {
    Recordset& rs = rsArtikel();
    rs.Requery();
    rs.FindFirst(u"Nummer="_s + sql::text(text));
    return rs.NoMatch() ? notFound(text, orderSearchDone) : found(vb::Trim(text));
}

Entry::Next Entry::found(const QString& trimmed) {
    Recordset& rs = rsArtikel();
    if (gAutoPresseUpdate && trimmed.size() == 13 &&
        (trimmed.startsWith(u"414") || trimmed.startsWith(u"419"))) {
        const Currency price = pressPrice(trimmed);
        if (price != rs.Money(u"VKPreis")) {
            const auto drop = qScopeGuard([&] { rs.CancelUpdate(); });
            rs.Edit();
            rs.Set(u"VKPreis", price);
            rs.Update();
        }
    }
    ArtikelRecord record = readArticle(rs);
    record.Buchungs_Menge = multiplier();
    record.Bild = VorhandenesBild(Bild::Artikel, record.Nummer);
    record.EKPreis = rs.Money(u"EKPreis");
    record.GrundPreis = rs.Money(u"VKPreis");
    const Extras extras = extrasOf(record.Nummer);
    record.VKPreis = extras.actionPrice ? ActionPrice(record.Nummer, record.GrundPreis) : record.GrundPreis;
    m_mayHaveLinks = extras.links;
    record.VKPreis2 = rs.Money(u"VKPreis2");
    record.VKPreis3 = rs.Money(u"VKPreis3");
    record.FreiFeld = rs.Text(u"FreiFeld");
    record.GrundMenge = record.Menge;
    gArtikel = record;
    if (!gArtikel.Aktiv) {
        MsgBox(
            u"Der von Ihnen gewünschte Artikel wurde als nicht Aktiv markiert und kann zur Zeit nicht verkauft werden."_s);
        Clear();
        return Next::End;
    }
    if (gArtikel.PreisAngabe) {
        ask(m_sale.screen, Dialog::PreisAngabe);
        if (gArtikel.Ergebnis == 0) {
            Clear();
            return Next::End;
        }
        gArtikel.Ergebnis = 0;
    }
    return Next::Add;
}

Entry::Next Entry::notFound(const QString& text, bool& orderSearchDone) {
    const QString trimmed = vb::Trim(text);
    if (trimmed.size() == 13) {
        const int country = CLng(Value(trimmed.left(3)));
        if (country == 414 || country == 419) {
            pressCode(trimmed, country == 414 ? gVollerSteuerSatz : gHalberSteuerSatz);
            return Next::Add;
        }
        if (priceTemplate(text, trimmed)) return Next::Add;
    }
    if (gEnabledOrderSearch && !orderSearchDone) {
        orderSearchDone = true;
        if (const auto nummer = orderNumber(text)) {
            SetInput(*nummer);
            if (!nummer->isEmpty()) return Next::Again;
            SetMal({});
            return Next::End;
        }
    }
    m_sale.panel.TellUnknown(trimmed);
    m_sale.screen.UnknownArticleSound();
    Clear();
    return Next::End;
}

void Entry::pressCode(const QString& trimmed, double steuerSatz) {
    const int menge = multiplier();
    gArtikel = freeRecord(trimmed, u"Zeitschrift"_s, u"Zeitungen / Zeitschriften"_s, pressPrice(trimmed),
                          steuerSatz);
    gArtikel.Buchungs_Menge = menge;
}

bool Entry::priceTemplate(const QString& text, const QString& trimmed) {
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM Artikel WHERE Nummer LIKE "_s +
                                       sql::startingWith(SonderArtikel::PreisVorlage));
    for (; !rs->Eof(); rs->MoveNext()) {
        if (!text.startsWith(rs->Text(u"Nummer").remove(SonderArtikel::PreisVorlage.toString()))) continue;
        const Currency price = codePrice(trimmed, 8, 3);
        ArtikelRecord record = readArticle(*rs);
        record.Buchungs_Menge = multiplier();
        record.EKPreis = record.VKPreis = record.VKPreis2 = record.VKPreis3 = price;
        gArtikel = record;
        return true;
    }
    return false;
}

std::optional<QString> Entry::orderNumber(const QString& text) {
    const auto rs = gDB->OpenRecordset(
        u"SELECT ArtikelNummer FROM ArtikelLieferanten WHERE BestellNummer="_s + sql::text(text) + u';');
    if (rs->Eof()) return std::nullopt;
    const QString only = rs->Text(u"ArtikelNummer");
    rs->MoveNext();
    if (rs->Eof()) return only;
    gBestellNummerWahl = {text, {}};
    ask(m_sale.screen, Dialog::ArtikelLieferanten);
    return gBestellNummerWahl.ArtikelNummer;
}

void Entry::BookVerbundArtikel(const QString& ArtikelNummer, double Menge) {
    m_sale.Trap([&] {
        const QScopedValueRollback linked(IsVerbundBuchung, true);
        const auto rs = gDB->OpenRecordset(
            u"SELECT DestArtikelNummer, Anzahl FROM VerbundArtikel WHERE SourceArtikelNummer="_s +
            sql::text(ArtikelNummer) + u';');
        for (; !rs->Eof(); rs->MoveNext()) {
            SetMal(NumberText(rs->Number(u"Anzahl") * Menge));
            SetInput(rs->Text(u"DestArtikelNummer"));
            Enter();
            m_sale.screen.Yield();
        }
    });
}

} // namespace till
