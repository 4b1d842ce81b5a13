#include <session/ArtikelFields.h>

const Fields<ArtikelRecord>& ArtikelFields() {
    using Artikel = ArtikelRecord;
    static const Fields<Artikel> fields{
        {u"Nummer", &Artikel::Nummer},
        {u"WarenGruppe", &Artikel::WarenGruppe},
        {u"Name", &Artikel::Name},
        {u"LangText", &Artikel::LangText},
        {u"EKPreis", &Artikel::EKPreis},
        {u"VKPreis", &Artikel::VKPreis},
        {u"VKPreis2", &Artikel::VKPreis2},
        {u"VKPreis3", &Artikel::VKPreis3},
        {u"SteuerSatz", &Artikel::SteuerSatz},
        {u"Menge", &Artikel::Menge},
        {u"Einheit", &Artikel::Einheit},
        {u"Rabatt", &Artikel::Rabatt},
        {u"Aktiv", &Artikel::Aktiv},
        {u"PreisAngabe", &Artikel::PreisAngabe},
        {u"VolumenAngabe", &Artikel::VolumenAngabe},
        {u"SNAngabe", &Artikel::SNAngabe},
        {u"LagerAktiv", &Artikel::LagerAktiv},
        {u"SollBestand", &Artikel::SollBestand},
        {u"IstBestand", &Artikel::IstBestand},
        {u"FreiFeld", &Artikel::FreiFeld},
        {u"Zusatz1", &Artikel::Zusatz1},
        {u"Zusatz2", &Artikel::Zusatz2},
    };
    return fields;
}
