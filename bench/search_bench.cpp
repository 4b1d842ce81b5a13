#include "Screen.h"
#include "Till.h"
#include "frmKasseArtikelSuche.h"

#include <session/gArtikel.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <ui/Theme.h>
#include <ui/TypedSearch.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

// What one waits for who looks for an article among 100,000: from the last key of a text to the frame that
// shows the first hits, or that there are none, in the real form. What it shows is compared with the
// statement.

namespace {

constexpr int rounds = 40;

void type(QLineEdit& box, const QString& text) {
    for (const QChar c : text) {
        QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(&box, &event);
    }
}

void runUntil(const std::function<bool()>& done) {
    while (!done())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
}

QStringList statement(const QString& t) {
    QStringList numbers;
    const auto rs = gDB->OpenRecordset(
        u"SELECT * FROM Artikel WHERE Nummer LIKE '%1*' OR Name LIKE '*%1*' OR LangText LIKE '*%1*' OR Zusatz1 LIKE "
        "'*%1*' OR Zusatz2 LIKE '*%1*' ORDER BY Name ASC;"_s.arg(t));
    for (; !rs->Eof(); rs->MoveNext())
        numbers << rs->Text(u"Nummer");
    return numbers;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    const QTemporaryDir place;
    openShop(place.path() + QDir::separator(), place.filePath(u"Merivane.mdb"_s));
    gDB->Execute(
        u"UPDATE Artikel SET Name='Dinkelvollkornbrot Sorte ' & (3900000 - CLng(Nummer)), "
        "LangText='Aus eigener Ernte, ohne Zusätze gebacken ' & Nummer, Zusatz1='Größe ' & Right(Nummer, 2)"_s);
    gDB->Execute(u"UPDATE Artikel SET Name='Quittengelee' WHERE Nummer='2077123'"_s);
    Theme::Apply();

    bool ok = true;
    std::vector<double> raw;
    for (const QString& text : {u"brot"_s, u"quitten"_s, u"zzz"_s}) {
        raw.clear();
        for (int round = 0; round < 3; ++round)
            raw.push_back(milliseconds([&] { static_cast<void>(statement(text)); }));
        std::fprintf(stderr, "# the statement itself, %s: %.1f ms\n", qPrintable(text), median(raw));
    }
    gArtikel = {};
    double opened = 0;
    std::unique_ptr<frmKasseArtikelSuche> form;
    QLabel* told = nullptr;
    const auto done = [&] { return told->text().contains(u"Treffer"_s); };
    opened = milliseconds([&] {
        form = std::make_unique<frmKasseArtikelSuche>();
        form->show();
        told = form->findChild<QLabel*>(u"lblTreffer"_s);
        runUntil(done);
    });
    std::fprintf(stderr, "# opened, all articles read: %.1f ms\n", opened);
    auto& box = *form->findChild<QLineEdit*>(u"txtSuchBegriff"_s);
    auto& list = *form->findChild<QAbstractItemView*>(u"lvwArtikel"_s);
    Painted painted(*list.viewport());
    bool stood = false;
    QObject::connect(box.findChild<TypedSearch*>(), &TypedSearch::stood, &app, [&] {
        stood = true;
        painted.forget(); // the next frame counts
    });
    for (const auto& [name, text] :
         {std::pair{"search_frequent_p95_ms", u"brot"_s}, std::pair{"search_rare_p95_ms", u"quitten"_s},
          std::pair{"search_missing_p95_ms", u"zzz"_s}}) {
        std::vector<double> times;
        const QStringList wanted = statement(text);
        for (int round = 0; round < rounds; ++round) {
            box.clear();
            type(box, text.chopped(1));
            runUntil(done);
            stood = false;
            times.push_back(milliseconds([&] {
                type(box, text.last(1));
                runUntil([&] { return stood && painted.seen() && (!wanted.isEmpty() || done()); });
            }));
            runUntil(done);
            QStringList shown;
            for (int row = 0; round == 0 && row < list.model()->rowCount(); ++row)
                shown << list.model()->index(row, 0).data().toString();
            if (round == 0 && shown != wanted) {
                std::fprintf(stderr, "%s: the list differs from the statement\n", qPrintable(text));
                return 2;
            }
        }
        ok &= figure(name, percentile95(times), 50);
    }
    form.reset();
    gDB.reset();
    return ok ? 0 : 1;
}
