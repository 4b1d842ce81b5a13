#pragma once

#include "Till.h"

#include <register/IncompleteReceipts.h>
#include <text/Convert.h>

/// Gives every question the answer that Enter gives, and keeps the texts.
class DefaultAnswers : public DialogHost {
  public:
    DefaultAnswers()
        : m_before(SetDialogHost(this)) {}
    ~DefaultAnswers() override { SetDialogHost(m_before); }
    DefaultAnswers(const DefaultAnswers&) = delete;
    DefaultAnswers& operator=(const DefaultAnswers&) = delete;
    MsgAnswer msgBox(const QString& text, MsgButtons, MsgIcon, const QString&, MsgAnswer preset) override {
        told << text;
        return preset;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return input; }
    std::optional<QString> chooseFile(const FileRequest&) override { return {}; }

    QStringList told;
    std::optional<QString> input; ///< what every box is given

  private:
    DialogHost* m_before;
};

/// A sale of five lines that moves stock, marks a serial number and brings linked articles, and what the
/// books must say of it whatever interrupted its booking.
class InterruptedSale {
  public:
    static constexpr int lines = 5, stock = 1000;

    static void stockShop(TempShop& shop) {
        shop.article(u"A"_s, u"Saft"_s, 1.99,
                     {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, stock}, {u"Menge"_s, 0.5}});
        shop.article(u"P"_s, u"Pfand"_s, 0.25, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, stock}});
        shop.article(u"S"_s, u"Radio"_s, 49.9, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, stock}});
        shop.insert(u"VerbundArtikel"_s,
                    {{u"SourceArtikelNummer"_s, u"A"_s}, {u"DestArtikelNummer"_s, u"P"_s}, {u"Anzahl"_s, 1}});
    }
    /// A, P, S with a serial number of its own, twice A, twice P.
    static void scan(TempShop& shop, till::Register& reg) {
        static int serial = 0;
        const QString number = u"SN-%1"_s.arg(++serial);
        shop.insert(u"ArtikelSerienNummern"_s, {{u"ArtikelNummer"_s, u"S"_s}, {u"SNNummer"_s, number}});
        for (const QString& entry : {u"A"_s, u"S"_s, u"2*"_s, u"A"_s}) {
            reg.SetInput(entry);
            if (entry != u"2*"_s) reg.cmdEnter_Click();
        }
        shop.db().Execute(u"UPDATE Bestellung SET SNNummer='%1' WHERE ArtikelNummer='S'"_s.arg(number));
        ASSERT_EQ(reg.basket().rowCount(), lines);
    }
    /// `receipts` receipts, whole, with everything that belongs to them done once, and nothing beside them.
    static void expectBooked(TempShop& shop, int receipts) {
        EXPECT_EQ(shop.count(u"Rechnung"_s), receipts);
        EXPECT_EQ(shop.count(u"RechnungsDetail"_s), receipts * lines);
        EXPECT_EQ(shop.count(u"Bestellung"_s), 0) << "something stands open";
        EXPECT_EQ(shop.count(u"BuchungsMarke"_s), 0);
        const QStringList heads = shop.rows(u"SELECT RechnungID, Betrag_Gesamt FROM Rechnung ORDER BY 1"_s);
        EXPECT_EQ(heads, shop.rows(u"SELECT RechnungID, SUM(VKPreis_Brutto * Buchungs_Menge) FROM "
                                   "RechnungsDetail GROUP BY RechnungID ORDER BY 1"_s))
            << "a receipt does not add up";
        const double sold[] = {0.5 * 3, 3, 1};
        const QStringList articles{u"A"_s, u"P"_s, u"S"_s};
        for (int i = 0; i < 3; ++i)
            EXPECT_DOUBLE_EQ(
                shop.value(u"SELECT IstBestand FROM Artikel WHERE Nummer='%1'"_s.arg(articles[i])).toDouble(),
                stock - receipts * sold[i])
                << qPrintable(articles[i]);
        EXPECT_EQ(
            shop.rows(
                u"SELECT SNNummer, RechnungID FROM ArtikelSerienNummern WHERE VKDatum<>'' ORDER BY 1"_s),
            shop.rows(
                u"SELECT SNNummer, RechnungID FROM RechnungsDetail WHERE ArtikelNummer='S' ORDER BY 1"_s));
    }
};
