#include <session/Error.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <ui/RecordList.h>
#include <ui/Theme.h>

#include <QHash>

#include <algorithm>
#include <chrono>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int firstKeys = 128, moreKeys = 1024; ///< a screen and some; what a view fetches at a time
constexpr int keptRows = 2048, rowsAhead = 32;
/// Long enough for the first screen to be painted, too short to be waited for.
constexpr auto idle = 40ms;

/// The place behind the last key that a walk of `steps` from `from` reaches.
int walk(Recordset& rs, int from, int steps) {
    for (; steps > 0 && !rs.Eof(); --steps, ++from)
        rs.MoveNext();
    return from;
}

} // namespace

RecordList::RecordList(Key key, std::vector<ListColumn> columns, QObject* parent)
    : QAbstractTableModel(parent)
    , m_key(std::move(key))
    , m_columns(std::move(columns))
    , m_rows(keptRows) {
    m_idle.setSingleShot(true);
    m_idle.setInterval(idle);
    connect(&m_idle, &QTimer::timeout, this, [this] { paint([this] { readAll(); }); });
}

RecordList::~RecordList() = default;

void RecordList::setCheck(std::function<bool(const Recordset&)> checked,
                          std::function<void(const QString& key, bool on)> change) {
    m_checked = std::move(checked);
    m_change = std::move(change);
}

void RecordList::open(const QString& select, const QString& order) {
    const auto before = std::pair(m_select, m_order);
    m_select = select;
    m_order = order;
    try {
        readStatement();
    } catch (...) {
        std::tie(m_select, m_order) = before;
        throw;
    }
}

void RecordList::reload() {
    if (m_select.isEmpty()) return;
    if (m_keys) {
        const QStringList keys = *m_keys;
        return openKeys(m_select, keys);
    }
    readStatement();
}

void RecordList::readStatement() {
    int known = 0;
    bool complete = false;
    auto rs = read(known, complete);
    show(std::move(rs), known, complete);
}

void RecordList::openKeys(const QString& select, const QStringList& keys) {
    m_select = select;
    m_order.clear();
    beginResetModel();
    m_rs.reset();
    m_rows.clear();
    m_shownLeading = m_leading;
    m_shownClosing = m_closing;
    m_keys = keys;
    m_known = static_cast<int>(keys.size());
    m_complete = true;
    m_failed = m_outdated = false;
    endResetModel();
}

void RecordList::appendKeys(const QStringList& keys) {
    if (!m_keys || keys.isEmpty()) return;
    *m_keys += keys;
    grow(static_cast<int>(m_keys->size()));
}

