#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui {
class frmSetup;
}

/// Asks where the store is, when start-up did not find it: the folder (`txtDBPath`) and, when the store is on
/// a server, its address (`txtDBServer`, never with the password). gSetupDone is 1 after both were saved,
/// else 0. Needs no open store.
class frmSetup : public QDialog {
    Q_OBJECT

  public:
    explicit frmSetup(QWidget* parent = nullptr);
    ~frmSetup() override;
    void reject() override;

  private:
    void chooseFile();
    void save();
    void checkServer(); ///< cmdDBServer
    [[nodiscard]] bool serverIsReadable();
    [[nodiscard]] QString server() const;
    static void focus(QLineEdit* box);
    std::unique_ptr<Ui::frmSetup> m_ui;
};
