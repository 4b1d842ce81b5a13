#include <register/Register.h>
#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QDir>
#include <QElapsedTimer>
#include <QThread>

#include <harness/NoScreen.h>
#include <harness/Session.h>
#include <random>

using namespace Qt::StringLiterals;

// One of several tills that sell the same ten articles from the same store. Usage: sell_together FOLDER STORE
// SECONDS. It says "ready", waits for a line and then tells each thing that a cashier would have seen:
//     + ID ARTICLE QUANTITY    a line of the sale
//     - ID                     the line was cancelled
//     = RECEIPT TOTAL          the sale was paid
// What is still in the basket stays there. Any message box ends it with an error.

namespace {

void tell(const QString& text) {
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

[[noreturn]] void giveUp(const char* why) {
    std::fprintf(stderr, "%s\n", why);
    std::exit(1);
}

int sell(double seconds) {
    NoScreen screen;
    till::Register reg(screen);
    reg.Load();
    till::Basket& basket = reg.basket();
    std::mt19937 random(qHash(gMaschine));
    const auto pick = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };

    int lines = 0;
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < qint64(seconds * 1000);) {
        QThread::msleep(unsigned(pick(5, 25))); // still faster than any cashier
        const int quantity = pick(1, 3);
        const QString code = u"A%1"_s.arg(pick(0, 9));
        reg.SetInput(u"%1*"_s.arg(quantity));
        reg.SetInput(code);
        reg.cmdEnter_Click();
        if (basket.rowCount() != ++lines) giveUp("another till's line came into the basket, or one went");
        tell(u"+ %1 %2 %3"_s.arg(basket.rsBestellung().Long(u"ID")).arg(code).arg(quantity));
        if (pick(0, 9) == 0) {
            const int id = basket.rsBestellung().Long(u"ID");
            reg.cmdStorno_Click();
            if (basket.rowCount() != --lines) giveUp("the cancelled line is still there");
            tell(u"- %1"_s.arg(id));
        }
        if (lines == 0 || pick(0, 3) != 0) continue;
        const QString total = basket.Gesamt();
        reg.cmdTotal_Click();
        if (!basket.isEmpty()) giveUp("the paid sale is still there");
        lines = 0;
        const auto last = gDB->OpenRecordset(u"SELECT MAX(RechnungID) AS ID FROM Rechnung WHERE Maschine="_s +
                                             sql::text(gMaschine));
        tell(u"= %1 %2"_s.arg(last->Long(u"ID")).arg(total));
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    NoDialogs dialogs;
    SetDialogHost(&dialogs);
    startSession(QString::fromLocal8Bit(argv[1]) + QDir::separator());
    try {
        gDB = Database::OpenDatabase(QString::fromLocal8Bit(argv[2]));
        tell(u"ready"_s);
        std::getchar();
        return sell(QByteArray(argv[3]).toDouble());
    } catch (const RuntimeError& error) {
        giveUp(error.what());
    }
}
