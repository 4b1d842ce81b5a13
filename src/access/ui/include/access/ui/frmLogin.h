#pragma once

#include <access/ui/KasseOpener.h>

#include <QPointer>

#include <memory>
#include <vector>

class TouchKey;
class frmMain;
namespace Ui {
class frmLogin;
}

/// The first screen, and the one the program comes back to: pick a name, type the PIN. Digits are the PIN
/// wherever the focus is. As long as there are no more than `mostKeys` people, each has a key (cmdUser0, ...)
/// beside the list. Opens the shell, or the register when the till is nothing else. Closing it ends the
/// program.
class frmLogin : public QWidget {
    Q_OBJECT

  public:
    static constexpr int mostKeys = 12;
    explicit frmLogin(KasseFactory openKasse, QWidget* parent = nullptr);
    ~frmLogin() override;

  signals:
    /// The form has been closed, and with it the program ends.
    void Unloaded();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void LoadUsers();
    /// `toShell`: cmdMain, which leads to the shell in any case.
    void anmelden(bool toShell);
    void StartKasse();
    void showMain();
    void comeBack();
    void selectByText(const QString& text);
    void showKeys();
    void markUser();
    void chooseUser(int row); ///< and on to the PIN
    void typePin(const QString& digit);
    /// The text of cboUser is the name of the selected person.
    [[nodiscard]] bool isSomebody() const;
    void tellNobody();
    bool handleKey(const QKeyEvent& key); ///< of cboUser
    bool emptyTyped(); ///< what Esc does before it ends the program; false when nothing was typed

    std::unique_ptr<Ui::frmLogin> m_ui;
    KasseOpener m_kasse;
    QPointer<frmMain> m_main;
    std::vector<TouchKey*> m_keys;
};
