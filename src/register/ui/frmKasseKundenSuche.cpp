#include "frmKasseKundenSuche.h"

#include "ui_frmKasseKundenSuche.h"

#include <session/Globals.h>
#include <session/Handle.h>
#include <ui/Theme.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QStandardItemModel>

using namespace Qt::StringLiterals;
using till::CustomerSearch;

frmKasseKundenSuche::frmKasseKundenSuche(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseKundenSuche>())
    , m_vehicles(new QStandardItemModel(this)) {
    m_ui->setupUi(this);
    const int rowHeight = Theme::Current().keyHeight * 2 / 3;
    const QFontMetrics metrics(Theme::Current().font());
    QTableView* list = m_ui->lvwKunden;
    list->setModel(&m_customers);
    list->verticalHeader()->setDefaultSectionSize(rowHeight);
    list->horizontalHeader()->setSectionResizeMode(CustomerSearch::Name_1, QHeaderView::Stretch);
    list->setColumnWidth(CustomerSearch::KundenNummer, metrics.horizontalAdvance(u"Kundennummer"_s) + 24);
    list->setColumnWidth(CustomerSearch::Strasse, metrics.averageCharWidth() * 24);
    list->setColumnWidth(CustomerSearch::PLZ, metrics.horizontalAdvance(u"00000"_s) + 32);
    list->setColumnWidth(CustomerSearch::Ort, metrics.averageCharWidth() * 20);
    m_ui->lvwKFZ->setModel(m_vehicles);
    m_ui->lvwKFZ->verticalHeader()->setDefaultSectionSize(rowHeight);
    m_ui->lvwKFZ->horizontalHeader()->setStretchLastSection(true);
    m_ui->lvwKFZ->setVisible(gShowKundenKFZInfo);
    for (QTableView* table : {m_ui->lvwKunden, m_ui->lvwKFZ})
        table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_ui->txtSuchBegriff->installEventFilter(this);

    connect(m_ui->txtSuchBegriff, &QLineEdit::textChanged, this, &frmKasseKundenSuche::search);
    for (TouchKey* key : {m_ui->optSuche0, m_ui->optSuche1, m_ui->optSuche2}) {
        connect(key, &TouchKey::toggled, this, [this](bool on) {
            if (on) search();
        });
    }
    connect(list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { showVehicles(current.row()); });
    connect(list, &QTableView::doubleClicked, this, &frmKasseKundenSuche::ok);
    connect(m_ui->cmdOK, &TouchKey::clicked, this, &frmKasseKundenSuche::ok);
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &frmKasseKundenSuche::reject);
    search();
}

frmKasseKundenSuche::~frmKasseKundenSuche() { m_ui->lvwKunden->setModel(nullptr); }

CustomerSearch::By frmKasseKundenSuche::by() const {
    if (m_ui->optSuche0->isChecked()) return CustomerSearch::Number;
    return m_ui->optSuche2->isChecked() ? CustomerSearch::Town : CustomerSearch::Name;
}

void frmKasseKundenSuche::search() {
    Handle("frmKasseKundenSuche", [this] {
        const QString text = m_ui->txtSuchBegriff->text();
        m_customers.Search(by(), text);
        if (m_customers.canFetchMore({})) m_customers.fetchMore({});
        // The standard customer stands first; what was looked for follows.
        m_ui->lvwKunden->selectRow(!text.isEmpty() && m_customers.rowCount() > 1 ? 1 : 0);
        if (by() == CustomerSearch::Number) selectNumber(text);
    });
}

void frmKasseKundenSuche::selectNumber(const QString& number) {
    m_ui->lvwKunden->selectRow(0);
    if (number.isEmpty()) return;
    for (int row = 0;; ++row) {
        while (row >= m_customers.rowCount() && m_customers.canFetchMore({}))
            m_customers.fetchMore({});
        if (row >= m_customers.rowCount()) return;
        const QModelIndex where = m_customers.index(row, CustomerSearch::KundenNummer);
        if (!where.data().toString().startsWith(number, Qt::CaseInsensitive)) continue;
        m_ui->lvwKunden->selectRow(row);
        m_ui->lvwKunden->scrollTo(where);
        return;
    }
}

void frmKasseKundenSuche::showVehicles(int row) {
    if (!gShowKundenKFZInfo) return;
    Handle("frmKasseKundenSuche", [this, row] {
        m_vehicles->clear();
        m_vehicles->setHorizontalHeaderLabels(CustomerSearch::VehicleHeaders());
        m_ui->lvwKFZ->resizeColumnsToContents();
        if (row < 0) return;
        for (const QStringList& vehicle : m_customers.Vehicles(row)) {
            QList<QStandardItem*> items;
            for (const QString& text : vehicle)
                items << new QStandardItem(text);
            m_vehicles->appendRow(items);
        }
        m_ui->lvwKFZ->resizeColumnsToContents();
    });
}

void frmKasseKundenSuche::ok() {
    Handle("frmKasseKundenSuche", [this] {
        const int row = m_ui->lvwKunden->currentIndex().row();
        if (row < 0) return;
        if (m_customers.Choose(row))
            accept();
        else
            search();
    });
}

void frmKasseKundenSuche::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        ok();
    else
        QDialog::keyPressEvent(event);
}

void frmKasseKundenSuche::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    m_ui->txtSuchBegriff->setFocus();
}

bool frmKasseKundenSuche::eventFilter(QObject* receiver, QEvent* event) {
    // The list is moved from the entry box, so that typing and choosing need no change of the focus.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
            QCoreApplication::sendEvent(m_ui->lvwKunden, event);
            return true;
        }
    }
    return QDialog::eventFilter(receiver, event);
}
