#include "WaitDialog.h"

#include "ui_WaitDialog.h"

#include <ui/DialogPlace.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>

#include <QKeyEvent>

#include <utility>

using namespace Qt::StringLiterals;

WaitDialog::WaitDialog(const QString& title, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::WaitDialog>()) {
    m_ui->setupUi(this);
    setModal(true);
    DialogPlace::prepare(*this);
    setWindowTitle(title);
    m_ui->wizPane->setHeaderTitle(title);
    SetScanNotice(*this, u"Bitte warten: ein Scan wird jetzt nicht angenommen"_s);
    const int edge = Theme::Current().keyHeight;
    m_ui->lblText->setMinimumSize(edge * 9, edge * 2);
    m_ui->cmdCancel->setFixedSize(edge * 5 / 2, edge);
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, [this] { m_cancel = true; });
}

WaitDialog::~WaitDialog() = default;

void WaitDialog::setText(const QString& text) {
    m_ui->lblText->setText(text);
    setAccessibleDescription(text);
}

bool WaitDialog::takeCancel() { return std::exchange(m_cancel, false); }

void WaitDialog::refuse(const QKeyEvent& key) {
    if (key.text().isEmpty()) return;
    m_ui->lblNote->setText(u"Eingaben werden jetzt nicht angenommen. Bitte danach wiederholen."_s);
}

void WaitDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) refuse(*event);
    QDialog::keyPressEvent(event);
}

void WaitDialog::reject() { m_cancel = true; }
