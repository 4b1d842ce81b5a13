#include "frmKasseArtikelLieferanten.h"

#include "ui_frmKasseArtikelLieferanten.h"

#include <register/OrderNumbers.h>
#include <session/gAngaben.h>
#include <ui/RecordList.h>

using namespace Qt::StringLiterals;

frmKasseArtikelLieferanten::frmKasseArtikelLieferanten(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseArtikelLieferanten>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->lvwArtikel);
    auto* articles = new RecordList({{}, u"ArtikelNummer"_s},
                                    {{u"Artikel-Nr / EAN"_s, u"ArtikelNummer"_s, u"2001040000128"_s},
                                     {u"Artikelname"_s, u"Name"_s, u"Dinkelvollkornbrot 750 g"_s},
                                     {u"Lieferant"_s, u"Name_1"_s, u"Großhandel Nordhof"_s}},
                                    this);
    guard()([&] { articles->open(till::FindOrderNumber(gBestellNummerWahl.BestellNummer)); });
    m_ui->lvwArtikel->setModel(articles);
    m_ui->wizPane->setHeaderDescription(
        u"Die Bestellnummer %1 passt zu mehreren Artikeln. Bitte wählen Sie den richtigen aus."_s.arg(
            gBestellNummerWahl.BestellNummer));
    connect(m_ui->lvwArtikel, &ListView::chosen, m_ui->cmdOK, &TouchKey::click);
}

frmKasseArtikelLieferanten::~frmKasseArtikelLieferanten() = default;

void frmKasseArtikelLieferanten::ok() {
    gBestellNummerWahl.ArtikelNummer = m_ui->lvwArtikel->currentKey();
    if (!gBestellNummerWahl.ArtikelNummer.isEmpty()) accept();
}

bool frmKasseArtikelLieferanten::cancelled() {
    gBestellNummerWahl.ArtikelNummer.clear();
    return true;
}
