#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The files that a shop writes by hand and the till only reads: artikel.ini and karten.txt in gDBPath.

/// What a card is called on receipts; longer names are cut where they are read.
inline constexpr int LongestKarte = 100;
/// More cards than these have no room on any screen.
inline constexpr int MostKarten = 100;

/// The cards of karten.txt, one a line, blank lines left out, at most MostKarten. Raises 53 when the file is
/// missing or cannot be read.
[[nodiscard]] QStringList ReadKarten();

/// What is wrong with these files, one sentence each; empty when nothing is.
[[nodiscard]] QStringList FindShopFileFaults();
/// Tells the person what is wrong with them, and when artikel.ini is missing though it was there at the last
/// start: without it empties would be sold at a positive price. A person may say that it was taken away on
/// purpose; else the next start tells it again.
void CheckShopFiles();
