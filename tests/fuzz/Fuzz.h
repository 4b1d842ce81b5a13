#pragma once

#include <text/RuntimeError.h>

#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What the fuzz targets share: inputs are text, so that seeds can be read and written by people.
namespace fuzz {

/// The lines of an input; missing ones are empty.
class Lines {
  public:
    Lines(const std::uint8_t* data, std::size_t size)
        : m_lines(QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
                      .split(u'\n')) {}
    [[nodiscard]] QString operator[](qsizetype i) const { return m_lines.value(i); }

  private:
    QStringList m_lines;
};

/// Ends the run, so that the input is kept as a finding.
inline void require(bool condition) {
    if (!condition) std::abort();
}

/// Number of the error that `act` raises, 0 for none. Anything but a RuntimeError is a finding.
template <class Act>
int errorOf(Act act) {
    try {
        static_cast<void>(act());
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}

} // namespace fuzz
