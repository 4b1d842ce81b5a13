#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/Wizard.h>

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QLabel* label(const QString& name, const QString& role, QWidget* parent) {
    auto* made = new QLabel(parent);
    made->setObjectName(name);
    made->setProperty("role", role);
    made->setTextFormat(Qt::PlainText);
    made->setWordWrap(true);
    return made;
}

/// The number behind a name, 0 for the name alone, -1 for another name.
int indexOf(const QString& objectName, const QString& paneName) {
    if (objectName == paneName) return 0;
    if (!objectName.startsWith(paneName)) return -1;
    bool number = false;
    const int index = objectName.mid(paneName.size()).toInt(&number);
    return number ? index : -1;
}

} // namespace

WizardPane::WizardPane(QWidget* parent)
    : QWidget(parent)
    , m_header(new QWidget(this))
    , m_welcome(new QWidget(this))
    , m_headerLogo(new QLabel(m_header))
    , m_title(label(u"lblHeaderTitle"_s, u"title"_s, m_header))
    , m_description(label(u"lblHeaderInfo"_s, u"headerInfo"_s, m_header))
    , m_welcomeTitle(label(u"lblWelcomeTitle"_s, u"large"_s, m_welcome))
    , m_welcomeDescription(label(u"lblWelcomeDescription"_s, {}, m_welcome)) {
    m_header->setObjectName(u"picHeader"_s);
    m_headerLogo->setObjectName(u"imgHeaderLogo"_s);
    m_welcome->setObjectName(u"picWelcome"_s);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(5);
    texts->addWidget(m_title);
    texts->addWidget(m_description);
    auto* band = new QHBoxLayout(m_header);
    band->setContentsMargins(20, 14, 20, 15);
    band->addLayout(texts, 1);
    band->addWidget(m_headerLogo);
    m_headerLogo->hide();
    auto* face = new QVBoxLayout(m_welcome);
    face->setContentsMargins(24, 28, 24, 12);
    face->setSpacing(14);
    face->addWidget(m_welcomeTitle);
    face->addWidget(m_welcomeDescription);
    face->addStretch();
    m_description->hide();
    m_welcome->hide();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setHeaderTitle(u"Seitentitel"_s);
    setHeaderDescription(u"Beschreibung der Seite"_s);
}

QString WizardPane::headerTitle() const { return m_title->text(); }
void WizardPane::setHeaderTitle(const QString& text) {
    m_title->setText(text);
    m_welcomeTitle->setText(text);
    place();
}

QString WizardPane::headerDescription() const { return m_description->text(); }
void WizardPane::setHeaderDescription(const QString& text) {
    m_description->setText(text);
    m_welcomeDescription->setText(text);
    m_description->setVisible(!text.isEmpty());
    place();
}

void WizardPane::setShowHeader(bool header) {
    m_showHeader = header;
    m_header->setVisible(header);
    m_welcome->setVisible(!header);
    place();
    update();
}

void WizardPane::setBackColor(const QColor& colour) {
    m_back = colour;
    update();
}

void WizardPane::setForeColor(const QColor& colour) {
    m_fore = colour;
    for (QLabel* text : {m_title, m_description})
        text->setStyleSheet(u"color: "_s + colour.name());
}

void WizardPane::setHeaderBackColor(const QColor& colour) {
    m_headerBack = colour;
    update();
}

void WizardPane::setWelcomePicture(const QPixmap& picture) {
    m_welcomePicture = picture;
    place();
    update();
}

void WizardPane::addToHeader(QWidget* control) {
    m_header->layout()->addWidget(control);
    place();
}

QPixmap WizardPane::headerPicture() const { return m_headerLogo->pixmap(); }
void WizardPane::setHeaderPicture(const QPixmap& picture) {
    m_headerLogo->setPixmap(picture);
    m_headerLogo->setVisible(!picture.isNull());
    place();
}

int WizardPane::paneNumber() const {
    if (m_number >= 0) return m_number;
    static const QRegularExpression digits(u"\\d+$"_s);
    return digits.match(objectName()).captured().toInt();
}

int WizardPane::faceWidth() const { return Theme::Current().keyHeight * 3; }

int WizardPane::heightForWidth(int width) const {
    return m_showHeader ? m_header->layout()->heightForWidth(width)
                        : m_welcome->layout()->heightForWidth(width - faceWidth());
}

// Texts that wrap want to be narrow and high; a head is as wide as its dialog.
QSize WizardPane::bandSize() const {
    const int width = std::max(this->width(), Theme::Current().keyHeight * 9);
    return {Theme::Current().keyHeight * 4, heightForWidth(width)};
}

QSize WizardPane::sizeHint() const { return layout() != nullptr ? QWidget::sizeHint() : bandSize(); }

