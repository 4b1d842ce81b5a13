#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Settings.h>
#include <session/gKunde.h>
#include <session/gZahlung.h>
#include <text/RuntimeError.h>

#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SettingsTest : public testing::Test {
  protected:
    SettingsTest() { ResetSession(); }
    ~SettingsTest() override { ResetSession(); }
    [[nodiscard]] QString file() const { return m_folder.filePath(u"konfig.ini"_s); }
    void set(const QString& section, const QString& key, const QString& value) {
        m_system.WriteProfileString(section, key, value, file());
    }
    [[nodiscard]] QString get(const QString& section, const QString& key) const {
        return m_system.ReadProfileString(section, key, file());
    }
    void read() { ReadSettings(m_system, file()); }

    QTemporaryDir m_folder;
    CSystem m_system;
};

QString name(const Setting& setting) {
    return QString::fromUtf16(setting.section) + u'/' + QString::fromUtf16(setting.key);
}

} // namespace

TEST_F(SettingsTest, FirstStartWritesDefaultsAndTheSecondReadsThem) {
    read();
    EXPECT_EQ(gDruckerKopies, 1);
    EXPECT_EQ(gSteuerText, u"Ust"_s);
    EXPECT_EQ(gPrintDirectIOPort, 1);
    EXPECT_EQ(gHalberSteuerSatz, 7);
    EXPECT_EQ(gVollerSteuerSatz, 16);
    EXPECT_EQ(gFormatPreis, u"###0.00"_s);
    EXPECT_EQ(gFormatEKPreis, u"###0.00"_s);
    EXPECT_TRUE(gRoundDecimal && gShowLagerBestand && gDisabledAskForNewArtikel && gShowWechselgeldDialog);
    EXPECT_FALSE(gAskSchlussText || gPrintDirectIO || gIsSoundCardAktiv || gAHVerkaufAktiv || gHeron);
    // The functions stay off for this run, and the order search switches the wrong thing on.
    EXPECT_FALSE(gKFBenutzerWechsel || gKFRabatt || gKFMinusBuchung);
    EXPECT_FALSE(gEnabledOrderSearch);
    EXPECT_TRUE(gEnabledAutoClose);

    QFile written(file());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QByteArray first = written.readAll();
    EXPECT_EQ(first.left(first.indexOf("[KassenFunction]")),
              "[DRUCKER]\r\nAskSchlussText=0\r\nPrintZusatzInfo=0\r\n\r\n"
              "[GLOBAL]\r\nPrintBruttoToFormular=0\r\nAHVerkaufAktiv=0\r\nShowKundenKFZInfo="
              "0\r\nPrintDirectIO=0\r\n"
              "PrintDirectIOPort=1\r\nSteuerText=Ust\r\nRoundDecimal=1\r\nShowLagerBestand="
              "1\r\nEnabledIMDisplayModus=0\r\n"
              "DisabledAskForNewArtikel=1\r\nIsSoundCardAktiv=0\r\nShowWechselgeldDialog="
              "1\r\nProtocolAbrechnung=0\r\n"
              "EnabledSWShortCut=0\r\n\r\n[SERVICE]\r\nEnabledAutoClose=0\r\nEnabledOrderSearch=1\r\n\r\n");
    EXPECT_EQ(first.mid(first.indexOf("[KassenFunction]")).count("=-1\r\n"), 23);

    set(u"GLOBAL"_s, u"PrintBruttoToFormular"_s, u"1"_s);
    read();
    EXPECT_TRUE(gKFBenutzerWechsel && gKFRabatt && gKFMinusBuchung);
    EXPECT_TRUE(gEnabledOrderSearch);
    EXPECT_FALSE(gEnabledAutoClose);
    // Written where it is not read, on each start anew.
    EXPECT_FALSE(gPrintBruttoToFormular);
    EXPECT_EQ(get(u"GLOBAL"_s, u"PrintBruttoToFormular"_s), u"0"_s);
    set(u"DRUCKER"_s, u"PrintBruttoToFormular"_s, u"1"_s);
    set(u"GLOBAL"_s, u"PrintBruttoToFormular"_s, u"x"_s);
    read();
    EXPECT_TRUE(gPrintBruttoToFormular);
    EXPECT_EQ(get(u"GLOBAL"_s, u"PrintBruttoToFormular"_s), u"x"_s);
}

