#include "Screen.h"
#include "Till.h"
#include "frmKasseBonHistorie.h"

#include <devices/Printers.h>
#include <page/ui/PagePreview.h>
#include <printing/Seiten.h>
#include <ui/Theme.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <harness/NoScreen.h>

// What one waits for who looks for a receipt among 500,000 of 5 lines: the first screen of the history, of a
// day and of all days, and the page of one receipt.

namespace {

constexpr int receipts = 500'000, days = 1000, linesOfReceipt = 5, rounds = 20;

/// Receipts in the order of their days, 500 a day, the last of them today.
void bookReceipts() {
    const QString all = u"z0.N + z1.N * 10 + z2.N * 100 + z3.N * 1000 + z4.N * 10000 + z5.N * 100000"_s;
    const QString digits =
        u"Ziffern AS z0, Ziffern AS z1, Ziffern AS z2, Ziffern AS z3, Ziffern AS z4, Ziffern AS z5"_s;
    gDB->Execute(u"INSERT INTO Rechnung (RechnungID, Maschine, Datum, Zeit, Kunde, ZahlArt, Betrag_Gesamt, "
                 "Betrag_Gegeben, Abschluss) SELECT 1 + %1, 'K1', Date() - %2 + (%1) \\ %3, #10:30:00#, "
                 "'Standardkunde', 'BAR', 9.95, 10, 0 FROM %4 WHERE z5.N < 5"_s.arg(all)
                     .arg(days - 1)
                     .arg(receipts / days)
                     .arg(digits));
    for (int line = 0; line < linesOfReceipt; ++line)
        gDB->Execute(
            u"INSERT INTO RechnungsDetail (RechnungID, ArtikelNummer, ArtikelName, Buchungs_Menge, Menge, "
            "Einheit, VKPreis_Brutto, VKPreis_Netto, SteuerSatz) SELECT 1 + %1, '%2', 'Artikel %3', 1, 1, "
            "'Stück', 1.99, 1.86, 7 FROM %4 WHERE z5.N < 5"_s.arg(all, number(line))
                .arg(line)
                .arg(digits));
}

/// A till with one printer.
struct OnePrinter : PrinterList {
    [[nodiscard]] QStringList names() const override { return {u"Bon"_s}; }
    [[nodiscard]] QString defaultName() const override { return u"Bon"_s; }
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    const QTemporaryDir place;
    const QString folder = place.path() + QDir::separator();
    openShop(folder, place.filePath(u"Merivane.mdb"_s));
    QFile::copy(u":/vorlagen/Kassenbon.pld"_s, folder + u"Kassenbon.pld"_s);
    bookReceipts();
    const OnePrinter printer;
    SetPrinterList(&printer);
    gBonDrucker = u"Bon"_s;
    Theme::Apply();
    NoScreen screen;
    till::Register till(screen);
    bool ok = true;

    std::vector<double> ofDay, ofAll, pages;
    for (int round = 0; round < rounds; ++round) {
        std::unique_ptr<frmKasseBonHistorie> form;
        ofDay.push_back(milliseconds([&] {
            form = std::make_unique<frmKasseBonHistorie>(till.receipts(), nullptr);
            Painted painted(*form->findChild<QAbstractItemView*>(u"lvwRechnung"_s)->viewport());
            form->show();
            painted.wait();
        }));
        auto& list = *form->findChild<QAbstractItemView*>(u"lvwRechnung"_s);
        if (list.model()->rowCount() < 100) return 2;
        Painted painted(*list.viewport());
        ofAll.push_back(milliseconds([&] {
            form->findChild<QAbstractButton*>(u"cmdShowAll"_s)->setChecked(true);
            painted.forget();
            painted.wait();
        }));
    }
    PagePreview preview;
    preview.resize(400, 600);
    preview.show();
    for (int round = 0; round < rounds * 5; ++round) {
        const int id = 1 + (round * 7919) % receipts;
        pages.push_back(milliseconds([&] {
            BelegSeiten receipt = BonSeiten(id);
            if (!receipt.fault.isEmpty()) std::exit(2);
            preview.setDocument(std::move(receipt.document));
            QCoreApplication::processEvents();
        }));
    }
    ok &= figure("history_day_p95_ms", percentile95(ofDay), 50);
    ok &= figure("history_all_p95_ms", percentile95(ofAll), 50);
    ok &= figure("receipt_preview_p95_ms", percentile95(pages), 30);
    return ok ? 0 : 1;
}
