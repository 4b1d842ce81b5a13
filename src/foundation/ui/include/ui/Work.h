#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QWidget>

#include <chrono>
#include <functional>

class QLabel;
class QProgressBar;
class TouchKey;

/// How long work will go on, in words ("noch etwa 3 Minuten"); "" as long as that would be a guess: in the
/// first two seconds, and when `total` is not known (0).
[[nodiscard]] QString TimeLeft(qint64 done, qint64 total, std::chrono::milliseconds elapsed);

/// What one sees of work that takes a while: what is done, how far it is, how long it will still take, and
/// the key that stops it. Part of a form; empty while nothing runs.
class WorkBar : public QWidget {
    Q_OBJECT

  public:
    explicit WorkBar(QWidget* parent = nullptr);
    void begin(const QString& what);
    /// `total` 0: nobody knows how much it is.
    void show(qint64 done, qint64 total, const QString& left);
    /// The last words stay; the key goes.
    void end(const QString& last);
    [[nodiscard]] TouchKey* stopKey() const { return m_stop; }

  private:
    QLabel *m_what, *m_left;
    QProgressBar* m_progress;
    TouchKey* m_stop;
};

/// Long work in the one thread that the program has: an hourglass, progress, time left, and a way out. It
/// lets pending events run several times a second; of keyboard and mouse only what stops it gets through, in
/// the whole program, so that nothing begins in the middle of it. A scan that is swallowed is told.
///
///     Work work(*m_ui->workBar, u"Mitarbeiter werden exportiert..."_s, count);
///     for (; !rs.Eof(); rs.MoveNext()) {
///         write(rs);
///         if (!work.advance()) return discard();   // stopped
///     }
///     work.finish(u"Fertig"_s);
class Work : public QObject {
    Q_OBJECT

  public:
    /// `total` pieces, 0 when nobody knows.
    Work(WorkBar& bar, const QString& what, qint64 total);
    ~Work() override; ///< without finish: "Abgebrochen"
    /// So many pieces more are done. False as soon as somebody has stopped the work.
    [[nodiscard]] bool advance(qint64 pieces = 1);
    void finish(const QString& last);
    void stop() { m_stopped = true; }
    /// True while any work runs.
    [[nodiscard]] static bool isRunning();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    WorkBar& m_bar;
    QElapsedTimer m_clock;
    qint64 m_done = 0, m_total, m_shown = 0;
    bool m_stopped = false, m_finished = false;
};