TEST_F(SettingsTest, OddValuesHaveDefinedAnswers) {
    gKFRabatt = true;
    const std::vector<std::tuple<QString, QString, QString>> lines = {
        {u"GLOBAL"_s, u"VollerSteuerSatz"_s, u"abc"_s},
        {u"GLOBAL"_s, u"HalberSteuerSatz"_s, u"7,5"_s},
        {u"DRUCKER"_s, u"Default"_s, u"x"_s},
        {u"DRUCKER"_s, u"Kopies"_s, u"2,5"_s},
        {u"GLOBAL"_s, u"DecimalStellen"_s, u"0"_s},
        {u"GLOBAL"_s, u"DecimalStellenEKPreis"_s, u"-3"_s},
        {u"GLOBAL"_s, u"RoundDecimal"_s, u"-1"_s},
        {u"GLOBAL"_s, u"PrintDirectIO"_s, u"\" 1 \""_s},
        {u"GLOBAL"_s, u"AHVerkaufAktiv"_s, u"\" 1 \""_s},
        {u"GLOBAL"_s, u"SteuerText"_s, u"\"  \""_s},
        {u"KassenFunction"_s, u"Rabatt"_s, u"vielleicht"_s},
        {u"KassenFunction"_s, u"Kunden"_s, u"Wahr"_s},
        {u"KassenFunction"_s, u"Auftrag"_s, u"0"_s},
        {u"KassenFunction"_s, u"LangText"_s, u"\" -1 \""_s},
        {u"KassenLade"_s, u"Port"_s, u"&H10"_s},
        {u"KundenLCD"_s, u"ClearCode"_s, u"12"_s}};
    for (const auto& [section, key, value] : lines)
        set(section, key, value);
    read();
    EXPECT_EQ(gVollerSteuerSatz, 16);
    EXPECT_EQ(gHalberSteuerSatz, 7.5);
    EXPECT_EQ(gDruckerDefault, 0);
    EXPECT_EQ(gDruckerKopies, 2);
    EXPECT_EQ(gFormatPreis, u"###0."_s);
    EXPECT_EQ(gFormatEKPreis, u"###0."_s);
    EXPECT_FALSE(gRoundDecimal);
    EXPECT_TRUE(gPrintDirectIO) << "trimmed";
    EXPECT_FALSE(gAHVerkaufAktiv) << "not trimmed";
    EXPECT_EQ(gSteuerText, u"Ust"_s);
    EXPECT_TRUE(gKFRabatt) << "a malformed switch leaves the global as it was";
    EXPECT_TRUE(gKFKunden && gKFLangText);
    EXPECT_FALSE(gKFAuftrag);
    EXPECT_TRUE(get(u"KassenFunction"_s, u"MinusBuchung"_s) == u"-1"_s) << "the rest is read all the same";
    EXPECT_EQ(gKassenLadePort, 16);
    EXPECT_EQ(gKundenLCDClearCode, 12);

    set(u"DRUCKER"_s, u"Kopies"_s, u"99999999999"_s);
    try {
        read();
        FAIL() << "an integer beyond 32 bits must not pass";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number, 6);
    }
}

TEST_F(SettingsTest, EmptyAndDefaultPrintersGetTheNameOfTheSystemsPrinter) {
    set(u"DRUCKER"_s, u"FormularDrucker"_s, u"Default"_s);
    set(u"DRUCKER"_s, u"KassenabschlussDrucker"_s, u"Büro"_s);
    WriteDefaultPrinters(m_system, file(), u"Theke"_s);
    read();
    EXPECT_EQ(gBonDrucker, u"Theke"_s);
    EXPECT_EQ(gFormularDrucker, u"Theke"_s);
    EXPECT_EQ(gKassenabschlussDrucker, u"Büro"_s);
}

