#include <store/ServerPatience.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace store {

namespace {

using std::chrono::milliseconds;

thread_local ServerPatience* current = nullptr;
std::atomic<qint64> limitMs = milliseconds(usualServerLimit).count();

} // namespace

ServerPatience* SetServerPatience(ServerPatience* patience) { return std::exchange(current, patience); }
ServerPatience* CurrentServerPatience() { return current; }

void SetServerLimit(milliseconds limit) {
    limitMs = std::clamp<milliseconds>(limit, leastServerLimit, mostServerLimit).count();
}
milliseconds ServerLimit() { return milliseconds(limitMs); }

} // namespace store
