#include <session/CSystem.h>
#include <text/CodePage.h>
#include <text/RuntimeError.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Ini : public testing::Test {
  protected:
    [[nodiscard]] QString path(const QString& name = u"konfig.ini"_s) const {
        return m_folder.filePath(name);
    }

    void put(const QByteArray& content, const QString& name = u"konfig.ini"_s) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QByteArray content(const QString& name = u"konfig.ini"_s) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }
    [[nodiscard]] QString read(const QString& section, const QString& key) const {
        return m_system.ReadProfileString(section, key, path());
    }
    void write(const QString& section, const QString& key, const QString& value) {
        m_system.WriteProfileString(section, key, value, path());
    }
    /// As if the file had been written long ago, so that its content may be kept in memory.
    void age() {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFile::FileModificationTime));
    }

    QTemporaryDir m_folder;
    CSystem m_system;
};

int raised(const std::function<void()>& act) {
    try {
        act();
    } catch (const RuntimeError& error) {
        EXPECT_FALSE(error.Description.isEmpty());
        return error.Number;
    }
    return 0;
}

} // namespace

TEST_F(Ini, ReadsSectionsKeysAndQuotes) {
    put("; Kasse 1\r\n"
        "lost=1\r\n"
        "[GLOBAL]\r\n"
        "  DBPath  =  C:\\Daten = neu  \r\n"
        ";DBPath=comment\r\n"
        "Quoted=\" zwei Blanks \"\r\n"
        "Single='x'\r\n"
        "Half=\"x\r\n"
        "Empty=\r\n"
        "Twice=first\r\n"
        "TWICE=second\r\n"
        "no equals sign\r\n"
        "=no key\r\n"
        "[Other] rest\n"
        "Key=lf only\n"
        "[global]\n"
        "Late=found\n"
        "Last=no line end");
    const std::vector<std::tuple<QString, QString, QString>> expected = {
        {u"GLOBAL"_s, u"DBPath"_s, u"C:\\Daten = neu"_s},
        {u"global"_s, u"dbpath"_s, u"C:\\Daten = neu"_s},
        {u"Global"_s, u"Quoted"_s, u" zwei Blanks "_s},
        {u"Global"_s, u"Single"_s, u"x"_s},
        {u"Global"_s, u"Half"_s, u"\"x"_s},
        {u"Global"_s, u"Empty"_s, u""_s},
        {u"Global"_s, u"Twice"_s, u"first"_s},
        {u"Global"_s, u"no equals sign"_s, u""_s},
        {u"Global"_s, u""_s, u""_s},
        {u"Global"_s, u"lost"_s, u""_s},
        {u""_s, u"lost"_s, u"1"_s},
        {u"OTHER"_s, u"key"_s, u"lf only"_s},
        {u"Global"_s, u"Late"_s, u"found"_s},
        {u"Global"_s, u"Last"_s, u"no line end"_s},
        {u"Missing"_s, u"DBPath"_s, u""_s},
    };
    for (const auto& [section, key, value] : expected)
        EXPECT_EQ(read(section, key), value) << qPrintable(section + u'/' + key);
    EXPECT_EQ(m_system.ReadProfileString(u"GLOBAL"_s, u"DBPath"_s, path(u"missing.ini"_s)), u""_s);
    EXPECT_EQ(m_system.ReadProfileString(u"GLOBAL"_s, u"DBPath"_s, m_folder.path()), u""_s);
}

TEST_F(Ini, CutsAValueAt255) {
    const QString text = QString(254, u'x');
    put("[A]\nlong=" + QByteArray(300, 'x') + "\nfits=" + QByteArray(255, 'y') +
        "\npair=" + (text + u"\U0001F600"_s).toUtf8());
    EXPECT_EQ(read(u"A"_s, u"long"_s), QString(255, u'x'));
    EXPECT_EQ(read(u"A"_s, u"fits"_s), QString(255, u'y'));
    EXPECT_EQ(read(u"A"_s, u"pair"_s), text);
}

