#include <access/Personal.h>
#include <session/Bilder.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <support/ScriptedDialogs.h>
#include <support/TempShop.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class PersonalTest : public testing::Test {
  protected:
    PersonalTest() {
        m_lena = shop.person(u"Lena"_s, u"Brandt"_s, u"0012"_s,
                             {{u"Ort"_s, u"Erlental"_s}, {u"EMail"_s, u"lena@laden.example"_s}});
        m_jonas = shop.person(u"Jonas"_s, u"Weber"_s, u"77"_s,
                              {{u"Telefon"_s, u"0123 45"_s}, {u"R_Personal"_s, false}});
        m_mia = shop.person(u"Mia"_s, u"Albers"_s, u"3"_s, {{u"Gesperrt"_s, true}});
    }
    [[nodiscard]] QStringList hits(const QString& text) const {
        const sql::Query query = SearchPersonal(text);
        QStringList names;
        const auto rs = gDB->OpenRecordset(query.select + u" ORDER BY "_s + query.order + u';');
        for (; !rs->Eof(); rs->MoveNext())
            names << rs->Text(u"Name");
        return names;
    }
    void expectQuestion(MsgAnswer answer) {
        dialogs.expectMsgBox(
            u"Möchten Sie diesen Mitarbeiter wirklich löschen?\n\nACHTUNG: Diese Aktion kann "
            "unerwünschte Auswirkungen bei den Berichten haben.\n\nWenn Sie sich nicht sicher sind, "
            "deaktivieren Sie diesen Mitarbeiter."_s,
            MsgIcon::Question, answer);
    }
    TempShop shop;
    ScriptedDialogs dialogs;
    int m_lena = 0, m_jonas = 0, m_mia = 0;
};

TEST_F(PersonalTest, TheSearchLooksIntoAllTextsAndIsNoWayIntoTheStore) {
    EXPECT_EQ(QStringList{u"Brandt"_s}, hits(u"erlen"_s));
    EXPECT_EQ(QStringList{u"Brandt"_s}, hits(u"@laden"_s));
    EXPECT_EQ(QStringList{u"Weber"_s}, hits(u"3 45"_s));
    EXPECT_EQ((QStringList{u"Albers"_s, u"Brandt"_s, u"Weber"_s}), hits({})) << "by name";
    EXPECT_EQ(QStringList(), hits(u"0012"_s)) << "a PIN is not looked for";
    for (const QString& strange : {u"x' OR '1'='1"_s, u"'"_s, u"O'Hara"_s}) {
        try {
            std::ignore = hits(strange);
            FAIL() << strange.toStdString();
        } catch (const RuntimeError& error) {
            EXPECT_EQ(3075, error.Number);
        }
    }
}

TEST_F(PersonalTest, APersonIsWrittenWholeAndALossIsTold) {
    const auto table = gDB->OpenRecordset(u"Personal"_s);
    PersonalRecord person;
    ASSERT_TRUE(FindPersonal(*table, m_jonas, person));
    EXPECT_EQ(u"Jonas"_s, person.Vorname);
    EXPECT_EQ(u"77"_s, person.PIN);
    EXPECT_FALSE(person.R_Personal);
    person.PIN = u"007"_s;
    person.R_Personal = true;
    EXPECT_EQ(m_jonas, WritePersonal(*table, person));
    EXPECT_EQ(QStringList{u"007|Wahr|0123 45"_s},
              shop.rows(u"SELECT PIN, R_Personal, Telefon FROM Personal WHERE ID=%1"_s.arg(m_jonas)));
    PersonalRecord fresh;
    fresh.Name = u"Neu"_s;
    const int id = WritePersonal(*table, fresh);
    EXPECT_GT(id, m_mia);
    EXPECT_EQ(1, shop.count(u"SELECT ID FROM Personal WHERE Name='Neu' AND ID=%1"_s.arg(id)));

    gDB->Execute(u"DELETE FROM Personal WHERE ID=%1"_s.arg(m_jonas));
    const QString gone =
        u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich wurden diese "
        "durch einen anderen Benutzer gelöscht.\nDas System aktualisiert jetzt Ihre Ansicht..."_s;
    dialogs.expectMsgBox(gone).expectMsgBox(gone);
    EXPECT_FALSE(FindPersonal(*table, m_jonas, person));
    EXPECT_EQ(0, WritePersonal(*table, person));
    EXPECT_EQ(3, shop.count(u"Personal"_s)) << "a person that was deleted does not come back by itself";
}

