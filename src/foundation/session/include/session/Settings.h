#pragma once

#include <QString>

#include <optional>
#include <variant>
#include <vector>

class CSystem;

/// How the text of a key becomes a value.
enum class SettingKind {
    Truth,   ///< "1" is True, everything else False
    Boolean, ///< converted as a Boolean ("-1", "0", "Wahr", ...); an empty key leaves the global as it is
    Integer, ///< the default when it is not numeric or out of range
    Number,  ///< likewise, with a decimal comma
    Text,    ///< as it stands
    Printer, ///< empty and "DEFAULT" become the name of the system's default printer
    Folder,  ///< gets a separator at its end
};

/// Who reads a key.
enum class SettingReader {
    StartUp,   ///< once, into the global
    Elsewhere, ///< by the routine that needs it, at the time it needs it
};

/// From least to most, both included.
struct SettingRange {
    double least, most;
};

/// One key of konfig.ini.
struct Setting {
    const char16_t* section;
    const char16_t* key;
    SettingKind kind;
    std::variant<std::monostate, bool*, int*, double*, QString*> target{}; ///< the global that it fills
    const char16_t* fallback = u""; ///< what the global takes for an empty key, as it would stand in the file
    const char16_t* back = nullptr; ///< what is written when the key is empty; nullptr writes nothing
    const char16_t* backSection = nullptr; ///< where that is written, when not into `section`
    bool* backTarget = nullptr; ///< when it is written, this becomes True and `target` stays as it is
    bool trimmed = false;
    SettingReader reader = SettingReader::StartUp;
    std::optional<SettingRange> range{}; ///< of every Integer and Number: beyond it the default holds
};

/// All keys of konfig.ini in the order in which they are read. Reading, writing back, the settings dialog and
/// the documentation go by this table.
[[nodiscard]] const std::vector<Setting>& Settings();
/// nullptr for a key that does not exist; names compare without case.
[[nodiscard]] const Setting* FindSetting(const QString& section, const QString& key);

/// The number that an Integer or Number key holds; the default for an empty key and for a text that is no
/// number in its range; nothing when there is no default either. Raises 5 for a key that is none of these.
[[nodiscard]] std::optional<double> SettingNumber(const CSystem& system, const QString& section,
                                                  const QString& key, const QString& file);

/// A value of konfig.ini that the program cannot work with, and what a person is told of it.
struct SettingFault {
    QString section, key, value;
    QString allowed; ///< "0 bis 9", "-1 oder 0"
    QString instead; ///< what holds, "" for nothing
};
/// All of them, in the order of the table.
[[nodiscard]] std::vector<SettingFault> FindSettingFaults(const CSystem& system, const QString& file);
/// Tells the person all of them in one message; nothing when there are none.
void TellSettingFaults(const CSystem& system, const QString& file);

/// Writes a setting that the program changes by itself into konfig.ini. A file that cannot be written is told
/// once in a session; the value holds until its end. Raises 5 and 321 as CSystem does.
void KeepSetting(const QString& section, const QString& key, const QString& value);
/// Tells the person, once in a session, that settings could not be written.
void TellUnwrittenSettings();

/// Writes the name of the default printer into each printer key that is empty or "DEFAULT", as far as the
/// file can be written.
void WriteDefaultPrinters(CSystem& system, const QString& file, const QString& defaultPrinter);
/// Fills the globals from `file`, writes missing keys back where the table says so and builds the money
/// formats. A value that raises 13 leaves its global as it was. What cannot be written back is left to
/// TellUnwrittenSettings, what is no value to TellSettingFaults. Raises 321 as CSystem does.
void ReadSettings(CSystem& system, const QString& file);