void RecordList::setOutdated() {
    if (m_outdated) return;
    m_outdated = true;
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void RecordList::clear() {
    m_select.clear();
    beginResetModel();
    m_rs.reset();
    m_keys.reset();
    m_outdated = false;
    m_rows.clear();
    m_shownLeading.clear();
    m_shownClosing.clear();
    m_known = 0;
    m_complete = true;
    endResetModel();
}

std::unique_ptr<Recordset> RecordList::read(int& known, bool& complete) const {
    QStringList order;
    if (m_sortColumn >= 0) {
        const ListColumn& column = m_columns[static_cast<std::size_t>(m_sortColumn)];
        order << (column.sort.isEmpty() ? column.field : column.sort) +
                     (m_sortOrder == Qt::AscendingOrder ? u" ASC"_s : u" DESC"_s);
    }
    if (!m_order.isEmpty()) order << m_order;
    auto rs = gDB->OpenRecordset(
        m_select + (order.isEmpty() ? QString() : u" ORDER BY "_s + order.join(u", "_s)) + u';');
    known = walk(*rs, 0, firstKeys);
    complete = rs->Eof();
    return rs;
}

void RecordList::show(std::unique_ptr<Recordset> rs, int known, bool complete) {
    beginResetModel();
    m_rs = std::move(rs);
    m_keys.reset();
    m_rows.clear();
    m_shownLeading = m_leading;
    m_shownClosing = m_closing;
    m_known = known;
    m_complete = complete;
    m_failed = m_outdated = false;
    endResetModel();
    if (!m_complete) m_idle.start();
}

void RecordList::readAll() {
    if (m_complete || !m_rs) return;
    m_rs->MoveLast();
    m_complete = true;
    grow(m_rs->RecordCount());
}

void RecordList::grow(int known) {
    if (known <= m_known) return;
    const int first = static_cast<int>(m_shownLeading.size()) + m_known;
    beginInsertRows({}, first, first + known - m_known - 1);
    m_known = known;
    endInsertRows();
}

const RecordList::Extra* RecordList::extra(int row) const {
    const auto leading = static_cast<int>(m_shownLeading.size());
    if (row >= 0 && row < leading) return &m_shownLeading[static_cast<std::size_t>(row)];
    const int behind = row - leading - m_known;
    if (behind >= 0 && behind < static_cast<int>(m_shownClosing.size()))
        return &m_shownClosing[static_cast<std::size_t>(behind)];
    return nullptr;
}

RecordList::Row RecordList::gone() {
    Row row;
    row.gone = row.muted = true;
    row.texts << u"(gelöscht)"_s;
    return row;
}

RecordList::Row RecordList::format(const Recordset& rs) const {
    Row row;
    row.key = m_key.prefix + rs.Text(m_key.field);
    for (const ListColumn& column : m_columns)
        row.texts << (column.text ? column.text(rs) : rs.Text(column.field));
    if (m_icon) row.icon = m_icon(rs);
    row.checked = m_checked && m_checked(rs);
    row.muted = m_muted && m_muted(rs);
    return row;
}

RecordList::Row RecordList::format(int record) const {
    try {
        m_rs->AbsolutePosition(record);
        return format(*m_rs);
    } catch (const RuntimeError& error) {
        if (error.Number != 3167) throw;
        return gone();
    }
}

Type RecordList::keyType() const {
    if (!m_keyType) m_keyType = gDB->OpenRecordset(m_select + u" WHERE 1=0;"_s)->FieldType(m_key.field);
    return *m_keyType;
}

void RecordList::readKeyed(int record) const {
    const int end = std::min(record + rowsAhead, m_known);
    const Type type = keyType();
    QHash<QString, Row> found;
    QStringList wanted;
    for (int i = record; i < end; ++i)
        wanted << literal(type, m_keys->at(i));
    for (const auto rows = gDB->OpenRecordset(m_select + u" WHERE "_s + m_key.field + u" IN ("_s +
                                              wanted.join(u", "_s) + u");"_s);
         !rows->Eof(); rows->MoveNext())
        found.insert(rows->Text(m_key.field), format(*rows));
    for (int i = record; i < end; ++i)
        m_rows.insert(i, new Row(found.value(m_keys->at(i), gone())));
}

// Whoever paints a row paints the next ones, too, and a distant store gives them in one answer.
const RecordList::Row& RecordList::row(int record) const {
    static const Row nothing;
    if (const Row* kept = m_rows.object(record)) return *kept;
    paint([&] {
        if (m_keys) return readKeyed(record);
        const int end = std::min(record + rowsAhead, m_known);
        for (int i = record; i < end && !m_rows.contains(i); ++i)
            m_rows.insert(i, new Row(format(i)));
    });
    const Row* kept = m_rows.object(record);
    return kept != nullptr ? *kept : nothing;
}

bool RecordList::guarded(const std::function<void()>& body) const {
    try {
        body();
        return true;
    } catch (const RuntimeError& error) {
        const QString source =
            parent() != nullptr ? QString::fromLatin1(parent()->metaObject()->className()) : u"RecordList"_s;
        QTimer::singleShot(0, this, [error, source] { ShowProgrammFehler(error, source); });
    }
    return false;
}

bool RecordList::paint(const std::function<void()>& body) const {
    if (!m_failed) m_failed = !guarded(body);
    return !m_failed;
}

QString RecordList::key(int row) const {
    if (m_outdated) return {};
    if (const Extra* more = extra(row)) return more->key;
    const int record = row - static_cast<int>(m_shownLeading.size());
    if (record < 0 || record >= m_known) return {};
    return m_keys ? m_key.prefix + m_keys->at(record) : this->row(record).key;
}

// The key comes from the store and may hold anything.
QString RecordList::literal(Type type, const QString& key) {
    if (type == Type::Text || type == Type::Memo) return u'\'' + QString(key).replace(u'\'', u"''"_s) + u'\'';
    return QString(key).replace(u',', u'.');
}

QString RecordList::criteria(const QString& key) const {
    return m_key.field + u'=' + literal(m_rs->FieldType(m_key.field), key.mid(m_key.prefix.size()));
}

int RecordList::rowOf(const QString& key) {
    const auto same = [&](const Extra& row) { return row.key == key; };
    const auto leading = static_cast<int>(m_shownLeading.size());
    if (const auto found = std::find_if(m_shownLeading.begin(), m_shownLeading.end(), same);
        found != m_shownLeading.end())
        return static_cast<int>(found - m_shownLeading.begin());
    if (const auto found = std::find_if(m_shownClosing.begin(), m_shownClosing.end(), same);
        found != m_shownClosing.end())
        return leading + m_known + static_cast<int>(found - m_shownClosing.begin());
    if (m_keys) {
        const qsizetype at =
            key.startsWith(m_key.prefix) ? m_keys->indexOf(key.mid(m_key.prefix.size())) : -1;
        return at < 0 ? -1 : leading + static_cast<int>(at);
    }
    if (!m_rs || !key.startsWith(m_key.prefix) || key.size() == m_key.prefix.size()) return -1;
    m_rs->FindFirst(criteria(key));
    if (m_rs->NoMatch()) return -1;
    const int record = m_rs->AbsolutePosition();
    if (record >= m_known) grow(record + 1);
    return leading + record;
}

bool RecordList::refresh(const QString& key) {
    readAll();
    const int row = rowOf(key);
    if (row < 0) return false;
    m_rows.remove(row - static_cast<int>(m_shownLeading.size()));
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
    return true;
}

const Recordset& RecordList::record(int row) const {
    const int record = row - static_cast<int>(m_shownLeading.size());
    if (m_keys && record >= 0 && record < m_known) {
        m_single = gDB->OpenRecordset(m_select + u" WHERE "_s + m_key.field + u'=' +
                                      literal(keyType(), m_keys->at(record)) + u';');
        if (m_single->Eof()) throw RuntimeError(3167, u"Der Datensatz ist gelöscht."_s, u"RecordList"_s);
        return *m_single;
    }
    if (!m_rs || record < 0 || record >= m_known)
        throw RuntimeError(3021, u"Kein aktueller Datensatz."_s, u"RecordList"_s);
    m_rs->AbsolutePosition(record);
    return *m_rs;
}

int RecordList::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return static_cast<int>(m_shownLeading.size() + m_shownClosing.size()) + m_known;
}

