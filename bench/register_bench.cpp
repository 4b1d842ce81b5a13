#include "Till.h"

#include <QDir>
#include <QTemporaryDir>

#include <sqlite3.h>
#include <vector>

// What a scan and a booking cost, as ratios to the bare engine doing the same reads and writes with prepared
// statements and the same durability, on 100,000 articles.

namespace {

constexpr int lines = 50, rounds = 12;

/// The twin: tables of the same columns and indexes in a file beside the store.
class Raw {
  public:
    explicit Raw(const QString& path) {
        check(sqlite3_open(path.toUtf8().constData(), &m_db));
        run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=OFF;"
            "CREATE TABLE artikel (nummer TEXT UNIQUE, name TEXT, langtext TEXT, warengruppe TEXT, zusatz1 "
            "TEXT,"
            " zusatz2 TEXT, menge REAL, einheit TEXT, steuersatz REAL, ekpreis INTEGER, vkpreis INTEGER,"
            " vkpreis2 INTEGER, vkpreis3 INTEGER, sollbestand REAL, istbestand REAL, aktiv INTEGER,"
            " lageraktiv INTEGER, rabatt INTEGER, preisangabe INTEGER, volumenangabe INTEGER, snangabe "
            "INTEGER,"
            " freifeld TEXT);"
            "CREATE TABLE bestellung (id INTEGER PRIMARY KEY, maschine TEXT, datum REAL, zeit REAL, kunde "
            "INTEGER,"
            " personal INTEGER, artikelnummer TEXT, artikelname TEXT, buchungs_menge REAL, menge REAL, "
            "einheit TEXT,"
            " ekpreis INTEGER, vkpreis INTEGER, vkpreis_rabatt INTEGER, steuersatz REAL, israbatt INTEGER,"
            " snnummer TEXT, warengruppe TEXT, langtext TEXT, zusatz1 TEXT, zusatz2 TEXT, preisinfo TEXT);"
            "CREATE INDEX b1 ON bestellung(maschine); CREATE INDEX b2 ON bestellung(artikelnummer);"
            "CREATE TABLE rechnung (id INTEGER PRIMARY KEY, maschine TEXT, datum REAL, zeit REAL, betrag "
            "INTEGER);"
            "CREATE TABLE detail (rechnungid INTEGER, maschine TEXT, datum REAL, zeit REAL, personal INTEGER,"
            " kundennummer INTEGER, kunde TEXT, artikelnummer TEXT, artikelname TEXT, buchungs_menge REAL,"
            " menge REAL, einheit TEXT, ekpreis INTEGER, brutto INTEGER, netto REAL, org INTEGER, steuersatz "
            "REAL,"
            " snnummer TEXT, warengruppe TEXT, langtext TEXT, zusatz1 TEXT, zusatz2 TEXT, preisinfo TEXT,"
            " bestellnummer TEXT);"
            "CREATE INDEX d1 ON detail(rechnungid); CREATE INDEX d2 ON detail(artikelnummer);"
            "CREATE INDEX d3 ON detail(datum); CREATE INDEX d4 ON detail(kundennummer);"
            "CREATE INDEX d5 ON detail(snnummer); CREATE INDEX r1 ON rechnung(maschine); CREATE INDEX r2 ON "
            "rechnung(datum);"
            "CREATE TABLE lieferanten (artikelnummer TEXT, bestellnummer TEXT);"
            "CREATE INDEX l1 ON lieferanten(artikelnummer);"
            "CREATE TABLE serien (artikelnummer TEXT, snnummer TEXT, vkdatum TEXT, rechnungid INTEGER);"
            "CREATE INDEX s1 ON serien(artikelnummer);"
            "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i+1 FROM n WHERE i < 99999) INSERT INTO "
            "artikel "
            "SELECT 2000000+i, 'Artikel '||i, '', 'Gruppe', '', '', 1, 'Stück', 7, 10000, 19900, 0, 0, 2, "
            "100, -1, -1,"
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
        m_serial = prepare("UPDATE serien SET vkdatum='22.11.2026', rechnungid=?2 WHERE artikelnummer=?1 AND "
                           "snnummer=''");
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
    void run(const char* sql) { check(sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr)); }
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

} // namespace

int main() {
    NoDialogs dialogs;
    SetDialogHost(&dialogs);
    QTemporaryDir folder(QDir::tempPath() + u"/merivane-bench-XXXXXX"_s);
    openShop(folder.path() + QDir::separator(), folder.filePath(u"Merivane.mdb"_s));
    Raw raw(folder.path() + u"/raw.sqlite"_s);
    NoScreen screen;
    till::Register reg(screen);
    reg.Load();

    std::vector<double> scans, rawScans, bookings, rawBookings;
    int next = 0;
    for (int round = 0; round < rounds; ++round) {
        std::vector<QByteArray> codes;
        for (int line = 0; line < lines; ++line) {
            const QString code = number(next += 7919); // all over the index
            codes.push_back(code.toLatin1());
            scans.push_back(milliseconds([&] {
                reg.SetInput(code);
                reg.cmdEnter_Click();
            }));
            rawScans.push_back(milliseconds([&] { raw.scan(codes.back()); }));
        }
        if (reg.basket().rowCount() != lines) return 2;
        // The whole total key, which also empties the sale; the twin does the writes of the booking alone.
        bookings.push_back(milliseconds([&] { reg.cmdTotal_Click(); }));
        rawBookings.push_back(milliseconds([&] { raw.book(codes); }));
        raw.clear();
        if (!reg.basket().isEmpty()) return 2;
    }
    const bool scan = ratio("scan_to_line_ratio", scans, rawScans, 4);
    const bool booking = ratio("book_50_lines_ratio", bookings, rawBookings, 3);
    gDB.reset();
    return scan && booking ? 0 : 1;
}
