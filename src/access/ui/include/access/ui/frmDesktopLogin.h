#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmDesktopLogin;
}

/// Another person takes over a running register: names to touch, digits to touch. Fills gKassenUser and sets
/// its Result; while gLoginPflicht is set it cannot be left without logging in.
class frmDesktopLogin : public QDialog {
    Q_OBJECT

  public:
    explicit frmDesktopLogin(QWidget* parent = nullptr);
    ~frmDesktopLogin() override;
    void reject() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void LoadUsers();
    void anmelden();
    void moveSelection(int by);

    std::unique_ptr<Ui::frmDesktopLogin> m_ui;
};
