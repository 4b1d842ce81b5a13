#include <ui/Notice.h>
#include <ui/ScanGuard.h>
#include <ui/Sound.h>
#include <ui/Work.h>

#include <QApplication>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char takesScan[] = "takesScan", endsWithEnter[] = "scanEndsWithEnter", notice[] = "scanNotice";
ScanGuard* current = nullptr;

/// What a dialog answers when a scan comes.
class ScanAnswer : public QObject {
  public:
    ScanAnswer(QDialog& dialog, std::function<void()> act_)
        : QObject(&dialog)
        , act(std::move(act_)) {
        setObjectName(u"scanAnswer"_s);
    }
    const std::function<void()> act;
};

ScanAnswer* answerOf(const QWidget& window) {
    return static_cast<ScanAnswer*>(window.findChild<QObject*>(u"scanAnswer"_s, Qt::FindDirectChildrenOnly));
}

struct KeyKind {
    ScanRecogniser::Kind kind;
    QChar character;
};

KeyKind kindOf(const QKeyEvent& key, const ScanFigures& figures) {
    using Kind = ScanRecogniser::Kind;
    // A key that is held down is nobody's scanner.
    if (key.isAutoRepeat()) return {Kind::Other, {}};
    const QChar typed = key.text().isEmpty() ? QChar() : key.text().front();
    if (!typed.isNull() && (typed == figures.prefix || typed == figures.suffix))
        return {Kind::Character, typed};
    const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = key.modifiers().testFlag(Qt::AltModifier);
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
        return {ctrl || alt ? Kind::Other : Kind::Close, {}};
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
        return {Kind::Silent, {}};
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_Escape:
        return {Kind::Other, {}};
    default:
        break;
    }
    if (typed.isNull()) return {Kind::Other, {}};
    // Signs that separate the parts of a code come as Ctrl and a letter.
    if (!typed.isPrint()) return {Kind::Silent, {}};
    return {ctrl != alt ? Kind::Other : Kind::Character, typed}; // both together are AltGr
}

bool takesScans(const QWidget& widget) { return widget.property(takesScan).toBool(); }

QWidget* focusIn(QWidget& window) { return window.focusWidget() != nullptr ? window.focusWidget() : &window; }

void send(QWidget& window, int key, const QString& text) {
    const QPointer<QWidget> alive(&window);
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (alive.isNull()) return;
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(focusIn(window), &event);
    }
}

/// A scan that was held back, as if typed. Signs get no key of their own: some are functions of the register.
void typeCode(QWidget& window, const QString& code, int close) {
    const QPointer<QWidget> alive(&window);
    for (const QChar c : code) {
        const bool plain = c.unicode() < 128 && c.isLetterOrNumber();
        if (alive) send(window, plain ? int(c.toUpper().unicode()) : int(Qt::Key_unknown), QString(c));
    }
    if (alive) send(window, close, close == Qt::Key_Tab ? u"\t"_s : u"\r"_s);
}

} // namespace

void TakeScans(QWidget& box, ScanEnd end) {
    box.setProperty(takesScan, true);
    box.setProperty(endsWithEnter, end == ScanEnd::Enter);
}

void AnswerScans(QDialog& dialog, std::function<void()> answer) {
    delete answerOf(dialog);
    new ScanAnswer(dialog, std::move(answer));
}

void SetScanNotice(QWidget& window, const QString& text) { window.setProperty(notice, text); }

ScanGuard::ScanGuard(QObject* parent)
    : QObject(parent) {
    m_elapsed.start();
    setClock({});
    m_wait.setSingleShot(true);
    m_rest.setSingleShot(true);
    connect(&m_wait, &QTimer::timeout, this, [this] {
        // What has arrived while the program was busy comes before the verdict.
        if (std::exchange(m_lastTurn, !m_lastTurn))
            settle();
        else
            m_wait.start(0);
    });
    connect(&m_rest, &QTimer::timeout, this, [this] { deliver(Orphans::ToWhatIsActive); });
    current = this;
    qApp->installEventFilter(this);
}

ScanGuard::ScanGuard(const ScanFigures& figures, QObject* parent)
    : ScanGuard(parent) {
    m_fixed = figures;
}

ScanGuard::~ScanGuard() {
    if (current == this) current = nullptr;
    qApp->removeEventFilter(this);
}

ScanGuard* ScanGuard::Current() { return current; }

void ScanGuard::setEnabled(bool on) {
    if (!on) forget();
    m_enabled = on;
}

void ScanGuard::setClock(std::function<qint64()> clock) {
    forget();
    m_clock = clock ? std::move(clock) : [this] { return m_elapsed.elapsed(); };
    m_lastClock = m_clock();
    m_lastStamp = 0;
}

