#pragma once

#include <register/CustomerSearch.h>
#include <ui/Form.h>
#include <ui/RecordList.h>

namespace Ui {
class frmKasseKundenSuche;
}

/// The search for the customer of a sale: gKunde. The list follows what is typed.
class frmKasseKundenSuche : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseKundenSuche(QWidget* parent = nullptr);
    ~frmKasseKundenSuche() override;

  protected:
    void ok() override;

  private:
    void search();
    void tellNobody();
    void showVehicles(const QString& key);
    [[nodiscard]] till::CustomerSearch::By by() const;

    std::unique_ptr<Ui::frmKasseKundenSuche> m_ui;
    RecordList *m_customers, *m_vehicles;
};
