#include "frmKasseReklamation.h"

#include "ui_frmKasseReklamation.h"

#include <register/Prices.h>
#include <session/Globals.h>
#include <text/Convert.h>
#include <ui/RecordList.h>
#include <ui/RowsModel.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

/// The positions with the tick of each in the first column.
class Positions : public RowsModel {
  public:
    Positions(till::ReturnDialog& rules, QObject* parent)
        : RowsModel(
              {{u"Zurück"_s, Qt::AlignLeft, [](int) { return QString(); }},
               {u"Artikelnummer"_s, Qt::AlignLeft,
                [&rules](int row) { return at(rules, row).ArtikelNummer; }},
               {u"Artikel"_s, Qt::AlignLeft, [&rules](int row) { return at(rules, row).ArtikelName; }},
               {u"Seriennummer"_s, Qt::AlignLeft, [&rules](int row) { return at(rules, row).SNNummer; }},
               {u"Anzahl"_s, Qt::AlignRight,
                [&rules](int row) { return NumberText(at(rules, row).Buchungs_Menge); }},
               {u"Preis"_s, Qt::AlignRight,
                [&rules](int row) { return till::MoneyText(at(rules, row).VKPreis_Brutto); }}},
              [&rules] { return int(rules.positions().size()); }, parent)
        , m_rules(rules) {}

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (index.isValid() && index.column() == 0 && role == Qt::CheckStateRole)
            return at(m_rules, index.row()).ticked ? Qt::Checked : Qt::Unchecked;
        return RowsModel::data(index, role);
    }
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        static const QStringList samples{
            u""_s,           u"2001040000128"_s, u"Vollkornbrot aus Dinkel 750 g"_s,
            u"SN-0000000"_s, u"-100,5"_s,        u"1.000,00"_s};
        if (role == RecordList::SampleRole) return samples.value(section);
        return RowsModel::headerData(section, orientation, role);
    }

  private:
    static const till::ReturnPosition& at(const till::ReturnDialog& rules, int row) {
        return rules.positions()[size_t(row)];
    }
    const till::ReturnDialog& m_rules;
};

} // namespace

frmKasseReklamation::frmKasseReklamation(till::ReturnDialog rules, QWidget* parent)
    : FormDialog(parent)
    , m_rules(std::move(rules))
    , m_ui(std::make_unique<Ui::frmKasseReklamation>())
    , m_rows(new Positions(m_rules, this)) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtSuchBegriff);
    const int edge = Theme::Current().keyHeight;
    resize(edge * 16, edge * 11);
    m_ui->lvwDetail->setModel(m_rows);
    m_ui->lvwDetail->installEventFilter(this);
    TakeScans(*m_ui->txtSerienNummer, ScanEnd::Enter);
    connect(m_ui->cmdSuche, &TouchKey::clicked, this, &frmKasseReklamation::searchReceipt);
    connect(m_ui->cmdSearchSerienNummer, &TouchKey::clicked, this, &frmKasseReklamation::searchSerial);
    connect(m_ui->lvwDetail, &ListView::clicked, this, [this](const QModelIndex& at) { tick(at.row()); });
    showSum();
}

frmKasseReklamation::~frmKasseReklamation() { m_ui->lvwDetail->setModel(nullptr); }

void frmKasseReklamation::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && m_ui->txtSuchBegriff->hasFocus()) return searchReceipt();
    if (enter && m_ui->txtSerienNummer->hasFocus()) return searchSerial();
    FormDialog::keyPressEvent(event);
}

bool frmKasseReklamation::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_ui->lvwDetail && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        tick(m_ui->lvwDetail->currentRow());
        return true;
    }
    return FormDialog::eventFilter(watched, event);
}

void frmKasseReklamation::searchReceipt() {
    bool found = false;
    guard()([&] { found = m_rules.Search(m_ui->txtSuchBegriff->text()); });
    showPositions(found);
    if (!found) {
        m_ui->txtSuchBegriff->clear();
        m_ui->txtSuchBegriff->setFocus();
    }
}

void frmKasseReklamation::searchSerial() {
    bool found = false;
    guard()([&] { found = m_rules.SearchSerienNummer(m_ui->txtSerienNummer->text()); });
    showPositions(found);
    if (!found) {
        m_ui->txtSerienNummer->setFocus();
        m_ui->txtSerienNummer->selectAll();
    }
}

void frmKasseReklamation::showPositions(bool found) {
    m_rows->refresh();
    if (found && !m_rules.positions().empty()) {
        m_ui->lvwDetail->selectRow(0);
        m_ui->lvwDetail->setFocus();
    }
    showSum();
}

void frmKasseReklamation::tick(int row) {
    m_rules.Tick(row);
    m_rows->rowChanged(row);
    showSum();
}

void frmKasseReklamation::showSum() {
    m_ui->lblBeleg->setText(m_rules.Heading());
    m_ui->lblSumme->setText(u"Markiert: "_s + till::MoneyText(m_rules.TickedSum()) + u' ' + gWaehrungsSymbol);
}

void frmKasseReklamation::ok() {
    if (m_rules.Confirm()) accept();
}