TEST_F(Ini, EncodingIsReadAndKept) {
    const struct {
        const char* name;
        QByteArray before, after;
    } cases[] = {
        {"Windows-1252",
         "[FIRMA]\r\nKopf1=B\xE4"
         "ckerei \x80\r\n",
         "[FIRMA]\r\nKopf1=B\xE4"
         "ckerei \x80\r\nKopf2=S\xFC\xDF\r\n"},
        {"UTF-8",
         "[FIRMA]\nKopf1=B\xC3\xA4"
         "ckerei \xE2\x82\xAC\n",
         "[FIRMA]\nKopf1=B\xC3\xA4"
         "ckerei \xE2\x82\xAC\nKopf2=S\xC3\xBC\xC3\x9F\n"},
        {"UTF-8 with mark",
         "\xEF\xBB\xBF[FIRMA]\nKopf1=B\xC3\xA4"
         "ckerei \xE2\x82\xAC",
         "\xEF\xBB\xBF[FIRMA]\nKopf1=B\xC3\xA4"
         "ckerei \xE2\x82\xAC\nKopf2=S\xC3\xBC\xC3\x9F\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        put(c.before);
        EXPECT_EQ(read(u"FIRMA"_s, u"Kopf1"_s), u"Bäckerei €"_s);
        write(u"FIRMA"_s, u"Kopf2"_s, u"Süß"_s);
        EXPECT_EQ(content(), c.after);
        EXPECT_EQ(read(u"FIRMA"_s, u"Kopf2"_s), u"Süß"_s);
    }
}

TEST_F(Ini, TextThatTheEncodingCannotHoldMovesTheFileToUtf8) {
    put("[FIRMA]\r\nKopf1=\xFC\r\n");
    write(u"FIRMA"_s, u"Kopf2"_s, u"Łódź"_s);
    EXPECT_EQ(read(u"FIRMA"_s, u"Kopf1"_s), u"ü"_s);
    EXPECT_EQ(read(u"FIRMA"_s, u"Kopf2"_s), u"Łódź"_s);
    // As Windows-1252 these two characters are the bytes of an "ü" in UTF-8.
    put("[FIRMA]\r\n");
    write(u"FIRMA"_s, u"Kopf1"_s, u"Ã¼"_s);
    EXPECT_EQ(read(u"FIRMA"_s, u"Kopf1"_s), u"Ã¼"_s);
    // UTF-16 stays what it is; one that is broken is neither read as rubbish nor overwritten.
    const QByteArray wide("\xFF\xFE[\0A\0]\0", 8);
    put(wide);
    write(u"A"_s, u"x"_s, u"Ł"_s);
    EXPECT_EQ(read(u"A"_s, u"x"_s), u"Ł"_s);
    EXPECT_TRUE(content().startsWith(wide) && content().endsWith(QByteArray("x\0=\0\x41\x01\r\0\n\0", 10)));
    const QByteArray twice = wide.first(2) + wide; // a mark behind that of the file is a character
    put(twice);
    write(u"B"_s, u"x"_s, u"1"_s);
    EXPECT_TRUE(content().startsWith(twice));
    for (const QByteArray& broken :
         {wide + "x", wide + QByteArray("\x00\xD8", 2), QByteArray("[A]\n\0", 5)}) {
        put(broken);
        EXPECT_EQ(read(u"A"_s, u"x"_s), u""_s);
        EXPECT_FALSE(m_system.ReadFault(path()).isEmpty());
        EXPECT_EQ(raised([&] { write(u"A"_s, u"x"_s, u"1"_s); }), 321);
        EXPECT_EQ(content(), broken);
    }
}

TEST_F(Ini, WriteLeavesEverythingElseAsItIs) {
    put("; oben\n\n[DRUCKER]\n  Kopies = 2   ; kein Kommentar\nDefault=0\n; gehört zu "
        "GLOBAL\n\n[GLOBAL]\r\nDBPath=x\r\n\n[LEER]\n");
    write(u"drucker"_s, u"KOPIES"_s, u"3"_s);
    write(u"DRUCKER"_s, u"AskSchlussText"_s, u"0"_s);
    write(u"GLOBAL"_s, u"SteuerText"_s, u"Ust"_s);
    write(u"LEER"_s, u"a"_s, u"b"_s);
    write(u"Neu"_s, u"Zeile"_s, u"eins\r\nDBPath=zwei\0drei"_s);
    EXPECT_EQ(
        content(),
        QByteArray("; oben\n\n[DRUCKER]\n  Kopies = 3\nDefault=0\nAskSchlussText=0\n; gehört zu GLOBAL\n\n"
                   "[GLOBAL]\r\nDBPath=x\r\nSteuerText=Ust\n\n[LEER]\na=b\n\n[Neu]\n"
                   "Zeile=eins DBPath=zwei drei\n"));
    EXPECT_EQ(read(u"GLOBAL"_s, u"DBPath"_s), u"x"_s);
}

TEST_F(Ini, CreatesFileAndSectionAndKeepsPermissions) {
    write(u"GLOBAL"_s, u"DBPath"_s, u"/daten"_s);
    write(u"DRUCKER"_s, u"Kopies"_s, u"1"_s);
    EXPECT_EQ(content(), QByteArray("[GLOBAL]\r\nDBPath=/daten\r\n\r\n[DRUCKER]\r\nKopies=1\r\n"));

    const auto rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    QFile::setPermissions(path(), rights);
    write(u"DRUCKER"_s, u"Kopies"_s, u"2"_s);
    EXPECT_EQ(QFile::permissions(path()) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther),
              QFile::ReadGroup);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList{u"konfig.ini"_s});
}

