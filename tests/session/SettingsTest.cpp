#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Settings.h>
#include <session/gKunde.h>
#include <session/gZahlung.h>
#include <support/ScriptedDialogs.h>
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
        {u"KassenLade"_s, u"Port"_s, u"&HC"_s},
        {u"KundenLCD"_s, u"ClearCode"_s, u"12"_s}};
    for (const auto& [section, key, value] : lines)
        set(section, key, value);
    read();
    EXPECT_EQ(gVollerSteuerSatz, 16);
    EXPECT_EQ(gHalberSteuerSatz, 7.5);
    EXPECT_EQ(gDruckerDefault, 0);
    EXPECT_EQ(gDruckerKopies, 2);
    EXPECT_EQ(gFormatPreis, u"###0."_s);
    EXPECT_EQ(gFormatEKPreis, u"###0.00"_s) << "out of range";
    EXPECT_FALSE(gRoundDecimal);
    EXPECT_TRUE(gPrintDirectIO) << "trimmed";
    EXPECT_FALSE(gAHVerkaufAktiv) << "not trimmed";
    EXPECT_EQ(gSteuerText, u"Ust"_s);
    EXPECT_TRUE(gKFRabatt) << "a malformed switch leaves the global as it was";
    EXPECT_TRUE(gKFKunden && gKFLangText);
    EXPECT_FALSE(gKFAuftrag);
    EXPECT_TRUE(get(u"KassenFunction"_s, u"MinusBuchung"_s) == u"-1"_s) << "the rest is read all the same";
    EXPECT_EQ(gKassenLadePort, 12);
    EXPECT_EQ(gKundenLCDClearCode, 12);
}

TEST_F(SettingsTest, EveryNumberHasARangeAndBeyondItTheDefaultHolds) {
    for (const Setting& setting : Settings()) {
        const bool number = setting.kind == SettingKind::Integer || setting.kind == SettingKind::Number;
        ASSERT_EQ(setting.range.has_value(), number) << qPrintable(name(setting));
        if (!number) continue;
        SCOPED_TRACE(qPrintable(name(setting)));
        const QString section = QString::fromUtf16(setting.section), key = QString::fromUtf16(setting.key);
        const auto now = [&] { return SettingNumber(m_system, section, key, file()); };
        const auto fallback = now();
        EXPECT_EQ(fallback.has_value(), *setting.fallback != 0);
        if (fallback) {
            EXPECT_TRUE(*fallback >= setting.range->least && *fallback <= setting.range->most);
        }
        for (const QString& bad :
             {u"99999999999"_s, u"-99999999999"_s, u"1e999"_s, u"abc"_s, u"1,2,3,4,x"_s,
              QString::number(setting.range->least - 1), QString::number(setting.range->most + 1, 'f', 0)}) {
            set(section, key, bad);
            EXPECT_EQ(now(), fallback) << qPrintable(bad);
            const auto faults = FindSettingFaults(m_system, file());
            ASSERT_EQ(faults.size(), 1) << qPrintable(bad);
            EXPECT_EQ(faults[0].key + u'=' + faults[0].value, key + u'=' + bad);
            read();
        }
        for (const double good : {setting.range->least, setting.range->most}) {
            set(section, key, QString::number(good, 'f', 1).replace(u'.', u',').replace(u",0"_s, u""_s));
            EXPECT_EQ(now(), good);
        }
        EXPECT_TRUE(FindSettingFaults(m_system, file()).empty());
    }
    EXPECT_THROW(std::ignore = SettingNumber(m_system, u"GLOBAL"_s, u"SteuerText"_s, file()), RuntimeError);
}

TEST_F(SettingsTest, WhatIsNoValueIsToldInOneMessageByFileSectionKeyAndValue) {
    ScriptedDialogs dialogs;
    TellSettingFaults(m_system, file()); // nothing to say
    set(u"GLOBAL"_s, u"DecimalStellen"_s, u"-5"_s);
    set(u"GLOBAL"_s, u"PrintDirectIOPort"_s, u"99999999999"_s);
    set(u"GLOBAL"_s, u"HalberSteuerSatz"_s, u"7,5"_s);
    set(u"KassenFunction"_s, u"Rabatt"_s, u"vielleicht"_s);
    dialogs.expectMsgBox(
        u"Mit diesen Werten in der Datei %1 kann die Kasse nicht arbeiten:\n\n"
        "[Global] PrintDirectIOPort=99999999999   (möglich: 1 bis 255; es gilt 1)\n"
        "[GLOBAL] DecimalStellen=-5   (möglich: 0 bis 9; es gilt 2)\n"
        "[KassenFunction] Rabatt=vielleicht   (möglich: -1 oder 0; es gilt 0)\n\n...*"_s.arg(file()),
        MsgIcon::Exclamation);
    TellSettingFaults(m_system, file());
    dialogs.verify();
    // A file that is none must not fill the screen.
    for (const Setting& setting : Settings())
        set(QString::fromUtf16(setting.section), QString::fromUtf16(setting.key), QString(200, u'9') + u'x');
    dialogs.expectMsgBox(u"Mit diesen Werten...*"_s, MsgIcon::Exclamation);
    TellSettingFaults(m_system, file());
    EXPECT_LT(dialogs.lastMessage.size(), 2500);
    EXPECT_TRUE(dialogs.lastMessage.contains(u"weitere, siehe Protokoll"_s));
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
    const auto range = [](const Setting& setting) {
        const auto bound = [](double number) { return QString::number(number).replace(u'.', u','); };
        return setting.range ? u", "_s + bound(setting.range->least) + u" bis "_s +
                                   QString::number(setting.range->most, 'f', 0)
                             : QString();
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
            QString::fromUtf16(setting.key), kind(setting.kind) + range(setting), cell(setting.fallback),
            cell(setting.back));
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
