#pragma once

#include <functional>

/// What comes before the register opens. `AskWechselGeld` shows the dialog that asks for the starting change
/// and fills gKassenBestand; it is called only when gAbfrageKassenBestand is set and this till has no balance
/// yet.
using WechselGeldFrage = std::function<void()>;

/// gUser becomes the person at the register, gKassenUser.Result 0.
void CopyUserToKassenUser();

/// From the login: copies gUser and sees to the till balance. Raises what the store raises.
void PrepareStartKasse(const WechselGeldFrage& AskWechselGeld);
/// From the shell: the same, but tells a blocked person so and gives False.
[[nodiscard]] bool PrepareOpenKasse(const WechselGeldFrage& AskWechselGeld);
