#include <QApplication>
#include <QLocale>
#include <QTemporaryDir>

#include <cstdio>
#include <gtest/gtest.h>

namespace {

/// The offscreen platform complains about every window; that would bury what matters.
void quiet(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (message.startsWith(QLatin1StringView("This plugin does not support"))) return;
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) std::abort();
}

} // namespace

/// Tests with forms need an application; it has no screen of its own.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What forms remember of a person's desk is no test's business.
    const QTemporaryDir desk;
    qputenv("XDG_CONFIG_HOME", desk.path().toUtf8());
    qInstallMessageHandler(quiet);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    testing::InitGoogleTest(&argc, argv);
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}

/// Qt keeps the gesture recognizer of a scroller for good, and nobody can delete it.
extern "C" const char* __lsan_default_suppressions() { return "leak:QScroller::grabGesture\n"; }
