#include <register/CustomerSearch.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/KundenFields.h>
#include <session/RowGone.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <text/Convert.h>

#include <array>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr int chunk = 200;

/// Columns of KundenKFZInfo with their headers.
const std::array<std::pair<const char16_t*, const char16_t*>, 9> vehicleColumns{{
    {u"Kennzeichen", u"Kennzeichen"},
    {u"Marke", u"Marke"},
    {u"Typ", u"Typ"},
    {u"FahrgestellNr", u"Fahrgestell-Nr"},
    {u"Erstzulassung", u"Erstzulassung"},
    {u"TUEV", u"TÜV"},
    {u"AU", u"AU"},
    {u"KW", u"KW"},
    {u"Hubraum", u"Hubraum"},
}};

} // namespace

CustomerSearch::CustomerSearch(QObject* parent)
    : QAbstractTableModel(parent) {}
CustomerSearch::~CustomerSearch() = default;

void CustomerSearch::Search(By by, const QString& text) {
    QString sql = u"SELECT * FROM Kunden WHERE Gesperrt=0 "_s;
    switch (by) {
    case Number:
        sql += u"ORDER BY KundenNummer ASC;"_s;
        break;
    case Name:
        sql += u"AND Name_1 LIKE "_s + sql::containing(text) + u" ORDER BY Name_1 ASC;"_s;
        break;
    case Town:
        sql += u"AND Ort LIKE "_s + sql::containing(text) + u" ORDER BY Name_1 ASC;"_s;
        break;
    }
    auto rs = gDB->OpenRecordset(sql);
    const bool more = !rs->Eof();
    beginResetModel();
    m_rs = std::move(rs);
    m_more = more;
    m_rows.clear();
    m_rows.push_back({0, {u"0"_s, u"Standardkunde"_s, u"-"_s, u"-"_s, u"-"_s}});
    endResetModel();
    fetchMore({});
}

QString CustomerSearch::key(int row) const {
    return u"ID"_s + QString::number(m_rows.at(size_t(row)).KundenID);
}

bool CustomerSearch::Choose(int row) {
    const int id = m_rows.at(size_t(row)).KundenID;
    KundeRecord kunde = KundeRecord::Standard();
    if (id != 0) {
        const auto rs = OpenRow(u"SELECT * FROM Kunden WHERE KundenID="_s + sql::number(id) + u";"_s);
        if (!rs) return false;
        load(*rs, KundenFields(), kunde);
    }
    kunde.Ergebnis = 1;
    gKunde = kunde;
    return true;
}

QStringList CustomerSearch::VehicleHeaders() {
    QStringList headers;
    for (const auto& column : vehicleColumns)
        headers.append(QString::fromUtf16(column.second));
    return headers;
}

std::vector<QStringList> CustomerSearch::Vehicles(int row) const {
    std::vector<QStringList> vehicles;
    const int id = m_rows.at(size_t(row)).KundenID;
    const auto rs =
        gDB->OpenRecordset(u"SELECT * FROM KundenKFZInfo WHERE KundenID="_s + sql::number(id) + u";"_s);
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList texts;
        for (const auto& column : vehicleColumns) {
            const Value value = rs->Field(QStringView(column.first));
            texts.append(value.isNull() ? QString() : CStr(value));
        }
        vehicles.push_back(texts);
    }
    return vehicles;
}

int CustomerSearch::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}
int CustomerSearch::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CustomerSearch::data(const QModelIndex& where, int role) const {
    if (!checkIndex(where, CheckIndexOption::IndexIsValid) || role != Qt::DisplayRole) return {};
    return m_rows[size_t(where.row())].texts.at(where.column());
}

QVariant CustomerSearch::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList headers{u"Nummer"_s, u"Name"_s, u"Straße"_s, u"PLZ"_s, u"Ort"_s};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return {};
    return headers.at(section);
}

bool CustomerSearch::canFetchMore(const QModelIndex& parent) const { return !parent.isValid() && m_more; }

void CustomerSearch::fetchMore(const QModelIndex& parent) {
    if (!canFetchMore(parent)) return;
    // The list asks on its own while it is painted, so this is a handler.
    std::vector<Row> more;
    m_more = false;
    Handle("frmKasseKundenSuche", [&] {
        for (; int(more.size()) < chunk && !m_rs->Eof(); m_rs->MoveNext()) {
            more.push_back({m_rs->Long(u"KundenID"),
                            {m_rs->Text(u"KundenNummer"), m_rs->Text(u"Name_1"), m_rs->Text(u"Strasse"),
                             m_rs->Text(u"PLZ"), m_rs->Text(u"Ort")}});
        }
        m_more = !m_rs->Eof();
    });
    if (more.empty()) return;
    const int first = rowCount();
    beginInsertRows({}, first, first + int(more.size()) - 1);
    std::move(more.begin(), more.end(), std::back_inserter(m_rows));
    endInsertRows();
}

} // namespace till
