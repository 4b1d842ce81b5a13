#pragma once

/// The form that opens the drawer. They differ on the serial route: the register writes to a port text with
/// line ends, the shell through a serial control of its own without.
enum class DrawerOwner { Kasse, Main };

/// Opens the cash drawer by the route of gKassenLadePort: 1 to 9 a serial port, 10 and 11 a parallel port, 12
/// a job in a printer font, 13 a helper program; below 1 nothing. The drawer does not answer, so there is no
/// result. A handler of its own: failures are reported here and nothing is raised.
void OpenKassenLade(DrawerOwner owner);
