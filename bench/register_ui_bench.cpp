#include "Screen.h"
#include "Till.h"

#include <register/ui/frmKasse.h>
#include <ui/Theme.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>

#include <algorithm>

// What a cashier waits for: from the Enter of a scanner to the frame that shows the line, from a typed digit
// to the frame that shows it, and from the end of a payment to the frame that shows the change. The real form
// at 1366 x 768, a shop of 100,000 articles, a sale of 200 lines.

namespace {

constexpr int lines = 200, rounds = 60, payments = 9, linesOfPayment = 20;

void press(QWidget& target, int key, const QString& text) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&target, &event);
}

void settle() {
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    const QTemporaryDir place;
    openShop(place.path() + QDir::separator(), place.filePath(u"Merivane.mdb"_s));
    NoDialogs dialogs;
    SetDialogHost(&dialogs);
    Theme::Apply();

    auto till = std::make_unique<frmKasse>(std::function<void()>());
    frmKasse& form = *till;
    form.resize(1366, 768);
    form.show();
    auto& input = *form.findChild<QLineEdit*>(u"txtInput"_s);
    auto& list = *form.findChild<QAbstractItemView*>(u"lvwBestellung"_s);
    const auto type = [&](const QString& text) {
        for (const QChar c : text)
            press(input, c.unicode(), c);
    };
    const auto enter = [&] { press(input, Qt::Key_Return, u"\r"_s); };
    for (int i = 0; i < lines; ++i) {
        type(number(i * 7919));
        enter();
    }
    settle();
    if (form.Till().basket().rowCount() != lines) return 2;

    Painted listPainted(*list.viewport()), inputPainted(input);
    std::vector<double> scan, key;
    for (int round = 0; round < rounds; ++round) {
        const QString code = number((lines + round) * 7919);
        type(code.left(code.size() - 1));
        settle();
        key.push_back(milliseconds([&] {
            inputPainted.forget();
            type(code.right(1));
            inputPainted.wait();
        }));
        settle();
        scan.push_back(milliseconds([&] {
            listPainted.forget();
            enter();
            listPainted.wait();
        }));
        settle();
    }
    const int shown = form.Till().basket().rowCount();
    if (shown != lines + rounds) {
        std::fprintf(stderr, "the sale has %d lines\n", shown);
        return 2;
    }
    auto& change = *form.findChild<QWidget*>(u"lblRueckgeld"_s);
    Painted changePainted(change);
    std::vector<double> pay;
    press(input, Qt::Key_F10, {}); // the long sale
    for (int round = 0; round < payments; ++round) {
        for (int i = 0; i < linesOfPayment; ++i) {
            type(number(i * 7919));
            enter();
        }
        settle();
        changePainted.forget();
        pay.push_back(milliseconds([&] {
            press(input, Qt::Key_F10, {});
            changePainted.wait();
        }));
        if (!change.isVisible()) return 2;
        settle();
    }
    std::fprintf(stderr, "# slowest: scan %.2f ms, key %.2f ms\n",
                 *std::max_element(scan.begin(), scan.end()), *std::max_element(key.begin(), key.end()));
    bool ok = figure("scan_to_painted_line_ms", median(scan), 8);
    ok &= figure("payment_to_painted_change_ms", median(pay), 150);
    ok &= figure("key_to_painted_digit_ms", median(key), 4);
    till.reset();
    gDB.reset();
    return ok ? 0 : 1;
}
