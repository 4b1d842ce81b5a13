#pragma once

#include <store/Recordset.h>

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace till {

/// The hit list of the customer search (frmKasseKundenSuche): the standard customer first, then the customers
/// that are not blocked, read as far as the list is scrolled.
class CustomerSearch : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum By { Number, Name, Town };
    enum Column { KundenNummer, Name_1, Strasse, PLZ, Ort, ColumnCount };

    explicit CustomerSearch(QObject* parent = nullptr);
    ~CustomerSearch() override;

    /// `text` is looked for anywhere in the name or town; by number all are listed.
    void Search(By by, const QString& text);
    /// The list key of a row: "ID" and the customer's id, "ID0" for the standard customer.
    [[nodiscard]] QString key(int row) const;
    /// cmdOK: loads gKunde from the row and sets its Ergebnis 1. False, with the loss told, when the customer
    /// has been deleted meanwhile.
    [[nodiscard]] bool Choose(int row);
    /// The vehicles of a row's customer, one text per column of VehicleHeaders().
    [[nodiscard]] std::vector<QStringList> Vehicles(int row) const;
    [[nodiscard]] static QStringList VehicleHeaders();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

  private:
    struct Row {
        int KundenID = 0;
        QStringList texts;
    };
    std::unique_ptr<Recordset> m_rs;
    std::vector<Row> m_rows;
    bool m_more = false;
};

} // namespace till
