#include <jet/Functions.h>
#include <session/Clock.h>

namespace {
std::function<QDateTime()>& replacement() {
    static std::function<QDateTime()> clock;
    return clock;
}
} // namespace

QDateTime Now() { return replacement() ? replacement()() : QDateTime::currentDateTime(); }

void SetClock(std::function<QDateTime()> clock) {
    replacement() = std::move(clock);
    jet::setClock(replacement() ? Now : nullptr); // Date() in a statement is the till's day, too
}
