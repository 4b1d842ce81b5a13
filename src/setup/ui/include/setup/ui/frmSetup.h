#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmSetup;
}

/// Asks where the store is, when start-up did not find it. gSetupDone is 1 after a path was saved, else 0.
/// Needs no open store.
class frmSetup : public QDialog {
    Q_OBJECT

  public:
    explicit frmSetup(QWidget* parent = nullptr);
    ~frmSetup() override;
    void reject() override;

  private:
    void chooseFile();
    void save();
    std::unique_ptr<Ui::frmSetup> m_ui;
};
