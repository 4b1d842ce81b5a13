#pragma once

#include <ui/Form.h>

#include <memory>

namespace Ui {
class frmSetup;
}

/// Asks where the store is, when start-up did not find it: the folder (`txtDBPath`) and, when the store is on
/// a server, its address (`txtDBServer`, never with the password). gSetupDone is 1 after both were saved,
/// else 0. Needs no open store.
class frmSetup : public FormDialog {
    Q_OBJECT

  public:
    explicit frmSetup(QWidget* parent = nullptr);
    ~frmSetup() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    void chooseFile();
    void checkServer(); ///< cmdDBServer
    [[nodiscard]] bool serverIsReadable();
    [[nodiscard]] QString server() const;
    std::unique_ptr<Ui::frmSetup> m_ui;
};
