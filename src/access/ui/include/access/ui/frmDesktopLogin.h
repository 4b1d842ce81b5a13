#pragma once

#include <ui/Form.h>

#include <memory>

class RecordList;
namespace Ui {
class frmDesktopLogin;
}

/// Another person takes over a running register: names to touch, digits to touch. Fills gKassenUser and sets
/// its Result; while gLoginPflicht is set it cannot be left without logging in.
class frmDesktopLogin : public FormDialog {
    Q_OBJECT

  public:
    explicit frmDesktopLogin(QWidget* parent = nullptr);
    ~frmDesktopLogin() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    void LoadUsers();

    std::unique_ptr<Ui::frmDesktopLogin> m_ui;
    RecordList* m_users;
};