TEST_F(SettingsTest, AResetLeavesNothingOfASession) {
    read();
    gKunde.Name_1 = u"Müller"_s;
    gZahlung.Ergebnis = gColorBack1 = gPrintMode = 1;
    gDBPath = gAppPath = u"/tmp/"_s;
    ResetSession();
    EXPECT_EQ(gDruckerKopies + gDecimalStellen + gZahlung.Ergebnis + gColorBack1 + gPrintMode, 0);
    EXPECT_EQ(gVollerSteuerSatz, 0);
    EXPECT_FALSE(gRoundDecimal || gEnabledAutoClose);
    EXPECT_EQ(gSteuerText + gFormatPreis + gFormatEKPreis + gDBPath + gAppPath, QString());
    EXPECT_EQ(gKunde.Name_1, u"Standardkunde"_s);
}

TEST_F(SettingsTest, EveryKeyFillsAGlobalOfItsOwn) {
    QSet<const void*> targets;
    QSet<QString> names;
    for (const Setting& setting : Settings()) {
        EXPECT_FALSE(names.contains(name(setting).toLower())) << qPrintable(name(setting));
        names.insert(name(setting).toLower());
        std::visit(
            [&](auto target) {
                if constexpr (std::is_pointer_v<decltype(target)>) {
                    EXPECT_FALSE(targets.contains(target)) << qPrintable(name(setting));
                    targets.insert(target);
                } else {
                    EXPECT_EQ(setting.reader, SettingReader::Elsewhere) << qPrintable(name(setting));
                }
            },
            setting.target);
    }
    EXPECT_EQ(FindSetting(u"global"_s, u"dbpath"_s)->kind, SettingKind::Folder);
    EXPECT_EQ(FindSetting(u"DRUCKER"_s, u"DBPath"_s), nullptr);
}

TEST_F(SettingsTest, TheHandbookNamesEveryKeyAsItIs) {
    QFile handbook(QStringLiteral(SETTINGS_HANDBOOK));
    ASSERT_TRUE(handbook.open(QIODevice::ReadOnly));
    const auto kind = [](SettingKind k) {
        switch (k) {
        case SettingKind::Truth:
            return u"ja/nein"_s;
        case SettingKind::Boolean:
            return u"Schalter"_s;
        case SettingKind::Integer:
            return u"ganze Zahl"_s;
        case SettingKind::Number:
            return u"Zahl"_s;
        case SettingKind::Text:
            return u"Text"_s;
        case SettingKind::Printer:
            return u"Drucker"_s;
        case SettingKind::Folder:
            return u"Ordner"_s;
        }
        return QString();
    };
    const auto cell = [](const char16_t* text) {
        const QString value = text ? QString::fromUtf16(text) : QString();
        return value.isEmpty() ? u"–"_s : u'`' + value + u'`';
    };
    QSet<QString> expected;
    for (const Setting& setting : Settings())
        expected << u"[%1] | `%2` | %3 | %4 | %5 |"_s.arg(
            QString::fromUtf16(setting.section).compare(u"Global"_s, Qt::CaseInsensitive) == 0
                ? u"GLOBAL"_s
                : QString::fromUtf16(setting.section),
            QString::fromUtf16(setting.key), kind(setting.kind), cell(setting.fallback), cell(setting.back));
    QSet<QString> found;
    QString section;
    for (const QString& line : QString::fromUtf8(handbook.readAll()).split(u'\n')) {
        if (line.startsWith(u"## "_s)) section = line.mid(3);
        if (!section.startsWith(u'[') || !line.startsWith(u"| `"_s)) continue;
        found << section + u' ' + line.section(u'|', 0, 4) + u'|';
        EXPECT_FALSE(line.section(u'|', 5, 5).trimmed().isEmpty()) << qPrintable(line);
    }
    EXPECT_EQ((expected - found).values(), QStringList()) << "missing in the handbook";
    EXPECT_EQ((found - expected).values(), QStringList()) << "in the handbook only";
}
