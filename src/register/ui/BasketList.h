#pragma once

#include <QTableView>

/// The list of the open sale. It shows whole rows only, and the selected one stays in view whatever height
/// the rest of the form leaves.
class BasketList : public QTableView {
    Q_OBJECT

  public:
    explicit BasketList(QWidget* parent = nullptr);
    /// Selects a row and shows it; -1 clears the selection.
    void showRow(int row);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void fitRows();
};