TEST_F(Ini, RefusesWhatItCannotKeep) {
    put("[A]\nx=1\n");
    const QByteArray before = content();
    EXPECT_EQ(raised([&] { write(u""_s, u"x"_s, u"1"_s); }), 5);
    EXPECT_EQ(raised([&] { write(u"A"_s, u" "_s, u"1"_s); }), 5);
    EXPECT_EQ(raised([&] { write(u"A"_s, u"a=b"_s, u"1"_s); }), 5);
    EXPECT_EQ(raised([&] { write(u"A"_s, u";a"_s, u"1"_s); }), 5);
    EXPECT_EQ(raised([&] { write(u"A"_s, u"[a"_s, u"1"_s); }), 5);
    EXPECT_EQ(raised([&] { write(u"A]\n[B"_s, u"x"_s, u"1"_s); }), 5);
    EXPECT_EQ(raised([&] { m_system.WriteProfileString(u"A"_s, u"x"_s, u"1"_s, path(u"no/such.ini"_s)); }),
              76);
    EXPECT_EQ(raised([&] { m_system.WriteProfileString(u"A"_s, u"x"_s, u"1"_s, m_folder.path()); }), 70);
    EXPECT_EQ(raised([&] { m_system.WriteProfileString(u"A"_s, u"x"_s, u"1"_s, u"/proc/konfig.ini"_s); }),
              70);
    EXPECT_EQ(content(), before);
}

