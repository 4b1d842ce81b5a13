#include "ui_frmDesktopLogin.h"

#include <access/Login.h>
#include <access/ui/frmDesktopLogin.h>
#include <session/Handle.h>
#include <session/gUser.h>
#include <ui/DigitPad.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QKeyEvent>

using namespace Qt::StringLiterals;

frmDesktopLogin::frmDesktopLogin(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmDesktopLogin>()) {
    m_ui->setupUi(this);
    const int edge = Theme::Current().keyHeight;
    setMinimumSize(edge * 14, edge * 10);
    m_ui->txtPIN->setProperty("role", u"large"_s);
    m_ui->pad->setKeys(DigitPad::Clear);
    m_ui->pad->setTarget(m_ui->txtPIN);
    m_ui->pad->setMinimumHeight(4 * edge + 3 * 6);
    m_ui->lvwUsers->setFocusPolicy(Qt::NoFocus);
    for (TouchKey* key : {m_ui->cmdLogin, m_ui->cmdCancel})
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    if (gLoginPflicht) setWindowFlag(Qt::WindowCloseButtonHint, false);
    m_ui->cmdCancel->setEnabled(!gLoginPflicht);

    connect(m_ui->cmdLogin, &TouchKey::clicked, this,
            [this] { Handle("frmDesktopLogin", [this] { anmelden(); }); });
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &frmDesktopLogin::reject);
    connect(m_ui->txtPIN, &QLineEdit::returnPressed, m_ui->cmdLogin, &TouchKey::click);
    gKassenUser.Result = 0;
    Handle("frmDesktopLogin", [this] { LoadUsers(); });
}

frmDesktopLogin::~frmDesktopLogin() = default;

void frmDesktopLogin::LoadUsers() {
    m_ui->lvwUsers->clear();
    const QString current = u"ID"_s + QString::number(gKassenUser.ID);
    for (const LoginEntry& entry : LoadAllUsers()) {
        auto* item = new QListWidgetItem(entry.Text, m_ui->lvwUsers);
        item->setData(Qt::UserRole, entry.Key);
        if (entry.Key == current) m_ui->lvwUsers->setCurrentItem(item);
    }
}

void frmDesktopLogin::anmelden() {
    const QListWidgetItem* item = m_ui->lvwUsers->currentItem();
    if (item == nullptr) return;
    switch (KassenAnmelden(item->data(Qt::UserRole).toString(), m_ui->txtPIN->text())) {
    case LoginResult::Done:
        accept();
        return;
    case LoginResult::NotFound:
        LoadUsers();
        return;
    case LoginResult::Blocked:
    case LoginResult::WrongPin:
        m_ui->txtPIN->clear();
        return;
    }
}

void frmDesktopLogin::moveSelection(int by) {
    const int row = m_ui->lvwUsers->currentRow() + by;
    if (row >= 0 && row < m_ui->lvwUsers->count()) m_ui->lvwUsers->setCurrentRow(row);
}

void frmDesktopLogin::keyPressEvent(QKeyEvent* event) {
    // The PIN box leaves these keys alone, so they arrive here wherever the focus is.
    if (event->key() == Qt::Key_Up)
        moveSelection(-1);
    else if (event->key() == Qt::Key_Down)
        moveSelection(1);
    else
        QDialog::keyPressEvent(event);
}

void frmDesktopLogin::reject() {
    if (gLoginPflicht) return;
    gKassenUser.Result = 0;
    QDialog::reject();
}

void frmDesktopLogin::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    m_ui->txtPIN->setFocus();
}
