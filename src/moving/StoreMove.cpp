#include <store/Database.h>
#include <store/Recordset.h>
#include <store/StoreName.h>
#include <store/Transfer.h>

#include <QFileInfo>

#include <algorithm>
#include <moving/StoreMove.h>
#include <moving/TableSum.h>
#include <optional>

using namespace Qt::StringLiterals;

namespace moving {

namespace {

constexpr int targetNotEmpty = 3204;
constexpr int unfinished = 3734;
constexpr int wrongPassword = 3031;
constexpr qint64 rowsBetweenReports = 500;

[[noreturn]] void raise(int number, const QString& text) { throw RuntimeError(number, text, u"StoreMove"_s); }

struct Cancelled {};

/// Tells an error of `act` with the words of `where` in front, so that one knows where it came from.
template <typename Where, typename Act>
auto telling(Where where, Act act) {
    try {
        return act();
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.Number, where() + error.Description, error.Source);
    }
}

QString onSource() { return u"Quelle: "_s; }
QString onTarget() { return u"Ziel: "_s; }

/// How a store is called in the mark of its target and in messages.
QString nameOf(const QString& place) {
    return store::isServer(place) ? store::withoutPassword(place) : QFileInfo(place).canonicalFilePath();
}

QString connectText(const QString& password) { return u";PWD="_s + password; }

/// Opens with one of the passwords that the program gives, or without when there is none. `password` becomes
/// the one that fits.
template <typename Open>
std::unique_ptr<Database> openTrying(QString& password, Open open) {
    for (const QString& tried :
         {QString(), QString::fromUtf16(store::oldPassword), QString::fromUtf16(store::newPassword)}) {
        try {
            auto db = open(connectText(tried));
            password = tried;
            return db;
        } catch (const RuntimeError& error) {
            if (error.Number != wrongPassword || tried == QStringView(store::newPassword)) throw;
        }
    }
    return nullptr;
}

qint64 rowsOf(Database& db, const QString& table) {
    return db.OpenRecordset(u"SELECT COUNT(*) AS Anzahl FROM ["_s + table + u']')->Field(0).toInteger();
}

bool hasCounter(const TableDef& table) {
    return std::any_of(table.Fields.begin(), table.Fields.end(),
                       [](const TableField& field) { return field.Attributes == dbAutoIncrField; });
}

qint64 counterOf(Database& db, const TableDef& table) {
    return hasCounter(table) ? store::Counter(db, table.Name) : 0;
}

/// All of a transaction or nothing.
class Attempt {
  public:
    explicit Attempt(Database& db)
        : m_db(db) {
        db.BeginTrans();
    }
    ~Attempt() {
        if (!m_open) return;
        try {
            m_db.Rollback();
        } catch (const RuntimeError&) {
            // The connection is gone, and with it the transaction.
        }
    }
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;
    void succeed() {
        m_db.CommitTrans();
        m_open = false;
    }

  private:
    Database& m_db;
    bool m_open = true;
};

/// Counts the rows of the whole move and asks the report whether to go on.
class Pace {
  public:
    Pace(const StoreMove::Report& report, qint64 total)
        : m_report(report)
        , m_total(total) {}

    void begin(Progress::Step step, const QString& table, qint64 rows) {
        m_progress = {step, table, 0, rows, 0};
        m_before = m_done;
        tell();
    }
    /// The table is gone through once more from its first row.
    void again() {
        m_done = m_before;
        m_progress.row = 0;
    }
    void row() {
        ++m_done;
        if (++m_progress.row % rowsBetweenReports == 0) tell();
    }
    [[nodiscard]] std::function<void()> eachRow() {
        return [this] { row(); };
    }

  private:
    [[nodiscard]] int percent() const {
        return m_total == 0 ? 0 : static_cast<int>(std::min(m_done * 100 / m_total, qint64{100}));
    }
    void tell() {
        m_progress.percent = percent();
        if (m_report && !m_report(m_progress)) throw Cancelled();
    }

    const StoreMove::Report& m_report;
    qint64 m_total;
    qint64 m_done = 0;
    qint64 m_before = 0; ///< done before this table
    Progress m_progress;
};

/// Both stores open, held exclusively.
class Move {
  public:
    Move(const QString& source, const QString& target)
        : m_sourceName(nameOf(source))
        , m_targetName(target) {
        if (m_sourceName == nameOf(target) && !m_sourceName.isEmpty())
            raise(3219, u"Quelle und Ziel sind dieselbe Datenbank."_s);
        m_source = telling(onSource, [&] {
            return openTrying(m_password, [&](const QString& connect) {
                return Database::OpenDatabase(source, true, false, connect);
            });
        });
        // A server has users of its own instead; a file that comes from there gets what every file of a till
        // has.
        if (store::isServer(target))
            m_password.clear();
        else if (store::isServer(source))
            m_password = QString::fromUtf16(store::newPassword);
        telling(onTarget, [&] { openTarget(); });
        m_tables = m_source->TableDefs();
        for (const TableDef& table : m_tables)
            m_rows.push_back(rowsOf(*m_source, table.Name));
    }

    std::vector<ComparedTable> run(const StoreMove::Report& report) {
        qint64 total = 0;
        for (const qint64 rows : m_rows)
            total += 2 * rows;
        Pace pace(report, total);
        dropStrangers();
        for (std::size_t i = 0; i < m_tables.size(); ++i) {
            pace.begin(Progress::Step::Copying, m_tables[i].Name, m_rows[i]);
            bring(m_tables[i], m_rows[i], pace);
        }
        std::vector<ComparedTable> compared;
        bool equal = true;
        for (std::size_t i = 0; i < m_tables.size(); ++i) {
            pace.begin(Progress::Step::Comparing, m_tables[i].Name, m_rows[i]);
            compared.push_back(compare(m_tables[i], pace));
            equal = equal && compared.back().differences.isEmpty();
        }
        if (equal) store::SetMoveSource(*m_target, {});
        return compared;
    }

