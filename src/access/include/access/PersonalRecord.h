#pragma once

#include <session/gUser.h>
#include <store/Fields.h>

/// A row of `Personal`: a person who can log in.
struct PersonalRecord : Rechte {
    int ID = 0;
    QString Name, Vorname, Strasse, PLZ, Ort, Telefon, Mobil, EMail, PIN;
    bool Gesperrt = false;
};

/// All columns of `Personal` in their order.
[[nodiscard]] const Fields<PersonalRecord>& PersonalFields();
