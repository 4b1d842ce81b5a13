#include <access/KassenStart.h>
#include <access/Login.h>
#include <session/Globals.h>
#include <session/gUser.h>
#include <support/ScriptedDialogs.h>
#include <support/TempShop.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString blocked =
    u"Das System konnte Sie nicht anmelden, da Ihr Konto im Moment gesperrt ist. Wenden Sie sich "
    "an den dafür zuständigen Mitarbeiter."_s;

QStringList texts(const std::vector<LoginEntry>& entries) {
    QStringList list;
    for (const LoginEntry& e : entries)
        list << e.Key + u' ' + e.Text;
    return list;
}

class LoginTest : public testing::Test {
  protected:
    LoginTest() {
        m_lena =
            shop.person(u"Lena"_s, u"Brandt"_s, u"0012"_s, {{u"Ort"_s, u"Ulm"_s}, {u"R_Setup"_s, false}});
        m_jonas = shop.person(u"Jonas"_s, u"Weber"_s, u"7"_s, {{u"Gesperrt"_s, true}});
    }
    static QString key(int id) { return u"ID"_s + QString::number(id); }
    TempShop shop;
    ScriptedDialogs dialogs;
    int m_lena = 0, m_jonas = 0;
};

TEST_F(LoginTest, ListsActivePeopleOnly) {
    EXPECT_EQ(QStringList{key(m_lena) + u" Lena Brandt"_s}, texts(LoadActiveUsers()));
}

TEST_F(LoginTest, ThePinIsTextWithItsZeros) {
    for (const QString& wrong : {u"12"_s, QString(), u"0012 "_s, u"x' OR '1'='1"_s}) {
        dialogs.expectMsgBox(u"Sie haben eine ungültige PIN eingegeben."_s, MsgIcon::Critical);
        EXPECT_EQ(LoginResult::WrongPin, Anmelden(key(m_lena), wrong));
    }
    EXPECT_EQ(LoginResult::Done, Anmelden(key(m_lena), u"0012"_s));
    EXPECT_EQ(m_lena, gUser.ID);
    EXPECT_EQ(u"Ulm"_s, gUser.Ort);
    EXPECT_FALSE(gUser.R_Setup);
    EXPECT_TRUE(gUser.R_Rabatt);
}

TEST_F(LoginTest, PeopleBlockedOrDeletedAfterTheListWasFilledAreRefused) {
    shop.db().Execute(u"UPDATE Personal SET PIN='1' WHERE ID="_s + QString::number(m_lena));
    EXPECT_EQ(LoginResult::Done, Anmelden(key(m_lena), u"1"_s)); // what the row holds now
    shop.db().Execute(u"UPDATE Personal SET Gesperrt=-1 WHERE ID="_s + QString::number(m_lena));
    dialogs.expectMsgBox(blocked, MsgIcon::Critical);
    EXPECT_EQ(LoginResult::Blocked, Anmelden(key(m_lena), u"1"_s));
    shop.db().Execute(u"DELETE FROM Personal WHERE ID="_s + QString::number(m_lena));
    dialogs.expectMsgBox(
        u"Die angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich wurden diese durch "
        "einen anderen Benutzer gelöscht.\n\nDas System aktualisiert jetzt Ihre Ansicht."_s,
        MsgIcon::Information);
    EXPECT_EQ(LoginResult::NotFound, Anmelden(key(m_lena), u"1"_s));
    EXPECT_TRUE(LoadActiveUsers().empty());
    EXPECT_THROW(Anmelden(QString(), u"1"_s), RuntimeError);
}

TEST_F(LoginTest, AtTheRegisterOnlyASuccessChangesThePerson) {
    gUser.ID = 99;
    gKassenUser.ID = 5;
    gKassenUser.Result = 1;
    dialogs.expectMsgBox(blocked, MsgIcon::Critical);
    EXPECT_EQ(LoginResult::Blocked, KassenAnmelden(key(m_jonas), u"7"_s));
    EXPECT_EQ(0, gKassenUser.Result);
    gKassenUser.Result = 1;
    dialogs.expectMsgBox(u"Sie haben eine falsche PIN eingeben."_s, MsgIcon::Critical);
    EXPECT_EQ(LoginResult::WrongPin, KassenAnmelden(key(m_lena), u"12"_s));
    EXPECT_EQ(0, gKassenUser.Result);
    EXPECT_EQ(5, gKassenUser.ID);
    EXPECT_EQ(LoginResult::Done, KassenAnmelden(key(m_lena), u"0012"_s));
    EXPECT_EQ(1, gKassenUser.Result);
    EXPECT_EQ(m_lena, gKassenUser.ID);
    EXPECT_FALSE(gKassenUser.R_Setup);
    EXPECT_EQ(99, gUser.ID); // who uses the shell stays
    dialogs.expectMsgBox(
        u"Die von Ihnen angeforderten Daten konnten nicht gefunden werden. Wahrscheinlich wurden "
        "diese durch einen anderen Benutzer gelöscht.\n\nDas System aktualisiert jetzt Ihre Ansicht."_s);
    EXPECT_EQ(LoginResult::NotFound, KassenAnmelden(u"ID4711"_s, u"0012"_s));
}

TEST_F(LoginTest, TheWayToTheRegisterCopiesThePersonAndAsksForTheChangeOnce) {
    Anmelden(key(m_lena), u"0012"_s);
    gKassenUser.Result = 1;
    int asked = 0;
    const auto ask = [&] { gKassenBestand = Currency::fromDouble(50.0 + ++asked); };

    PrepareStartKasse(ask); // not asked for by the settings
    EXPECT_EQ(m_lena, gKassenUser.ID);
    EXPECT_EQ(0, gKassenUser.Result);
    EXPECT_FALSE(gKassenUser.R_Setup);
    EXPECT_TRUE(gKassenUser.R_KassenAbschluss);
    EXPECT_EQ(0, shop.count(u"KassenBestand"_s));

    gAbfrageKassenBestand = true;
    PrepareStartKasse(ask);
    EXPECT_EQ(QStringList{u"KASSE-1|51"_s}, shop.rows(u"SELECT Maschine, Bestand FROM KassenBestand"_s));
    gKassenBestand = {};
    EXPECT_TRUE(PrepareOpenKasse(ask)); // the row answers from now on
    EXPECT_EQ(1, asked);
    EXPECT_EQ(Currency::fromInteger(51), gKassenBestand);

    gUser.Gesperrt = true;
    dialogs.expectMsgBox(
        u"Ihr Konto ist im Moment gesperrt. Wenden Sie sich an den dafür zuständigen Mitarbeiter."_s);
    EXPECT_FALSE(PrepareOpenKasse(ask));
}

} // namespace
