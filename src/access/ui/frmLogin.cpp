#include "ui_frmLogin.h"

#include <access/Login.h>
#include <access/ui/frmLogin.h>
#include <access/ui/frmMain.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/gUser.h>
#include <ui/DigitPad.h>
#include <ui/Form.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCloseEvent>
#include <QCompleter>
#include <QGridLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isDigit(const QKeyEvent& key) { return key.text().size() == 1 && key.text().front().isDigit(); }

} // namespace

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
    m_ui->lblNiemand->setProperty("role", u"warning"_s);
    m_ui->lblNiemand->hide();
    m_ui->cboUser->setMinimumWidth(t.keyHeight * 5);
    m_ui->pad->setKeys(DigitPad::Clear);
    m_ui->pad->setTarget(m_ui->txtPIN);
    m_ui->pad->setMinimumSize(t.keyHeight * 5, t.keyHeight * 5);
    for (TouchKey* key : m_ui->pad->findChildren<TouchKey*>())
        connect(key, &TouchKey::pressed, m_ui->txtPIN, qOverload<>(&QWidget::setFocus));
    SelectTextOnFocus(*this);
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
    connect(m_ui->cboUser, &QComboBox::activated, this, &frmLogin::chooseUser);
    connect(m_ui->cboUser, &QComboBox::currentIndexChanged, this, &frmLogin::markUser);
    connect(m_ui->cboUser, &QComboBox::editTextChanged, this, &frmLogin::selectByText);
    m_ui->cboUser->lineEdit()->setProperty("screenKeyboard", false); // a tap there opens the list
    m_ui->cboUser->completer()->setCaseSensitivity(Qt::CaseInsensitive);
    TakeScans(*m_ui->txtPIN);
    TakeScans(*m_ui->cboUser);
    // The focus is the list's, its line edit only gets what it passes on; a tap hits the line edit.
    for (QObject* part :
         {static_cast<QObject*>(m_ui->cboUser), static_cast<QObject*>(m_ui->cboUser->lineEdit()),
          static_cast<QObject*>(m_ui->cboUser->view())})
        part->installEventFilter(this);
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
    showKeys();
}

void frmLogin::showKeys() {
    qDeleteAll(m_keys);
    m_keys.clear();
    const int people = m_ui->cboUser->count();
    if (people < 1 || people > mostKeys) return;
    const Theme& t = Theme::Current();
    const int rows = people <= mostKeys / 2 ? people : (people + 1) / 2;
    for (int row = 0; row < people; ++row) {
        QString name = m_ui->cboUser->itemText(row);
        auto* key = new TouchKey(name.replace(u'&', u"&&"_s), m_ui->card);
        key->setObjectName(u"cmdUser%1"_s.arg(row));
        key->setCheckable(true);
        // The letters and digits of the keyboard belong to the boxes.
        key->setFocusPolicy(Qt::NoFocus);
        key->setFixedSize(t.keyHeight * 5 / 2, t.keyHeight * 8 / 7);
        m_ui->layUsers->addWidget(key, row % rows, row / rows);
        connect(key, &TouchKey::clicked, this, [this, row] { chooseUser(row); });
        m_keys.push_back(key);
    }
    m_ui->layUsers->setRowStretch(rows, 1);
    markUser();
}

void frmLogin::markUser() {
    const int current = isSomebody() ? m_ui->cboUser->currentIndex() : -1;
    for (int row = 0; row < int(m_keys.size()); ++row)
        m_keys[size_t(row)]->setChecked(row == current);
}

void frmLogin::chooseUser(int row) {
    m_ui->cboUser->setCurrentIndex(row);
    m_ui->cboUser->setEditText(m_ui->cboUser->itemText(row));
    m_ui->lblNiemand->hide();
    markUser();
    m_ui->txtPIN->setFocus();
    SelectAllText(m_ui->txtPIN); // it may have been somebody else's
}

void frmLogin::typePin(const QString& digit) {
    m_ui->txtPIN->setFocus();
    m_ui->txtPIN->insert(digit);
}

