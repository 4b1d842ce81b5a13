#include <session/Globals.h>
#include <support/PostgresServer.h>
#include <support/TempShop.h>
#include <text/Convert.h>

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSet>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::StringLiterals;

// Several tills sell from one store at the same time. Afterwards the books must agree with what the cashiers
// saw. MERIVANE_SELL_SECONDS tells for how long; a release is worth a minute.

namespace {

constexpr int tills = 4, articles = 10, stock = 100'000;

/// One till in a process of its own.
struct Till {
    QString name;
    QProcess process;
    // What its cashier saw.
    QMap<int, std::pair<QString, int>> open; ///< line -> article, quantity
    QMap<int, Currency> receipts;
    QMap<QString, int> sold;
};

class ManyTills : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        if (onServer()) {
            if (!PostgresServer::available()) GTEST_SKIP() << "no server installed";
            m_server = std::make_unique<PostgresServer>();
            m_server->createDatabase(u"laden"_s);
        }
        shop = std::make_unique<TempShop>(onServer() ? m_server->uri(u"laden"_s) : QString());
        QFile cards(shop->folder() + u"karten.txt"_s);
        ASSERT_TRUE(cards.open(QIODevice::WriteOnly));
        for (int i = 0; i < articles; ++i)
            shop->article(u"A%1"_s.arg(i), u"Artikel"_s, 0.99 + i,
                          {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, stock}});
    }
    [[nodiscard]] static bool onServer() { return qstrcmp(GetParam(), "Server") == 0; }

    void start(Till& till, double seconds) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"MERIVANE_MASCHINE"_s, till.name);
        till.process.setProcessEnvironment(environment);
        till.process.start(QStringLiteral(SELL_TOGETHER),
                           {shop->folder().chopped(1), shop->storePath(), QString::number(seconds)});
        ASSERT_TRUE(till.process.waitForReadyRead(30'000)) << till.process.readAllStandardError().constData();
        ASSERT_EQ(till.process.readLine(), "ready\n");
    }
    void listen(Till& till) {
        for (const QByteArray& line : till.process.readAllStandardOutput().trimmed().split('\n')) {
            const QStringList said = QString::fromUtf8(line).split(u' ');
            const int id = said.value(1).toInt();
            if (said[0] == u'+') {
                EXPECT_FALSE(m_lines.contains(id)) << "line number given twice: " << id;
                m_lines.insert(id);
                till.open[id] = {said.value(2), said.value(3).toInt()};
            } else if (said[0] == u'-') {
                till.open.remove(id);
            } else if (said[0] == u'=') {
                EXPECT_FALSE(m_receipts.contains(id)) << "receipt number given twice: " << id;
                m_receipts.insert(id);
                till.receipts[id] = CCur(Value(said.value(2)));
                for (const auto& [article, quantity] : std::as_const(till.open))
                    till.sold[article] += quantity;
                till.open.clear();
            }
        }
    }
    /// The books of one till.
    void audit(const Till& till) const {
        const QString mine = u" WHERE Maschine='%1'"_s.arg(till.name);
        QStringList open;
        for (auto line = till.open.begin(); line != till.open.end(); ++line)
            open << u"%1|%2|%3"_s.arg(line.key()).arg(line->first).arg(line->second);
        EXPECT_EQ(shop->rows(u"SELECT ID, ArtikelNummer, Buchungs_Menge FROM Bestellung"_s + mine +
                             u" ORDER BY ID"_s),
                  open);
        QStringList receipts;
        Currency closing;
        for (auto receipt = till.receipts.begin(); receipt != till.receipts.end(); ++receipt) {
            receipts << u"%1|%2"_s.arg(receipt.key()).arg(CStr(Value(*receipt)));
            closing += *receipt;
        }
        EXPECT_EQ(shop->rows(u"SELECT RechnungID, Betrag_Gesamt FROM Rechnung"_s + mine +
                             u" ORDER BY RechnungID"_s),
                  receipts);
        const auto sum = [&](const QString& what, const QString& table, const QString& more = {}) {
            return CCur(shop->value(u"SELECT SUM("_s + what + u") FROM "_s + table + mine + more));
        };
        EXPECT_EQ(sum(u"Betrag_Gesamt"_s, u"Rechnung"_s, u" AND Abschluss=0"_s), closing)
            << "what the closing will count";
        EXPECT_EQ(sum(u"VKPreis_Brutto * Buchungs_Menge"_s, u"RechnungsDetail"_s), closing);
        EXPECT_GT(receipts.size(), 1) << qPrintable(till.name);
    }

    std::unique_ptr<PostgresServer> m_server;
    std::unique_ptr<TempShop> shop;
    QSet<int> m_lines, m_receipts;
};

TEST_P(ManyTills, NothingIsLostDoubledOrMixedUp) {
    bool told = false;
    const double seconds = qEnvironmentVariableIntValue("MERIVANE_SELL_SECONDS", &told);
    std::array<Till, tills> all;
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i].name = u"KASSE-%1"_s.arg(i + 1);
        ASSERT_NO_FATAL_FAILURE(start(all[i], told ? seconds : 8));
    }
    for (Till& till : all) {
        till.process.write("go\n");
        ASSERT_TRUE(till.process.waitForBytesWritten());
    }
    // All of them are listened to all the time: a till whose words nobody takes stands still.
    const auto selling = [](const Till& till) { return till.process.state() != QProcess::NotRunning; };
    while (std::any_of(all.begin(), all.end(), selling))
        for (Till& till : all)
            till.process.waitForFinished(20);
    QMap<QString, int> sold;
    for (Till& till : all) {
        ASSERT_EQ(till.process.exitCode(), 0) << till.process.readAllStandardError().constData();
        listen(till);
        for (auto article = till.sold.begin(); article != till.sold.end(); ++article)
            sold[article.key()] += *article;
    }
    shop->reopen();
    for (const Till& till : all) {
        SCOPED_TRACE(qPrintable(till.name));
        audit(till);
    }
    for (int i = 0; i < articles; ++i) {
        const QString article = u"A%1"_s.arg(i);
        EXPECT_EQ(shop->value(u"SELECT IstBestand FROM Artikel WHERE Nummer='%1'"_s.arg(article)).toInteger(),
                  stock - sold[article])
            << qPrintable(article);
    }
    EXPECT_EQ(shop->count(u"Rechnung"_s), m_receipts.size());
    std::printf("%d receipts, %d lines\n", int(m_receipts.size()), int(m_lines.size()));
}

INSTANTIATE_TEST_SUITE_P(Stores, ManyTills, testing::Values("File", "Server"),
                         [](const auto& of) { return of.param; });

} // namespace
