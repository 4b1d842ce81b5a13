#include "frmPersonalDetail.h"

#include "ui_frmPersonalDetail.h"

#include <session/Bilder.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>

using namespace Qt::StringLiterals;

frmPersonalDetail::frmPersonalDetail(PersonalRecord& record, QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmPersonalDetail>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtName);
    const bool isNew = record.ID == 0;
    m_ui->wizPane->setHeaderTitle(isNew ? u"Neuer Mitarbeiter..."_s : record.Vorname + u' ' + record.Name);
    setWindowTitle(isNew ? u"Neuer Mitarbeiter..."_s : u"Mitarbeiter bearbeiten"_s);

    m_binding.text(m_ui->txtName, record.Name, 50);
    m_binding.text(m_ui->txtVorName, record.Vorname, 50);
    m_binding.text(m_ui->txtStrasse, record.Strasse, 100);
    m_binding.text(m_ui->txtPLZ, record.PLZ, 10);
    m_binding.text(m_ui->txtOrt, record.Ort, 100);
    m_binding.text(m_ui->txtTelefon, record.Telefon, 30);
    m_binding.text(m_ui->txtMobil, record.Mobil, 30);
    m_binding.text(m_ui->txtEMail, record.EMail, 255);
    m_binding.exact(m_ui->txtPIN, record.PIN, 20);
    TakeScans(*m_ui->txtPIN); // of a card
    m_binding.flag(m_ui->chkGesperrt, record.Gesperrt);
    m_binding.flag(m_ui->chkArtikel, record.R_Artikel);
    m_binding.flag(m_ui->chkKunden, record.R_Kunden);
    m_binding.flag(m_ui->chkPersonal, record.R_Personal);
    m_binding.flag(m_ui->chkBerichte, record.R_Berichte);
    m_binding.flag(m_ui->chkRabatt, record.R_Rabatt);
    m_binding.flag(m_ui->chkSetup, record.R_Setup);
    m_binding.flag(m_ui->chkKassenAbschluss, record.R_KassenAbschluss);
    m_binding.flag(m_ui->chkRechnungEdit, record.R_RechnungEdit);
    m_binding.flag(m_ui->chkSystemExit, record.R_SystemExit);
    m_binding.fill();

    m_ui->sspBild->setCaption(u"Kein Mitarbeiterbild vorhanden"_s);
    setMinimumWidth(Theme::Current().keyHeight * 16);
    m_ui->sspBild->setMinimumSize(Theme::Current().keyHeight * 4, Theme::Current().keyHeight * 4);
    if (!isNew) m_ui->sspBild->load(BildDatei(Bild::Person, QString::number(record.ID)));
    showKeys();
    connect(m_ui->cmdBildOpen, &TouchKey::clicked, this, [this] {
        guard()([this] { m_ui->sspBild->choose(); });
        showKeys();
    });
    connect(m_ui->cmdBildDelete, &TouchKey::clicked, this, [this] {
        m_ui->sspBild->clear();
        showKeys();
    });
    connect(m_ui->sspBild, &PictureField::dropped, this, &frmPersonalDetail::showKeys);
    connect(m_ui->chkShowPIN, &QCheckBox::toggled, this,
            [this](bool on) { m_ui->txtPIN->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password); });
}

frmPersonalDetail::~frmPersonalDetail() = default;

PictureField& frmPersonalDetail::picture() const { return *m_ui->sspBild; }

void frmPersonalDetail::showKeys() { m_ui->cmdBildDelete->setEnabled(m_ui->sspBild->hasPicture()); }

void frmPersonalDetail::ok() {
    if (FirstFailure({{IsEmpty(m_ui->txtName), m_ui->txtName,
                       u"Sie müssen ein Namen für diesen Mitarbeiter eingeben."_s},
                      {IsEmpty(m_ui->txtVorName), m_ui->txtVorName,
                       u"Sie müssen ein Vorname für diesen Mitarbeiter eingeben."_s}}) ||
        !m_binding.take())
        return;
    accept();
}
