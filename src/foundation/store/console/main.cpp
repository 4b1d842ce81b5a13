#include "Console.h"

#include <store/ServerPatience.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    // Some of what is asked here takes its time, and Ctrl+C ends it.
    store::SetServerLimit(store::mostServerLimit);
    return console::run(QCoreApplication::arguments());
}
