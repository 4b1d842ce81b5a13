#pragma once

#include <deque>
#include <functional>

/// Runs what the cashier asks for, one piece after the other. A handler may yield to pending events; what is
/// typed or touched meanwhile waits for its end instead of running inside it: nothing is lost and nothing
/// overtakes.
///
///     m_queue.run([&] { book(); });            // a handler: at once, or after the one that runs now
///     m_queue.input([=] { deliver(key); });    // an input event that will start handlers itself
class WorkQueue {
  public:
    using Work = std::function<void()>;

    /// Runs `handler`, then all that was put in line meanwhile. While another handler runs it is put in line.
    void run(const Work& handler);
    /// Delivers an input event, or puts it in line while a handler runs.
    void input(const Work& event);
    [[nodiscard]] bool busy() const { return m_depth > 0; }
    /// Forgets what waits and takes nothing more: the screen goes away.
    void close();

  private:
    void drain();

    std::deque<Work> m_waiting;
    int m_depth = 0;
    bool m_draining = false;
    bool m_closed = false;
};
