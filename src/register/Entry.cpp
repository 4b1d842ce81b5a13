#include "Entry.h"

#include "Limits.h"
#include "LineWithoutArticle.h"
#include "NewArticle.h"
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
#include <session/gKunde.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Strings.h>

#include <QScopeGuard>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace till {

namespace {

/// The price inside a code of 13 characters: `euros` digits from `position`, counted from 1, then two digits
/// of cents. Nothing when others than digits stand there.
std::optional<Currency> codePrice(const QString& code, int position, int euros) {
    const QString digits = code.mid(position - 1, euros + 2);
    if (!std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; })) return {};
    return ReadMoney(digits.left(euros) + u',' + digits.mid(euros));
}
std::optional<Currency> pressPrice(const QString& code) { return codePrice(code, 9, 2); }

/// More digits behind the comma come from a code that was scanned behind an amount; nobody types them.
constexpr qsizetype mostDecimals = 6;

/// A whole number that does not fit into 32 bits; what is no number is told where it is used.
bool isTooLarge(const QString& number) {
    return IsNumeric(number) && std::abs(CDbl(Value(number))) > std::numeric_limits<int>::max();
}

void tellTooLarge(const QString& number) {
    MsgBox(u"Die Menge %1 ist zu groß und wird nicht gebucht."_s.arg(number), MsgIcon::Exclamation);
}

/// Shows a dialog. A dialog that cannot be shown (error 5) counts as one that was left without an answer.
void ask(RegisterScreen& screen, Dialog which) {
    try {
        screen.Show(which);
    } catch (const RuntimeError& error) {
        if (error.Number != 5) throw;
    }
    screen.MovePointerAway();
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
    const bool done = m_sale.Trap([this] {
        // What is scanned next must not pile up behind what is not sold.
        auto emptied = qScopeGuard([this] { Clear(); });
        if (!m_sale.Settle()) return;
        emptied.dismiss();
        decide();
    });
    if (!done) TellLeft();
}

void Entry::TellLeft() {
    if (!m_input.isEmpty()) emit InputLeft();
}

bool Entry::AddArtikelToBestellung() {
    return m_sale.Trap([this] {
        Clear();
        m_sale.basket.AddArtikelToBestellung(IsVerbundBuchung ? LineOrigin::Linked : LineOrigin::Own);
    });
}

bool Entry::AddAmount(ArtikelRecord line) {
    line.EKPreis = {};
    gArtikel = std::move(line);
    const QScopedValueRollback salesPrice(gKunde.EKPreis, false);
    return AddArtikelToBestellung();
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
    if (!m_sale.Settle() || m_sale.basket.isEmpty() || voucherSelected()) return SetInput({});
    const QString number = QString(m_input).remove(u'+');
    if (isTooLarge(number)) {
        tellTooLarge(number);
        return SetInput({});
    }
    AddQuantity(number.isEmpty() ? 1 : CLng(Value(number)));
}

void Entry::AddQuantity(int amount) {
    Basket& basket = m_sale.basket;
    if (m_sale.Settle() && !basket.isEmpty()) {
        m_sale.panel.EntryBegan();
        if (amount <= 0 ||
            limits::IsQuantityMeant(basket.rsBestellung().Number(u"Buchungs_Menge") + double(amount)))
            basket.ChangeQuantity(amount);
    }
    SetInput({});
}

