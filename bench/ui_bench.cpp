#include "Till.h"

#include <session/CSystem.h>
#include <store/Recordset.h>
#include <text/Format.h>
#include <ui/ListView.h>
#include <ui/RecordList.h>
#include <ui/Theme.h>

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <malloc.h>

// What a list over a statement costs on 100,000 articles with names of their own, as the catalogue shows
// them.

namespace {

constexpr int rounds = 9;

double megabytes() { return double(mallinfo2().uordblks) / 1e6; }

std::vector<ListColumn> columns() {
    const auto price = [](const Recordset& rs) { return Format(rs.Money(u"VKPreis"), u"###0.00"); };
    return {{u"Artikel-Nr"_s, u"Nummer"_s, u"2006000000017"_s},
            {u"Artikelname"_s, u"Name"_s, u"Spaghetti Hartweizen 500 g"_s},
            {u"Warengruppe"_s, u"WarenGruppe"_s, u"Flocken und Müsli"_s},
            {u"VK Preis 1"_s, u"VKPreis"_s, u"1.234,50"_s, Qt::AlignRight, price},
            {u"Ist Bestand"_s, u"IstBestand"_s, u"1.000"_s, Qt::AlignRight}};
}

void open(RecordList& list) { list.open(u"SELECT * FROM Artikel"_s, u"Name ASC"_s); }

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    const QTemporaryDir place;
    openShop(place.path() + QDir::separator(), place.filePath(u"Merivane.mdb"_s));
    gDB->Execute(u"UPDATE Artikel SET Name='Artikel ' & (3900000 - CLng(Nummer))"_s);
    Theme::Apply();

    std::vector<double> first, find;
    double memory = 0, complete = 0;
    bool right = true;
    for (int round = 0; round < rounds; ++round) {
        const double before = megabytes();
        RecordList list({{}, u"Nummer"_s}, columns());
        ListView view;
        view.resize(1000, 600);
        first.push_back(milliseconds([&] {
            open(list);
            view.setModel(&list);
            view.show();
            right &= !view.grab().isNull();
        }));
        complete = milliseconds([&] { list.readAll(); });
        find.push_back(milliseconds([&] { right &= list.rowOf(u"2000000"_s) == 99'999; }));
        for (int row = 0; row < list.rowCount(); row += 7) // as one who scrolls through it all
            right &= !list.key(row).isEmpty();
        memory = std::max(memory, megabytes() - before);
        view.setModel(nullptr);
    }
    if (!right) {
        std::fprintf(stderr, "the list shows something else than the store holds\n");
        return 2;
    }
    std::fprintf(stderr, "# keys of all rows: %.1f ms\n", complete);
    bool ok = figure("list_first_screen_ms", median(first), 100);
    ok &= figure("list_row_of_last_key_ms", median(find), 5);
    ok &= figure("list_memory_mb", memory, 30);
    gDB.reset();
    return ok ? 0 : 1;
}
