#pragma once

#include <QString>

#include <memory>

class Recordset;

/// How the loss of a row is told that stood in a list and that somebody has deleted since.
enum class RowGone {
    Daten,     ///< "Die angeforderten Daten ..."
    IhreDaten, ///< "Die von Ihnen angeforderten Daten ..."
    Bereich,   ///< the same as the areas of the back office tell it
    Zeile,     ///< of the open sale, as a fault
};

/// Tells it. Whoever shows the list reads it anew afterwards.
void TellRowGone(RowGone wording = RowGone::Daten);
/// The rows of a query, standing on the first; nullptr, with the loss told, when there is none. Raises what
/// the store raises.
[[nodiscard]] std::unique_ptr<Recordset> OpenRow(const QString& query, RowGone wording = RowGone::Daten);
