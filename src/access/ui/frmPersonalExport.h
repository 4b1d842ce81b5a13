#pragma once

#include <ui/Wizard.h>

#include <memory>

namespace Ui {
class frmPersonalExport;
}

/// Writes the staff to a CSV file, in three steps.
class frmPersonalExport : public WizardForm {
    Q_OBJECT

  public:
    explicit frmPersonalExport(QWidget* parent = nullptr);
    ~frmPersonalExport() override;

  protected:
    [[nodiscard]] bool mayLeave(int pane) override;
    void entered(int pane) override;
    void finish() override;

  private:
    void choose();
    std::unique_ptr<Ui::frmPersonalExport> m_ui;
};
