#include "ui_frmKassePrintDlg.h"

#include <printing/ui/frmKassePrintDlg.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/Settings.h>
#include <session/gZahlung.h>
#include <text/Format.h>
#include <ui/AmountLabel.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/TouchSpin.h>

#include <QKeyEvent>

using namespace Qt::StringLiterals;

frmKassePrintDlg::frmKassePrintDlg(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmKassePrintDlg>()) {
    m_ui->setupUi(this);
    gPrintMode = 0;
    const int edge = Theme::Current().keyHeight;
    for (TouchKey* key : {m_ui->cmdBon, m_ui->cmdA5, m_ui->cmdNone}) {
        key->setMinimumSize(edge * 11 / 4, edge * 3 / 2);
        key->installEventFilter(this);
    }
    TouchKey* const byDefault[] = {m_ui->cmdNone, m_ui->cmdBon, m_ui->cmdA5};
    if (gDruckerDefault >= 0 && gDruckerDefault <= 2) {
        TouchKey* preset = byDefault[gDruckerDefault];
        preset->setAccent(true);
        preset->setHint(preset->hint() + u" / Enter"_s);
        preset->setFocus();
    } else {
        m_ui->cmdBon->setFocus();
    }
    // The money goes over the counter while the receipt is chosen.
    const bool cash = gZahlung.ZahlArt == u"BAR"_s;
    m_ui->lblRueckgeldText->setVisible(cash);
    m_ui->lblRueckgeld->setVisible(cash);
    m_ui->lblRueckgeld->setText(Format(gZahlung.Betrag_Zurueck, gFormatPreis) + u' ' + gWaehrungsSymbol);
    m_ui->txtKopie->setFixedWidth(edge * 3 / 2);
    m_ui->txtKopie->setText(QString::number(gDruckerKopies));
    m_ui->mainSpin->setRange(0, 99);
    m_ui->mainSpin->setValue(gDruckerKopies);

    connect(m_ui->cmdBon, &TouchKey::clicked, this, [this] { choose(1, gBonDrucker); });
    connect(m_ui->cmdA5, &TouchKey::clicked, this, [this] { choose(2, gFormularDrucker); });
    connect(m_ui->cmdNone, &TouchKey::clicked, this, &frmKassePrintDlg::reject);
    connect(m_ui->mainSpin, &TouchSpin::valueChanged, this,
            [this](int copies) { Handle("frmKassePrintDlg", [&] { setKopies(copies); }); });
}

frmKassePrintDlg::~frmKassePrintDlg() = default;

void frmKassePrintDlg::choose(int mode, const QString& printer) {
    if (printer.isEmpty()) {
        gPrintMode = 0;
        MsgBox(
            u"Es ist kein Formulardrucker in der Konfiguration eingerichtet. Sie können den Beleg aber zu einem "
            "späteren Zeitpunkt erneut drucken."_s);
        QDialog::reject();
        return;
    }
    gPrintMode = mode;
    accept();
}

void frmKassePrintDlg::reject() {
    gPrintMode = 0;
    QDialog::reject();
}

void frmKassePrintDlg::setKopies(int copies) {
    m_ui->txtKopie->setText(QString::number(copies));
    gDruckerKopies = copies;
    KeepSetting(u"DRUCKER"_s, u"Kopies"_s, QString::number(copies));
}

bool frmKassePrintDlg::handlePress(int key) {
    if (key == Qt::Key_Escape) return true; // it acts when it is released
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
    switch (gDruckerDefault) {
    case 0:
        m_ui->cmdNone->click();
        break;
    case 1:
        m_ui->cmdBon->click();
        break;
    case 2:
        m_ui->cmdA5->click();
        break;
    default:
        break;
    }
    return true;
}

bool frmKassePrintDlg::handleRelease(int key) {
    switch (key) {
    case Qt::Key_Escape:
        reject();
        return true;
    case Qt::Key_F3:
        m_ui->cmdBon->click();
        return true;
    case Qt::Key_F4:
        m_ui->cmdA5->click();
        return true;
    case Qt::Key_F5:
        m_ui->cmdNone->click();
        return true;
    default:
        return false;
    }
}

bool frmKassePrintDlg::eventFilter(QObject* watched, QEvent* event) {
    // Enter means the preset button, also while another one has the focus.
    if (event->type() == QEvent::KeyPress && handlePress(static_cast<QKeyEvent*>(event)->key())) return true;
    return QDialog::eventFilter(watched, event);
}

void frmKassePrintDlg::keyPressEvent(QKeyEvent* event) {
    if (!handlePress(event->key())) QDialog::keyPressEvent(event);
}

void frmKassePrintDlg::keyReleaseEvent(QKeyEvent* event) {
    if (!handleRelease(event->key())) QDialog::keyReleaseEvent(event);
}
