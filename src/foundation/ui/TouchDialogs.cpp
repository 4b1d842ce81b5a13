#include "ui_InputDialog.h"
#include "ui_MessageDialog.h"

#include <session/MessageDetails.h>
#include <ui/DigitPad.h>
#include <ui/IconSign.h>
#include <ui/ScanGuard.h>
#include <ui/ShowModal.h>
#include <ui/Theme.h>
#include <ui/TouchDialogs.h>
#include <ui/TouchKey.h>

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLibraryInfo>
#include <QTranslator>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

void makeKeyWide(TouchKey* key) {
    const Theme& t = Theme::Current();
    key->setFixedSize(t.keyHeight * 5 / 2, t.keyHeight);
}

/// The last one changes nothing, so Esc gives it.
std::vector<MsgAnswer> offered(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::OK:
        break;
    case MsgButtons::OKCancel:
        return {MsgAnswer::OK, MsgAnswer::Cancel};
    case MsgButtons::YesNo:
        return {MsgAnswer::Yes, MsgAnswer::No};
    case MsgButtons::RetryCancel:
        return {MsgAnswer::Retry, MsgAnswer::Cancel};
    }
    return {MsgAnswer::OK};
}

} // namespace

MessageDialog::MessageDialog(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                             MsgAnswer preset, QWidget* parent, const QString& details)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::MessageDialog>())
    , m_preset(preset)
    , m_escape(offered(buttons).back())
    , m_answer(m_escape)
    , m_question(buttons == MsgButtons::YesNo) {
    m_ui->setupUi(this);
    setWindowTitle(title);
    m_ui->wizPane->setHeaderTitle(title);
    m_ui->sign->setIcon(icon);

    QLabel* label = m_ui->lblText;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // A label that wraps has no width of its own: as wide as its longest line, within reason.
    const QFontMetrics fm(Theme::Current().font(Theme::Size::Normal, QFont::Normal));
    const int wanted = fm.size(Qt::TextExpandTabs, text).width() + 8;
    const int edge = Theme::Current().keyHeight;
    label->setMinimumWidth(std::clamp(wanted, edge * 6, edge * 11));
    setAccessibleName(title);
    setAccessibleDescription(text);
    m_ui->lblDetails->setText(details);
    m_ui->lblDetails->setMaximumWidth(edge * 13);
    makeKeyWide(m_ui->cmdDetails);
    m_ui->cmdDetails->setVisible(!details.isEmpty());
    connect(m_ui->cmdDetails, &TouchKey::toggled, this, [this](bool shown) {
        m_ui->lblDetails->setVisible(shown);
        adjustSize();
    });

    const std::pair<TouchKey*, MsgAnswer> keys[] = {{m_ui->cmdYes, MsgAnswer::Yes},
                                                    {m_ui->cmdNo, MsgAnswer::No},
                                                    {m_ui->cmdRetry, MsgAnswer::Retry},
                                                    {m_ui->cmdOK, MsgAnswer::OK},
                                                    {m_ui->cmdCancel, MsgAnswer::Cancel}};
    const std::vector<MsgAnswer> answers = offered(buttons);
    for (const auto& [key, answer] : keys) {
        key->setVisible(std::find(answers.begin(), answers.end(), answer) != answers.end());
        makeKeyWide(key);
        if (answer == m_preset) {
            key->setAccent(true);
            key->setHint(key->hint().isEmpty() ? u"Enter"_s : key->hint() + u" / Enter"_s);
            key->setFocus();
        }
        connect(key, &TouchKey::clicked, this, [this, answer = answer] { finish(answer); });
    }
}

MessageDialog::~MessageDialog() = default;

void MessageDialog::finish(MsgAnswer answer) {
    m_answer = answer;
    done(answer == MsgAnswer::No || answer == MsgAnswer::Cancel ? Rejected : Accepted);
}

void MessageDialog::reject() { finish(m_escape); }

void MessageDialog::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        finish(m_preset);
    else if (m_question && key == Qt::Key_J)
        finish(MsgAnswer::Yes);
    else if (m_question && key == Qt::Key_N)
        finish(MsgAnswer::No);
    else
        QDialog::keyPressEvent(event);
}

