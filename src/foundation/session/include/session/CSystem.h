#pragma once

#include <QString>

/// Access to ini files and to what the machine is called. Ini files may be Windows-1252 or UTF-8; section and key
/// names compare without case; comments, order and unknown keys survive a write; a write replaces the file at once
/// or not at all.
class CSystem {
  public:
    virtual ~CSystem() = default;
    /// The value, at most 255 characters; "" if section, key or file is missing.
    [[nodiscard]] virtual QString ReadProfileString(const QString& Section, const QString& Key, const QString& File) const;
    /// Creates file and section as needed. Raises 70 or 61 when the file cannot be written.
    virtual void WriteProfileString(const QString& Section, const QString& Key, const QString& Value, const QString& File);
    /// The machine's name, the identity `Maschine` of a till; the environment variable MERIVANE_MASCHINE overrides.
    [[nodiscard]] virtual QString ComputerName() const;
};
