#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <vector>

// What the benches of forms share.

/// Tells when a widget has been painted; the frame is complete when the events of that turn are through.
class Painted : public QObject {
  public:
    explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        m_painted |= event->type() == QEvent::Paint;
        return false;
    }
    void forget() { m_painted = false; }
    [[nodiscard]] bool seen() const { return m_painted; }
    /// Runs events until the frame has come.
    void wait() {
        while (!m_painted)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }

  private:
    bool m_painted = false;
};

inline double percentile95(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() * 95 / 100];
}
