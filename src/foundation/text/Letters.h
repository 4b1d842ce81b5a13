#pragma once

#include <QString>

/// Case as Visual Basic changes it: one character for one, so "ß" stays.
enum class Case { Kept, Lower, Upper };
[[nodiscard]] QString inCase(QStringView text, Case wanted);
