#pragma once

#include <QAbstractTableModel>

#include <functional>
#include <vector>

/// A read-only table over rows that somebody else holds: a cell becomes text when it is painted, so a list of
/// a hundred thousand rows costs nothing but its rows.
///
///     auto* model = new RowsModel({{u"Name"_s, Qt::AlignLeft, [this](int r) { return m_rows[r].name; }},
///                                  {u"Preis"_s, Qt::AlignRight, [this](int r) { return price(m_rows[r]);
///                                  }}},
///                                 [this] { return int(m_rows.size()); }, this);
///     model->refresh();   // after the rows changed
class RowsModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    struct Column {
        QString title;
        Qt::Alignment alignment = Qt::AlignLeft;
        std::function<QString(int row)> text;
    };
    RowsModel(std::vector<Column> columns, std::function<int()> count, QObject* parent = nullptr);

    /// Asks for the number of rows again; views lose their selection.
    void refresh();
    /// One row looks different now; rows outside the table are ignored.
    void rowChanged(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

  private:
    std::vector<Column> m_columns;
    std::function<int()> m_count;
    int m_rows = 0;
};
