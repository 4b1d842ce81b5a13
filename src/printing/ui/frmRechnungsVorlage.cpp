#include "ui_frmRechnungsVorlage.h"

#include <printing/RechnungsVorlagen.h>
#include <printing/ui/frmRechnungsVorlage.h>
#include <session/gAngaben.h>

#include <QKeyEvent>
#include <QStringListModel>

#include <algorithm>

using namespace Qt::StringLiterals;

frmRechnungsVorlage::frmRechnungsVorlage(QWidget* parent)
    : FormDialog(parent)
    , m_files(new QStringListModel(this))
    , m_ui(std::make_unique<Ui::frmRechnungsVorlage>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->mainFile);
    rememberSize();
    gVorlagenAuswahl = {};
    m_ui->mainFile->setModel(m_files);
    connect(m_ui->mainFile->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &frmRechnungsVorlage::showFile);
    connect(m_ui->mainFile, &QListView::clicked, this, &frmRechnungsVorlage::showFile);
    connect(m_ui->cmdDefault, &TouchKey::clicked, this, &frmRechnungsVorlage::useDefault);
    connect(m_ui->cmdSave, &TouchKey::clicked, this, &frmRechnungsVorlage::save);
    connect(m_ui->cmdNew, &TouchKey::clicked, this, &frmRechnungsVorlage::create);
    guard()([this] { loadFiles({}); });
}

frmRechnungsVorlage::~frmRechnungsVorlage() = default;

void frmRechnungsVorlage::loadFiles(const QString& name) {
    const QStringList names = vorlagen::Names();
    m_files->setStringList(names);
    const bool any = !names.isEmpty();
    m_ui->cmdOK->setEnabled(any);
    m_ui->cmdSave->setEnabled(any);
    m_ui->txtVorschau->setEnabled(any);
    const auto row = static_cast<int>(std::max(names.indexOf(name), qsizetype(0)));
    m_ui->mainFile->setCurrentIndex(m_files->index(row));
}

QString frmRechnungsVorlage::selectedFile() const { return m_ui->mainFile->currentIndex().data().toString(); }

void frmRechnungsVorlage::showFile() {
    m_ui->txtVorschau->clear();
    guard()([this] {
        if (const QString name = selectedFile(); !name.isEmpty())
            m_ui->txtVorschau->setPlainText(vorlagen::Read(name));
    });
}

void frmRechnungsVorlage::ok() {
    gVorlagenAuswahl = {2, m_ui->txtVorschau->toPlainText()};
    accept();
}

void frmRechnungsVorlage::useDefault() {
    gVorlagenAuswahl = {1, {}};
    accept();
}

bool frmRechnungsVorlage::cancelled() {
    gVorlagenAuswahl = {};
    return true;
}

void frmRechnungsVorlage::save() {
    guard()([this] { (void)vorlagen::Save(selectedFile(), m_ui->txtVorschau->toPlainText()); });
}

void frmRechnungsVorlage::create() {
    guard()([this] {
        if (const QString name = vorlagen::Create(); !name.isEmpty()) loadFiles(name);
    });
}

void frmRechnungsVorlage::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_F2:
        return m_ui->cmdNew->click();
    case Qt::Key_F3:
        return m_ui->cmdSave->click();
    case Qt::Key_F5:
        return m_ui->cmdDefault->click();
    case Qt::Key_F10: // Enter is a line break while the text has the focus
        return m_ui->cmdOK->click();
    default:
        FormDialog::keyPressEvent(event);
    }
}