bool frmLogin::isSomebody() const {
    const int row = m_ui->cboUser->currentIndex();
    return row >= 0 &&
           m_ui->cboUser->currentText().compare(m_ui->cboUser->itemText(row), Qt::CaseInsensitive) == 0;
}

void frmLogin::tellNobody() {
    m_ui->lblNiemand->setText(u"„%1“ gibt es nicht. Bitte wählen Sie einen Namen aus der Liste."_s.arg(
        m_ui->cboUser->currentText()));
    m_ui->lblNiemand->show();
}

void frmLogin::selectByText(const QString& text) {
    m_ui->lblNiemand->hide();
    const int row = m_ui->cboUser->findText(text, Qt::MatchFixedString);
    if (row < 0 || row == m_ui->cboUser->currentIndex()) return markUser();
    const QSignalBlocker quiet(m_ui->cboUser);
    const int cursor = m_ui->cboUser->lineEdit()->cursorPosition();
    m_ui->cboUser->setCurrentIndex(row);
    m_ui->cboUser->lineEdit()->setCursorPosition(cursor);
    markUser();
}

void frmLogin::anmelden(bool toShell) {
    // A typed name that nobody has must not log in whoever happens to be selected.
    if (m_ui->cboUser->count() > 0 && !isSomebody()) {
        tellNobody();
        m_ui->cboUser->setFocus();
        m_ui->cboUser->lineEdit()->selectAll();
        return;
    }
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
    if (event->key() == Qt::Key_Escape) {
        if (!emptyTyped()) m_ui->cmdCancel->click();
    } else if (event->key() == Qt::Key_F2 && m_ui->cmdMain->isVisible()) {
        m_ui->cmdMain->click();
    } else if (isDigit(*event)) {
        typePin(event->text());
    } else {
        QWidget::keyPressEvent(event);
    }
}

bool frmLogin::emptyTyped() {
    if (!m_ui->txtPIN->text().isEmpty()) {
        m_ui->txtPIN->clear();
        m_ui->txtPIN->setFocus();
        return true;
    }
    if (m_ui->cboUser->count() == 0 || isSomebody()) return false;
    m_ui->cboUser->setEditText(m_ui->cboUser->itemText(m_ui->cboUser->currentIndex()));
    m_ui->cboUser->lineEdit()->selectAll();
    return true;
}

bool frmLogin::handleKey(const QKeyEvent& pressed) {
    QComboBox& box = *m_ui->cboUser;
    const int key = pressed.key();
    // Nobody's name begins with a digit: who types one is at the PIN already.
    if (isDigit(pressed)) {
        typePin(pressed.text());
        return true;
    }
    // Leafing is no choice yet, so the focus stays where it is.
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        const int row =
            std::clamp(box.currentIndex() + (key == Qt::Key_Up ? -1 : 1), 0, std::max(0, box.count() - 1));
        box.setCurrentIndex(row);
        box.setEditText(box.itemText(row));
        box.lineEdit()->selectAll();
        return true;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (isSomebody()) {
            chooseUser(box.currentIndex());
        } else {
            tellNobody();
            box.lineEdit()->selectAll();
        }
        return true;
    }
    return false;
}

bool frmLogin::eventFilter(QObject* watched, QEvent* event) {
    QComboBox& box = *m_ui->cboUser;
    if (watched == &box && event->type() == QEvent::KeyPress) {
        if (handleKey(static_cast<QKeyEvent&>(*event))) return true;
    } else if (watched == &box && event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::PopupFocusReason && box.count() > 0 && !isSomebody()) tellNobody();
    } else if (watched == box.lineEdit() && event->type() == QEvent::MouseButtonRelease) {
        // The arrow is small for a finger: the whole box opens the list.
        box.showPopup();
        return true;
    } else if (watched == box.view() && event->type() == QEvent::KeyPress) {
        const auto& pressed = static_cast<QKeyEvent&>(*event);
        if (isDigit(pressed)) {
            box.hidePopup();
            typePin(pressed.text());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmLogin::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Theme::Current().page);
}
