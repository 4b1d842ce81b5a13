#pragma once

#include <ui/Areas.h>
#include <ui/Commands.h>

#include <QMainWindow>

#include <memory>

class KasseOpener;
class QLabel;
namespace Ui {
class frmMain;
}

/// The back office's home: the bar `mainButtonBar` with one entry for each area. Closing it, by "Abmelden" or
/// by its window, unloads the areas and leads back to the login.
class frmMain : public QMainWindow {
    Q_OBJECT

  public:
    explicit frmMain(KasseOpener& kasse, QWidget* parent = nullptr);
    ~frmMain() override;

    /// The entries of the bar.
    [[nodiscard]] const Commands& Bar() const { return m_bar; }

  signals:
    void Unloaded();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void fillBar();
    void Logout();
    void showTillUser(); ///< who works at the register, while it is open

    std::unique_ptr<Ui::frmMain> m_ui;
    KasseOpener& m_kasse;
    Commands m_bar;
    Areas m_areas;
    QLabel* m_till = nullptr;
};
