#include <register/gMaschine.h>

QString gMaschine;
