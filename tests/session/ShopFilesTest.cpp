#include "StartUpTest.h"

#include <session/Error.h>
#include <session/ShopFiles.h>
#include <session/StoreRescue.h>
#include <store/Recordset.h>
#include <store/StoreLook.h>
#include <text/CodePage.h>

#include <QElapsedTimer>
#include <QScopedValueRollback>

#include <sys/stat.h>
#include <unistd.h>

// Files that a shop wrote by hand, with whatever program it has, and files that somebody took away.

namespace {

/// Without the rights of the administrator, whom no right of a file binds.
class Person {
  public:
    Person() { EXPECT_EQ(geteuid() == 0 ? seteuid(65534) : 0, 0); }
    ~Person() { EXPECT_EQ(seteuid(getuid()), 0); }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;
};

class ShopFiles : public StartUpTest {
  protected:
    void SetUp() override {
        makeStore(u"kestrel"_s);
        chmod(QFile::encodeName(m_folder.path()).constData(), 0777);
    }
    [[nodiscard]] QString konfig() const { return home() + u"/konfig.ini"_s; }
    [[nodiscard]] QString articles() const { return shop() + u"/artikel.ini"_s; }
    [[nodiscard]] QString cards() const { return shop() + u"/karten.txt"_s; }
    [[nodiscard]] static bool isEmpties(const QString& number) {
        return gSystem->ReadProfileString(u"GLOBAL"_s, number, gDBPath + u"artikel.ini"_s) == u"1"_s;
    }
    void expectUnreadable(const QString& why) {
        m_dialogs.expectMsgBox(u"Die Einstellungen dieser Kasse sind nicht zu lesen: "_s + konfig() +
                                   u"\n\n"_s + why + u"...*"_s,
                               MsgIcon::Exclamation);
        EXPECT_EQ(start(), StartResult::SettingsUnreadable);
        EXPECT_EQ(m_calls, QStringList()) << "before anything is opened";
        m_dialogs.verify();
    }
};

} // namespace

TEST_F(ShopFiles, SettingsOfAnyEditorAreReadAndKeptInTheirEncoding) {
    const QString text =
        u"[GLOBAL]\r\nDBPath="_s + shop() + u"\r\nWaehrungsSymbol=€\r\n[FIRMA]\r\nKopf1=Bäckerei Łódź\r\n"_s;
    for (const bool big : {false, true}) {
        put(konfig(), ToUtf16File(text, big));
        ASSERT_EQ(start(), StartResult::Running);
        EXPECT_EQ(gWaehrungsSymbol + gKopf1, u"€Bäckerei Łódź"_s);
        const QByteArray after = content(konfig());
        EXPECT_EQ(after.left(2), big ? "\xFE\xFF" : "\xFF\xFE");
        EXPECT_TRUE(FromFileBytes(after).startsWith(text.left(20)) &&
                    FromFileBytes(after).contains(u"SteuerText=Ust\r\n"_s))
            << qPrintable(FromFileBytes(after));
    }
    put(konfig(), QString(text).replace(u"\r\n"_s, u"\r"_s).toUtf8());
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(gWaehrungsSymbol + gKopf1, u"€Bäckerei Łódź"_s);
    EXPECT_TRUE(content(konfig()).contains("\rSteuerText=Ust\r") && !content(konfig()).contains('\n'));
}

TEST_F(ShopFiles, SettingsThatCannotBeReadAreToldByNameAndNotAsAMissingPrinter) {
    m_printers.list.clear(); // the PDF printer stands in the file, too
    for (const QByteArray& content : {QByteArray("\x7F"
                                                 "ELF\0\0\x01",
                                                 7),
                                      QByteArray("[GLOBAL]\n\0\0\0", 12), QByteArray("[\0G\0", 4)}) {
        put(konfig(), content);
        expectUnreadable(u"Die Datei ist keine Textdatei."_s);
        EXPECT_EQ(this->content(konfig()), content) << "it stays as it is";
    }
    put(konfig(), QByteArray("\xFF\xFE[\0G", 5));
    expectUnreadable(u"Die Datei ist beschädigt: Ihr Text (UTF-16) ist nicht zu lesen."_s);
    put(konfig(), "[GLOBAL]\n");
    chmod(QFile::encodeName(konfig()).constData(), 0);
    {
        const Person person;
        expectUnreadable(u"Das Recht, sie zu lesen, fehlt."_s);
    }
    QFile::remove(konfig());
    QDir().mkdir(konfig());
    expectUnreadable(u"Unter diesem Namen steht keine Datei."_s);
}