int RecordList::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant RecordList::data(const QModelIndex& where, int role) const {
    if (!where.isValid() || where.row() >= rowCount() || where.column() >= columnCount()) return {};
    const ListColumn& column = m_columns[static_cast<std::size_t>(where.column())];
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
    if (const Extra* more = extra(where.row())) {
        if (role == Qt::DisplayRole) return more->texts.value(where.column());
        if (role == KeyRole) return more->key;
        return {};
    }
    const Row& shown = row(where.row() - static_cast<int>(m_shownLeading.size()));
    switch (role) {
    case Qt::DisplayRole:
        return shown.texts.value(where.column());
    case KeyRole:
        return shown.key;
    case Qt::ForegroundRole:
        return shown.muted || m_outdated ? QVariant(Theme::Current().muted) : QVariant();
    case Qt::DecorationRole:
        return where.column() == 0 && !shown.icon.isNull() ? QVariant(shown.icon) : QVariant();
    case Qt::CheckStateRole:
        if (where.column() == 0 && m_checked && !shown.gone)
            return shown.checked ? Qt::Checked : Qt::Unchecked;
        return {};
    default:
        return {};
    }
}

bool RecordList::setData(const QModelIndex& where, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !(flags(where) & Qt::ItemIsUserCheckable)) return false;
    const QString changed = key(where.row());
    return guarded([&] {
        m_change(changed, value.toInt() == Qt::Checked);
        refresh(changed);
    });
}

Qt::ItemFlags RecordList::flags(const QModelIndex& where) const {
    if (!where.isValid()) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (where.column() == 0 && m_change && extra(where.row()) == nullptr) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant RecordList::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const ListColumn& column = m_columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return column.title;
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
    if (role == SampleRole) return column.sample;
    return {};
}

void RecordList::sort(int column, Qt::SortOrder order) {
    if (m_keys || column >= columnCount() || (column == m_sortColumn && (column < 0 || order == m_sortOrder)))
        return;
    const auto before = std::pair(m_sortColumn, m_sortOrder);
    m_sortColumn = column;
    m_sortOrder = order;
    if (!guarded([this] { reload(); })) std::tie(m_sortColumn, m_sortOrder) = before;
}

bool RecordList::canFetchMore(const QModelIndex& parent) const {
    return !parent.isValid() && m_rs && !m_complete && !m_failed;
}

void RecordList::fetchMore(const QModelIndex& parent) {
    if (!canFetchMore(parent)) return;
    paint([this] {
        m_rs->AbsolutePosition(m_known - 1);
        const int known = walk(*m_rs, m_known - 1, moreKeys + 1);
        m_complete = m_rs->Eof();
        grow(known);
    });
}