void Entry::minus() {
    if (!m_sale.Settle()) return SetInput({});
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

bool Entry::isMultiplierMeant() const {
    if (IsVerbundBuchung || !IsNumeric(m_mal)) return true;
    if (!isTooLarge(m_mal)) return limits::IsQuantityMeant(CDbl(Value(m_mal)));
    tellTooLarge(m_mal);
    return false;
}

void Entry::decide() {
    bool orderSearchDone = false;
    if (!vb::Trim(m_input).isEmpty() && !isMultiplierMeant()) return Clear();
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

std::optional<Currency> Entry::readAmount(const QString& trimmed) {
    if (trimmed.size() - trimmed.lastIndexOf(u',') - 1 > mostDecimals) {
        MsgBox(
            u"%1 ist kein Betrag: hinter dem Komma stehen zu viele Ziffern.\n\nWurde hinter einem Betrag gescannt? "
            "Schließen Sie den Betrag zuerst mit der Eingabetaste ab und scannen Sie dann."_s.arg(trimmed),
            MsgIcon::Exclamation);
        return std::nullopt;
    }
    try {
        return ReadMoney(trimmed);
    } catch (const RuntimeError& error) {
        if (error.Number != 6) throw;
        MsgBox(u"Der Betrag %1 ist zu groß und wird nicht gebucht."_s.arg(trimmed), MsgIcon::Exclamation);
        return std::nullopt;
    }
}

Entry::Next Entry::freeAmount(const QString& trimmed) {
    const std::optional<Currency> read = readAmount(trimmed);
    if (!read) {
        Clear();
        return Next::End;
    }
    const Currency amount = *read;
    if (!gKFMinusBuchung && amount < Currency{}) {
        MsgBox(u"Sie können keine Minusbuchungen vornehmen. Bitte wenden Sie sich an Ihren Administrator."_s);
        Clear();
        return Next::End;
    }
    if (!limits::IsPriceMeant(amount)) {
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
    gArtikel = LineWithoutArticle(SonderArtikel::Diverses, gFreierArtikel.WarenGruppe, gFreierArtikel.Name,
                                  amount, gFreierArtikel.SteuerSatz);
    gArtikel.Buchungs_Menge = menge;
    return Next::Add;
}

QString Entry::searchable(const QString& text) {
    try {
        return sql::text(text);
    } catch (const RuntimeError& error) {
        throw RuntimeError(
            error.Number,
            u"Die Eingabe %1 enthält ein Hochkomma (') und kann deshalb nicht gesucht werden. Bitte geben Sie sie ohne "
            "dieses Zeichen ein."_s.arg(text),
            error.Source, error.Place);
    }
}

Entry::Next Entry::lookup(const QString& text, bool& orderSearchDone) {
    Recordset& rs = rsArtikel();
    rs.Requery();
    rs.FindFirst(u"Nummer="_s + searchable(text));
    return rs.NoMatch() ? notFound(text, orderSearchDone) : found(vb::Trim(text));
}

Entry::Next Entry::found(const QString& trimmed) {
    Recordset& rs = rsArtikel();
    if (gAutoPresseUpdate && trimmed.size() == 13 &&
        (trimmed.startsWith(u"414") || trimmed.startsWith(u"419"))) {
        const std::optional<Currency> price = pressPrice(trimmed);
        if (price && *price != rs.Money(u"VKPreis")) {
            const auto drop = qScopeGuard([&] { rs.CancelUpdate(); });
            rs.Edit();
            rs.Set(u"VKPreis", *price);
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
    const std::pair<bool, Dialog> questions[] = {{gArtikel.PreisAngabe, Dialog::PreisAngabe},
                                                 {gArtikel.VolumenAngabe, Dialog::VolumenAngabe},
                                                 {gArtikel.SNAngabe, Dialog::SNAngabe}};
    for (const auto& [isAsked, dialog] : questions) {
        if (!isAsked) continue;
        ask(m_sale.screen, dialog);
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
        static_cast<void>(CLng(Value(trimmed.left(3)))); // letters there are no code but an error, 13
        const std::optional<Currency> price = pressPrice(trimmed);
        if (price && trimmed.startsWith(u"414")) {
            pressCode(trimmed, *price, gVollerSteuerSatz);
            return Next::Add;
        }
        if (price && trimmed.startsWith(u"419")) {
            pressCode(trimmed, *price, gHalberSteuerSatz);
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
    if (NewArticle maker(m_sale); maker.isAsked()) {
        if (maker.Make(trimmed, rsArtikel())) return Next::Again;
    } else {
        m_sale.panel.TellUnknown(trimmed);
        m_sale.screen.UnknownArticleSound();
    }
    Clear();
    return Next::End;
}

void Entry::pressCode(const QString& trimmed, Currency price, double steuerSatz) {
    const int menge = multiplier();
    gArtikel =
        LineWithoutArticle(trimmed, u"Zeitungen / Zeitschriften"_s, u"Zeitschrift"_s, price, steuerSatz);
    gArtikel.Buchungs_Menge = menge;
}

bool Entry::priceTemplate(const QString& text, const QString& trimmed) {
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM Artikel WHERE Nummer LIKE "_s +
                                       sql::startingWith(SonderArtikel::PreisVorlage));
    for (; !rs->Eof(); rs->MoveNext()) {
        if (!text.startsWith(rs->Text(u"Nummer").remove(SonderArtikel::PreisVorlage.toString()))) continue;
        const std::optional<Currency> price = codePrice(trimmed, 8, 3);
        if (!price) return false;
        ArtikelRecord record = readArticle(*rs);
        record.Buchungs_Menge = multiplier();
        record.EKPreis = record.VKPreis = record.VKPreis2 = record.VKPreis3 = *price;
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