TEST_F(Ini, WhatCannotBeWrittenHoldsUntilItCan) {
    const QString folder = path(u"till"_s), file = folder + u"/konfig.ini"_s;
    const auto read = [&](const QString& key) { return m_system.ReadProfileString(u"Service"_s, key, file); };
    m_system.KeepProfileStrings({{u"SERVICE"_s, u"Satz"_s, u"7"_s}, {u"SERVICE"_s, u"Frage"_s, u"1"_s}},
                                file);
    m_system.KeepProfileStrings({{u"SERVICE"_s, u"satz"_s, u"7,5"_s}}, file);
    EXPECT_EQ(read(u"SATZ"_s) + u'/' + read(u"Frage"_s), u"7,5/1"_s);
    EXPECT_EQ(CSystem().ReadProfileString(u"SERVICE"_s, u"Satz"_s, file), QString());
    EXPECT_TRUE(m_system.TakeKeepFault().contains(folder));
    EXPECT_EQ(m_system.TakeKeepFault(), QString()) << "told once";
    EXPECT_EQ(raised([&] { m_system.WriteProfileString(u"SERVICE"_s, u"Satz"_s, u"9"_s, file); }), 76);
    EXPECT_EQ(read(u"Satz"_s), u"7,5"_s);
    EXPECT_EQ(raised([&] { m_system.KeepProfileStrings({{u"A"_s, u"a=b"_s, u"1"_s}}, file); }), 5);

    QDir().mkpath(folder);
    m_system.KeepProfileStrings({{u"SERVICE"_s, u"Frage"_s, u"0"_s}}, file);
    EXPECT_EQ(CSystem().ReadProfileString(u"SERVICE"_s, u"Satz"_s, file), u"7,5"_s)
        << "what waited went along";
    m_system.WriteProfileString(u"SERVICE"_s, u"Satz"_s, u"19"_s, file);
    EXPECT_EQ(read(u"Satz"_s) + u'/' + read(u"Frage"_s), u"19/0"_s);
}

TEST_F(Ini, AReadSeesEveryChangeOfTheFile) {
    // Written twice within the resolution of the file's time, in the same length.
    for (int round = 0; round < 20; ++round) {
        const QByteArray value = QByteArray::number(round % 10);
        put("[GLOBAL]\n4711=" + value + "\n");
        ASSERT_EQ(read(u"GLOBAL"_s, u"4711"_s), QString::fromLatin1(value));
    }
    age();
    EXPECT_EQ(read(u"GLOBAL"_s, u"4711"_s), u"9"_s);
    EXPECT_EQ(read(u"GLOBAL"_s, u"4711"_s), u"9"_s);
    put("[GLOBAL]\n4711=x\n");
    EXPECT_EQ(read(u"GLOBAL"_s, u"4711"_s), u"x"_s);
    age();
    EXPECT_EQ(read(u"GLOBAL"_s, u"4711"_s), u"x"_s);
    QFile::remove(path());
    EXPECT_EQ(read(u"GLOBAL"_s, u"4711"_s), u""_s);
    put("[GLOBAL]\n4711=y\n");
    EXPECT_EQ(read(u"GLOBAL"_s, u"4711"_s), u"y"_s);
}

TEST_F(Ini, NonsenseIsNeitherACrashNorLost) {
    const QByteArray junk[] = {"",
                               "\n\n\r\r\n",
                               "[",
                               "]",
                               "[]\n=\n==\n[=]=\n",
                               "\r\r[a]\r",
                               "\xEF\xBB\xBF",
                               "\xEF\xBB\xBF\xFF\xFE=\xC3",
                               "a=\"\n[b]\nc=\"\"\n=",
                               QByteArray(100000, '[') + "\n" + QByteArray(100000, '=')};
    for (const QByteArray& bytes : junk) {
        put(bytes);
        write(u"Sektion"_s, u"Schlüssel"_s, u"Wert"_s);
        EXPECT_EQ(read(u"Sektion"_s, u"Schlüssel"_s), u"Wert"_s) << bytes.left(40).toHex().constData();
        EXPECT_TRUE(content().startsWith(bytes) || content().startsWith("\xEF\xBB\xBF" + bytes))
            << bytes.left(40).toHex().constData();
    }
}

TEST(CodePage, EveryByteGoesThereAndBack) {
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    EXPECT_EQ(ToWindows1252(FromWindows1252(all)), all);
    EXPECT_EQ(FromWindows1252("\x80\x8A\x9F\xE4"), u"€ŠŸä"_s);
    EXPECT_EQ(ToWindows1252(u"Łä\U0001F600"), QByteArray("?\xE4??"));
    EXPECT_FALSE(FitsWindows1252(u"Ł"));
    EXPECT_TRUE(FitsWindows1252(u"Müsli für 3,50 €"));
}
