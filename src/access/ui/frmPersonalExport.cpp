#include "frmPersonalExport.h"

#include "ui_frmPersonalExport.h"

#include <access/Personal.h>
#include <ui/Binding.h>

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

frmPersonalExport::frmPersonalExport(QWidget* parent)
    : WizardForm(parent)
    , m_ui(std::make_unique<Ui::frmPersonalExport>()) {
    m_ui->setupUi(this);
    setUpWizard();
    connect(m_ui->cmdFileOpen, &TouchKey::clicked, this, [this] { guard()([this] { choose(); }); });
}

frmPersonalExport::~frmPersonalExport() = default;

void frmPersonalExport::choose() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString preset =
        IsEmpty(m_ui->txtFileName) ? QDir(folder).filePath(u"unbenannt.csv"_s) : m_ui->txtFileName->text();
    if (const auto file = ChooseFile({u"Exportiern"_s, u"CSV Datei    (*.csv)|*.csv"_s, preset, true}))
        m_ui->txtFileName->setText(QDir::toNativeSeparators(*file));
    m_ui->txtFileName->setFocus();
}

bool frmPersonalExport::mayLeave(int pane) {
    if (pane != 1) return true;
    if (FirstFailure(
            {{IsEmpty(m_ui->txtFileName), m_ui->txtFileName, u"Sie müssen ein Dateinamen auswählen."_s}}))
        return false;
    QString file = QDir::fromNativeSeparators(m_ui->txtFileName->text().trimmed());
    if (QFileInfo(file).suffix().isEmpty()) file += u".csv"_s;
    m_ui->txtFileName->setText(QDir::toNativeSeparators(QFileInfo(file).absoluteFilePath()));
    return !FirstFailure({{!QFileInfo(file).absoluteDir().exists(), m_ui->txtFileName,
                           u"Den Ordner dieser Datei gibt es nicht."_s}});
}

void frmPersonalExport::entered(int pane) {
    if (pane == 1) {
        m_ui->txtFileName->setFocus();
    } else if (pane == 2) {
        const QString file = m_ui->txtFileName->text();
        m_ui->lblTarget->setText(
            file + (QFileInfo::exists(file) ? u"\n\nDie vorhandene Datei wird ersetzt."_s : QString()));
    }
}

void frmPersonalExport::finish() {
    Work work(*m_ui->mainWork, u"Die Mitarbeiter werden geschrieben..."_s, CountPersonal());
    if (!ExportPersonal(m_ui->txtFileName->text(), [&] { return work.advance(); })) return wizard().Error();
    work.finish({});
    m_ui->wizPane2->setHeaderTitle(u"Vorgang abgeschlossen..."_s);
    m_ui->wizPane2->setHeaderDescription(u"Der Assistent hat den Vorgang erfolreich abgeschlossen."_s);
    m_ui->lblTarget->setText(m_ui->txtFileName->text());
    wizard().Finished();
}
