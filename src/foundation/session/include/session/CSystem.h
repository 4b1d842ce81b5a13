#pragma once

#include <QString>

#include <memory>
#include <vector>

/// Access to ini files and to what the machine is called. Ini files may be Windows-1252, UTF-8 or UTF-16;
/// section and key names compare without case; comments, order and unknown keys survive a write; a write
/// replaces the file at once or not at all. Files are kept in memory until they change, so that a read costs
/// one look at the file's time.
class CSystem {
  public:
    CSystem();
    virtual ~CSystem();
    CSystem(const CSystem&) = delete;
    CSystem& operator=(const CSystem&) = delete;

    /// The value, at most 255 characters; "" if section, key or file is missing. Blanks around the value do
    /// not count, and a pair of quotes around it is taken off. A value that KeepProfileStrings could not
    /// write is read as if it stood in the file.
    [[nodiscard]] virtual QString ReadProfileString(const QString& Section, const QString& Key,
                                                    const QString& File) const;
    /// Why a file cannot be read though it is there, as a German sentence; "" for one that can, or that is
    /// missing. Reads of such a file give the empty text.
    [[nodiscard]] QString ReadFault(const QString& File) const;
    /// Creates file and section as needed; the folder must exist. Raises 70 or 61 when the file cannot be
    /// written, 76 without the folder, 5 for an empty name or one that an ini file cannot hold, 321 for a
    /// file that is no text.
    virtual void WriteProfileString(const QString& Section, const QString& Key, const QString& Value,
                                    const QString& File);
    /// Several keys at once, for one write of the file.
    struct Entry {
        QString Section, Key, Value;
    };
    virtual void WriteProfileStrings(const std::vector<Entry>& Entries, const QString& File);
    /// For what the program writes of its own accord: when the file cannot be written (61, 70, 76), the
    /// values hold as long as this object lives, and the next call tries them once more. Raises 5 and 321 as
    /// above.
    void KeepProfileStrings(const std::vector<Entry>& Entries, const QString& File);
    /// Why values were not written, the first time that one asks after it happened; "" otherwise.
    [[nodiscard]] QString TakeKeepFault();
    /// The machine's name, the identity `Maschine` of a till, at most 50 characters; the environment variable
    /// MERIVANE_MASCHINE overrides.
    [[nodiscard]] virtual QString ComputerName() const;

  private:
    class Files;
    class Unwritten;
    std::unique_ptr<Files> m_files;
    std::unique_ptr<Unwritten> m_unwritten;
};
