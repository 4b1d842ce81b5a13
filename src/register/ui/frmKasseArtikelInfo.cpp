#include "frmKasseArtikelInfo.h"

#include "ui_frmKasseArtikelInfo.h"

#include <register/ArticleSearch.h>
#include <register/Prices.h>
#include <session/Globals.h>
#include <session/gArtikel.h>
#include <session/gUser.h>
#include <text/Convert.h>
#include <ui/Theme.h>

#include <QLabel>

using namespace Qt::StringLiterals;

frmKasseArtikelInfo::frmKasseArtikelInfo(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseArtikelInfo>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->cmdOK);
    setKeys(m_ui->cmdOK, m_ui->cmdOK);
    const int edge = Theme::Current().keyHeight;
    resize(edge * 14, edge * 9);
    m_ui->sspArtBild->setMinimumSize(edge * 4, edge * 4);
    m_ui->wizPane->setHeaderTitle(gArtikel.Name);
    m_ui->wizPane->setHeaderDescription(gArtikel.Nummer);
    m_ui->sspArtBild->showPicture(gArtikel.Bild,
                                  gArtikel.Bild.isEmpty() ? u"Kein Artikelbild verfügbar"_s : QString());
    addPrices();
    add(u"Bestand"_s, till::ArticleSearch::StockText());
    if (gArtikel.LagerAktiv)
        add(u"Sollbestand"_s, NumberText(gArtikel.SollBestand) + u' ' + gArtikel.Einheit);
    add(u"Warengruppe"_s, gArtikel.WarenGruppe);
    add(u"Steuersatz"_s, NumberText(gArtikel.SteuerSatz.toDouble()) + u" %"_s);
    if (!gArtikel.Aktiv) add(u"Verkauf"_s, u"nicht aktiv"_s, u"warning strong"_s);
    if (!gArtikel.Rabatt) add(u"Rabatt"_s, u"nicht möglich"_s);
    add(u"Zusatz"_s, (gArtikel.Zusatz1 + u' ' + gArtikel.Zusatz2).trimmed());
    add(u"Freies Feld"_s, gArtikel.FreiFeld);
    add(u"Langtext"_s, gArtikel.LangText);
}

frmKasseArtikelInfo::~frmKasseArtikelInfo() = default;

void frmKasseArtikelInfo::addPrices() {
    const QString content = u" für "_s + NumberText(gArtikel.Menge) + u' ' + gArtikel.Einheit;
    const auto price = [](Currency amount) { return till::MoneyText(amount) + u' ' + gWaehrungsSymbol; };
    add(u"Verkaufspreis"_s, price(gArtikel.VKPreis) + content, u"large"_s);
    if (gArtikel.VKPreis2 != Currency{}) add(u"2. Preisgruppe"_s, price(gArtikel.VKPreis2));
    if (gArtikel.VKPreis3 != Currency{}) add(u"3. Preisgruppe"_s, price(gArtikel.VKPreis3));
    if (gKassenUser.R_Artikel) add(u"Einkaufspreis"_s, price(gArtikel.EKPreis));
}

void frmKasseArtikelInfo::add(const QString& caption, const QString& value, const QString& role) {
    if (value.isEmpty()) return;
    auto* shown = new QLabel(value, this);
    shown->setTextFormat(Qt::PlainText);
    shown->setWordWrap(true);
    if (!role.isEmpty()) SetRole(*shown, role);
    auto* label = new QLabel(caption, this);
    SetRole(*label, u"muted"_s);
    m_ui->layFelder->addRow(label, shown);
}
