#pragma once

#include <text/Currency.h>
#include <text/DateTime.h>
#include <text/RuntimeError.h>

#include <QString>

#include <ostream>

/// What GoogleTest prints for our values when a test fails.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(Currency value, std::ostream* out) { *out << value.scaled() << "/10000"; }
inline void PrintTo(DateTime value, std::ostream* out) {
    *out << value.days << " (" << value.toQDateTime().toString(Qt::ISODate).toStdString() << ')';
}

/// A text beside a failed check.
inline std::string shown(QStringView text) { return text.toString().toStdString(); }

/// The number of the error that `act` raises, 0 for none.
template <class Act>
int errorOf(Act act) {
    try {
        static_cast<void>(act());
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}