QSize WizardPane::minimumSizeHint() const {
    return layout() != nullptr ? QWidget::minimumSizeHint() : bandSize();
}

void WizardPane::place() {
    const int height = heightForWidth(std::max(width(), 200));
    if (m_showHeader) {
        m_header->setGeometry(0, 0, width(), height);
        setContentsMargins(0, height, 0, 0);
    } else {
        m_welcome->setGeometry(faceWidth(), 0, width() - faceWidth(), height);
        setContentsMargins(faceWidth(), height, 0, 0);
    }
    updateGeometry();
}

void WizardPane::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place();
}

void WizardPane::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    place(); // a page that was hidden had no typeface of its own yet
}

void WizardPane::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) place();
}

void WizardPane::paintEvent(QPaintEvent*) {
    const Theme& t = Theme::Current();
    const QColor band = m_headerBack.isValid() ? m_headerBack : t.title;
    QPainter p(this);
    if (m_back.isValid() || layout() != nullptr) p.fillRect(rect(), m_back.isValid() ? m_back : t.panel);
    if (m_showHeader) {
        p.fillRect(m_header->geometry(), band);
        return;
    }
    const QRect side(0, 0, faceWidth(), height());
    p.fillRect(side, band);
    if (m_welcomePicture.isNull()) return;
    const QPixmap picture = m_welcomePicture.scaledToWidth(side.width(), Qt::SmoothTransformation);
    p.drawPixmap(0, 0, picture);
}

WizardCtl::WizardCtl(QWidget* parent)
    : QWidget(parent)
    , m_line(new QFrame(this))
    , m_logo(new QLabel(this))
    , m_back(new TouchKey(u"< &Zurück"_s, this))
    , m_next(new TouchKey(u"&Weiter >"_s, this))
    , m_finish(new TouchKey(u"&Fertigstellen"_s, this))
    , m_cancel(new TouchKey(u"A&bbrechen"_s, this)) {
    const Theme& t = Theme::Current();
    m_line->setObjectName(u"fraLine"_s);
    m_line->setFrameShape(QFrame::HLine);
    m_logo->setObjectName(u"picLogo"_s);
    m_logo->setProperty("role", u"small muted"_s);
    m_back->setObjectName(u"cmdBack"_s);
    m_next->setObjectName(u"cmdNext"_s);
    m_finish->setObjectName(u"cmdFinish"_s);
    m_cancel->setObjectName(u"cmdCancel"_s);
    m_cancel->setHint(u"Esc"_s);

    auto* keys = new QHBoxLayout;
    keys->setContentsMargins(t.gap * 2, t.gap, t.gap * 2, t.gap);
    keys->setSpacing(t.gap);
    keys->addWidget(m_logo, 1);
    for (TouchKey* key : {m_back, m_next, m_finish, m_cancel}) {
        key->setMinimumWidth(t.keyHeight * 5 / 2);
        keys->addWidget(key);
    }
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_line);
    column->addLayout(keys);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_back->setEnabled(false);
    m_finish->setEnabled(false);
    markForward();

    connect(m_back, &TouchKey::clicked, this, [this] { emit BackClick(m_pane); });
    connect(m_next, &TouchKey::clicked, this, [this] { emit NextClick(m_pane); });
    connect(m_cancel, &TouchKey::clicked, this, &WizardCtl::CancelClick);
    connect(m_finish, &TouchKey::clicked, this, [this] {
        for (TouchKey* key : {m_back, m_next, m_finish, m_cancel})
            key->setEnabled(false);
        markForward();
        emit FinishClick();
    });
    if (parent != nullptr) parent->installEventFilter(this);
}

void WizardCtl::setBackColor(const QColor& colour) {
    m_backColor = colour;
    update();
}

void WizardCtl::setPaneName(const QString& name) {
    m_paneName = name;
    setPaneNumber(m_pane);
}

QList<QWidget*> WizardCtl::ownPanes() const {
    QList<QWidget*> panes;
    if (parentWidget() == nullptr) return panes;
    for (QWidget* control : parentWidget()->findChildren<QWidget*>()) {
        if (control != this && indexOf(control->objectName(), m_paneName) >= 0) panes << control;
    }
    return panes;
}

int WizardCtl::panes() const { return static_cast<int>(ownPanes().size()); }

QWidget* WizardCtl::pane() const {
    for (QWidget* control : ownPanes()) {
        const auto* known = qobject_cast<WizardPane*>(control);
        const int number =
            known != nullptr ? known->paneNumber() : indexOf(control->objectName(), m_paneName);
        if (number == m_pane) return control;
    }
    return nullptr;
}

void WizardCtl::setPaneNumber(int number) {
    m_pane = number;
    QWidget* shown = pane();
    for (QWidget* control : ownPanes())
        control->setVisible(control == shown);
    if (shown != nullptr) shown->raise();
}