TEST_F(ShopFiles, TheArticlesThatComeBackAreReadOrTold) {
    put(articles(), ToUtf16File(u"[GLOBAL]\r\n911=1\r\n", false));
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_TRUE(isEmpties(u"911"_s));

    put(articles(), QByteArray("[GLOBAL]\n911=1\n\0", 16));
    m_dialogs.expectMsgBox(u"Diese Dateien des Geschäfts kann die Kasse nicht lesen, wie sie sind:\n\n"_s +
                               articles() + u": Die Datei ist keine Textdatei...*"_s,
                           MsgIcon::Exclamation);
    ASSERT_EQ(start(), StartResult::Running);
    m_dialogs.verify();

    // Taken away: told at each start until somebody says that it was meant so.
    QFile::remove(articles());
    const QString missing =
        u"Die Datei "_s + articles() + u" war beim letzten Start da und fehlt jetzt....*"_s;
    for (const MsgAnswer answer : {MsgAnswer::No, MsgAnswer::Yes}) {
        m_dialogs.expectMsgBox(missing, MsgIcon::Exclamation, answer);
        ASSERT_EQ(start(), StartResult::Running);
        m_dialogs.verify();
    }
    ASSERT_EQ(start(), StartResult::Running) << "nothing is missed any more";
    put(articles(), "[GLOBAL]\n911=1\n");
    ASSERT_EQ(start(), StartResult::Running);
    // Another shop's folder never had one.
    gDB.reset();
    QDir().rename(shop(), m_folder.path() + u"/umgezogen"_s);
    QFile::remove(m_folder.path() + u"/umgezogen/artikel.ini"_s);
    put(konfig(), "[GLOBAL]\nDBPath=" + QFile::encodeName(m_folder.path()) + "/umgezogen\n");
    ASSERT_EQ(start(), StartResult::Running);
}

TEST_F(ShopFiles, NamesOfCardsAreCutAndAHugeFileCostsNothing) {
    gDBPath = shop() + u'/';
    put(cards(), QByteArray(300, 'x') + "\r\n\r\n  girocard  \r" + QByteArray("Ma\xC3\xABstro\n"));
    EXPECT_EQ(ReadKarten(), (QStringList{QString(LongestKarte, u'x'), u"girocard"_s, u"Maëstro"_s}));
    put(cards(), ToUtf16File(u"VISA\r\nKärtchen\r\n", true));
    EXPECT_EQ(ReadKarten(), (QStringList{u"VISA"_s, u"Kärtchen"_s}));
    QFile::remove(cards());
    EXPECT_THROW(std::ignore = ReadKarten(), RuntimeError);

    put(cards(), QByteArray("Kärtchen\n").repeated(1'200'000)); // 12 MB
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(ReadKarten(), QStringList(MostKarten, u"Kärtchen"_s));
    EXPECT_LT(clock.elapsed(), 200);
    m_dialogs.expectMsgBox(u"Diese Dateien des Geschäfts kann...*"_s, MsgIcon::Exclamation);
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_TRUE(m_dialogs.lastMessage.contains(u"karten.txt: Sie ist zu groß"_s));
    put(cards(), QByteArray(12'000'000, 'x'));
    EXPECT_LE(ReadKarten().size(), 1);
}

