#pragma once

#include <register/CustomerSearch.h>

#include <QDialog>

#include <memory>

class QStandardItemModel;
namespace Ui {
class frmKasseKundenSuche;
}

/// The search for the customer of a sale: gKunde. The list follows what is typed.
class frmKasseKundenSuche : public QDialog {
    Q_OBJECT

  public:
    explicit frmKasseKundenSuche(QWidget* parent = nullptr);
    ~frmKasseKundenSuche() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    void search();
    void selectNumber(const QString& number);
    void showVehicles(int row);
    void ok();
    [[nodiscard]] till::CustomerSearch::By by() const;

    till::CustomerSearch m_customers;
    std::unique_ptr<Ui::frmKasseKundenSuche> m_ui;
    QStandardItemModel* m_vehicles;
};