InputDialog::InputDialog(const QString& prompt, const QString& title, const QString& preset, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::InputDialog>()) {
    m_ui->setupUi(this);
    setWindowTitle(title);
    m_ui->wizPane->setHeaderTitle(title);
    m_ui->lblPrompt->setText(prompt);
    m_ui->lblPrompt->setBuddy(m_ui->txtInput);
    m_ui->txtInput->setText(preset);
    m_ui->txtInput->setMinimumWidth(Theme::Current().keyHeight * 8);
    m_ui->txtInput->setAccessibleName(prompt);
    m_ui->txtInput->selectAll();
    m_ui->txtInput->setFocus();
    makeKeyWide(m_ui->cmdOK);
    makeKeyWide(m_ui->cmdCancel);
    connect(m_ui->txtInput, &QLineEdit::returnPressed, m_ui->cmdOK, &TouchKey::click);
    connect(m_ui->cmdOK, &TouchKey::clicked, this, &QDialog::accept);
    connect(m_ui->cmdCancel, &TouchKey::clicked, this, &QDialog::reject);
}

InputDialog::~InputDialog() = default;

QString InputDialog::text() const { return m_ui->txtInput->text(); }

void InputDialog::waitForCode() {
    TakeScans(*m_ui->txtInput, ScanEnd::Enter);
    auto* pad = new DigitPad(this);
    pad->setKeys(DigitPad::Clear);
    pad->setTarget(m_ui->txtInput);
    const int edge = Theme::Current().keyHeight;
    pad->setMinimumSize(edge * 4, edge * 4);
    m_ui->layBody->insertWidget(m_ui->layBody->indexOf(m_ui->txtInput) + 1, pad);
}

TouchDialogHost::TouchDialogHost() {
    if (qApp == nullptr || qApp->findChild<QTranslator*>(u"german"_s) != nullptr) return;
    auto* german = new QTranslator(qApp);
    german->setObjectName(u"german"_s);
    // A machine without the translations shows those few texts in English; nothing depends on them.
    if (german->load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(german);
}

MsgAnswer TouchDialogHost::msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                                  MsgAnswer preset) {
    MessageDialog dialog(text, buttons, icon, title, preset, QApplication::activeWindow(),
                         MessageDetails::Take());
    // The hourglass of a longer act would say that nobody is asked anything.
    const bool waiting = QApplication::overrideCursor() != nullptr;
    if (waiting) QApplication::setOverrideCursor(Qt::ArrowCursor);
    ShowModal(dialog);
    if (waiting) QApplication::restoreOverrideCursor();
    return dialog.answer();
}

std::optional<QString> TouchDialogHost::inputBox(const QString& prompt, const QString& title,
                                                 const QString& preset) {
    InputDialog dialog(prompt, title, preset, QApplication::activeWindow());
    if (ShowModal(dialog) != QDialog::Accepted) return std::nullopt;
    return dialog.text();
}

std::optional<QString> TouchDialogHost::inputCode(const QString& prompt, const QString& title) {
    InputDialog dialog(prompt, title, {}, QApplication::activeWindow());
    dialog.waitForCode();
    if (ShowModal(dialog) != QDialog::Accepted) return std::nullopt;
    return dialog.text();
}

std::optional<QString> TouchDialogHost::chooseFile(const FileRequest& request) {
    QFileDialog dialog(QApplication::activeWindow(), request.title);
    dialog.setObjectName(u"dlgFile"_s);
    dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setNameFilters(NameFilters(request.filter));
    dialog.setLabelText(QFileDialog::Accept, request.save ? u"Speichern"_s : u"Öffnen"_s);
    dialog.setLabelText(QFileDialog::Reject, u"Abbrechen"_s);
    dialog.setLabelText(QFileDialog::LookIn, u"Ordner:"_s);
    dialog.setLabelText(QFileDialog::FileName, u"Dateiname:"_s);
    dialog.setLabelText(QFileDialog::FileType, u"Dateityp:"_s);
    const QFileInfo name(request.name);
    if (!request.name.isEmpty()) {
        if (name.isAbsolute() && name.dir().exists()) dialog.setDirectory(name.dir());
        dialog.selectFile(name.fileName());
    }
    dialog.resize(820, 520);
    if (ShowModal(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

QStringList NameFilters(const QString& filter) {
    QStringList filters;
    const QStringList parts = filter.split(u'|');
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString name = parts.at(i);
        if (const qsizetype bracket = name.indexOf(u'('); bracket >= 0) name.truncate(bracket);
        QString patterns = parts.at(i + 1).trimmed();
        patterns.replace(u';', u' ');
        if (patterns.isEmpty()) continue;
        filters << name.trimmed() + u" ("_s + patterns + u')';
    }
    if (filters.isEmpty()) filters << u"Alle Dateien (*)"_s;
    return filters;
}
