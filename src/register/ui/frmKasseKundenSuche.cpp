#include "frmKasseKundenSuche.h"

#include "ui_frmKasseKundenSuche.h"

#include <session/Globals.h>
#include <ui/Theme.h>

using namespace Qt::StringLiterals;
namespace customers = till::CustomerSearch;

frmKasseKundenSuche::frmKasseKundenSuche(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseKundenSuche>())
    , m_customers(new RecordList({u"ID"_s, u"KundenID"_s},
                                 {{u"Nummer"_s, u"KundenNummer"_s, u"Kundennummer"_s},
                                  {u"Name"_s, u"Name_1"_s, u"Gasthof Zur Linde und Söhne"_s},
                                  {u"Straße"_s, u"Strasse"_s, u"Lindenstraße 17 a, Hof"_s},
                                  {u"PLZ"_s, u"PLZ"_s, u"00000"_s},
                                  {u"Ort"_s, u"Ort"_s, u"Bad Musterstadt"_s}},
                                 this))
    , m_vehicles(new RecordList({u"ID"_s, u"ID"_s},
                                {{u"Kennzeichen"_s, u"Kennzeichen"_s, u"MMM-MM 0000"_s},
                                 {u"Marke"_s, u"Marke"_s, u"Musterwagen"_s},
                                 {u"Typ"_s, u"Typ"_s, u"Kombi 2000"_s},
                                 {u"Fahrgestell-Nr"_s, u"FahrgestellNr"_s, u"WWW00000000000000"_s},
                                 {u"Erstzulassung"_s, u"Erstzulassung"_s, u"00.00.0000"_s},
                                 {u"TÜV"_s, u"TUEV"_s, u"00/0000"_s},
                                 {u"AU"_s, u"AU"_s, u"00/0000"_s},
                                 {u"KW"_s, u"KW"_s, u"0000"_s},
                                 {u"Hubraum"_s, u"Hubraum"_s, u"0000"_s}},
                                this)) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtSuchBegriff);
    // As large as its letters: all columns stand side by side on every screen.
    const int edge = Theme::Current().keyHeight;
    resize(edge * 18, edge * 12);
    m_customers->setLeading({{customers::StandardKey, {u"0"_s, u"Standardkunde"_s, u"-"_s, u"-"_s, u"-"_s}}});
    m_ui->lvwKunden->setModel(m_customers);
    m_ui->lvwKunden->takeArrowsFrom(*m_ui->txtSuchBegriff);
    m_ui->lvwKFZ->setModel(m_vehicles);
    m_ui->lvwKFZ->setVisible(gShowKundenKFZInfo);

    connect(m_ui->txtSuchBegriff, &QLineEdit::textChanged, this, &frmKasseKundenSuche::search);
    for (TouchKey* key : {m_ui->optSuche0, m_ui->optSuche1, m_ui->optSuche2}) {
        connect(key, &TouchKey::toggled, this, [this](bool on) {
            if (on) search();
        });
    }
    connect(m_ui->lvwKunden, &ListView::currentKeyChanged, this, &frmKasseKundenSuche::showVehicles);
    connect(m_ui->lvwKunden, &ListView::chosen, m_ui->cmdOK, &TouchKey::click);
    search();
}

frmKasseKundenSuche::~frmKasseKundenSuche() = default;

customers::By frmKasseKundenSuche::by() const {
    if (m_ui->optSuche0->isChecked()) return customers::Number;
    return m_ui->optSuche2->isChecked() ? customers::Town : customers::Name;
}

void frmKasseKundenSuche::search() {
    guard()([this] {
        const QString text = m_ui->txtSuchBegriff->text();
        m_customers->open(customers::Find(by(), text));
        ListView& list = *m_ui->lvwKunden;
        m_ui->lblNiemand->hide();
        // The standard customer stands first; what was looked for follows.
        if (text.isEmpty()) return list.selectRow(0);
        if (const QString number = customers::FindNumber(text); !number.isEmpty() && list.selectKey(number))
            return;
        if (by() != customers::Number && m_customers->rowCount() > 1) return list.selectRow(1);
        // Enter must not take a customer whom nobody has chosen.
        list.setCurrentIndex({});
        tellNobody();
    });
}

void frmKasseKundenSuche::tellNobody() { m_ui->lblNiemand->show(); }

void frmKasseKundenSuche::showVehicles(const QString& key) {
    if (!gShowKundenKFZInfo) return;
    guard()([&] {
        if (key.isEmpty()) return m_vehicles->clear();
        m_vehicles->open(customers::Vehicles(key));
    });
}

void frmKasseKundenSuche::ok() {
    const QString key = m_ui->lvwKunden->currentKey();
    if (key.isEmpty()) return tellNobody();
    if (customers::Choose(key))
        accept();
    else
        search();
}
