#pragma once

#include <register/Register.h>
#include <register/RegisterScreen.h>

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class Commands;
class EntryKeyboard;
class KasseLayout;
class KassenMenus;
class SumPanel;
class WorkQueue;
namespace Ui {
class frmKasse;
}

/// The register's screen: a full-screen form for touch, keyboard and scanner. It is loaded when it has been
/// made; Open() shows it. Closing it asks about open sales first and may be refused.
///
///     auto* kasse = new frmKasse([&] { showDesktopLogin(); });
///     connect(kasse, &frmKasse::Unloaded, this, &frmLogin::comeBack);
///     kasse->Open();
class frmKasse : public QWidget, private till::RegisterScreen {
    Q_OBJECT

  public:
    /// `showDesktopLogin` lets another person log in at the register; it works on gKassenUser and is modal.
    explicit frmKasse(std::function<void()> showDesktopLogin, QWidget* parent = nullptr);
    ~frmKasse() override;

    /// Fills the screen, with and without a window manager: without a frame on a till that is nothing else,
    /// as a maximised window elsewhere.
    void Open();

    [[nodiscard]] till::Register& Till() { return m_till; }

  public slots:
    /// Rebuilds the list of the open sale, after its rows were changed elsewhere.
    void LoadBestellungen();

  signals:
    /// The form has been closed; whoever opened it may come back.
    void Unloaded();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void connectEntry();
    void connectKeys();
    void connectFunctions();
    void connectBasket();
    void unload();

    void refreshKeys();
    void showTitle(const QString& title);
    void fillScreen();
    void showClock();

    // What the register asks for
    void Show(till::Dialog which) override;
    void UnknownArticleSound() override;
    void Hint(const QString& text) override;
    void MovePointerAway() override;
    void Yield() override;
    void FocusInput() override;
    void FocusGruppe() override;

    std::function<void()> m_showDesktopLogin;
    std::unique_ptr<Ui::frmKasse> m_ui;
    till::Register m_till;
    std::unique_ptr<WorkQueue> m_queue;
    std::unique_ptr<KasseLayout> m_layout;
    std::unique_ptr<SumPanel> m_sum;
    Commands* m_commands = nullptr;
    KassenMenus* m_menus = nullptr;
    EntryKeyboard* m_keyboard = nullptr;
    QTimer m_clock;
    bool m_unloaded = false, m_inCloseEvent = false, m_resumed = false;
};
