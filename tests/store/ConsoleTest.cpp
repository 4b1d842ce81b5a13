#include "Support.h"

namespace {

struct Answer {
    int code;
    QString out, err;
};

Answer run(const QStringList& arguments, const QByteArray& input = {}) {
    QProcess process;
    process.start(QStringLiteral(MERIVANE_SQL), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished());
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

TEST_F(StoreTest, ConsoleReadsStatementsAndWritesTabbedRows) {
    const Answer answer =
        run({u":memory:"_s}, "CREATE TABLE T (A TEXT(20), B CURRENCY,\n C YESNO, D DATETIME, E DOUBLE);"
                             "INSERT INTO T VALUES ('a;\tb', -0.05, True, #1/2/2026#, 0.1)\n"
                             "\n"
                             "INSERT INTO T VALUES (NULL, 1234567.5, No, NULL, 1e100);\r\n"
                             "SELECT * FROM T;\n"
                             "SELECT Count(*) AS [n;m] FROM T");
    EXPECT_EQ(answer.err, u"");
    EXPECT_EQ(answer.code, 0);
    EXPECT_EQ(answer.out, u"A\tB\tC\tD\tE\n"
                          "a;\\tb\t-0.05\t-1\t2026-01-02 00:00:00\t0.1\n"
                          "\t1234567.5\t0\t\t1e+100\n"
                          "n;m\n2\n");
}

TEST_F(StoreTest, ConsoleTellsFaultsAndStops) {
    Answer answer = run({u":memory:"_s}, "CREATE TABLE T (A LONG);SELECT Nix FROM T;SELECT 1");
    EXPECT_EQ(answer.code, 1);
    EXPECT_EQ(answer.out, u"");
    EXPECT_TRUE(answer.err.startsWith(u"3061 an Stelle 8: "_s)) << answer.err.toStdString();
    answer = run({m_file, u"CREATE TABLE T (A LONG)"_s});
    if (TestStore::onServer()) {
        EXPECT_EQ(answer.code, 0) << "in an empty database the console makes itself a store";
        EXPECT_TRUE(answer.err.startsWith(u"Die Datenbank ist leer."_s));
        EXPECT_EQ(errorOf([&] { open(); }), 3011) << "and takes it along";
    } else {
        EXPECT_EQ(answer.code, 3);
        EXPECT_TRUE(answer.err.startsWith(u"3024: "_s));
    }
    EXPECT_EQ(run({}).code, 2);
    EXPECT_EQ(run({u"--unsinn"_s, u":memory:"_s}).code, 2);
    EXPECT_EQ(run({u"--translate"_s, u"unsinn"_s, u":memory:"_s, u"SELECT 1"_s}).code, 2);
    EXPECT_EQ(run({u"--help"_s}).code, 0);

    EXPECT_EQ(run({u"--create"_s, m_file, u"CREATE TABLE T (A LONG)"_s}).code, 0);
    EXPECT_EQ(run({u"--create"_s, m_file, u"INSERT INTO T VALUES (1)"_s}).code, 0) << "not made anew";
    EXPECT_EQ(run({m_file, u"SELECT A FROM T"_s}).out, u"A\n1\n");
    answer = run({u"--readonly"_s, m_file, u"DELETE FROM T"_s});
    EXPECT_TRUE(answer.err.startsWith(u"3027"_s));
    const QString engine = TestStore::onServer() ? u"postgres"_s : u"sqlite"_s;
    answer = run({u"--translate"_s, engine, m_file, u"DELETE FROM T"_s});
    EXPECT_TRUE(answer.out.startsWith(u"DELETE FROM"_s)) << answer.out.toStdString();
    EXPECT_EQ(run({m_file, u"SELECT A FROM T"_s}).out, u"A\n1\n") << "translating runs nothing";
}

TEST_F(StoreTest, ConsoleKnowsTheTillsPasswords) {
    for (const auto& password : {u"kestrel"_s, u"brsk-604917"_s, u"anders"_s}) {
        m_place.clear();
        Database::CreateDatabase(m_file, u";PWD="_s + password)->Close();
        EXPECT_EQ(run({m_file, u"SELECT 1"_s}).code, password == u"anders" ? 3 : 0);
        EXPECT_EQ(run({u"--password"_s, password, m_file, u"SELECT 1"_s}).code, 0);
    }
}

TEST_F(StoreTest, ConsoleAnswersJsonLineByLine) {
    OtherTill console(u":memory:"_s);
    EXPECT_EQ(
        console.ask(u"CREATE TABLE T (A TEXT(20), B CURRENCY, C YESNO, D DATETIME)"_s).value(u"affected"_s),
        0);
    EXPECT_EQ(console
                  .ask(u"INSERT INTO T VALUES ('ä \"x\"\n\u0001\U0001F600', 12345678901.2345, Yes, "
                       "#11/22/2026 13:14:15#)"_s)
                  .value(u"affected"_s),
              1);
    console.say(u"SELECT T.*, NULL AS N FROM T"_s);
    EXPECT_STREQ(console.hear().constData(),
                 "{\"columns\":[\"A\",\"B\",\"C\",\"D\",\"N\"],"
                 "\"types\":[\"TEXT\",\"CURRENCY\",\"YESNO\",\"DATETIME\",\"VARIANT\"],"
                 "\"rows\":[[\"ä \\\"x\\\"\\n\\u0001\\ud83d\\ude00\",12345678901.2345,-1,"
                 "\"2026-11-22 13:14:15\",null]]}");
    const QJsonObject error = console.ask(u"SELECT Nix FROM T"_s);
    EXPECT_EQ(error.value(u"error"_s), 3061);
    EXPECT_EQ(error.value(u"place"_s), 7);
    console.process().write("kein json\n{}\n[1]\n\"SELECT 1\n");
    console.process().write(QByteArray("\"SELECT\0 1\"\n\0\n\0\"SELECT 1\"\n\"SELECT 1\"\0\n", 38));
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(console.hear().startsWith(i == 4 ? "{\"error\":3075," : "{\"error\":5,")) << i;
    EXPECT_EQ(console.ask(u"SELECT 1+1"_s).value(u"rows"_s).toArray().at(0).toArray().at(0), 2);
}
