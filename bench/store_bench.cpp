#include <store/Database.h>
#include <store/Recordset.h>
#include <store/Schema.h>
#include <text/Sort.h>

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <sqlite3.h>
#include <vector>

// What the store costs on top of the bare engine. One line a figure: name, measured, bound, ok or MISSED.

using namespace Qt::StringLiterals;

namespace {

constexpr int articles = 100'000;

/// The bare engine on the same file, with the statements prepared once.
class Raw {
  public:
    explicit Raw(const QString& path) {
        if (sqlite3_open(path.toUtf8().constData(), &m_db) != SQLITE_OK) std::exit(2);
        sqlite3_create_collation(
            m_db, "GERMAN", SQLITE_UTF8, nullptr, [](void*, int n, const void* a, int m, const void* b) {
                return CompareUtf8(static_cast<const char*>(a), n, static_cast<const char*>(b), m);
            });
        sqlite3_exec(m_db, "PRAGMA cache_size=-16000; PRAGMA synchronous=FULL", nullptr, nullptr, nullptr);
        m_key = prepare(
            "SELECT _rowid_ FROM \"Artikel\" WHERE _rowid_>?1 AND \"Nummer\"=?2 ORDER BY _rowid_ LIMIT ?3");
        m_row = prepare("SELECT \"Name\", \"VKPreis\" FROM \"Artikel\" WHERE _rowid_=?1");
        m_update = prepare("UPDATE \"Artikel\" SET \"VKPreis\"=?1 WHERE \"Nummer\"=?2");
    }
    ~Raw() {
        for (sqlite3_stmt* statement : {m_key, m_row, m_update})
            sqlite3_finalize(statement);
        sqlite3_close(m_db);
    }
    Raw(const Raw&) = delete;
    Raw& operator=(const Raw&) = delete;

    void select(const QByteArray& number) {
        sqlite3_bind_int64(m_key, 1, 0);
        sqlite3_bind_text(m_key, 2, number.constData(), static_cast<int>(number.size()), SQLITE_STATIC);
        sqlite3_bind_int64(m_key, 3, 64);
        sqlite3_int64 key = 0;
        while (sqlite3_step(m_key) == SQLITE_ROW)
            key = sqlite3_column_int64(m_key, 0);
        sqlite3_reset(m_key);
        sqlite3_bind_int64(m_row, 1, key);
        if (sqlite3_step(m_row) != SQLITE_ROW) std::abort();
        m_read += sqlite3_column_bytes(m_row, 0) + sqlite3_column_int64(m_row, 1);
        sqlite3_reset(m_row);
    }
    void update(const QByteArray& number) {
        sqlite3_bind_int64(m_update, 1, 20000);
        sqlite3_bind_text(m_update, 2, number.constData(), static_cast<int>(number.size()), SQLITE_STATIC);
        if (sqlite3_step(m_update) != SQLITE_DONE) std::abort();
        sqlite3_reset(m_update);
    }

  private:
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr) != SQLITE_OK) {
            std::fprintf(stderr, "%s\n", sqlite3_errmsg(m_db));
            std::exit(2);
        }
        return statement;
    }
    sqlite3* m_db = nullptr;
    sqlite3_stmt *m_key = nullptr, *m_row = nullptr, *m_update = nullptr;
    qint64 m_read = 0;
};

// All over the index, but few enough to stay in the engine's cache: the overhead is measured, not the disk.
QString number(int i) { return QString::number(2'000'000 + (i * 7919LL) % 500 * (articles / 500)); }

/// A store with so many articles beside an empty one for the rest.
std::unique_ptr<Database> shop(const QString& path, int count) {
    Database::CreateDatabase(path)->Close();
    auto db = Database::OpenDatabase(path);
    schema::createTables(*db);
    auto rs = db->OpenRecordset(u"Artikel"_s);
    db->BeginTrans();
    for (int i = 0; i < count; ++i) {
        rs->AddNew();
        rs->Set(u"Nummer", QString::number(2'000'000 + i));
        rs->Set(u"Name", u"Artikel %1"_s.arg(i));
        rs->Set(u"WarenGruppe", u"Gruppe %1"_s.arg(i % 12));
        rs->Set(u"VKPreis", Currency::fromScaled(19900));
        rs->Update();
    }
    db->CommitTrans();
    return db;
}

double microseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

using Work = std::function<void(int)>;

double once(int each, int& next, const Work& work) {
    return microseconds([&] {
               for (int i = 0; i < each; ++i)
                   work(next++);
           }) /
           each;
}

/// Microseconds of one run, the best of several rounds: what other work on the machine adds is not ours.
double timed(int rounds, int each, const Work& work) {
    double best = 1e9;
    int next = 0;
    for (int round = 0; round < rounds; ++round)
        best = std::min(best, once(each, next, work));
    return best;
}

/// The same for ours and the engine's twin, in turn, so that both meet the same machine.
std::pair<double, double> paired(int rounds, int each, const Work& ours, const Work& twin) {
    std::pair<double, double> best{1e9, 1e9};
    int next = 0, twinNext = 0;
    for (int round = 0; round < rounds; ++round) {
        best.first = std::min(best.first, once(each, next, ours));
        best.second = std::min(best.second, once(each, twinNext, twin));
    }
    return best;
}

