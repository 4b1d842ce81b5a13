#pragma once

#include "../tests/register/NoScreen.h"

#include <register/Register.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Schema.h>

#include <QFile>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

// What the benches of the till share: a shop with 100,000 articles, and figures.

using namespace Qt::StringLiterals;

constexpr int articles = 100'000;

/// Article numbers; steps of a large prime go all over the index.
inline QString number(int i) { return QString::number(2'000'000 + i % articles); }

/// Makes the shop in an empty `store` and opens it as gDB; `folder` ends in a separator.
inline void openShop(const QString& folder, const QString& store) {
    startSession(folder);
    gShowLagerBestand = gEnabledOrderSearch = true;
    QFile(folder + u"karten.txt"_s).open(QIODevice::WriteOnly);
    Database::CreateDatabase(store, {}, {}, schema::createTables)->Close();
    gDB = Database::OpenDatabase(store);
    gDB->Execute(u"CREATE TABLE Ziffern (N LONG)"_s);
    for (int n = 0; n < 10; ++n)
        gDB->Execute(u"INSERT INTO Ziffern (N) VALUES (%1)"_s.arg(n));
    gDB->Execute(
        u"INSERT INTO Artikel (Nummer, Name, WarenGruppe, Menge, Einheit, SteuerSatz, EKPreis, VKPreis, "
        u"SollBestand, IstBestand, Aktiv, LagerAktiv, Rabatt) "
        u"SELECT CStr(2000000 + a.N * 10000 + b.N * 1000 + c.N * 100 + d.N * 10 + e.N), 'Artikel', 'Gruppe', "
        u"1, 'Stück', 7, 1, 1.99, 2, 100, -1, -1, -1 "
        u"FROM Ziffern AS a, Ziffern AS b, Ziffern AS c, Ziffern AS d, Ziffern AS e"_s);
}

inline double milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Tells a figure and whether it keeps its bound.
inline bool figure(const char* name, double measured, double bound) {
    std::printf("%s %.2f %.2f %s\n", name, measured, bound, measured <= bound ? "ok" : "MISSED");
    return measured <= bound;
}

/// The same for what we need against what the bare engine needs, in milliseconds.
inline bool ratio(const char* name, const std::vector<double>& ours, const std::vector<double>& raw,
                  double bound) {
    std::fprintf(stderr, "# %s: %.3f ms to %.3f ms\n", name, median(ours), median(raw));
    return figure(name, median(ours) / median(raw), bound);
}
