#include "Till.h"

#include <QDir>
#include <QTemporaryDir>

#include <cmath>
#include <memory>
#include <sqlite3.h>
#include <vector>

// What a scan and a booking cost, as ratios to the bare engine doing the same reads and writes with prepared
// statements and the same durability, on 100,000 articles; and that ten times as many articles cost nothing.

namespace {

constexpr int lines = 50, rounds = 18;

/// The twin: tables of the same columns and indexes in a file beside the store.
class Raw {
  public:
    Raw(const QString& path, int articles) {
        check(sqlite3_open(path.toUtf8().constData(), &m_db));
        run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=OFF;"
            "CREATE TABLE artikel (nummer TEXT UNIQUE, name TEXT, langtext TEXT, warengruppe TEXT, zusatz1 TEXT,"
            " zusatz2 TEXT, menge REAL, einheit TEXT, steuersatz REAL, ekpreis INTEGER, vkpreis INTEGER,"
            " vkpreis2 INTEGER, vkpreis3 INTEGER, sollbestand REAL, istbestand REAL, aktiv INTEGER,"
            " lageraktiv INTEGER, rabatt INTEGER, preisangabe INTEGER, volumenangabe INTEGER, snangabe INTEGER, freifeld TEXT);"
            "CREATE TABLE bestellung (id INTEGER PRIMARY KEY, maschine TEXT, datum REAL, zeit REAL, kunde INTEGER,"
            " personal INTEGER, artikelnummer TEXT, artikelname TEXT, buchungs_menge REAL, menge REAL, einheit TEXT,"
            " ekpreis INTEGER, vkpreis INTEGER, vkpreis_rabatt INTEGER, steuersatz REAL, israbatt INTEGER,"
            " snnummer TEXT, warengruppe TEXT, langtext TEXT, zusatz1 TEXT, zusatz2 TEXT, preisinfo TEXT);"
            "CREATE INDEX b1 ON bestellung(maschine); CREATE INDEX b2 ON bestellung(artikelnummer);"
            "CREATE TABLE rechnung (id INTEGER PRIMARY KEY, maschine TEXT, datum REAL, zeit REAL, betrag INTEGER);"
            "CREATE TABLE detail (rechnungid INTEGER, maschine TEXT, datum REAL, zeit REAL, personal INTEGER,"
            " kundennummer INTEGER, kunde TEXT, artikelnummer TEXT, artikelname TEXT, buchungs_menge REAL,"
            " menge REAL, einheit TEXT, ekpreis INTEGER, brutto INTEGER, netto REAL, org INTEGER, steuersatz REAL,"
            " snnummer TEXT, warengruppe TEXT, langtext TEXT, zusatz1 TEXT, zusatz2 TEXT, preisinfo TEXT,"
            " bestellnummer TEXT);"
            "CREATE INDEX d1 ON detail(rechnungid); CREATE INDEX d2 ON detail(artikelnummer);"
            "CREATE INDEX d3 ON detail(datum); CREATE INDEX d4 ON detail(kundennummer);"
            "CREATE INDEX d5 ON detail(snnummer); CREATE INDEX r1 ON rechnung(maschine); CREATE INDEX r2 ON rechnung(datum);"
            "CREATE TABLE lieferanten (artikelnummer TEXT, bestellnummer TEXT);"
            "CREATE INDEX l1 ON lieferanten(artikelnummer);"
            "CREATE TABLE serien (artikelnummer TEXT, snnummer TEXT, vkdatum TEXT, rechnungid INTEGER);"
            "CREATE INDEX s1 ON serien(artikelnummer);CREATE TABLE n (i INTEGER)");
        run(QByteArray("WITH RECURSIVE c(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM c WHERE i < ") +
            QByteArray::number(articles - 1) + ") INSERT INTO n SELECT i FROM c");
        run("INSERT INTO artikel "
            "SELECT 2000000+i, 'Artikel '||i, '', 'Gruppe', '', '', 1, 'Stück', 7, 10000, 19900, 0, 0, 2, 100, -1, -1,"
            " -1, 0, 0, 0, '' FROM n;");
        m_find = prepare("SELECT * FROM artikel WHERE nummer=?1");
        m_line = prepare(
            "INSERT INTO bestellung (maschine, datum, zeit, kunde, personal, artikelnummer, artikelname,"
            " buchungs_menge, menge, einheit, ekpreis, vkpreis, vkpreis_rabatt, steuersatz, israbatt,"
            " snnummer, warengruppe, langtext, zusatz1, zusatz2, preisinfo) VALUES ('KASSE', 46348, 0.5,"
            " 0, 1, ?1, ?2, 1, 1, 'Stück', 10000, 19900, 19900, 7, -1, '', 'Gruppe', '', '', '', '')");
        m_head = prepare(
            "INSERT INTO rechnung (maschine, datum, zeit, betrag) VALUES ('KASSE', 46348, 0.5, 995000)");
        m_detail = prepare(
            "INSERT INTO detail VALUES (?1, 'KASSE', 46348, 0.5, 1, 0, 'Standardkunde', ?2, 'Artikel',"
            " 1, 1, 'Stück', 10000, 19900, 1.8598, 19900, 7, '', 'Gruppe', '', '', '', '', ?3)");
        m_supplier = prepare("SELECT bestellnummer FROM lieferanten WHERE artikelnummer=?1");
        m_stock = prepare("UPDATE artikel SET istbestand=istbestand-1 WHERE lageraktiv=-1 AND nummer=?1");
        m_serial = prepare(
            "UPDATE serien SET vkdatum='22.11.2026', rechnungid=?2 WHERE artikelnummer=?1 AND snnummer=''");
    }
    ~Raw() {
        for (sqlite3_stmt* statement : m_all)
            sqlite3_finalize(statement);
        sqlite3_close(m_db);
    }
    Raw(const Raw&) = delete;
    Raw& operator=(const Raw&) = delete;

