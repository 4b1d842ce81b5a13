#include "frmKassePapiere.h"

#include "ui_frmKassePapiere.h"

#include <register/Prices.h>
#include <session/Keys.h>
#include <store/Recordset.h>
#include <text/Convert.h>
#include <ui/Pointer.h>
#include <ui/Theme.h>

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

std::vector<ListColumn> paperColumns(const till::PaperKind& kind) {
    std::vector<ListColumn> columns{
        {u"Nummer"_s, kind.key, u"000000"_s},
        {u"Datum"_s, u"Datum"_s, u"00.00.0000 00:00"_s, Qt::AlignLeft,
         [](const Recordset& rs) {
             const auto time = rs.Date(u"Zeit");
             return rs.Text(u"Datum") + (time ? u' ' + time->time().toString(u"HH:mm"_s) : QString());
         }},
        {u"Kunde"_s, u"Kunde"_s, u"Gasthof Zur Linde und Söhne"_s},
        {u"Betrag"_s, u"Betrag_Gesamt"_s, u"000.000,00 €"_s, Qt::AlignRight,
         [](const Recordset& rs) { return till::MoneyText(rs.Money(u"Betrag_Gesamt")); }}};
    if (kind.kind == till::Papier::Lieferung)
        columns.push_back({u"in Rechnung"_s, u"InRechnung"_s, u"in Rechnung"_s, Qt::AlignHCenter,
                           [](const Recordset& rs) { return rs.Flag(u"InRechnung") ? u"X"_s : QString(); }});
    return columns;
}

std::vector<ListColumn> lineColumns() {
    return {
        {u"Artikel-Nr / EAN"_s, u"ArtikelNummer"_s, u"2001040000128"_s},
        {u"Artikelname"_s, u"ArtikelName"_s, u"Dinkelvollkornbrot 750 g"_s},
        {u"Anz"_s, u"Buchungs_Menge"_s, u"0000"_s, Qt::AlignRight},
        {u"Menge"_s, u"Menge"_s, u"000 Stück"_s, Qt::AlignLeft,
         [](const Recordset& rs) { return NumberText(rs.Number(u"Menge")) + u' ' + rs.Text(u"Einheit"); }},
        {u"E-Preis"_s, u"VKPreis_Brutto"_s, u"00.000,00"_s, Qt::AlignRight,
         [](const Recordset& rs) { return till::MoneyText(rs.Money(u"VKPreis_Brutto")); }},
        {u"G-Preis"_s, u"VKPreis_Brutto"_s, u"000.000,00"_s, Qt::AlignRight, [](const Recordset& rs) {
             return till::MoneyText(rs.Money(u"VKPreis_Brutto") *
                                    Currency::fromDouble(rs.Number(u"Buchungs_Menge")));
         }}};
}

} // namespace

frmKassePapiere::frmKassePapiere(const till::PaperHistory& history, QWidget* parent)
    : FormDialog(parent)
    , m_history(history)
    , m_ui(std::make_unique<Ui::frmKassePapiere>())
    , m_papers(new RecordList({u"ID"_s, history.kind().key}, paperColumns(history.kind()), this))
    , m_lines(new RecordList({{}, u"ArtikelNummer"_s}, lineColumns(), this)) {
    m_ui->setupUi(this);
    const bool notes = history.kind().kind == till::Papier::Lieferung;
    setObjectName(notes ? u"frmKasseLieferung"_s : u"frmKasseAngebote"_s);
    setWindowTitle(notes ? u"Lieferschein Historie"_s : u"Angebotshistorie"_s);
    m_ui->wizPane->setHeaderTitle(windowTitle() + u"..."_s);
    m_ui->wizPane->setHeaderDescription(
        notes ? u"Wählen Sie einen Lieferschein. Ein X steht bei denen, die schon in einer Rechnung sind."_s
              : u"Wählen Sie ein Angebot."_s);
    m_ui->lvwAngebot->setAccessibleName(notes ? u"Lieferscheine"_s : u"Angebote"_s);
    m_ui->cmdCSV->setVisible(notes);
    setUpForm(m_ui->lvwAngebot);
    setKeys(m_ui->cmdAddToOrder, m_ui->cmdCancel);
    const int edge = Theme::Current().keyHeight;
    m_ui->vorschau->setFixedWidth(edge * 6);
    resize(edge * 22, edge * 12);
    m_ui->lvwAngebot->setModel(m_papers);
    m_ui->lvwDetail->setModel(m_lines);

    connect(m_ui->lvwAngebot, &ListView::currentKeyChanged, this, &frmKassePapiere::showLines);
    connect(m_ui->lvwAngebot, &ListView::chosen, m_ui->cmdAddToOrder, &TouchKey::click);
    connect(m_ui->cmdDelete, &TouchKey::clicked, this, [this] {
        withSelected([this](int id) {
            if (m_history.Delete(id)) showPapers();
        });
    });
    connect(m_ui->cmdPrint, &TouchKey::clicked, this, [this] {
        withSelected([this](int id) {
            const WaitCursor wait;
            m_history.Print(id);
        });
    });
    connect(m_ui->cmdCSV, &TouchKey::clicked, this,
            [this] { withSelected([this](int id) { m_history.SaveCsv(id); }); });
    m_days.emplace(*m_ui->dtDatum, *m_ui->cmdPrevDay, *m_ui->cmdNextDay, *m_ui->cmdAlle,
                   [this] { showPapers(); });
    showPapers();
}

frmKassePapiere::~frmKassePapiere() {
    m_ui->lvwAngebot->setModel(nullptr);
    m_ui->lvwDetail->setModel(nullptr);
}

void frmKassePapiere::showPapers() {
    guard()([this] {
        m_papers->open(m_history.List(m_days->chosen()));
        if (m_ui->lvwAngebot->currentRow() < 0 && m_papers->rowCount() > 0) m_ui->lvwAngebot->selectRow(0);
        showLines(m_ui->lvwAngebot->currentKey());
    });
}

void frmKassePapiere::showLines(const QString& key) {
    guard()([&] {
        for (TouchKey* act : {m_ui->cmdAddToOrder, m_ui->cmdDelete, m_ui->cmdPrint, m_ui->cmdCSV})
            act->setEnabled(!key.isEmpty());
        if (key.isEmpty()) {
            m_ui->vorschau->clear();
            return m_lines->clear();
        }
        const int id = GetKeyID(key, 2);
        m_lines->open(m_history.Lines(id));
        m_ui->vorschau->showPages(
            [id, &kind = m_history.kind()] { return FormularSeiten(id, kind.vorlage, kind.form); });
    });
}

void frmKassePapiere::withSelected(const std::function<void(int id)>& act) {
    const QString key = m_ui->lvwAngebot->currentKey();
    if (!key.isEmpty()) guard()([&] { act(GetKeyID(key, 2)); });
}

void frmKassePapiere::ok() {
    const QString key = m_ui->lvwAngebot->currentKey();
    if (key.isEmpty()) return;
    if (m_history.AddToOrder(GetKeyID(key, 2)))
        accept();
    else
        showPapers(); // another till may have changed it
}

void frmKassePapiere::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete)
        m_ui->cmdDelete->click();
    else if (event->key() == Qt::Key_P && event->modifiers() == Qt::ControlModifier)
        m_ui->cmdPrint->click();
    else
        FormDialog::keyPressEvent(event);
}
