#include "frmKasseBonHistorie.h"

#include "ui_frmKasseBonHistorie.h"

#include <printing/Seiten.h>
#include <register/Prices.h>
#include <session/Keys.h>
#include <store/Recordset.h>
#include <ui/Pointer.h>
#include <ui/Theme.h>

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

std::vector<ListColumn> columns() {
    return {{u"Nummer"_s, u"RechnungID"_s, u"0000000"_s},
            {u"Datum"_s, u"Datum"_s, u"00.00.0000 00:00"_s, Qt::AlignLeft,
             [](const Recordset& rs) {
                 const auto time = rs.Date(u"Zeit");
                 return rs.Text(u"Datum") + (time ? u' ' + time->time().toString(u"HH:mm"_s) : QString());
             }},
            {u"Kunde"_s, u"Kunde"_s, u"Gasthof Zur Linde"_s},
            {u"Zahlart"_s, u"ZahlArt"_s, u"RUECKGABE"_s},
            {u"Betrag"_s, u"Betrag_Gesamt"_s, u"00.000,00"_s, Qt::AlignRight,
             [](const Recordset& rs) { return till::MoneyText(rs.Money(u"Betrag_Gesamt")); }}};
}

} // namespace

frmKasseBonHistorie::frmKasseBonHistorie(const till::ReceiptHistory& history, QWidget* parent)
    : FormDialog(parent)
    , m_history(history)
    , m_ui(std::make_unique<Ui::frmKasseBonHistorie>())
    , m_receipts(new RecordList({u"ID"_s, u"RechnungID"_s}, columns(), this)) {
    m_ui->setupUi(this);
    setWindowTitle(u"Bon / Rechnungshistorie"_s);
    m_ui->wizPane->setHeaderTitle(windowTitle() + u"..."_s);
    m_ui->wizPane->setHeaderDescription(
        u"Wählen Sie einen Tag oder geben Sie die Nummer eines Belegs ein."_s);
    m_ui->lvwRechnung->setAccessibleName(u"Belege"_s);
    setUpForm(m_ui->lvwRechnung);
    setKeys(m_ui->cmdPrint, m_ui->cmdCancel);
    const int edge = Theme::Current().keyHeight;
    m_ui->vorschau->setFixedWidth(edge * 6);
    resize(edge * 20, edge * 12);
    m_ui->txtNummer->setMinimumWidth(edge * 3);
    m_ui->lvwRechnung->setModel(m_receipts);
    connect(m_ui->lvwRechnung, &ListView::currentKeyChanged, this, &frmKasseBonHistorie::showReceipt);
    connect(m_ui->lvwRechnung, &ListView::chosen, m_ui->cmdPrint, &TouchKey::click);
    connect(m_ui->cmdSuche, &TouchKey::clicked, this, &frmKasseBonHistorie::search);
    connect(m_ui->cmdDelete, &TouchKey::clicked, this, [this] {
        withSelected([this](int id) {
            if (m_history.Delete(id)) showReceipts();
        });
    });
    connect(m_ui->cmdErledigt, &TouchKey::clicked, this, [this] {
        withSelected([this](int id) {
            if (till::ReceiptHistory::Settle(id)) showReceipt(m_ui->lvwRechnung->currentKey());
        });
    });
    m_days.emplace(*m_ui->dtDatum, *m_ui->cmdPrevDay, *m_ui->cmdNextDay, *m_ui->cmdShowAll,
                   [this] { showReceipts(); });
    showReceipts();
}

frmKasseBonHistorie::~frmKasseBonHistorie() { m_ui->lvwRechnung->setModel(nullptr); }

void frmKasseBonHistorie::showReceipts() {
    guard()([this] {
        m_ui->lblStatus->clear();
        m_receipts->open(till::ReceiptHistory::List(m_days->chosen()));
        if (m_ui->lvwRechnung->currentRow() < 0 && m_receipts->rowCount() > 0)
            m_ui->lvwRechnung->selectRow(0);
        showReceipt(m_ui->lvwRechnung->currentKey());
    });
}

void frmKasseBonHistorie::showReceipt(const QString& key) {
    guard()([&] {
        for (TouchKey* act : {m_ui->cmdDelete, m_ui->cmdPrint})
            act->setEnabled(!key.isEmpty());
        m_ui->cmdErledigt->hide();
        if (key.isEmpty()) return m_ui->vorschau->clear();
        const int id = GetKeyID(key, 2);
        const bool incomplete = till::ReceiptHistory::IsIncomplete(id);
        m_ui->cmdErledigt->setVisible(incomplete);
        m_ui->lblStatus->setText(incomplete ? u"Unvollständig: Die Buchung wurde unterbrochen."_s
                                            : QString());
        m_ui->vorschau->showPages([id] { return BonSeiten(id); });
    });
}

void frmKasseBonHistorie::search() {
    guard()([this] {
        const QString typed = m_ui->txtNummer->text();
        if (typed.isEmpty()) return;
        bool isNumber = false;
        const int number = typed.toInt(&isNumber);
        const auto day = isNumber ? till::ReceiptHistory::DayOf(number) : std::nullopt;
        m_ui->txtNummer->selectAll();
        if (!day) {
            m_ui->lblStatus->setText(u"Einen Beleg mit der Nummer %1 gibt es nicht."_s.arg(typed));
            return;
        }
        m_days->show(*day);
        m_ui->lvwRechnung->selectKey(u"ID"_s + QString::number(number));
        m_ui->lvwRechnung->setFocus();
    });
}

void frmKasseBonHistorie::withSelected(const std::function<void(int id)>& act) {
    const QString key = m_ui->lvwRechnung->currentKey();
    if (!key.isEmpty()) guard()([&] { act(GetKeyID(key, 2)); });
}

void frmKasseBonHistorie::ok() {
    withSelected([this](int id) {
        const WaitCursor wait;
        m_history.Print(id);
    });
}

void frmKasseBonHistorie::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && m_ui->txtNummer->hasFocus())
        search();
    else if (event->key() == Qt::Key_Delete && m_ui->lvwRechnung->hasFocus())
        m_ui->cmdDelete->click();
    else if (event->key() == Qt::Key_P && event->modifiers() == Qt::ControlModifier)
        m_ui->cmdPrint->click();
    else
        FormDialog::keyPressEvent(event);
}
