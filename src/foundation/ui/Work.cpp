#include <ui/Pointer.h>
#include <ui/ScanGuard.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/Work.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 showEvery = 60; ///< milliseconds; often enough for a key that stops
constexpr int scale = 1000;
int running = 0;

QString about(qint64 number, const QString& one, const QString& many) {
    return number == 1 ? u"noch etwa "_s + one : u"noch etwa %1 %2"_s.arg(QString::number(number), many);
}

} // namespace

QString TimeLeft(qint64 done, qint64 total, std::chrono::milliseconds elapsed) {
    if (total <= 0 || done <= 0 || done > total || elapsed < 2s) return {};
    const auto seconds =
        static_cast<qint64>(static_cast<double>(elapsed.count()) / static_cast<double>(done) *
                            static_cast<double>(total - done) / 1000);
    if (seconds < 5) return u"gleich fertig"_s;
    if (seconds < 60) return about((seconds + 4) / 5 * 5, u"eine Sekunde"_s, u"Sekunden"_s);
    if (seconds < 3600) return about((seconds + 30) / 60, u"eine Minute"_s, u"Minuten"_s);
    return about((seconds + 1800) / 3600, u"eine Stunde"_s, u"Stunden"_s);
}

WorkBar::WorkBar(QWidget* parent)
    : QWidget(parent)
    , m_what(new QLabel(this))
    , m_left(new QLabel(this))
    , m_progress(new QProgressBar(this))
    , m_stop(new TouchKey(u"Abbrechen"_s, this)) {
    m_what->setObjectName(u"lblWork"_s);
    m_what->setWordWrap(true);
    m_left->setObjectName(u"lblTimeLeft"_s);
    m_left->setProperty("role", u"small muted"_s);
    m_progress->setObjectName(u"prgWork"_s);
    m_progress->setTextVisible(false);
    m_stop->setObjectName(u"cmdStopWork"_s);
    m_stop->setHint(u"Esc"_s);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(Theme::Current().gap * 2);
    grid->addWidget(m_what, 0, 0, 1, 2);
    grid->addWidget(m_progress, 1, 0);
    grid->addWidget(m_stop, 1, 1);
    grid->addWidget(m_left, 2, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    for (QWidget* part : {static_cast<QWidget*>(m_progress), static_cast<QWidget*>(m_stop)})
        part->hide();
}

void WorkBar::begin(const QString& what) {
    m_what->setText(what);
    m_left->clear();
    m_progress->setRange(0, scale);
    m_progress->setValue(0);
    m_progress->show();
    m_stop->show();
}

void WorkBar::show(qint64 done, qint64 total, const QString& left) {
    if (total > 0) {
        m_progress->setRange(0, scale);
        m_progress->setValue(static_cast<int>(
            std::clamp<double>(static_cast<double>(done) * scale / static_cast<double>(total), 0, scale)));
    } else {
        m_progress->setRange(0, 0); // it moves without telling how far
    }
    m_left->setText(left);
}

void WorkBar::end(const QString& last) {
    m_what->setText(last);
    m_left->clear();
    m_progress->hide();
    m_stop->hide();
}

Work::Work(WorkBar& bar, const QString& what, qint64 total)
    : m_bar(bar)
    , m_total(total) {
    ++running;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_bar.begin(what);
    m_bar.show(0, m_total, {});
    connect(m_bar.stopKey(), &TouchKey::clicked, this, &Work::stop);
    qApp->installEventFilter(this);
    m_clock.start();
    QCoreApplication::processEvents(); // what begins is seen
}

Work::~Work() {
    qApp->removeEventFilter(this);
    if (!m_finished) m_bar.end(u"Abgebrochen"_s);
    QApplication::restoreOverrideCursor();
    --running;
}

bool Work::isRunning() { return running > 0; }

bool Work::advance(qint64 pieces) {
    m_done += pieces;
    const qint64 now = m_clock.elapsed();
    if (now - m_shown >= showEvery) {
        m_bar.show(m_done, m_total, TimeLeft(m_done, m_total, std::chrono::milliseconds(now)));
        QCoreApplication::processEvents();
        m_shown = m_clock.elapsed(); // painting counts for nothing
    }
    return !m_stopped;
}

void Work::finish(const QString& last) {
    m_finished = true;
    m_bar.end(last);
}

bool Work::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) stop();
        if (ScanGuard* guard = ScanGuard::Current(); guard != nullptr && watched->isWidgetType())
            guard->watch(*static_cast<QKeyEvent*>(event), *m_bar.window());
        return true;
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::KeyRelease:
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        // Windows of the system get them first and pass them on to the controls.
        return watched->isWidgetType() && watched != m_bar.stopKey();
    case QEvent::Close:
        stop();
        event->ignore();
        return true;
    default:
        return false;
    }
}
