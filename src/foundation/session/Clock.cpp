#include <session/Clock.h>

namespace {
std::function<QDateTime()>& replacement() {
    static std::function<QDateTime()> clock;
    return clock;
}
} // namespace

QDateTime Now() { return replacement() ? replacement()() : QDateTime::currentDateTime(); }

void SetClock(std::function<QDateTime()> clock) { replacement() = std::move(clock); }
