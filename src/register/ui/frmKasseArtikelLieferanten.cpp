#include "frmKasseArtikelLieferanten.h"

#include "ui_frmKasseArtikelLieferanten.h"

#include <session/Handle.h>
#include <session/gAngaben.h>
#include <ui/RowsModel.h>
#include <ui/Theme.h>

#include <QKeyEvent>

using namespace Qt::StringLiterals;

frmKasseArtikelLieferanten::frmKasseArtikelLieferanten(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseArtikelLieferanten>()) {
    m_ui->setupUi(this);
    Handle("frmKasseArtikelLieferanten",
           [this] { m_hits = till::FindOrderNumber(gBestellNummerWahl.BestellNummer); });
    const auto column = [this](QString till::OrderNumberHit::*field) {
        return [this, field](int row) { return m_hits.at(static_cast<std::size_t>(row)).*field; };
    };
    auto* model = new RowsModel(
        {{u"Artikel-Nr / EAN"_s, Qt::AlignLeft, column(&till::OrderNumberHit::ArtikelNummer)},
         {u"Artikelname"_s, Qt::AlignLeft, column(&till::OrderNumberHit::Name)},
         {u"Lieferant"_s, Qt::AlignLeft, column(&till::OrderNumberHit::Lieferant)}},
        [this] { return static_cast<int>(m_hits.size()); }, this);
    model->refresh();
    QTableView* list = m_ui->lvwArtikel;
    list->setModel(model);
    list->verticalHeader()->setDefaultSectionSize(Theme::Current().keyHeight * 3 / 4);
    list->setColumnWidth(0, QFontMetrics(Theme::Current().font()).horizontalAdvance(u"2001040000128"_s) + 40);
    list->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    list->setColumnWidth(2, list->columnWidth(0) + 40);
    list->selectRow(0);
    list->setFocus();

    m_ui->wizPane->setHeaderDescription(
        u"Die Bestellnummer %1 passt zu mehreren Artikeln. Bitte wählen Sie den richtigen aus."_s.arg(
            gBestellNummerWahl.BestellNummer));
    connect(list, &QTableView::doubleClicked, this, &frmKasseArtikelLieferanten::ok);
    connect(m_ui->cmdOK, &TouchKey::clicked, this, &frmKasseArtikelLieferanten::ok);
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &frmKasseArtikelLieferanten::reject);
}

frmKasseArtikelLieferanten::~frmKasseArtikelLieferanten() = default;

void frmKasseArtikelLieferanten::ok() {
    const int row = m_ui->lvwArtikel->currentIndex().row();
    if (row < 0) return;
    gBestellNummerWahl.ArtikelNummer = m_hits.at(static_cast<std::size_t>(row)).ArtikelNummer;
    accept();
}

void frmKasseArtikelLieferanten::reject() {
    gBestellNummerWahl.ArtikelNummer.clear();
    QDialog::reject();
}

void frmKasseArtikelLieferanten::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        ok();
    else
        QDialog::keyPressEvent(event);
}
