#include <register/Register.h>
#include <session/Globals.h>
#include <session/gUser.h>
#include <store/Database.h>

#include <QDir>
#include <QThread>

#include <harness/NoScreen.h>
#include <harness/Session.h>

using namespace Qt::StringLiterals;

// A till that sells as fast as it can and tells on standard output what a cashier would have seen: "+" and
// the code of a line that stands on the screen, "?" while the receipt's print is chosen, "=" when the sale
// was paid. Each sale has an article "A" beside its three coded lines, and whatever is linked to it. Usage:
// sell_until_killed FOLDER FIRST-NUMBER. It runs until somebody kills it; any message box ends it with an
// error.

namespace {

void tell(char what, const QString& text) {
    std::printf("%c%s\n", what, qPrintable(text));
    std::fflush(stdout);
}

class Screen : public NoScreen {
  public:
    void Show(till::Dialog which) override {
        if (which != till::Dialog::PrintDlg) return;
        tell('?', {});
        QThread::msleep(4);
    }
};

int sell(till::Register& reg, qint64 number) {
    const till::Basket& basket = reg.basket();
    const auto scan = [&](const QString& code) {
        reg.SetInput(code);
        reg.cmdEnter_Click();
    };
    for (;; ++number) {
        const QString code =
            u"414%1"_s.arg(number, 10, 10, QChar(u'0')); // a press code: each line has a number of its own
        scan(code);
        if (basket.isEmpty() || basket.cell(basket.rowCount() - 1, till::Basket::ArtikelNr) != code) return 1;
        tell('+', code);
        if (number % 3 != 2) continue;
        scan(u"A"_s);
        reg.cmdTotal_Click();
        if (!basket.isEmpty()) return 1;
        tell('=', code);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    NoDialogs dialogs;
    SetDialogHost(&dialogs);
    startSession(QString::fromLocal8Bit(argv[1]) + QDir::separator());
    gDB = Database::OpenDatabase(gDBPath + u"Merivane.mdb"_s);

    Screen screen;
    till::Register reg(screen);
    reg.Load();
    reg.ResumeBooking();
    gPrintMode = 3;
    return sell(reg, QByteArray(argv[2]).toLongLong());
}
