#pragma once

/// A tap into a box opens the keyboard on the screen.
inline bool gBildschirmTastatur = false;
