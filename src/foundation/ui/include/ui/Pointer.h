#pragma once

/// Moves the mouse pointer into the lower right corner of the screen, so that after a touch it rests on no
/// key.
void MovePointerAway();

/// The hourglass for the life of the object.
class WaitCursor {
  public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};
