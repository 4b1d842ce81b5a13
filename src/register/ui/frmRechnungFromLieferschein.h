#pragma once

#include <register/CollectiveInvoice.h>
#include <ui/RecordList.h>
#include <ui/Wizard.h>

#include <set>

namespace Ui {
class frmRechnungFromLieferschein;
}

/// Makes one invoice of several delivery notes of a customer, in three steps.
class frmRechnungFromLieferschein : public WizardForm {
    Q_OBJECT

  public:
    frmRechnungFromLieferschein(const till::CollectiveInvoice& invoice, QWidget* parent);
    ~frmRechnungFromLieferschein() override;

  protected:
    [[nodiscard]] bool mayLeave(int pane) override;
    void entered(int pane) override;
    void finish() override;

  private:
    [[nodiscard]] int customer() const;
    [[nodiscard]] std::vector<int> ticked() const { return {m_ticked.begin(), m_ticked.end()}; }
    void tick(bool all);
    void showSum();

    till::CollectiveInvoice m_invoice;
    std::unique_ptr<Ui::frmRechnungFromLieferschein> m_ui;
    RecordList* m_notes;
    std::set<int> m_ticked; ///< ids of notes
    int m_shown = 0;        ///< the customer whose notes are listed
};