qint64 ScanGuard::now() const { return m_time + std::max<qint64>(0, m_clock() - m_lastClock); }

qint64 ScanGuard::timeOf(const QKeyEvent& key) {
    // The stamp tells when the key went down; the clock only when the program had time for it.
    const quint64 stamp = key.timestamp();
    const bool stamped = stamp != 0 && m_lastStamp != 0 && stamp >= m_lastStamp;
    m_time = stamped ? m_time + qint64(stamp - m_lastStamp) : now();
    m_lastClock = m_clock();
    m_lastStamp = stamp;
    return m_time;
}

ScanRecogniser::Verdict ScanGuard::judge(const QKeyEvent& key) {
    const ScanFigures figures = m_fixed ? *m_fixed : ScanFigures::FromSettings();
    m_scans.setFigures(figures);
    const auto [kind, character] = kindOf(key, figures);
    return m_scans.press(kind, character, timeOf(key));
}

ScanGuard::Place ScanGuard::placeOf(const QWidget& receiver) {
    for (const QWidget* w = &receiver; w != nullptr; w = w->parentWidget()) {
        if (takesScans(*w)) return w->property(endsWithEnter).toBool() ? Place::TakesEnter : Place::Takes;
        if (!w->isWindow() || w->windowType() == Qt::Popup) continue; // a menu belongs to its form
        return answerOf(*w) != nullptr ? Place::Answers : Place::Refuses;
    }
    return Place::Refuses;
}

bool ScanGuard::isAgain(const QWidget& receiver, const QKeyEvent& key) {
    // A key that nobody wanted goes on to the parent as the same event.
    const bool again = m_seen.event == &key && m_seen.type == key.type() && m_seen.key == key.key() &&
                       m_seen.stamp == key.timestamp() && !m_seen.by.isNull() && m_seen.by != &receiver &&
                       receiver.isAncestorOf(m_seen.by);
    m_seen = {&key, key.type(), key.key(), key.timestamp(), &receiver};
    return again;
}

bool ScanGuard::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWidgetType()) return false;
    auto& widget = static_cast<QWidget&>(*watched);
    switch (event->type()) {
    case QEvent::Show:
        // Ahead of those that lead keys elsewhere and came later.
        if (widget.isWindow()) qApp->installEventFilter(this);
        return false;
    case QEvent::WindowActivate:
        if (widget.isWindow()) m_scans.windowChanged(now());
        return false;
    case QEvent::MouseButtonPress:
        if (event->spontaneous() && !m_held.empty()) forget();
        return false;
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (!m_enabled || !event->spontaneous() || isAgain(widget, key)) return false;
        return event->type() == QEvent::KeyPress ? pressed(widget, key) : released(widget, key);
    }
    default:
        return false;
    }
}

bool ScanGuard::pressed(QWidget& receiver, const QKeyEvent& key) {
    const QPointer<QWidget> alive(&receiver);
    const Place place = placeOf(receiver);
    const bool takes = place == Place::Takes || place == Place::TakesEnter;
    m_swallowed.remove(key.key());
    const ScanRecogniser::Verdict verdict = judge(key);
    if (verdict.before) letGo();
    if (verdict.before && (alive.isNull() || !receiver.isVisible())) {
        // What was let go has closed the window: the key is for the one that comes.
        const bool typed = verdict.fate == ScanRecogniser::Fate::Typed;
        (typed ? m_outbox : m_held).push_back({nullptr, false, std::unique_ptr<QKeyEvent>(key.clone())});
        typed ? m_rest.start(0) : waitForMore();
        return true;
    }
    switch (verdict.fate) {
    case ScanRecogniser::Fate::Typed:
        break;
    case ScanRecogniser::Fate::Waits:
        if (takes && m_held.empty() && !m_scans.prefixed()) break;
        hold(receiver, key);
        return true;
    case ScanRecogniser::Fate::Scan:
        return scanned(receiver, key, place);
    case ScanRecogniser::Fate::Rest:
        m_swallowed.insert(key.key());
        return true;
    }
    return pass(receiver, key);
}

bool ScanGuard::released(QWidget& receiver, const QKeyEvent& key) {
    if (m_swallowed.remove(key.key())) return true;
    const bool held = std::any_of(m_held.begin(), m_held.end(), [&](const Key& other) {
        return other.event->type() == QEvent::KeyPress && other.event->key() == key.key();
    });
    if (!held) return pass(receiver, key);
    m_held.push_back(copy(receiver, key));
    return true;
}

