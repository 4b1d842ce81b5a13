#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

void RaiseTypeMismatch() { throw RuntimeError(13, u"Typen unverträglich"_s); }
void RaiseOverflow() { throw RuntimeError(6, u"Überlauf"_s); }
void RaiseInvalidNull() { throw RuntimeError(94, u"Unzulässige Verwendung von Null"_s); }
void RaiseInvalidCall() { throw RuntimeError(5, u"Ungültiger Prozeduraufruf oder ungültiges Argument"_s); }
void RaiseDivisionByZero() { throw RuntimeError(11, u"Division durch Null"_s); }
