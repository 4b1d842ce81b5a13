#pragma once

/// Wide enough for every product of two 64-bit integers; the compilers' own type, which no standard names.
__extension__ typedef __int128 Int128;
