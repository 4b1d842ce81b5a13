#include <session/KundenFields.h>

const Fields<KundeRecord>& KundenFields() {
    static const Fields<KundeRecord> fields{
        {u"KundenID", &KundeRecord::KundenID, loadOnly},
        {u"KundenNummer", &KundeRecord::KundenNummer},
        {u"Anrede", &KundeRecord::Anrede},
        {u"Name_1", &KundeRecord::Name_1},
        {u"Name_2", &KundeRecord::Name_2},
        {u"Strasse", &KundeRecord::Strasse},
        {u"PLZ", &KundeRecord::PLZ},
        {u"Ort", &KundeRecord::Ort},
        {u"Land", &KundeRecord::Land},
        {u"Rabatt", &KundeRecord::Rabatt},
        {u"PreisGruppe", &KundeRecord::PreisGruppe},
        {u"EKPreis", &KundeRecord::EKPreis},
    };
    return fields;
}
