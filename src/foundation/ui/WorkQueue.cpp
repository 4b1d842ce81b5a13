#include <ui/WorkQueue.h>

#include <QScopeGuard>

#include <utility>

void WorkQueue::run(const Work& handler) {
    if (m_closed) return;
    if (busy()) {
        m_waiting.push_back([this, handler] { run(handler); });
        return;
    }
    {
        ++m_depth;
        const auto done = qScopeGuard([this] { --m_depth; });
        handler();
    }
    drain();
}

void WorkQueue::input(const Work& event) {
    if (m_closed) return;
    if (busy())
        m_waiting.push_back(event);
    else
        event();
}

void WorkQueue::close() {
    m_closed = true;
    m_waiting.clear();
}

void WorkQueue::drain() {
    if (m_draining) return;
    m_draining = true;
    const auto done = qScopeGuard([this] { m_draining = false; });
    while (!m_waiting.empty()) {
        const Work next = std::move(m_waiting.front());
        m_waiting.pop_front();
        next();
    }
}
