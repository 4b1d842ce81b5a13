#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Log.h>
#include <session/MsgBox.h>
#include <session/Settings.h>
#include <text/Convert.h>
#include <text/RuntimeError.h>

#include <QDir>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostTold = 12;          ///< faults in one message
constexpr qsizetype longestTold = 40; ///< characters of a value there

QString text(const char16_t* constant) { return QString::fromUtf16(constant); }

QString moneyFormat(int decimals) { return u"###0."_s + QString(std::max(decimals, 0), u'0'); }

bool isNumber(const Setting& setting) {
    return setting.kind == SettingKind::Integer || setting.kind == SettingKind::Number;
}

/// The number in the text of such a key; nothing for a text that is none, or is beyond the range.
std::optional<double> numberIn(const Setting& setting, const QString& value) {
    if (!IsNumeric(value)) return std::nullopt;
    try {
        double number = CDbl(Value(value));
        const auto& range = setting.range;
        if (range && (number < range->least || number > range->most)) return std::nullopt;
        if (setting.kind == SettingKind::Integer) number = CLng(Value(number));
        return number;
    } catch (const RuntimeError&) { // an overflow
        return std::nullopt;
    }
}

std::optional<double> numberOrDefault(const Setting& setting, const QString& value) {
    const auto number = numberIn(setting, value);
    return number ? number : numberIn(setting, text(setting.fallback));
}

bool isSwitch(const QString& value) {
    try {
        std::ignore = CBool(Value(value));
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

QString plain(double number) { return QString::number(number, 'g', 10).replace(u'.', u','); }

QString valueOf(const Setting& setting, const CSystem& system, const QString& file) {
    const QString value = system.ReadProfileString(text(setting.section), text(setting.key), file);
    return setting.trimmed ? value.trimmed() : value;
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
        *std::get<int*>(setting.target) = static_cast<int>(numberOrDefault(setting, value).value_or(0));
        break;
    case SettingKind::Number:
        *std::get<double*>(setting.target) = numberOrDefault(setting, value).value_or(0);
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
    const QString value = valueOf(setting, system, file);
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

std::optional<double> SettingNumber(const CSystem& system, const QString& section, const QString& key,
                                    const QString& file) {
    const Setting* setting = FindSetting(section, key);
    if (!setting || !isNumber(*setting))
        throw RuntimeError(5, u"[%1] %2 ist keine Zahl der Einstellungen."_s.arg(section, key));
    return numberOrDefault(*setting, valueOf(*setting, system, file));
}

std::vector<SettingFault> FindSettingFaults(const CSystem& system, const QString& file) {
    std::vector<SettingFault> faults;
    for (const Setting& setting : Settings()) {
        const QString value = valueOf(setting, system, file);
        if (value.isEmpty()) continue;
        SettingFault fault{text(setting.section), text(setting.key), value, {}, {}};
        if (isNumber(setting) && !numberIn(setting, value)) {
            if (setting.range)
                fault.allowed = plain(setting.range->least) + u" bis "_s + plain(setting.range->most);
            fault.instead = text(setting.fallback);
        } else if (setting.kind == SettingKind::Boolean && !isSwitch(value)) {
            fault.allowed = u"-1 oder 0"_s;
            fault.instead = u"0"_s;
        } else {
            continue;
        }
        faults.push_back(std::move(fault));
    }
    return faults;
}

void TellSettingFaults(const CSystem& system, const QString& file) {
    const std::vector<SettingFault> faults = FindSettingFaults(system, file);
    if (faults.empty()) return;
    QStringList lines;
    for (const SettingFault& fault : faults) {
        QString value = fault.value;
        if (value.size() > longestTold) value = value.left(longestTold) + u'…';
        QString line = u"[%1] "_s.arg(fault.section) + fault.key + u'=' + value;
        line += u"   (möglich: "_s + fault.allowed;
        if (!fault.instead.isEmpty()) line += u"; es gilt "_s + fault.instead;
        lines << line + u')';
    }
    WriteLog(file + u": "_s + lines.join(u"; "_s));
    const qsizetype more = lines.size() - mostTold;
    if (more > 0) lines = lines.first(mostTold) << u"und %1 weitere, siehe Protokoll"_s.arg(more);
    MsgBox(u"Mit diesen Werten in der Datei %1 kann die Kasse nicht arbeiten:\n\n"_s.arg(
               QDir::toNativeSeparators(file)) +
               lines.join(u'\n') +
               u"\n\nBitte berichtigen Sie die Datei, und starten Sie die Kasse danach neu."_s,
           MsgIcon::Exclamation);
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