bool figure(const char* name, double measured, double bound) {
    const bool good = measured <= bound;
    std::printf("%s %.2f %.2f %s\n", name, measured, bound, good ? "ok" : "MISSED");
    return good;
}

// The longest text of the program, with a name that is new each time.
QString longText(int i) {
    return u"SELECT Artikel.SollBestand, Artikel.IstBestand, RechnungsDetail.ArtikelNummer, "
           "RechnungsDetail.ArtikelName, RechnungsDetail.WarenGruppe, Sum(RechnungsDetail.Buchungs_Menge) AS "
           "Anzahl, RechnungsDetail.VKPreis_Netto AS VKNetto, (SUM(RechnungsDetail.Buchungs_Menge) * "
           "RechnungsDetail.VKPreis_Netto) AS VKNetto_Gesamt, ArtikelLieferanten.BestellNummer AS BestellNr%1, "
           "RechnungsDetail.VKPreis_Brutto AS VKBrutto, ArtikelLieferanten.EKPreis FROM Artikel INNER JOIN "
           "(RechnungsDetail INNER JOIN ArtikelLieferanten ON RechnungsDetail.ArtikelNummer = "
           "ArtikelLieferanten.ArtikelNummer) ON Artikel.Nummer = ArtikelLieferanten.ArtikelNummer WHERE "
           "ArtikelLieferanten.LieferantID=7 AND RechnungsDetail.Datum BETWEEN #11.01.2026# AND #11.30.2026# GROUP "
           "BY Artikel.SollBestand, Artikel.IstBestand, RechnungsDetail.ArtikelNummer, "
           "RechnungsDetail.ArtikelName, RechnungsDetail.WarenGruppe, RechnungsDetail.VKPreis_Netto, "
           "RechnungsDetail.VKPreis_Brutto, ArtikelLieferanten.EKPreis, ArtikelLieferanten.BestellNummer;"_s
               .arg(i);
}

/// Bytes that an open dynaset over all articles holds after its first row.
double dynasetBytes(Database& db) {
    std::vector<std::unique_ptr<Recordset>> open(1 + 100);
    std::size_t before = 0;
    for (auto& rs : open) { // the first one pays for the shared plan
        rs = db.OpenRecordset(u"SELECT * FROM Artikel ORDER BY Name ASC;"_s);
        std::ignore = rs->Text(u"Name");
        if (before == 0) before = mallinfo2().uordblks;
    }
    return static_cast<double>(mallinfo2().uordblks - before) / 100;
}

} // namespace

int main() {
    const QTemporaryDir folder(QDir::tempPath() + u"/merivane-bench-XXXXXX"_s);
    const auto large = shop(folder.filePath(u"large.mdb"_s), articles);
    const auto little = shop(folder.filePath(u"small.mdb"_s), 1000);
    Raw raw(folder.filePath(u"large.mdb"_s));
    bool good = true;

    const auto [select, rawSelect] = paired(
        100, 300,
        [&](int i) {
            const auto rs = large->OpenRecordset(u"SELECT Name, VKPreis FROM Artikel WHERE Nummer='"_s +
                                                 number(i) + u"'"_s);
            if (rs->Text(u"Name").isEmpty()) std::abort();
        },
        [&](int i) { raw.select(number(i).toLatin1()); });
    good &= figure("cached_select_overhead_us", select - rawSelect, 3);
    std::fprintf(stderr, "# select %.2f us, engine %.2f us\n", select, rawSelect);

    // No row is hit, so that the disk stays out of it.
    const auto [update, rawUpdate] = paired(
        100, 300,
        [&](int i) {
            large->Execute(u"UPDATE Artikel SET VKPreis=2 WHERE Nummer='x"_s + number(i) + u"'"_s);
        },
        [&](int i) { raw.update("x" + number(i).toLatin1()); });
    good &= figure("cached_execute_overhead_us", update - rawUpdate, 3);
    std::fprintf(stderr, "# update %.2f us, engine %.2f us\n", update, rawUpdate);

    good &= figure("first_translation_us",
                   timed(20, 20, [&](int i) { std::ignore = large->Translated(longText(i)); }), 70);

    for (const auto& [name, sql] :
         {std::pair{"dynaset_open_ratio", u"SELECT * FROM Artikel"_s},
          std::pair{"dynaset_sorted_open_ratio", u"SELECT * FROM Artikel ORDER BY Name ASC;"_s}}) {
        const auto first = [&](Database& db) {
            return timed(30, 50, [&](int) { std::ignore = db.OpenRecordset(sql)->Text(u"Name"); });
        };
        good &= figure(name, first(*large) / first(*little), 2);
    }
    const double bytes = dynasetBytes(*large);
    good &= figure("dynaset_memory_ratio", bytes / dynasetBytes(*little), 2);
    std::fprintf(stderr, "# dynaset %.0f bytes\n", bytes);

    const auto rs = large->OpenRecordset(u"SELECT * FROM Artikel"_s);
    const double find = timed(30, 100, [&](int i) {
        rs->Requery();
        rs->FindFirst(u"Nummer='"_s + number(i) + u"'"_s);
        if (rs->NoMatch() || rs->Text(u"Name").isEmpty()) std::abort();
    });
    good &= figure("requery_and_find_us", find, 50);
    return good ? 0 : 1;
}