TouchKey* WizardCtl::forwardKey() const {
    if (m_finish->isEnabled()) return m_finish;
    return m_next->isEnabled() ? m_next : nullptr;
}

void WizardCtl::markForward() {
    const TouchKey* forward = forwardKey();
    for (TouchKey* key : {m_next, m_finish}) {
        key->setAccent(key == forward);
        key->setHint(key == forward ? u"Enter"_s : QString());
    }
}

void WizardCtl::Error() {
    for (TouchKey* key : {m_back, m_next, m_finish})
        key->setEnabled(false);
    m_cancel->setEnabled(true);
    markForward();
}

void WizardCtl::Finished() {
    m_cancel->setText(u"&Schließen"_s);
    m_cancel->setEnabled(true);
    m_cancel->setAccent(true);
}

void WizardCtl::InProgress(bool flag) {
    TouchKey* const keys[] = {m_back, m_next, m_finish, m_cancel};
    for (std::size_t i = 0; i < m_before.size(); ++i) {
        if (flag) m_before[i] = keys[i]->isEnabled();
        keys[i]->setEnabled(!flag && m_before[i]);
    }
    markForward();
}

void WizardCtl::NextPane() {
    setPaneNumber(m_pane + 1);
    if (m_pane == panes() - 1) {
        m_back->setEnabled(true);
        m_finish->setEnabled(true);
        m_next->setEnabled(false);
    } else if (m_pane > 0) {
        m_back->setEnabled(true);
    }
    markForward();
}

void WizardCtl::PreviousPane() {
    setPaneNumber(m_pane - 1);
    if (m_pane == 0) m_back->setEnabled(false);
    // Also in a wizard of two pages, where the first is the one before the last.
    if (m_pane == panes() - 2) {
        m_finish->setEnabled(false);
        m_next->setEnabled(true);
    }
    markForward();
}

bool WizardCtl::isLaidOut(QWidget* control) const {
    const QWidget* holder = control->parentWidget();
    return holder != nullptr && holder->layout() != nullptr && holder->layout()->indexOf(control) >= 0;
}

void WizardCtl::place() {
    const QWidget* holder = parentWidget();
    if (holder == nullptr) return;
    const int bar = isLaidOut(this) ? 0 : sizeHint().height();
    if (bar > 0) setGeometry(0, holder->height() - bar, holder->width(), bar);
    for (QWidget* control : ownPanes()) {
        if (!isLaidOut(control)) control->setGeometry(0, 0, holder->width(), holder->height() - bar);
    }
}

void WizardCtl::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    setPaneNumber(m_pane);
    place();
}

bool WizardCtl::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) place();
    return QWidget::eventFilter(watched, event);
}

void WizardCtl::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), m_backColor.isValid() ? m_backColor : Theme::Current().panel);
}

void WizardForm::setUpWizard() {
    m_wizard = findChild<WizardCtl*>(u"mainWizard"_s);
    setUpForm(nullptr);
    setKeys(nullptr, nullptr);
    for (WizardPane* pane : findChildren<WizardPane*>())
        pane->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_wizard->setPaneNumber(0);
    connect(m_wizard, &WizardCtl::NextClick, this, [this](int pane) {
        guard()([&] {
            if (!mayLeave(pane)) return;
            m_wizard->NextPane();
            arrive();
        });
    });
    connect(m_wizard, &WizardCtl::BackClick, this, [this] {
        guard()([&] {
            m_wizard->PreviousPane();
            arrive();
        });
    });
    connect(m_wizard, &WizardCtl::FinishClick, this, [this] {
        if (!guard()([this] { finish(); })) m_wizard->Error();
        // Unless the job went back to a page.
        if (m_wizard->forwardKey() == nullptr && m_wizard->cancelKey()->isEnabled())
            m_wizard->cancelKey()->setFocus();
    });
    connect(m_wizard, &WizardCtl::CancelClick, this, &WizardForm::reject);
}

void WizardForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        TouchKey* forward = m_wizard->forwardKey();
        (forward != nullptr ? forward : m_wizard->cancelKey())->click();
        event->accept();
    } else if (event->key() == Qt::Key_Escape) {
        m_wizard->cancelKey()->click();
        event->accept();
    } else {
        FormDialog::keyPressEvent(event);
    }
}

void WizardForm::showEvent(QShowEvent* event) {
    FormDialog::showEvent(event);
    guard()([this] { arrive(); });
}

// The focus must not stay on a key that leads elsewhere: Enter goes on.
void WizardForm::arrive() {
    if (TouchKey* forward = m_wizard->forwardKey()) forward->setFocus();
    entered(m_wizard->paneNumber());
}
