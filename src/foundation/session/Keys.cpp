#include <session/Keys.h>
#include <text/Convert.h>

#include <algorithm>

int GetKeyID(const QString& Key, int Prefix) { return CLng(Value(GetKeyText(Key, Prefix))); }

QString GetKeyText(const QString& Key, int Prefix) { return Key.mid(std::max(Prefix, 0)); }
