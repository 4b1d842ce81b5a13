#include <QApplication>
#include <QLocale>

#include <gtest/gtest.h>

/// Tests with forms need an application; it has no screen of its own.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    testing::InitGoogleTest(&argc, argv);
    const QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