    void scan(const QByteArray& code) {
        bind(m_find, 1, code);
        if (sqlite3_step(m_find) != SQLITE_ROW) std::abort();
        for (int column = 0; column < sqlite3_column_count(m_find); ++column)
            m_read += sqlite3_column_bytes(m_find, column);
        bind(m_line, 1, code);
        bind(m_line, 2, "Artikel");
        done(m_line);
        sqlite3_reset(m_find);
    }
    void book(const std::vector<QByteArray>& codes) {
        done(m_head);
        const qint64 id = sqlite3_last_insert_rowid(m_db);
        for (const QByteArray& code : codes) {
            bind(m_supplier, 1, code);
            sqlite3_step(m_supplier);
            sqlite3_reset(m_supplier);
            sqlite3_bind_int64(m_detail, 1, id);
            bind(m_detail, 2, code);
            bind(m_detail, 3, "nicht verfügbar");
            done(m_detail);
            bind(m_stock, 1, code);
            done(m_stock);
            bind(m_serial, 1, code);
            sqlite3_bind_int64(m_serial, 2, id);
            done(m_serial);
        }
    }
    void clear() { run("DELETE FROM bestellung"); }

  private:
    void check(int code) {
        if (code == SQLITE_OK) return;
        std::fprintf(stderr, "%s\n", sqlite3_errmsg(m_db));
        std::exit(2);
    }
    void run(const QByteArray& sql) { check(sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr)); }
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr));
        m_all.push_back(statement);
        return statement;
    }
    void bind(sqlite3_stmt* statement, int index, const QByteArray& text) {
        check(sqlite3_bind_text(statement, index, text.constData(), int(text.size()), SQLITE_TRANSIENT));
    }
    void done(sqlite3_stmt* statement) {
        if (sqlite3_step(statement) != SQLITE_DONE) check(SQLITE_ERROR);
        sqlite3_reset(statement);
    }

    sqlite3* m_db = nullptr;
    std::vector<sqlite3_stmt*> m_all;
    sqlite3_stmt *m_find, *m_line, *m_head, *m_detail, *m_supplier, *m_stock, *m_serial;
    qint64 m_read = 0;
};