TEST_F(PersonalTest, NobodyIsDeletedWhileOneAloneMayMaintainTheStaff) {
    gDB->Execute(u"UPDATE Personal SET R_Personal=0 WHERE ID=%1"_s.arg(m_mia));
    dialogs.expectMsgBox(
        u"ACHTUNG: Dies ist der letzte Mitarbeiter der Zugriff auf die Mitarbeiterverwaltung hat. Der "
        "Zugriff wird verweigert."_s);
    EXPECT_FALSE(DeletePersonal(m_jonas)) << "also who has no right at all";
    gDB->Execute(u"UPDATE Personal SET R_Personal=-1 WHERE ID=%1"_s.arg(m_mia));
    expectQuestion(MsgAnswer::No);
    EXPECT_FALSE(DeletePersonal(m_jonas));

    shop.insert(u"Rechnung"_s, {{u"PersonalNummer"_s, m_jonas}});
    expectQuestion(MsgAnswer::Yes);
    dialogs.expectMsgBox(
        u"Sie können diesen Mitarbeiter nicht löschen, da dessen Konto bereits bebucht ist. Setzen Sie "
        "diesen Mitarbeiter auf gesperrt."_s);
    EXPECT_FALSE(DeletePersonal(m_jonas));
    EXPECT_EQ(3, shop.count(u"Personal"_s));

    QFile picture(BildDatei(Bild::Person, QString::number(m_mia)));
    ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
    picture.close();
    expectQuestion(MsgAnswer::Yes);
    EXPECT_TRUE(DeletePersonal(m_mia));
    EXPECT_FALSE(picture.exists());
    EXPECT_EQ(2, shop.count(u"Personal"_s));
}

TEST_F(PersonalTest, TheExportIsWholeOrNotAtAll) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"team.csv"_s);
    const auto read = [&] {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("none");
    };
    gDB->Execute(u"UPDATE Personal SET Vorname='Mi\"a ü' WHERE ID=%1"_s.arg(m_mia));
    gDB->Execute(u"DELETE FROM Personal WHERE ID=%1"_s.arg(m_jonas));
    int counted = 0;
    EXPECT_TRUE(ExportPersonal(file, [&] { return ++counted > 0; }));
    EXPECT_EQ(CountPersonal(), counted);
    EXPECT_EQ(
        QByteArray(
            "\"ID\";\"Name\";\"Vorname\";\"Strasse\";\"PLZ\";\"Ort\";\"Telefon\";\"Mobil\";\"EMail\";\"PIN\";"
            "\"Gesperrt\";\"R_Artikel\";\"R_Kunden\";\"R_Personal\";\"R_Berichte\";\"R_Rabatt\";\"R_Setup\";"
            "\"R_KassenAbschluss\";\"R_RechnungEdit\";\"R_SystemExit\"\r\n"
            "\"3\";\"Albers\";\"Mi\"\"a "
            "\xFC\";\"\";\"\";\"\";\"\";\"\";\"\";\"3\";\"-1\";\"-1\";\"-1\";\"-1\";\"-1\";"
            "\"-1\";\"-1\";\"-1\";\"-1\";\"-1\"\r\n"
            "\"1\";\"Brandt\";\"Lena\";\"\";\"\";\"Erlental\";\"\";\"\";\"lena@laden.example\";\"0012\";\"0\";\"-1\";"
            "\"-1\";\"-1\";\"-1\";\"-1\";\"-1\";\"-1\";\"-1\";\"-1\"\r\n"),
        read());
    const QByteArray before = read();
    EXPECT_FALSE(ExportPersonal(file, [] { return false; }));
    EXPECT_EQ(before, read()) << "a stopped export leaves the old file";
    EXPECT_THROW(std::ignore = ExportPersonal(folder.filePath(u"gibtsnicht/team.csv"_s), [] { return true; }),
                 RuntimeError);
    EXPECT_THROW(std::ignore = ExportPersonal(folder.path(), [] { return true; }), RuntimeError);
}

} // namespace
