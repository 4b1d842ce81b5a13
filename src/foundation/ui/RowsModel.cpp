#include <ui/RowsModel.h>

#include <algorithm>
#include <utility>

RowsModel::RowsModel(std::vector<Column> columns, std::function<int()> count, QObject* parent)
    : QAbstractTableModel(parent)
    , m_columns(std::move(columns))
    , m_count(std::move(count))
    , m_rows(std::max(0, m_count())) {}

void RowsModel::refresh() {
    beginResetModel();
    m_rows = std::max(0, m_count());
    endResetModel();
}

void RowsModel::rowChanged(int row) {
    if (row >= 0 && row < m_rows) emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int RowsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_rows; }

int RowsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Column& column = m_columns[static_cast<std::size_t>(index.column())];
    if (role == Qt::DisplayRole) return column.text(index.row());
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
    return {};
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const Column& column = m_columns[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return column.title;
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
    return {};
}