bool ScanGuard::scanned(QWidget& receiver, const QKeyEvent& key, Place place) {
    QWidget& window = *receiver.window();
    const QString code = m_scans.code();
    const bool tab = key.key() == Qt::Key_Tab;
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    const bool takes = place == Place::Takes || place == Place::TakesEnter;
    // What takes scans has them already, unless something stands around the code.
    if (takes && m_held.empty() && (enter || (tab && place == Place::Takes))) return pass(receiver, key);
    const bool whole = !m_held.empty();
    swallow();
    m_swallowed.insert(key.key());
    if (takes)
        typeCode(window, whole ? code : QString(),
                 tab && place == Place::Takes ? Qt::Key_Tab : Qt::Key_Return);
    else if (place != Place::Answers || !answered(window, code))
        refuse(window);
    return true;
}

bool ScanGuard::answered(QWidget& window, const QString& code) {
    QWidget* form = window.parentWidget();
    while (form != nullptr && !takesScans(*form))
        form = form->parentWidget();
    if (form == nullptr) return false;
    const QPointer<QWidget> taker(form->window());
    const auto act = answerOf(window)->act; // the dialog may go with it
    act();
    if (taker) typeCode(*taker, code, Qt::Key_Return);
    return true;
}

ScanGuard::Key ScanGuard::copy(QWidget& receiver, const QKeyEvent& key) {
    return {&receiver, receiver.hasFocus(), std::unique_ptr<QKeyEvent>(key.clone())};
}

bool ScanGuard::pass(QWidget& receiver, const QKeyEvent& key) {
    if (key.type() == QEvent::KeyPress && m_told == receiver.window()) {
        HideNotice(*receiver.window());
        m_told = nullptr;
    }
    if (m_outbox.empty()) return false;
    m_outbox.push_back(copy(receiver, key));
    m_rest.start(0);
    return true;
}

void ScanGuard::hold(QWidget& receiver, const QKeyEvent& key) {
    m_held.push_back(copy(receiver, key));
    waitForMore();
}

void ScanGuard::waitForMore() {
    m_lastTurn = false;
    m_wait.start(int(std::max<qint64>(1, m_scans.due() - now() + 1)));
}

void ScanGuard::settle() {
    if (m_scans.pause(now()))
        letGo();
    else if (!m_held.empty())
        waitForMore();
}

void ScanGuard::forget() {
    m_scans.reset();
    letGo();
}

void ScanGuard::letGo() {
    m_wait.stop();
    std::move(m_held.begin(), m_held.end(), std::back_inserter(m_outbox));
    m_held.clear();
    deliver(Orphans::Later);
}

void ScanGuard::swallow() {
    m_wait.stop();
    for (const Key& key : std::exchange(m_held, {})) {
        if (key.event->type() == QEvent::KeyPress)
            m_swallowed.insert(key.event->key());
        else
            m_swallowed.remove(key.event->key());
    }
}

QWidget* ScanGuard::targetOf(const Key& key) {
    QWidget* receiver = key.receiver;
    if (receiver == nullptr || !receiver->isVisible()) return nullptr;
    QWidget* window = receiver->window();
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal != nullptr && modal != window && window->windowType() != Qt::Popup) return nullptr;
    return key.hadFocus ? focusIn(*window) : receiver;
}

void ScanGuard::deliver(Orphans orphans) {
    while (!m_outbox.empty()) {
        QWidget* target = targetOf(m_outbox.front());
        if (target == nullptr) {
            if (orphans == Orphans::Later) {
                // The handler that closed the window must end before the next one opens.
                m_rest.start(0);
                return;
            }
            QWidget* modal = QApplication::activeModalWidget();
            target = modal != nullptr ? focusIn(*modal) : QApplication::focusWidget();
        }
        const Key key = std::move(m_outbox.front());
        m_outbox.pop_front();
        // A handler that waits for a person must not keep the others back.
        if (!m_outbox.empty()) m_rest.start(0);
        if (target != nullptr) QCoreApplication::sendEvent(target, key.event.get());
    }
    m_rest.stop();
}

void ScanGuard::watch(const QKeyEvent& key, QWidget& window) {
    if (!m_enabled || !key.spontaneous() || isAgain(window, key)) return;
    if (judge(key).fate == ScanRecogniser::Fate::Scan) refuse(window);
}

void ScanGuard::refuse(QWidget& window) {
    Sound(Signal::ScanRefused);
    QString text = window.property(notice).toString();
    if (Work::isRunning())
        text = u"Bitte warten, bis die Arbeit fertig ist"_s;
    else if (text.isEmpty())
        text = qobject_cast<QDialog*>(&window) != nullptr ? u"Bitte erst die Frage beantworten"_s
                                                          : u"Hier wird kein Code erwartet"_s;
    ShowNotice(window, text);
    m_told = &window;
}
