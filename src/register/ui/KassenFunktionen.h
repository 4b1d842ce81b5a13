#pragma once

class Commands;
namespace till {
class Register;
}

/// Adds what the register can do without knowing its form, as far as the switches of the till allow it. The
/// keys of the commands are the names of the screen's keys and of the menus' entries.
void AddKassenFunktionen(Commands& commands, till::Register& till);
