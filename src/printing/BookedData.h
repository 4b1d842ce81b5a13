#pragma once

#include <printing/BelegDaten.h>

class Recordset;

/// Reads documents from the tables that hold them.

/// Where a document is kept: head and lines, and the column that ties them.
struct BelegTabellen {
    QString Kopf, Zeilen, Schluessel;
};

/// The tables of a kind of document that is booked.
[[nodiscard]] BelegTabellen TabellenOf(FormularArt art);
/// The heads with this number; one or none.
[[nodiscard]] std::unique_ptr<Recordset> OpenKopf(const BelegTabellen& tabellen, int nummer);

/// Sums for each tax rate. `fromNetto` works the tax out of the net prices, for tills with more than two
/// decimals.
[[nodiscard]] std::vector<SteuerZeile> ReadSteuern(const BelegTabellen& tabellen, int nummer, bool fromNetto);
/// The lines in the order in which the store delivers them. A column that the table lacks reads as empty.
[[nodiscard]] std::vector<BelegZeile> ReadZeilen(const BelegTabellen& tabellen, int nummer);

/// What a head and the session tell; the customer is gKunde.
[[nodiscard]] FirmaDaten SessionFirma();
[[nodiscard]] QString SessionBearbeiter();
[[nodiscard]] BonDaten ReadBon(const Recordset& kopf);
[[nodiscard]] FormularDaten ReadFormular(FormularArt art, const Recordset& kopf);
