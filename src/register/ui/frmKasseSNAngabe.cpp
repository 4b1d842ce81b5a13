#include "frmKasseSNAngabe.h"

#include "ui_frmKasseSNAngabe.h"

#include <register/SerienNummernDialog.h>
#include <session/gArtikel.h>
#include <ui/Pointer.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>

namespace rules = till::SerienNummernDialog;

frmKasseSNAngabe::frmKasseSNAngabe(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseSNAngabe>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->cboSN->lineEdit());
    setKeys(m_ui->cmdEnter, m_ui->cmdCancel);
    m_ui->wizPane->setHeaderDescription(gArtikel.Name);
    const int edge = Theme::Current().keyHeight;
    m_ui->pad->setKeys(DigitPad::Clear);
    m_ui->pad->setMinimumSize(edge * 6, edge * 4);
    m_ui->pad->setTarget(m_ui->cboSN->lineEdit());
    // A number that is the beginning of another one must not become that one.
    m_ui->cboSN->setCompleter(nullptr);
    TakeScans(*m_ui->cboSN->lineEdit(), ScanEnd::Enter);
    guard()([this] {
        m_ui->cboSN->addItems(rules::Free());
        m_ui->cboSN->setEditText(gArtikel.SNNummer);
    });
}

frmKasseSNAngabe::~frmKasseSNAngabe() = default;

void frmKasseSNAngabe::ok() {
    QString number = m_ui->cboSN->currentText();
    if (rules::Confirm(number)) {
        MovePointerAway();
        return accept();
    }
    m_ui->cboSN->setEditText(number);
    m_ui->cboSN->setFocus();
}

bool frmKasseSNAngabe::cancelled() {
    rules::Cancel();
    return true;
}
