#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/Settings.h>
#include <text/Convert.h>
#include <text/RuntimeError.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// More decimals than any amount of money has; beyond that a format text only costs memory.
constexpr int decimalLimit = 20;

QString text(const char16_t* constant) { return QString::fromUtf16(constant); }

QString moneyFormat(int decimals) {
    return u"###0."_s + QString(std::clamp(decimals, 0, decimalLimit), u'0');
}

void assign(const Setting& setting, const QString& value) {
    const QString fallback = text(setting.fallback);
    switch (setting.kind) {
    case SettingKind::Truth:
        *std::get<bool*>(setting.target) = (value.isEmpty() ? fallback : value) == u"1"_s;
        break;
    case SettingKind::Boolean:
        if (!value.isEmpty()) *std::get<bool*>(setting.target) = CBool(Value(value));
        break;
    case SettingKind::Integer:
        *std::get<int*>(setting.target) = CLng(Value(IsNumeric(value) ? value : fallback));
        break;
    case SettingKind::Number:
        *std::get<double*>(setting.target) = CDbl(Value(IsNumeric(value) ? value : fallback));
        break;
    case SettingKind::Text:
    case SettingKind::Printer:
    case SettingKind::Folder:
        *std::get<QString*>(setting.target) = value.isEmpty() ? fallback : value;
        break;
    }
}

using Entries = std::vector<CSystem::Entry>;

/// Fills the global; what is to be written back joins `missing`.
void read(const Setting& setting, CSystem& system, const QString& file, Entries& missing) {
    const QString section = text(setting.section);
    const QString key = text(setting.key);
    QString value = system.ReadProfileString(section, key, file);
    if (setting.trimmed) value = value.trimmed();
    const bool writeBack = value.isEmpty() && setting.back;
    if (writeBack)
        missing.push_back(
            {setting.backSection ? text(setting.backSection) : section, key, text(setting.back)});
    if (writeBack && setting.backTarget)
        *setting.backTarget = true;
    else
        assign(setting, value);

    if (const auto* number = std::get_if<int*>(&setting.target)) {
        if (*number == &gDecimalStellen) gFormatPreis = moneyFormat(gDecimalStellen);
        if (*number == &gDecimalStellenEKPreis) gFormatEKPreis = moneyFormat(gDecimalStellenEKPreis);
    }
}

} // namespace

const Setting* FindSetting(const QString& section, const QString& key) {
    const auto& all = Settings();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Setting& setting) {
        return section.compare(text(setting.section), Qt::CaseInsensitive) == 0 &&
               key.compare(text(setting.key), Qt::CaseInsensitive) == 0;
    });
    return found == all.end() ? nullptr : &*found;
}

void WriteDefaultPrinters(CSystem& system, const QString& file, const QString& defaultPrinter) {
    Entries missing;
    for (const Setting& setting : Settings()) {
        if (setting.kind != SettingKind::Printer) continue;
        const QString name = system.ReadProfileString(text(setting.section), text(setting.key), file);
        if (name.isEmpty() || name.toUpper() == u"DEFAULT"_s)
            missing.push_back({text(setting.section), text(setting.key), defaultPrinter});
    }
    if (!missing.empty()) system.KeepProfileStrings(missing, file);
}

void KeepSetting(const QString& section, const QString& key, const QString& value) {
    gSystem->KeepProfileStrings({{section, key, value}}, KonfigIni());
    TellUnwrittenSettings();
}

void TellUnwrittenSettings() {
    const QString fault = gSystem->TakeKeepFault();
    if (fault.isEmpty()) return;
    MsgBox(
        u"Einstellungen dieser Kasse können nicht gespeichert werden.\n\n"_s + fault +
            u"\n\nDas Programm arbeitet weiter; was jetzt nicht gespeichert wird, gilt nur bis zu seinem Ende. "
            "Prüfen Sie die Rechte an der Datei und ihrem Ordner."_s,
        MsgIcon::Exclamation);
}

void ReadSettings(CSystem& system, const QString& file) {
    Entries missing;
    const auto writeBack = [&] {
        if (!missing.empty()) system.KeepProfileStrings(missing, file);
    };
    for (const Setting& setting : Settings()) {
        if (setting.reader != SettingReader::StartUp) continue;
        try {
            read(setting, system, file, missing);
        } catch (const RuntimeError& error) {
            // A malformed value is no reason not to start.
            if (error.Number == 13) continue;
            writeBack();
            throw;
        }
    }
    writeBack();
}
