#pragma once

#include <functional>

/// What a copy does with the screen while it prints.
enum class CopyScreen {
    None,
    Waits, ///< it may open and end the WaitScreen by itself
    Asks,  ///< it opens dialogs, beside which no other window may stand
};

/// Prints gDruckerKopies copies, `print` with the number of each from 1 and how many they are; it gives false
/// to end it. More than a person means without a thought are asked about first. After two seconds the
/// WaitScreen in force tells how far it came and offers to cancel between two copies; what is printed stays
/// printed.
void PrintCopies(const std::function<bool(int copy, int copies)>& print,
                 CopyScreen screen = CopyScreen::None);

/// A person has given up one copy of a print that asks for each: whether the `left` behind it are still
/// wanted. Asks only where they are many.
[[nodiscard]] bool WantsFurtherCopies(int left);
