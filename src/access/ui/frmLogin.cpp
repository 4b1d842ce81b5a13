#include "ui_frmLogin.h"

#include <access/Login.h>
#include <access/ui/frmLogin.h>
#include <access/ui/frmMain.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/gUser.h>
#include <ui/DigitPad.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QCloseEvent>
#include <QCompleter>
#include <QPainter>
#include <QScreen>

using namespace Qt::StringLiterals;

frmLogin::frmLogin(KasseFactory openKasse, QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::frmLogin>())
    , m_kasse(std::move(openKasse)) {
    m_ui->setupUi(this);
    // The whole screen, also where no window manager would maximise it.
    if (const QScreen* display = QGuiApplication::primaryScreen()) setGeometry(display->availableGeometry());
    setWindowState(Qt::WindowMaximized);
    // Windows come and go while nobody is logged in; the program ends with this one alone.
    QApplication::setQuitOnLastWindowClosed(false);

    const Theme& t = Theme::Current();
    m_ui->lblBezeichnung->setProperty("role", u"large"_s);
    m_ui->txtPIN->setProperty("role", u"large"_s);
    m_ui->card->setMinimumWidth(t.keyHeight * 13);
    m_ui->pad->setKeys(DigitPad::Clear);
    m_ui->pad->setTarget(m_ui->txtPIN);
    m_ui->pad->setMinimumSize(t.keyHeight * 6, t.keyHeight * 5);
    for (TouchKey* key : {m_ui->cmdLogin, m_ui->cmdMain, m_ui->cmdCancel})
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    m_ui->cmdMain->setVisible(gOnlyKassenModus);
    m_ui->cmdLogin->setText(gOnlyKassenModus ? u"&Kassenbetrieb"_s : u"&Anmelden"_s);

    connect(m_ui->cmdLogin, &TouchKey::clicked, this,
            [this] { Handle("frmLogin", [this] { anmelden(false); }); });
    connect(m_ui->cmdMain, &TouchKey::clicked, this,
            [this] { Handle("frmLogin", [this] { anmelden(true); }); });
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &QWidget::close);
    connect(m_ui->txtPIN, &QLineEdit::returnPressed, m_ui->cmdLogin, &TouchKey::click);
    connect(m_ui->cboUser, &QComboBox::activated, this, [this] { m_ui->txtPIN->setFocus(); });
    connect(m_ui->cboUser, &QComboBox::editTextChanged, this, &frmLogin::selectByText);
    m_ui->cboUser->completer()->setCaseSensitivity(Qt::CaseInsensitive);
    TakeScans(*m_ui->txtPIN);
    TakeScans(*m_ui->cboUser);
    m_ui->cboUser->installEventFilter(
        this); // the focus is the list's, its line edit only gets what it passes on
    connect(&m_kasse, &KasseOpener::Unloaded, this, [this] {
        // Only a till that is nothing else goes from the register to the login; the shell is still open
        // otherwise.
        if (m_main.isNull() || !m_main->isVisible())
            comeBack();
        else
            m_main->activateWindow();
    });
    Handle("frmLogin", [this] { LoadUsers(); });
}

// The shell goes first, since it works on the register that belongs to this form.
frmLogin::~frmLogin() { delete m_main; }

void frmLogin::LoadUsers() {
    const QSignalBlocker quiet(m_ui->cboUser);
    m_ui->cboUser->clear();
    m_ui->cmdLogin->setEnabled(false);
    m_ui->cmdMain->setEnabled(false);
    for (const LoginEntry& entry : LoadActiveUsers())
        m_ui->cboUser->addItem(entry.Text, entry.Key);
    const bool any = m_ui->cboUser->count() > 0;
    m_ui->cboUser->setCurrentIndex(any ? 0 : -1);
    m_ui->cmdLogin->setEnabled(any);
    m_ui->cmdMain->setEnabled(any);
}

void frmLogin::selectByText(const QString& text) {
    const int row = m_ui->cboUser->findText(text, Qt::MatchFixedString);
    if (row < 0 || row == m_ui->cboUser->currentIndex()) return;
    const QSignalBlocker quiet(m_ui->cboUser);
    const int cursor = m_ui->cboUser->lineEdit()->cursorPosition();
    m_ui->cboUser->setCurrentIndex(row);
    m_ui->cboUser->lineEdit()->setCursorPosition(cursor);
}

void frmLogin::anmelden(bool toShell) {
    const QString key = m_ui->cboUser->currentData().toString();
    switch (Anmelden(key, m_ui->txtPIN->text())) {
    case LoginResult::Done:
        break;
    case LoginResult::NotFound:
        LoadUsers();
        return;
    case LoginResult::Blocked:
    case LoginResult::WrongPin:
        m_ui->txtPIN->clear();
        m_ui->txtPIN->setFocus();
        return;
    }
    m_ui->txtPIN->clear();
    hide();
    // With every window hidden nobody could go on: whatever fails on the way brings the login back.
    const auto open = [&] { gOnlyKassenModus && !toShell ? StartKasse() : showMain(); };
    if (!Handle("frmLogin", open) || (!m_kasse.isOpen() && m_main.isNull())) comeBack();
}

void frmLogin::StartKasse() { m_kasse.StartKasse(); }

void frmLogin::showMain() {
    m_main = new frmMain(m_kasse);
    m_main->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_main, &frmMain::Unloaded, this, &frmLogin::comeBack);
    m_main->show();
    // Without a window manager the keyboard would stay with the window that has just gone.
    m_main->activateWindow();
}

void frmLogin::comeBack() {
    m_ui->txtPIN->clear();
    show();
    activateWindow();
}

void frmLogin::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_ui->cboUser->count() > 1) {
        m_ui->cboUser->setFocus();
        m_ui->cboUser->lineEdit()->selectAll();
    } else {
        m_ui->txtPIN->setFocus();
    }
}

void frmLogin::closeEvent(QCloseEvent* event) {
    // A register that keeps its open sale keeps the program.
    if (!m_kasse.close()) {
        event->ignore();
        return;
    }
    gUser.Ergebnis = 0;
    event->accept();
    emit Unloaded();
    QCoreApplication::quit();
}

void frmLogin::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        m_ui->cmdCancel->click();
    else if (event->key() == Qt::Key_F2 && m_ui->cmdMain->isVisible())
        m_ui->cmdMain->click();
    else
        QWidget::keyPressEvent(event);
}

bool frmLogin::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* pressed = static_cast<QKeyEvent*>(event);
        const int key = pressed->key();
        // Nobody's name begins with a digit: who types one is at the PIN already.
        if (pressed->text().size() == 1 && pressed->text().front().isDigit()) {
            m_ui->txtPIN->setFocus();
            m_ui->txtPIN->insert(pressed->text());
            return true;
        }
        // Leafing is no choice yet, so the focus stays where it is.
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            const int row = m_ui->cboUser->currentIndex() + (key == Qt::Key_Up ? -1 : 1);
            if (row >= 0 && row < m_ui->cboUser->count()) m_ui->cboUser->setCurrentIndex(row);
            m_ui->cboUser->lineEdit()->selectAll();
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_ui->cboUser->setEditText(m_ui->cboUser->itemText(m_ui->cboUser->currentIndex()));
            m_ui->txtPIN->setFocus();
            return true;
        }
    } else if (event->type() == QEvent::FocusOut) {
        // What was typed and is nobody's name gives way to the name that is selected.
        m_ui->cboUser->setEditText(m_ui->cboUser->itemText(m_ui->cboUser->currentIndex()));
    }
    return QWidget::eventFilter(watched, event);
}

void frmLogin::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Theme::Current().page);
}
