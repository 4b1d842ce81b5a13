#include <access/PersonalRecord.h>

const Fields<PersonalRecord>& PersonalFields() {
    static const Fields<PersonalRecord> fields{
        {u"ID", &PersonalRecord::ID, loadOnly},
        {u"Name", &PersonalRecord::Name},
        {u"Vorname", &PersonalRecord::Vorname},
        {u"Strasse", &PersonalRecord::Strasse},
        {u"PLZ", &PersonalRecord::PLZ},
        {u"Ort", &PersonalRecord::Ort},
        {u"Telefon", &PersonalRecord::Telefon},
        {u"Mobil", &PersonalRecord::Mobil},
        {u"EMail", &PersonalRecord::EMail},
        {u"PIN", &PersonalRecord::PIN},
        {u"Gesperrt", &PersonalRecord::Gesperrt},
        {u"R_Artikel", &Rechte::R_Artikel},
        {u"R_Kunden", &Rechte::R_Kunden},
        {u"R_Personal", &Rechte::R_Personal},
        {u"R_Berichte", &Rechte::R_Berichte},
        {u"R_Rabatt", &Rechte::R_Rabatt},
        {u"R_Setup", &Rechte::R_Setup},
        {u"R_KassenAbschluss", &Rechte::R_KassenAbschluss},
        {u"R_RechnungEdit", &Rechte::R_RechnungEdit},
        {u"R_SystemExit", &Rechte::R_SystemExit},
    };
    return fields;
}
