#pragma once

#include <session/Clock.h>

#include <QDateTime>

/// Stops the program's clock for the life of the object; it moves only when it is told to.
///
///     FixedClock clock(u"2026-11-22T14:05:00");
class FixedClock {
  public:
    explicit FixedClock(const QDateTime& now)
        : m_now(now) {
        SetClock([this] { return m_now; });
    }
    explicit FixedClock(QStringView iso = u"2026-11-22T14:05:00")
        : FixedClock(QDateTime::fromString(iso.toString(), Qt::ISODate)) {}
    ~FixedClock() { SetClock({}); }
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;

    void set(const QDateTime& now) { m_now = now; }
    void advance(qint64 seconds) { m_now = m_now.addSecs(seconds); }

  private:
    QDateTime m_now;
};
