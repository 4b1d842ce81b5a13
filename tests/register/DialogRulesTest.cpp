#include "Till.h"

#include <register/CustomerSearch.h>
#include <register/NumberDialogs.h>
#include <register/OrderNumbers.h>
#include <register/TotalDialog.h>
#include <register/gMaschine.h>

// The rules behind the register's small dialogs.

namespace {

Currency money(double value) { return Currency::fromDouble(value); }

class DialogRules : public Till {};

int errorOf(const std::function<void()>& act) {
    try {
        act();
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}

TEST_F(DialogRules, PaymentDialog) {
    gZahlung.Betrag_Gesamt = money(12.5);
    till::TotalDialog dialog;
    EXPECT_EQ(u"12,50"_s, dialog.Summe());
    EXPECT_EQ(u"12,50"_s, dialog.Gegeben());
    EXPECT_EQ(u"0,00"_s, dialog.Back());
    dialog.SetGegeben(u"20"_s);
    EXPECT_EQ(u"7,50"_s, dialog.Back());
    EXPECT_TRUE(dialog.MayAddDecimal());
    for (const QString& tooLittle : {u"12,49"_s, u""_s, u"x"_s}) {
        dialog.SetGegeben(tooLittle);
        dialogs.expectMsgBox(u"FEHLER: Der gegebene Betrag kann nicht kleiner sein als die Rechnungssumme."_s,
                             MsgIcon::Critical);
        EXPECT_FALSE(dialog.Bar());
        EXPECT_EQ(u"12,50"_s, dialog.Gegeben());
    }
    // A code that came in spite of all is asked about, and Enter says no.
    dialog.SetGegeben(u"2005000000171"_s);
    dialogs.expectMsgBox(u"Der Kunde soll 2.005.000.000.171,00 € gegeben haben...*"_s, MsgIcon::Question,
                         MsgAnswer::No);
    EXPECT_FALSE(dialog.Bar());
    EXPECT_EQ(u"12,50"_s, dialog.Gegeben());
    EXPECT_EQ(0, gZahlung.Ergebnis);
    dialog.SetGegeben(QString(30, u'9')); // more than money can hold
    dialogs.expectMsgBox(u"FEHLER: Der gegebene...*"_s, MsgIcon::Critical);
    EXPECT_FALSE(dialog.Bar());
    dialog.SetGegeben(u"50,00"_s);
    EXPECT_TRUE(dialog.Bar());
    EXPECT_EQ(money(50), gZahlung.Betrag_Gegeben);
    EXPECT_EQ(money(37.5), gZahlung.Betrag_Zurueck);
    EXPECT_EQ(u"BAR"_s, gZahlung.ZahlArt);
    EXPECT_EQ(1, gZahlung.Ergebnis);
}

TEST_F(DialogRules, NotesAddUpToWhatIsGiven) {
    gZahlung.Betrag_Gesamt = money(1022.3);
    gFormatPreis = u"##,##0.00"_s;
    till::TotalDialog dialog;
    EXPECT_EQ(u"Zurück"_s, dialog.BackCaption());
    dialog.AddNote(20);
    EXPECT_EQ(u"20,00"_s, dialog.Gegeben()) << "the amount it opened with is no money";
    EXPECT_EQ(u"Noch offen"_s, dialog.BackCaption());
    for (int i = 0; i < 10; ++i)
        dialog.AddNote(100);
    dialog.AddNote(5);
    EXPECT_EQ(u"1.025,00"_s, dialog.Gegeben());
    EXPECT_EQ(u"2,70"_s, dialog.Back());
    EXPECT_FALSE(dialog.IsShort());
    dialog.Passend();
    EXPECT_EQ(u"1.022,30"_s, dialog.Gegeben());
    dialog.AddNote(5);
    dialog.SetGegeben(u"7"_s);
    dialog.AddNote(50);
    EXPECT_EQ(u"50,00"_s, dialog.Gegeben()) << "a typed amount is not counted on";
    EXPECT_TRUE(dialog.IsShort());
}

TEST_F(DialogRules, EveryTotalCanBePaid) {
    gKassenUser.R_KassenAbschluss = false; // nor can he leave
    for (const double total : {1'000'000.0, 999'999'999.99}) {
        gZahlung = {};
        gZahlung.Betrag_Gesamt = money(total);
        till::TotalDialog dialog;
        EXPECT_TRUE(dialog.Bar()) << "exactly the total is never asked about";
        EXPECT_EQ(money(total), gZahlung.Betrag_Gegeben);
        dialog.SetGegeben(u"2000000000"_s);
        dialogs.expectMsgBox(u"Der Kunde soll 2.000.000.000,00 € gegeben haben...*"_s, MsgIcon::Question,
                             MsgAnswer::Yes);
        EXPECT_TRUE(dialog.Bar()) << "and more when it is meant";
        EXPECT_EQ(money(2e9), gZahlung.Betrag_Gegeben);
    }
}

TEST_F(DialogRules, PaymentOfATakeBack) {
    gZahlung.Betrag_Gesamt = money(-4.2);
    till::TotalDialog dialog;
    EXPECT_EQ(u"0,00"_s, dialog.Gegeben());
    EXPECT_EQ(u"4,20"_s, dialog.Back());
    EXPECT_TRUE(dialog.Bar());
    EXPECT_EQ(money(0), gZahlung.Betrag_Gegeben);
    EXPECT_EQ(money(4.2), gZahlung.Betrag_Zurueck);
}

TEST_F(DialogRules, PaymentOutsideTheHouse) {
    shop.article(u"1"_s, u"Suppe"_s, 5, {{u"SteuerSatz"_s, 19}});
    scan(u"1"_s);
    gZahlung.Betrag_Gesamt = money(5);
    till::TotalDialog dialog;
    gHalberSteuerSatz = 7.5; // the comma of a broken rate breaks the statement
    EXPECT_THROW(std::ignore = dialog.AHVerkauf(), RuntimeError);
    EXPECT_EQ(0, gZahlung.Ergebnis);
    gHalberSteuerSatz = 7;
    EXPECT_TRUE(dialog.AHVerkauf());
    EXPECT_EQ(QStringList{u"7|5"_s}, shop.rows(u"SELECT SteuerSatz, VKPreis_Rabatt FROM Bestellung"_s));
}

TEST_F(DialogRules, PaymentCancelledOnlyWithTheRight) {
    gZahlung.Ergebnis = 1;
    till::TotalDialog dialog;
    gKassenUser.R_KassenAbschluss = false;
    dialogs.expectMsgBox(u"Sie sind nicht berechtigt, diese Aktion abzubrechen."_s);
    EXPECT_FALSE(dialog.Escape());
    EXPECT_EQ(1, gZahlung.Ergebnis);
    gKassenUser.R_KassenAbschluss = true;
    EXPECT_TRUE(dialog.Escape());
    EXPECT_EQ(0, gZahlung.Ergebnis);
}

TEST_F(DialogRules, KeysOfTheNumberBoxes) {
    using till::NumberDialog;
    const auto accepted = [](const auto& filter) {
        QString text;
        for (const QChar key : u"09,.-+*a "_s) {
            const QChar put = filter(key);
            if (!put.isNull()) text += put;
        }
        return text;
    };
    EXPECT_EQ(u"09,,"_s, accepted(&till::TotalDialog::AcceptKey));
    EXPECT_EQ(u"09,"_s, accepted([](QChar c) { return NumberDialog(NumberDialog::Rabatt).AcceptKey(c); }));
    EXPECT_EQ(u"09,,"_s,
              accepted([](QChar c) { return NumberDialog(NumberDialog::PreisAngabe).AcceptKey(c); }));
    EXPECT_EQ(u"09,,-"_s,
              accepted([](QChar c) { return NumberDialog(NumberDialog::FreierPreis).AcceptKey(c); }));
}

bool confirm(const till::NumberDialog& dialog, QString text) { return dialog.Confirm(text); }

TEST_F(DialogRules, ResultsOfTheNumberBoxes) {
    using till::NumberDialog;
    const NumberDialog discount(NumberDialog::Rabatt), price(NumberDialog::PreisAngabe),
        free(NumberDialog::FreierPreis);
    confirm(discount, u""_s);
    EXPECT_EQ(money(0), gRabattAngabe.Prozent);
    confirm(discount, u"2,5"_s); // whole percents, half to even
    EXPECT_EQ(money(2), gRabattAngabe.Prozent);
    EXPECT_EQ(1, gRabattAngabe.Ergebnis);
    EXPECT_THROW(confirm(discount, u","_s), RuntimeError);
    dialogs.expectMsgBox(u"Die Zahl 40000 ist zu groß."_s, MsgIcon::Exclamation);
    EXPECT_FALSE(confirm(discount, u"40000"_s));
    discount.Cancel();
    EXPECT_EQ(0, gRabattAngabe.Ergebnis);

    gArtikel.VKPreis = money(1.5);
    EXPECT_EQ(u"1,5"_s, price.OpensWith());
    confirm(price, u"2,75"_s);
    EXPECT_EQ(money(2.75), gArtikel.VKPreis);
    EXPECT_EQ(1, gArtikel.Ergebnis);
    confirm(price, u""_s);
    EXPECT_EQ(0, gArtikel.Ergebnis);

    confirm(free, u"-3"_s);
    EXPECT_EQ(money(-3), gPreisAngabe.Preis);
    EXPECT_EQ(1, gPreisAngabe.Ergebnis);
    confirm(free, u""_s);
    EXPECT_EQ(0, gPreisAngabe.Ergebnis);
}

TEST_F(DialogRules, FiguresBeyondTheirLimitsAreAskedAbout) {
    using till::NumberDialog;
    const NumberDialog discount(NumberDialog::Rabatt), price(NumberDialog::PreisAngabe),
        free(NumberDialog::FreierPreis);
    const auto asked = [this](const NumberDialog& dialog, const QString& text, const QString& question) {
        gRabattAngabe = {};
        gPreisAngabe = {};
        gArtikel.VKPreis = {};
        gArtikel.Ergebnis = 0;
        dialogs.expectMsgBox(question + u"...*"_s, MsgIcon::Question, MsgAnswer::No);
        EXPECT_FALSE(confirm(dialog, text));
        EXPECT_EQ(0, gRabattAngabe.Ergebnis + gPreisAngabe.Ergebnis + gArtikel.Ergebnis);
        EXPECT_EQ(Currency(), gRabattAngabe.Prozent + gPreisAngabe.Preis + gArtikel.VKPreis);
        dialogs.expectMsgBox(question + u"...*"_s, MsgIcon::Question, MsgAnswer::Yes);
        EXPECT_TRUE(confirm(dialog, text));
        EXPECT_EQ(1, gRabattAngabe.Ergebnis + gPreisAngabe.Ergebnis + gArtikel.Ergebnis);
        dialogs.verify();
    };
    asked(discount, u"101"_s, u"Ein Rabatt von 101 % ist ungewöhnlich."_s);
    asked(discount, u"-1"_s, u"Ein Rabatt von -1 % ist ungewöhnlich."_s);
    asked(price, u"2005000000171"_s, u"Ein Preis von 2.005.000.000.171,00 € ist ungewöhnlich hoch."_s);
    asked(free, u"-100000,01"_s, u"Ein Preis von -100.000,01 € ist ungewöhnlich hoch."_s);
    EXPECT_TRUE(confirm(discount, u"100"_s));
    EXPECT_TRUE(confirm(free, u"100000"_s));
    dialogs.expectMsgBox(u"Die Zahl 99999999999999999999 ist zu groß."_s, MsgIcon::Exclamation);
    EXPECT_FALSE(confirm(price, u"99999999999999999999"_s));
    gGrenzePreis = gGrenzeRabatt = 0; // no limits
    EXPECT_TRUE(confirm(price, u"2005000000171"_s));
    EXPECT_TRUE(confirm(discount, u"101"_s));
}

TEST_F(DialogRules, FreeArticle) {
    for (const QString& group : {u"Wein"_s, u"Deko"_s, u""_s, u"Deko"_s})
        shop.insert(u"RechnungsDetail"_s, {{u"WarenGruppe"_s, group}});
    EXPECT_EQ((QStringList{u"Deko"_s, u"Wein"_s}), till::FreierArtikelDialog::WarenGruppen());
    EXPECT_EQ((QStringList{u"19,0"_s, u"7,0"_s}), till::FreierArtikelDialog::SteuerSaetze());
    dialogs.expectMsgBox(u"Sie müssen ein Namen für diesen Artikel eingeben."_s);
    EXPECT_FALSE(till::FreierArtikelDialog::Confirm(u"  "_s, u"7,0"_s, u"Deko"_s));
    EXPECT_EQ(0, gFreierArtikel.Ergebnis);
    EXPECT_THROW(std::ignore = till::FreierArtikelDialog::Confirm(u"A"_s, u"viel"_s, u""_s), RuntimeError);
    EXPECT_TRUE(till::FreierArtikelDialog::Confirm(u" Kerze "_s, u"7,0"_s, QString(60, u'x')));
    EXPECT_EQ(u"Kerze"_s, gFreierArtikel.Name);
    EXPECT_DOUBLE_EQ(7, gFreierArtikel.SteuerSatz);
    EXPECT_EQ(50, gFreierArtikel.WarenGruppe.size());
}

TEST_F(DialogRules, ArticlesOfAnOrderNumber) {
    shop.article(u"1"_s, u"Tee"_s, 10);
    const int supplier = shop.insert(u"Lieferanten"_s, {{u"Name_1"_s, u"Nordhof"_s}});
    for (const QString& article : {u"1"_s, u"weg"_s})
        shop.insert(
            u"ArtikelLieferanten"_s,
            {{u"ArtikelNummer"_s, article}, {u"BestellNummer"_s, u"B"_s}, {u"LieferantID"_s, supplier}});
    EXPECT_EQ((QStringList{u"1|Tee|Nordhof"_s, u"weg|Null|Nordhof"_s}),
              shop.rows(till::FindOrderNumber(u"B"_s)));
    EXPECT_TRUE(shop.rows(till::FindOrderNumber(u"C"_s)).isEmpty());
    EXPECT_EQ(3075, errorOf([] { (void)till::FindOrderNumber(u"x' OR '1'='1"_s); }));
}

TEST_F(DialogRules, CustomerSearch) {
    const auto customer = [this](const QString& number, const QString& name, const QString& town,
                                 bool blocked = false) {
        return shop.insert(u"Kunden"_s, {{u"KundenNummer"_s, number},
                                         {u"Name_1"_s, name},
                                         {u"Ort"_s, town},
                                         {u"Rabatt"_s, 2.5},
                                         {u"PreisGruppe"_s, 2},
                                         {u"EKPreis"_s, true},
                                         {u"Gesperrt"_s, blocked}});
    };
    namespace search = till::CustomerSearch;
    const int second = customer(u"20"_s, u"Hof Meier"_s, u"Kiel"_s);
    const int first = customer(u"9[1*"_s, u"Albers"_s, u"Husum"_s);
    customer(u"30"_s, u"Meierei"_s, u"Kiel"_s, true);
    const auto key = [](int id) { return u"ID"_s + QString::number(id); };
    const auto names = [&](search::By by, const QString& text) {
        const auto [select, order] = search::Find(by, text);
        QStringList all;
        for (const auto rs = gDB->OpenRecordset(select + u" ORDER BY "_s + order); !rs->Eof(); rs->MoveNext())
            all << rs->Text(u"Name_1");
        return all.join(u',');
    };
    EXPECT_EQ(u"Hof Meier,Albers"_s, names(search::Number, u"any'thing"_s));
    EXPECT_EQ(u"Hof Meier"_s, names(search::Name, u"meier"_s));
    EXPECT_EQ(u""_s, names(search::Town, u"ümlaut"_s));
    const int strange = customer(u"4'0"_s, u"O'Neill [Hof]"_s, u"L'Isle"_s);
    for (const QString& text : {u"O'"_s, u"o'neill"_s, u"'"_s, u"["_s, u"l ["_s, u"[hof]"_s})
        EXPECT_EQ(u"O'Neill [Hof]"_s, names(search::Name, text)) << qPrintable(text);
    EXPECT_EQ(u"O'Neill [Hof]"_s, names(search::Town, u"l'"_s));
    EXPECT_EQ(key(strange), search::FindNumber(u"4'"_s));
    EXPECT_EQ(u"Hof Meier"_s, names(search::Town, u"20"_s)) << "a number, whatever is looked for";
    EXPECT_EQ(u""_s, names(search::Name, u"0"_s)) << "of a number only its start";
    for (const auto by : {search::Name, search::Town})
        for (const QString& text : {u"x' OR '1'='1"_s, u"*' OR Gesperrt=-1 OR 'x' LIKE '"_s, u"''''x"_s})
            EXPECT_EQ(u""_s, names(by, text)) << qPrintable(text);
    EXPECT_EQ(key(second), search::FindNumber(u"2"_s));
    EXPECT_EQ(key(first), search::FindNumber(u"9[1*"_s)); // no pattern
    for (const QString& number : {u""_s, u"3"_s, u"2*"_s, u"x' OR '1'='1"_s})
        EXPECT_EQ(u""_s, search::FindNumber(number));

    EXPECT_TRUE(search::Choose(key(second)));
    EXPECT_EQ(second, gKunde.KundenID);
    EXPECT_EQ(2, gKunde.Rabatt); // whole percents
    EXPECT_EQ(2, gKunde.PreisGruppe);
    EXPECT_TRUE(gKunde.EKPreis);
    EXPECT_EQ(1, gKunde.Ergebnis);

    shop.db().Execute(u"DELETE FROM Kunden"_s);
    dialogs.expectMsgBox(u"Die angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich...*"_s);
    EXPECT_FALSE(search::Choose(key(second)));
    EXPECT_TRUE(search::Choose(search::StandardKey));
    EXPECT_EQ(0, gKunde.KundenID);
    EXPECT_EQ(u"Standardkunde"_s, gKunde.Name_1);
    EXPECT_EQ(13, errorOf([] { (void)search::Choose(QString()); }));
}

} // namespace
