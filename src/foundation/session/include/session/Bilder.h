#pragma once

#include <QString>

/// The pictures of the shop are files in the folder of the store, which all tills share; no column refers to
/// them.
enum class Bild {
    Artikel, ///< by Nummer
    Kunde,   ///< by KundenID
    Person   ///< by ID
};

/// Where the picture of `key` lies or would lie.
[[nodiscard]] QString BildDatei(Bild von, const QString& key);
/// The same, "" when there is none.
[[nodiscard]] QString VorhandenesBild(Bild von, const QString& key);
