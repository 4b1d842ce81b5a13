#pragma once

#include <page/PageDocument.h>

#include <QString>

/// A booked document as it prints, to look at: laid out by the same template and for the same paper. Nothing
/// of the session changes, nobody is asked.
struct BelegSeiten {
    PageDocument document; ///< without pages when there is a fault
    QString fault;         ///< why it cannot be shown, in words for a person
};

/// What Print_BON prints of receipt `RechnungID`. Raises what the store raises.
[[nodiscard]] BelegSeiten BonSeiten(int RechnungID);
/// What Print_Formular prints of a document, with the closing text of the template. `kind` as there; raises 5
/// for another one, and what the store raises.
[[nodiscard]] BelegSeiten FormularSeiten(int ID, const QString& FileName, int kind);