TEST_F(ShopFiles, AFolderThatCannotBeReadIsToldBeforeTheSettingsOpen) {
    ASSERT_EQ(start(), StartResult::Running);
    gDB.reset();
    const QByteArray all = "chmod -R a+rwX '" + QFile::encodeName(m_folder.path()) + '\'';
    ASSERT_EQ(std::system(all.constData()), 0);
    for (const QString& closed : {shop(), m_folder.path() + u"/laden"_s}) {
        QDir().mkpath(closed + u"/daten"_s);
        put(konfig(),
            "[GLOBAL]\nDBPath=" + QFile::encodeName(closed == shop() ? shop() : closed + u"/daten"_s) + '\n');
        chmod(QFile::encodeName(konfig()).constData(), 0666);
        chmod(QFile::encodeName(closed).constData(), 0);
        m_dialogs.expectMsgBox(u"Der Datenordner ist nicht zu lesen, das Recht dazu fehlt: ...*"_s,
                               MsgIcon::Exclamation);
        {
            const Person person;
            EXPECT_EQ(start(), StartResult::SetupCancelled);
        }
        chmod(QFile::encodeName(closed).constData(), 0777);
        m_dialogs.verify();
        EXPECT_EQ(m_calls.last(), u"setup"_s);
    }
}

TEST_F(ShopFiles, ATruncatedStoreIsToldAsDamaged) {
    put(storePath(), content(storePath()).left(50));
    m_dialogs.expectError(3049);
    EXPECT_EQ(start(), StartResult::Failed);
    EXPECT_TRUE(m_dialogs.lastMessage.contains(u"ist beschädigt"_s));
}

TEST_F(ShopFiles, AStoreThatWasTakenAwayIsToldAndItsCopyOffered) {
    ASSERT_EQ(start(), StartResult::Running);
    const QScopedValueRollback lookAlways(store::LookInterval, std::chrono::milliseconds{});
    gDB->Execute(u"INSERT INTO Artikel (Nummer, Name, SteuerSatz) VALUES ('1', 'Tee', 7);"_s);
    ASSERT_TRUE(QFile::remove(storePath()));
    const auto sell = [&] {
        try {
            gDB->Execute(u"UPDATE Artikel SET Name='Kaffee';"_s);
            ADD_FAILURE() << "written into a file without a name";
        } catch (const RuntimeError& error) {
            ShowProgrammFehler(error, u"frmKasse"_s);
        }
    };
    const QString question = u"Die Datei der Datenbank wurde gelöscht oder ersetzt....*"_s,
                  title = u"Kopie der Datenbank sichern"_s, copy = shop() + u"/gerettet.mdb"_s;
    m_dialogs.expectError(store::StoreGone).expectMsgBox(question, MsgIcon::Question, MsgAnswer::No);
    sell();
    m_dialogs.verify();
    m_dialogs.expectError(store::StoreGone)
        .expectMsgBox(question, MsgIcon::Question, MsgAnswer::Yes)
        .expectFile(title, m_folder.path() + u"/nirgends/kopie.mdb"_s)
        .expectMsgBox(u"Die Kopie ist nicht entstanden: ...*"_s, MsgIcon::Exclamation)
        .expectMsgBox(question, MsgIcon::Question, MsgAnswer::Yes)
        .expectFile(title, copy)
        .expectMsgBox(u"Die Kopie ist vollständig: %1...*"_s.arg(copy));
    sell();
    m_dialogs.verify();
    EXPECT_TRUE(m_dialogs.lastFile.save &&
                m_dialogs.lastFile.name.startsWith(shop() + u"/Merivane-Kopie-"_s));
    m_dialogs.expectError(store::StoreGone); // the copy lies safe
    sell();
    gDB.reset();
    ASSERT_TRUE(QFile::rename(copy, storePath()));
    ASSERT_EQ(start(), StartResult::Running);
    EXPECT_EQ(gDB->OpenRecordset(u"SELECT Name FROM Artikel;"_s)->Text(u"Name"), u"Tee"_s);
}
