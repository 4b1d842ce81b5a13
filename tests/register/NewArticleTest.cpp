#include "Till.h"

// What becomes of an entry that is not on file, where the till can show an article's record.

namespace {

class NewArticle : public Till {
  protected:
    NewArticle() {
        gDisabledAskForNewArtikel = false;
        gKassenUser.R_Artikel = true;
        screen.shown.insert(till::Dialog::ArtikelDetail);
    }
    void ask(MsgAnswer answer) {
        dialogs.expectMsgBox(
            u"Der von Ihnen gesuchte Artikel konnte nicht gefunden werden. Möchten Sie diesen jetzt anlegen?"_s,
            MsgIcon::Question, answer);
    }
    void nothingSold() {
        EXPECT_EQ(u""_s, reg->Input() + reg->Mal());
        EXPECT_TRUE(reg->basket().isEmpty());
        EXPECT_EQ(0, shop.count(u"Artikel"_s));
        EXPECT_EQ(0, screen.sounds);
    }
};

TEST_F(NewArticle, IsMadeAndSoldAtOnce) {
    ask(MsgAnswer::Yes);
    screen.expect(till::Dialog::ArtikelDetail, [] {
        EXPECT_TRUE(gArtikel.IsNeu && gArtikel.Aktiv && gArtikel.LagerAktiv);
        EXPECT_EQ(u"4711"_s, gArtikel.Nummer);
        EXPECT_EQ(
            u"19|Stück|1"_s,
            u"%1|%2|%3"_s.arg(gArtikel.SteuerSatz.toDouble()).arg(gArtikel.Einheit).arg(gArtikel.Menge));
        EXPECT_FALSE(gArtikel.Rabatt || gArtikel.PreisAngabe || gArtikel.VolumenAngabe || gArtikel.SNAngabe);
        gArtikel.Name = u"Kerze"_s;
        gArtikel.VKPreis = Currency::fromDouble(2.5);
        gArtikel.Ergebnis = 1;
    });
    type(u"3*"_s);
    scan(u"4711"_s);
    EXPECT_EQ(u"4711|Kerze|3|1 Stück|2,50|7,50"_s, line(0));

    // Saved under another number the entry is still unknown, and the question comes again.
    ask(MsgAnswer::Yes);
    screen.expect(till::Dialog::ArtikelDetail, [] {
        gArtikel.Nummer = u"5000"_s;
        gArtikel.Ergebnis = 1;
    });
    ask(MsgAnswer::No);
    scan(u"4712"_s);
    EXPECT_EQ((QStringList{u"4711|Kerze|2,5|Wahr"_s, u"5000||0|Wahr"_s}),
              shop.rows(u"SELECT Nummer, Name, VKPreis, LagerAktiv FROM Artikel ORDER BY Nummer"_s));

    // A number that is there already by now: told, nothing half written, the entry kept.
    ask(MsgAnswer::Yes);
    screen.expect(till::Dialog::ArtikelDetail, [] {
        gArtikel.Nummer = u"5000"_s;
        gArtikel.Ergebnis = 1;
    });
    dialogs.expectError(3022);
    scan(u"4713"_s);
    EXPECT_EQ(u"4713"_s, reg->Input());
    EXPECT_EQ(2, shop.count(u"Artikel"_s));
    EXPECT_EQ(1, reg->basket().rowCount());
}

TEST_F(NewArticle, NoIsNoAndTheRightCounts) {
    ask(MsgAnswer::No);
    type(u"3*"_s);
    scan(u"4711"_s);
    nothingSold();
    ask(MsgAnswer::Yes);
    screen.expect(till::Dialog::ArtikelDetail, [] {}); // cancelled
    scan(u"4711"_s);
    nothingSold();
    gKassenUser.R_Artikel = false;
    ask(MsgAnswer::Yes);
    dialogs.expectMsgBox(u"Sie haben nicht die nötigen Rechte um diese Aktion auszuführen"_s,
                         MsgIcon::Critical);
    scan(u"4711"_s);
    nothingSold();
}

} // namespace