  private:
    void openTarget() {
        try {
            m_target = Database::CreateDatabase(m_targetName, connectText(m_password), m_sourceName);
            return;
        } catch (const RuntimeError& error) {
            if (error.Number != targetNotEmpty) throw;
        }
        QString password;
        m_target = openTrying(
            password, [&](const QString& connect) { return store::OpenMoveTarget(m_targetName, connect); });
        if (const QString begun = store::MoveSource(*m_target); begun.isEmpty())
            refuseRows();
        else if (begun != m_sourceName)
            raise(unfinished,
                  u"Hierher wurde ein Umzug von '%1' begonnen und nicht beendet. Bitte diesen wiederholen "
                  "oder ein anderes Ziel nennen."_s.arg(begun));
        store::SetMoveSource(*m_target, m_sourceName);
        if (password != m_password) m_target->NewPassword(password, m_password);
    }

    void refuseRows() {
        for (const TableDef& table : m_target->TableDefs())
            if (const qint64 rows = rowsOf(*m_target, table.Name); rows > 0)
                raise(
                    targetNotEmpty,
                    u"Die Datenbank '%1' enthält bereits Daten (Tabelle %2: %3 Zeilen). Sie bleibt unverändert."_s
                        .arg(store::withoutPassword(m_targetName), table.Name)
                        .arg(rows));
    }

    /// Tables of an earlier attempt that the source has no longer.
    void dropStrangers() {
        for (const TableDef& there : m_target->TableDefs())
            if (std::none_of(m_tables.begin(), m_tables.end(),
                             [&](const TableDef& table) { return table.Name == there.Name; }))
                m_target->DeleteTableDef(there.Name);
    }

    void bring(const TableDef& table, qint64 rows, Pace& pace) {
        qint64 row = 0;
        const auto where = [&] {
            return row == 0 ? u"Tabelle %1: "_s.arg(table.Name)
                            : u"Tabelle %1, bis Zeile %2: "_s.arg(table.Name).arg(row);
        };
        telling(where, [&] {
            const std::optional<TableDef> there = m_target->FindTableDef(table.Name);
            if (there && isAlike(*there, table, rows, pace)) return;
            pace.again();
            Attempt attempt(*m_target);
            if (there) m_target->DeleteTableDef(table.Name);
            m_target->AppendTableDef(table);
            const auto writer = store::WriteTable(*m_target, table.Name);
            store::ReadTable(*m_source, table.Name, [&](const std::vector<Value>& values) {
                ++row;
                writer->Add(values);
                pace.row();
            });
            writer->Finish();
            if (hasCounter(table))
                store::SetCounter(*m_target, table.Name, store::Counter(*m_source, table.Name));
            attempt.succeed();
        });
    }

    [[nodiscard]] bool isAlike(const TableDef& there, const TableDef& table, qint64 rows, Pace& pace) {
        return there == table && rowsOf(*m_target, table.Name) == rows &&
               counterOf(*m_target, table) == counterOf(*m_source, table) &&
               sumOf(*m_target, table.Name) == sumOf(*m_source, table.Name, pace.eachRow());
    }

    ComparedTable compare(const TableDef& table, Pace& pace) {
        const TableSum here = sumOf(*m_source, table.Name, pace.eachRow());
        const TableSum there = sumOf(*m_target, table.Name);
        ComparedTable result{table.Name, here.rows, QString::fromLatin1(here.hash.toHex()), {}, {}};
        for (const TableSum::Column& column : here.columns)
            result.sums.append(column.name + u' ' + column.sum);
        QStringList& differences = result.differences;
        if (m_target->FindTableDef(table.Name) != table)
            differences.append(u"Spalten oder Indizes sind verschieden."_s);
        if (here.rows != there.rows)
            differences.append(
                u"In der Quelle stehen %1 Zeilen, im Ziel %2."_s.arg(here.rows).arg(there.rows));
        for (std::size_t i = 0; i < here.columns.size() && i < there.columns.size(); ++i)
            if (here.columns[i] != there.columns[i])
                differences.append(u"Die Summe der Spalte %1 ist in der Quelle %2, im Ziel %3."_s.arg(
                    here.columns[i].name, here.columns[i].sum, there.columns[i].sum));
        if (here.hash != there.hash) differences.append(u"Die Prüfsummen aller Werte sind verschieden."_s);
        if (const qint64 from = counterOf(*m_source, table), to = counterOf(*m_target, table); from != to)
            differences.append(u"Der Zähler steht in der Quelle auf %1, im Ziel auf %2."_s.arg(from).arg(to));
        return result;
    }

    QString m_sourceName;
    QString m_targetName;
    QString m_password; ///< of the target
    std::unique_ptr<Database> m_source;
    std::unique_ptr<Database> m_target;
    std::vector<TableDef> m_tables;
    std::vector<qint64> m_rows; ///< of each table
};

} // namespace

bool MoveResult::equal() const {
    return !cancelled && std::all_of(tables.begin(), tables.end(),
                                     [](const ComparedTable& table) { return table.differences.isEmpty(); });
}

StoreMove::StoreMove(QString source, QString target)
    : m_source(std::move(source))
    , m_target(std::move(target)) {}

MoveResult StoreMove::run(const Report& report) {
    MoveResult result;
    try {
        result.tables = Move(m_source, m_target).run(report);
    } catch (const Cancelled&) {
        result.cancelled = true;
    }
    return result;
}

} // namespace moving
