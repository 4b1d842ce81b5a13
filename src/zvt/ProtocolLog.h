#pragma once

#include <zvt/protocol/Apdu.h>

#include <QString>

namespace zvt {

/// The log of the line: zvt.log beside the program's own log, a megabyte at most, with two older ones. Shows
/// no data of cards. A log that cannot be written is left out.
class ProtocolLog {
  public:
    void enable(bool on) { m_on = on; }
    void sent(const Apdu& apdu) { write(QStringLiteral("-> "), apdu); }
    void received(const Apdu& apdu) { write(QStringLiteral("<- "), apdu); }
    void note(const QString& text);

  private:
    void write(const QString& mark, const Apdu& apdu);
    bool m_on = false;
};

} // namespace zvt
