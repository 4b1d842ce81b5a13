#include "Till.h"

#include <support/PostgresProxy.h>
#include <support/PostgresServer.h>

#include <QDir>
#include <QTemporaryDir>

#include <libpq-fe.h>

// What a scan and a booking cost on a server, as ratios to the bare client library asking the same questions
// of tables of the same columns and indexes, and how long a scan takes on a line with 2 ms of delay. The
// server is one of its own and waits for the disk as it should.

namespace {

constexpr int lines = 50, rounds = 12, delayedScans = 40;
constexpr double atMost = 1.5, delayedMs = 15;

/// The twin: prepared statements, one question after the other.
class Raw {
  public:
    explicit Raw(const PostgresServer& server)
        : m_connection(PQconnectdb(server.uri(u"laden"_s).toUtf8().constData())) {
        // The tables of the shop once more, with the same bounds of their texts but without keys and
        // triggers.
        done(PQexec(m_connection, R"(
            CREATE SCHEMA roh;
            CREATE SEQUENCE roh.nummer;
            DO $$ DECLARE t text; i text; BEGIN
              FOREACH t IN ARRAY ARRAY['Artikel', 'AktionsPreise', 'VerbundArtikel', 'Bestellung', 'Rechnung',
                  'RechnungsDetail', 'ArtikelLieferanten', 'ArtikelSerienNummern'] LOOP
                EXECUTE format('CREATE TABLE roh.%I (LIKE public.%I INCLUDING DEFAULTS INCLUDING CONSTRAINTS)', t, t);
                EXECUTE format('INSERT INTO roh.%I SELECT * FROM public.%I', t, t);
                EXECUTE format('ALTER TABLE roh.%I DROP COLUMN _rowid_', t);
                FOR i IN SELECT indexdef FROM pg_indexes WHERE schemaname='public' AND tablename=t
                    AND indexdef NOT LIKE '%_rowid_%' LOOP
                  EXECUTE replace(i, ' ON public.', ' ON roh.');
                END LOOP;
              END LOOP;
            END $$;)"));
        server.sql(u"laden"_s, u"ANALYZE"_s);
        prepare("number", "SELECT nextval('roh.nummer')");
        prepare("find", "SELECT * FROM roh.\"Artikel\" WHERE \"Nummer\"=$1");
        prepare("extras",
                "SELECT (SELECT count(*) FROM roh.\"AktionsPreise\" WHERE \"ArtikelNummer\"=$1), (SELECT "
                "count(*) FROM roh.\"VerbundArtikel\" WHERE \"SourceArtikelNummer\"=$1)");
        prepare(
            "line",
            "INSERT INTO roh.\"Bestellung\" (\"ID\", \"Maschine\", \"Datum\", \"Zeit\", \"KundenNummer\", "
            "\"PersonalNummer\", \"ArtikelNummer\", \"ArtikelName\", \"Buchungs_Menge\", \"Menge\", "
            "\"Einheit\", \"EKPreis\", \"VKPreis\", \"VKPreis_Rabatt\", \"SteuerSatz\", \"IsRabatt\", "
            "\"SNNummer\", \"WarenGruppe\", \"LangText\", \"Zusatz1\", \"Zusatz2\", \"PreisInfo\") VALUES "
            "($2, 'KASSE', 46348, 0.5, 0, 1, $1, 'Artikel', 1, 1, 'Stück', 1, 1.99, 1.99, 7, -1, '', "
            "'Gruppe', '', '', '', '')");
        prepare("stock",
                "SELECT \"SollBestand\", \"IstBestand\", \"LagerAktiv\", (SELECT sum(\"Buchungs_Menge\" * "
                "\"Menge\") FROM roh.\"Bestellung\" WHERE \"ArtikelNummer\"=$1) FROM roh.\"Artikel\" "
                "WHERE \"Nummer\"=$1");
        prepare("basket", "SELECT * FROM roh.\"Bestellung\" WHERE \"Maschine\"='KASSE' ORDER BY \"ID\"");
        prepare("head", "INSERT INTO roh.\"Rechnung\" (\"RechnungID\", \"Maschine\", \"Datum\", \"Zeit\", "
                        "\"PersonalNummer\", \"KundenNummer\", \"Kunde\", \"ZahlArt\", \"Betrag_Gesamt\", "
                        "\"Betrag_Gegeben\", \"Betrag_Zurueck\", \"KartenTyp\", \"Abschluss\") VALUES "
                        "($1, 'KASSE', 46348, 0.5, 1, 0, 'Standardkunde', 'BAR', 99.5, 99.5, 0, '', 0)");
        prepare("supplier",
                "SELECT \"BestellNummer\" FROM roh.\"ArtikelLieferanten\" WHERE \"ArtikelNummer\"=$1");
        prepare("detail",
                "INSERT INTO roh.\"RechnungsDetail\" (\"RechnungID\", \"Maschine\", \"Datum\", \"Zeit\", "
                "\"PersonalNummer\", \"KundenNummer\", \"Kunde\", \"ArtikelNummer\", \"ArtikelName\", "
                "\"Buchungs_Menge\", \"Menge\", \"Einheit\", \"EKPreis\", \"VKPreis_Brutto\", "
                "\"VKPreis_Netto\", \"VKPreisOrg\", \"SteuerSatz\", \"SNNummer\", \"WarenGruppe\", "
                "\"LangText\", \"Zusatz1\", \"Zusatz2\", \"PreisInfo\", \"BestellNummer\") VALUES "
                "($2, 'KASSE', 46348, 0.5, 1, 0, 'Standardkunde', $1, 'Artikel', 1, 1, 'Stück', 1, 1.99, "
                "1.8598, 1.99, 7, '', 'Gruppe', '', '', '', '', 'nicht verfügbar')");
        prepare(
            "move",
            "UPDATE roh.\"Artikel\" SET \"IstBestand\"=\"IstBestand\" - 1 WHERE \"LagerAktiv\"=-1 AND \"Nummer\"=$1");
        prepare("serial",
                "UPDATE roh.\"ArtikelSerienNummern\" SET \"VKDatum\"='22.11.2026', \"RechnungID\"=$2 WHERE "
                "\"ArtikelNummer\"=$1 AND \"SNNummer\"=''");
        prepare("clear", "DELETE FROM roh.\"Bestellung\" WHERE \"Maschine\"='KASSE'");
    }
    ~Raw() { PQfinish(m_connection); }
    Raw(const Raw&) = delete;
    Raw& operator=(const Raw&) = delete;

    void scan(const QByteArray& code) {
        run("find", {code});
        run("extras", {code});
        run("line", {code, run("number", {})});
        run("stock", {code});
    }
    void book(const std::vector<QByteArray>& codes) {
        const QByteArray id = run("number", {});
        run("head", {id});
        run("basket", {});
        for (const QByteArray& code : codes) {
            run("supplier", {code});
            run("detail", {code, id});
            run("move", {code});
            run("serial", {code, id});
        }
        run("clear", {});
        run("basket", {});
    }

  private:
    void check(bool good) const {
        if (good) return;
        std::fprintf(stderr, "%s\n", PQerrorMessage(m_connection));
        std::exit(2);
    }
    void done(PGresult* result) const {
        check(PQresultStatus(result) == PGRES_COMMAND_OK || PQresultStatus(result) == PGRES_TUPLES_OK);
        PQclear(result);
    }
    void prepare(const char* name, const char* text) {
        done(PQprepare(m_connection, name, text, 0, nullptr));
    }
    /// The first value of the first row.
    QByteArray run(const char* name, const std::vector<QByteArray>& values) {
        std::vector<const char*> texts;
        for (const QByteArray& value : values)
            texts.push_back(value.constData());
        PGresult* result =
            PQexecPrepared(m_connection, name, int(texts.size()), texts.data(), nullptr, nullptr, 0);
        QByteArray first;
        for (int row = 0; row < PQntuples(result); ++row)
            for (int column = 0; column < PQnfields(result); ++column)
                m_read += PQgetlength(result, row, column);
        if (PQntuples(result) > 0) first = PQgetvalue(result, 0, 0);
        done(result);
        return first;
    }

    PGconn* m_connection;
    qint64 m_read = 0;
};

void scan(till::Register& reg, const QString& code) {
    reg.SetInput(code);
    reg.cmdEnter_Click();
}

} // namespace

int main() {
    if (!PostgresServer::available()) {
        std::fprintf(stderr, "no PostgreSQL server installed\n");
        return 2;
    }
    NoDialogs dialogs;
    SetDialogHost(&dialogs);
    PostgresServer server(QStringList{});
    server.createDatabase(u"laden"_s);
    QTemporaryDir folder(QDir::tempPath() + u"/merivane-bench-XXXXXX"_s);
    openShop(folder.path() + QDir::separator(), server.uri(u"laden"_s));
    Raw raw(server);
    NoScreen screen;
    auto reg = std::make_unique<till::Register>(screen);
    reg->Load();
    // A till beside it whose store knows no marks of bookings.
    std::unique_ptr<Database> store = std::move(gDB);
    server.createDatabase(u"ohne"_s);
    openShop(folder.path() + QDir::separator(), server.uri(u"ohne"_s));
    gDB->DeleteTableDef(u"BuchungsMarke"_s);
    server.sql(u"ohne"_s, u"ANALYZE"_s);
    auto bare = std::make_unique<till::Register>(screen);
    {
        const Reader reader;
        bare->Load();
        bare->ResumeBooking();
    }
    std::swap(gDB, store);

    std::vector<double> scans, rawScans, bookings, rawBookings, bareBookings;
    int next = 0;
    for (int round = 0; round < rounds; ++round) {
        std::vector<QByteArray> codes;
        for (int line = 0; line < lines; ++line) {
            const QString code = number(next += 7919);
            codes.push_back(code.toLatin1());
            scans.push_back(milliseconds([&] { scan(*reg, code); }));
            rawScans.push_back(milliseconds([&] { raw.scan(codes.back()); }));
        }
        std::swap(gDB, store);
        for (const QByteArray& code : codes)
            scan(*bare, QString::fromLatin1(code));
        std::swap(gDB, store);
        if (reg->basket().rowCount() != lines || bare->basket().rowCount() != lines) return 2;
        const auto book = [&] { bookings.push_back(milliseconds([&] { reg->cmdTotal_Click(); })); };
        const auto bookBare = [&] {
            std::swap(gDB, store);
            bareBookings.push_back(milliseconds([&] { bare->cmdTotal_Click(); }));
            std::swap(gDB, store);
        };
        // By turns, since the disk is quicker for who comes after a pause.
        if (round % 2 == 0) book();
        bookBare();
        if (round % 2 != 0) book();
        rawBookings.push_back(milliseconds([&] { raw.book(codes); }));
        if (!reg->basket().isEmpty() || !bare->basket().isEmpty()) return 2;
    }
    bool good = ratio("server_scan_to_line_ratio", scans, rawScans, atMost);
    good &= ratio("server_book_50_lines_ratio", bookings, rawBookings, atMost);
    good &= share("server_book_50_lines_mark", bookings, bareBookings, 1.1);
    bare.reset();
    store.reset();
    reg.reset();
    const std::optional<double> restart = restartToQuestion();
    if (!restart) return 2;
    good &= figure("server_restart_200_lines_to_question_ms", *restart, 300);

    PostgresProxy proxy(server.port());
    gDB = Database::OpenDatabase(server.uri(u"laden"_s, proxy.port()));
    reg = std::make_unique<till::Register>(screen);
    reg->Load();
    scan(*reg, number(0)); // what is asked for the first time is prepared on the way
    proxy.setDelay(std::chrono::milliseconds(2));
    std::vector<double> delayed;
    for (int i = 0; i < delayedScans; ++i)
        delayed.push_back(milliseconds([&] { scan(*reg, number(next += 7919)); }));
    good &= figure("server_scan_at_2ms_delay_ms", median(delayed), delayedMs);
    reg.reset();
    gDB.reset();
    return good ? 0 : 1;
}
