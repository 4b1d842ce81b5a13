#include "Support.h"

#include <support/PostgresServer.h>

namespace {

/// A shop set up as docs/server.md tells: `kasse` of the test server owns it, `till` sells.
class ServerRightsTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!PostgresServer::available()) GTEST_SKIP() << "no server installed";
        m_server = std::make_unique<PostgresServer>();
        m_server->createDatabase(u"laden"_s);
        m_server->sql(
            u"laden"_s,
            u"CREATE ROLE till LOGIN PASSWORD 'geheim';REVOKE ALL ON DATABASE laden FROM PUBLIC;"
            "GRANT CONNECT ON DATABASE laden TO till;ALTER DEFAULT PRIVILEGES FOR ROLE kasse"
            " GRANT SELECT, INSERT, UPDATE, DELETE ON TABLES TO till;"
            "ALTER DEFAULT PRIVILEGES FOR ROLE kasse GRANT USAGE, SELECT, UPDATE ON SEQUENCES TO till"_s);
        Database::CreateDatabase(m_server->uri(u"laden"_s), {}, {}, schema::createTables)->Close();
    }
    [[nodiscard]] std::unique_ptr<Database> till() const {
        return Database::OpenDatabase(m_server->uri(u"laden"_s).replace(u"//kasse:"_s, u"//till:"_s));
    }

    std::unique_ptr<PostgresServer> m_server;
};

TEST_F(ServerRightsTest, ATillSellsAndChangesNoStructure) {
    const auto db = till();
    db->Execute(
        u"INSERT INTO Artikel (Nummer, Name, LagerAktiv, IstBestand) VALUES ('1', 'Apfel', True, 5)"_s);
    db->Execute(u"UPDATE Artikel SET IstBestand=IstBestand-1 WHERE LagerAktiv=-1 AND Nummer='1'"_s);
    const auto receipt = db->OpenRecordset(u"Rechnung"_s);
    receipt->AddNew();
    EXPECT_EQ(1, receipt->Long(u"RechnungID"));
    receipt->Set(u"Maschine", u"KASSE-1"_s);
    receipt->Update();
    EXPECT_EQ(1, countOf(*db, u"Rechnung"_s));
    db->Execute(u"DELETE FROM Artikel WHERE Name LIKE 'a*'"_s);
    EXPECT_EQ(0, countOf(*db, u"Artikel"_s));

    EXPECT_EQ(3112, errorOf([&] { db->Execute(u"DROP TABLE Artikel"_s); }));
    EXPECT_EQ(3112, errorOf([&] { db->Execute(u"CREATE TABLE Neu (N LONG)"_s); }));
    EXPECT_EQ(3112, errorOf([&] { db->Execute(u"ALTER TABLE Artikel ADD COLUMN Neu LONG"_s); }));
    EXPECT_EQ(0, countOf(*db, u"Artikel"_s));
}

TEST_F(ServerRightsTest, OldFunctionsAreRenewedByTheOwnerAlone) {
    m_server->sql(u"laden"_s,
                  u"UPDATE public.\"merivane$settings\" SET \"value\"='0' WHERE \"key\"='functions'"_s);
    try {
        till()->Close();
        FAIL() << "a till replaced the functions";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(3112, error.Number);
        EXPECT_TRUE(error.Description.contains(u"dem die Datenbank gehört"_s)) << error.what();
    }
    Database::OpenDatabase(m_server->uri(u"laden"_s))->Close();
    EXPECT_EQ(0, errorOf([&] { till()->Close(); }));
}

} // namespace