/// A shop with its till and its twin, and what both needed.
class Shop {
  public:
    enum class Marks { Kept, Missing };
    Shop(const QString& folder, int digits, Marks marks = Marks::Kept)
        : m_articles(int(std::pow(10, digits)))
        , m_raw(folder + u"raw.sqlite"_s, m_articles) {
        openShop(folder, folder + u"Merivane.mdb"_s, digits);
        if (marks == Marks::Missing) gDB->DeleteTableDef(u"BuchungsMarke"_s);
        m_till = std::make_unique<till::Register>(m_screen);
        m_till->Load();
        const Reader reader; // of the note that there are none
        m_till->ResumeBooking();
        m_db = std::move(gDB);
    }
    ~Shop() { m_till.reset(); }
    Shop(const Shop&) = delete;
    Shop& operator=(const Shop&) = delete;

    /// One article at the till and at the twin.
    void scan() {
        const Open open(*this);
        const QString code = number(m_next += 7919, m_articles); // all over the index
        m_codes.push_back(code.toLatin1());
        scans.push_back(milliseconds([&] {
            m_till->SetInput(code);
            m_till->cmdEnter_Click();
        }));
        rawScans.push_back(milliseconds([&] { m_raw.scan(m_codes.back()); }));
    }
    [[nodiscard]] std::optional<double> restart() {
        const Open open(*this);
        m_till.reset();
        return restartToQuestion();
    }
    /// The whole total key, which also empties the sale; the twin does the writes of the booking alone. False
    /// when it went wrong.
    bool book() {
        const Open open(*this);
        if (m_till->basket().rowCount() != int(m_codes.size())) return false;
        bookings.push_back(milliseconds([&] { m_till->cmdTotal_Click(); }));
        rawBookings.push_back(milliseconds([&] { m_raw.book(m_codes); }));
        m_raw.clear();
        m_codes.clear();
        return m_till->basket().isEmpty();
    }

    std::vector<double> scans, rawScans, bookings, rawBookings;

  private:
    /// The session works on this shop's store meanwhile.
    class Open {
      public:
        explicit Open(Shop& shop)
            : m_shop(shop) {
            std::swap(gDB, m_shop.m_db);
        }
        ~Open() { std::swap(gDB, m_shop.m_db); }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;

      private:
        Shop& m_shop;
    };

    int m_articles, m_next = 0;
    std::vector<QByteArray> m_codes;
    Raw m_raw;
    NoScreen m_screen;
    std::unique_ptr<Database> m_db;
    std::unique_ptr<till::Register> m_till;
};

/// How much more the large shop needs.
bool growth(const char* name, const std::vector<double>& small, const std::vector<double>& large) {
    std::fprintf(stderr, "# %s: %.3f ms to %.3f ms\n", name, median(large), median(small));
    return figure(name, median(large) / median(small), 1.1);
}

} // namespace

int main() {
    NoDialogs dialogs;
    SetDialogHost(&dialogs);
    QTemporaryDir folder(QDir::tempPath() + u"/merivane-bench-XXXXXX"_s),
        largeFolder(folder.filePath(u"gross-XXXXXX"_s)), bareFolder(folder.filePath(u"ohne-XXXXXX"_s));
    Shop shop(folder.path() + QDir::separator(), 5), large(largeFolder.path() + QDir::separator(), 6),
        bare(bareFolder.path() + QDir::separator(), 5, Shop::Marks::Missing);
    // In turns, so that both meet the same moments of the machine.
    for (int round = 0; round < rounds; ++round) {
        for (int line = 0; line < lines; ++line) {
            shop.scan();
            large.scan();
            bare.scan();
        }
        // By turns, since the disk is quicker for who comes after a pause.
        Shop& first = round % 2 == 0 ? shop : bare;
        Shop& second = round % 2 == 0 ? bare : shop;
        if (!first.book() || !second.book() || !large.book()) return 2;
    }
    bool good = ratio("scan_to_line_ratio", shop.scans, shop.rawScans, 1.6);
    good &= ratio("book_50_lines_ratio", shop.bookings, shop.rawBookings, 1.3);
    good &= growth("scan_to_line_growth", shop.scans, large.scans);
    good &= growth("book_50_lines_growth", shop.bookings, large.bookings);
    good &= share("book_50_lines_mark", shop.bookings, bare.bookings, 1.1);
    const std::optional<double> restart = shop.restart();
    if (!restart) return 2;
    good &= figure("restart_200_lines_to_question_ms", *restart, 300);
    return good ? 0 : 1;
}
