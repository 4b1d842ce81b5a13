#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <ui/DigitPad.h>
#include <ui/Form.h>
#include <ui/Help.h>
#include <ui/ShowModal.h>
#include <ui/Theme.h>
#include <ui/UserSettings.h>

#include <QAbstractButton>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTextEdit>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Watches the boxes of one form.
class TextSelector : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            auto* box = static_cast<QLineEdit*>(watched);
            // The click that brought the focus would put the cursor into the text again.
            if (static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason)
                QTimer::singleShot(0, box, [box] { SelectAllText(box); });
            else
                SelectAllText(box);
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

FormGuard::FormGuard(const QObject& form)
    : m_form(form) {}

FormGuard::~FormGuard() = default;

Recordset& FormGuard::open(const QString& source) {
    m_records.push_back(gDB->OpenRecordset(source));
    return *m_records.back();
}

void FormGuard::cancelEdits() {
    for (const auto& records : m_records)
        records->CancelUpdate();
}

void SelectTextOnFocus(QWidget& form) {
    auto* selector = new TextSelector(&form);
    for (QLineEdit* box : form.findChildren<QLineEdit*>())
        box->installEventFilter(selector);
}

FormDialog::FormDialog(QWidget* parent)
    : QDialog(parent)
    , m_guard(*this) {}

FormDialog::~FormDialog() = default;

void FormDialog::setUpForm(QWidget* first) {
    m_first = first;
    SelectTextOnFocus(*this);
    setKeys(findChild<QAbstractButton*>(u"cmdOK"_s), findChild<QAbstractButton*>(u"cmdCancel"_s));
}

void FormDialog::setKeys(QAbstractButton* confirm, QAbstractButton* cancel) {
    for (QAbstractButton* before : {m_confirm, m_cancel}) {
        if (before != nullptr) before->disconnect(this);
    }
    m_confirm = confirm;
    m_cancel = cancel;
    if (confirm != nullptr)
        connect(confirm, &QAbstractButton::clicked, this, [this] { m_guard([this] { ok(); }); });
    if (cancel != nullptr) connect(cancel, &QAbstractButton::clicked, this, &FormDialog::reject);
}

void FormDialog::rememberSize() {
    RememberWindow(*this, QString::fromLatin1(metaObject()->className()) + u"/Fenster"_s);
}

void FormDialog::reject() {
    bool leave = true;
    if (m_guard([&] { leave = cancelled(); }) && !leave) return;
    QDialog::reject();
}

void FormDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (m_confirm != nullptr && m_confirm->isVisible()) m_confirm->click();
        event->accept();
    } else if (event->key() == Qt::Key_Escape && m_cancel != nullptr) {
        // A key that is switched off stays so for Esc.
        m_cancel->click();
        event->accept();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void FormDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_first == nullptr) return;
    m_first->setFocus();
    if (auto* box = qobject_cast<QLineEdit*>(m_first)) SelectAllText(box);
}

AreaForm::AreaForm(QWidget* parent)
    : QMainWindow(parent)
    , m_guard(*this)
    , m_commands(*this, [this](const std::function<void()>& act) {
        m_guard(act);
        m_commands.update();
    }) {
    setAttribute(Qt::WA_DeleteOnClose);
}

AreaForm::~AreaForm() = default;

void AreaForm::setUpArea(const std::vector<Menu>& menus, const std::vector<QString>& bar) {
    const Theme& t = Theme::Current();
    m_commands.add({u"HelpIndex"_s, u"&Bedienungsanleitung"_s, {}, u"F1"_s, &ShowHelp});
    m_commands.add({u"HelpWeb"_s, u"Merivane im &Web"_s, {}, {}, [] { OpenWithSystem(QUrl(gDefaultUrl)); }});
    m_commands.add({u"HelpInfo"_s, u"&Info..."_s, {}, {}, [this] {
                        frmAbout about(this);
                        ShowModal(about);
                    }});
    for (const Menu& menu : menus)
        m_commands.fillMenu(*menuBar()->addMenu(menu.title), menu.keys);
    m_commands.fillMenu(*menuBar()->addMenu(u"&Hilfe"_s), {u"HelpIndex"_s, u"HelpWeb"_s, {}, u"HelpInfo"_s});

    // The bar stands above what the layout made, under the menus.
    QWidget* page = takeCentralWidget();
    auto* whole = new QWidget(this);
    auto* column = new QVBoxLayout(whole);
    column->setContentsMargins(t.gap, 0, t.gap, 0);
    column->setSpacing(t.gap);
    auto* tools = new QWidget(whole);
    tools->setObjectName(u"mainToolBar"_s);
    auto* row = new QHBoxLayout(tools);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    m_commands.fillBar(*row, bar);
    row->addStretch();
    column->addWidget(tools);
    column->addWidget(page, 1);
    setCentralWidget(whole);

    auto* version = new QLabel(u"Database: Jet "_s + gDB->Version());
    version->setObjectName(u"VER"_s);
    m_message = new QLabel;
    m_message->setObjectName(u"Message"_s);
    auto* user = new QLabel(gUser.Name + u' ' + gUser.Vorname);
    user->setObjectName(u"User"_s);
    statusBar()->setSizeGripEnabled(false);
    statusBar()->setContentsMargins(t.gap, 0, t.gap, 0);
    statusBar()->addWidget(version);
    statusBar()->addWidget(m_message, 1);
    statusBar()->addPermanentWidget(user);
    m_message->setAlignment(Qt::AlignCenter);

    SelectTextOnFocus(*this);
    const QString name = QString::fromLatin1(metaObject()->className());
    for (QSplitter* splitter : findChildren<QSplitter*>())
        RememberSplitter(*splitter, name + u'/' + splitter->objectName());
    if (!RememberWindow(*this, name + u"/Fenster"_s)) {
        // The whole screen, also where no window manager would maximise it.
        if (const QScreen* display = QGuiApplication::primaryScreen())
            setGeometry(display->availableGeometry());
        setWindowState(Qt::WindowMaximized);
    }
    m_commands.update();
}

void AreaForm::tell(const QString& message) { m_message->setText(message); }

void AreaForm::closeEvent(QCloseEvent* event) {
    QMainWindow::closeEvent(event);
    if (event->isAccepted()) emit Unloaded();
}

void AreaForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QMainWindow::keyPressEvent(event);
}
