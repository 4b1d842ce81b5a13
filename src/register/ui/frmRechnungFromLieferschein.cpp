#include "frmRechnungFromLieferschein.h"

#include "ui_frmRechnungFromLieferschein.h"

#include <register/Prices.h>
#include <session/Globals.h>
#include <session/Keys.h>
#include <session/MsgBox.h>
#include <store/Recordset.h>
#include <ui/Binding.h>

using namespace Qt::StringLiterals;

frmRechnungFromLieferschein::frmRechnungFromLieferschein(const till::CollectiveInvoice& invoice,
                                                         QWidget* parent)
    : WizardForm(parent)
    , m_invoice(invoice)
    , m_ui(std::make_unique<Ui::frmRechnungFromLieferschein>())
    , m_notes(
          new RecordList({u"ID"_s, u"LieferungID"_s},
                         {{u"Nummer"_s, u"LieferungID"_s, u"0000000000"_s},
                          {u"Datum"_s, u"Datum"_s, u"00.00.0000"_s},
                          {u"Zeit"_s, u"Zeit"_s, u"00:00:00"_s},
                          {u"Betrag"_s, u"Betrag_Gesamt"_s, u"000.000,00 €"_s, Qt::AlignRight,
                           [](const Recordset& rs) { return till::MoneyText(rs.Money(u"Betrag_Gesamt")); }},
                          {u"Kunde"_s, u"Kunde"_s, u"Gasthof Zur Linde und Söhne"_s}},
                         this)) {
    m_ui->setupUi(this);
    setUpWizard();
    m_notes->setCheck([this](const Recordset& rs) { return m_ticked.contains(rs.Long(u"LieferungID")); },
                      [this](const QString& key, bool on) {
                          if (on)
                              m_ticked.insert(GetKeyID(key, 2));
                          else
                              m_ticked.erase(GetKeyID(key, 2));
                          showSum();
                      });
    m_ui->lvwLieferschein->setModel(m_notes);
    connect(m_ui->cmdTick, &TouchKey::clicked, this, [this] { tick(false); });
    connect(m_ui->cmdAll, &TouchKey::clicked, this, [this] { tick(true); });
    guard()([this] {
        for (const auto& customer : m_invoice.Customers())
            m_ui->cboKunden->addItem(customer.name, customer.key);
    });
    m_ui->cboKunden->setCurrentIndex(-1);
}

frmRechnungFromLieferschein::~frmRechnungFromLieferschein() { m_ui->lvwLieferschein->setModel(nullptr); }

int frmRechnungFromLieferschein::customer() const {
    return GetKeyID(m_ui->cboKunden->currentData().toString(), 3);
}

void frmRechnungFromLieferschein::tick(bool all) {
    guard()([&] {
        m_notes->readAll();
        const int current = m_ui->lvwLieferschein->currentRow();
        for (int row = all ? 0 : current; row >= 0 && row < (all ? m_notes->rowCount() : current + 1);
             ++row) {
            const QModelIndex cell = m_notes->index(row, 0);
            const bool on = all || cell.data(Qt::CheckStateRole).toInt() != Qt::Checked;
            m_notes->setData(cell, on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
        }
    });
}

void frmRechnungFromLieferschein::showSum() {
    const int count = int(m_ticked.size());
    m_ui->lblSumme->setText(
        u"%1 · %2 %3"_s.arg(count == 1 ? u"1 Lieferschein"_s : u"%1 Lieferscheine"_s.arg(count),
                            till::MoneyText(m_invoice.Sum(ticked())), gWaehrungsSymbol));
}

bool frmRechnungFromLieferschein::mayLeave(int pane) {
    if (pane == 0)
        return !FirstFailure(
            {{m_ui->cboKunden->currentIndex() < 0, m_ui->cboKunden,
              u"Sie müssen ein Kunden auswählen bevor Sie den Vorgang fortsetzen können."_s}});
    return !FirstFailure(
        {{m_ticked.empty(), m_ui->lvwLieferschein, u"Sie müssen mindestens ein Lieferschein auswählen."_s}});
}

void frmRechnungFromLieferschein::entered(int pane) {
    if (pane == 0) {
        m_ui->cboKunden->setFocus();
    } else if (pane == 1) {
        if (m_shown != customer()) m_ticked.clear();
        m_shown = customer();
        m_notes->open(m_invoice.Notes(m_shown));
        if (m_ui->lvwLieferschein->currentRow() < 0) m_ui->lvwLieferschein->selectRow(0);
        m_ui->lvwLieferschein->setFocus();
        showSum();
    } else {
        m_ui->lblRechnung->setText(u"%1\n%2"_s.arg(m_ui->cboKunden->currentText(), m_ui->lblSumme->text()));
    }
}

void frmRechnungFromLieferschein::finish() {
    if (const int taken = m_invoice.FirstTaken(ticked()); taken != 0) {
        MsgBox(
            u"Der Lieferschein %1 steht inzwischen in einer Rechnung oder wurde gelöscht, vielleicht an einer "
            "anderen Kasse. Es wurde keine Rechnung geschrieben. Bitte wählen Sie die Lieferscheine noch "
            "einmal aus."_s.arg(taken),
            MsgIcon::Exclamation);
        m_ticked.clear();
        m_shown = 0;
        wizard().setPaneNumber(1); // all keys are off by now: coming from before and going back sets them
        wizard().NextPane();
        wizard().PreviousPane();
        wizard().cancelKey()->setEnabled(true);
        return entered(1);
    }
    const int id = m_invoice.Create(customer(), ticked());
    if (m_ui->chkPrint->isChecked()) m_invoice.Print(id);
    m_ui->chkPrint->setEnabled(false);
    m_ui->wizPane2->setHeaderTitle(u"Vorgang abgeschlossen..."_s);
    m_ui->wizPane2->setHeaderDescription(u"Der Assistent hat den Vorgang erfolreich abgeschlossen."_s);
    m_ui->lblRechnung->setText(u"Rechnung %1\n%2"_s.arg(QString::number(id), m_ui->lblRechnung->text()));
    wizard().Finished();
}
