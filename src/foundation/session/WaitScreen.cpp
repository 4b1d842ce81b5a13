#include <session/WaitScreen.h>

#include <utility>

namespace {

WaitScreen* current = nullptr;

} // namespace

WaitScreen* SetWaitScreen(WaitScreen* screen) { return std::exchange(current, screen); }

WaitScreen* CurrentWaitScreen() { return current; }
