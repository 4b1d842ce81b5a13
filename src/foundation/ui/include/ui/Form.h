#pragma once

#include <session/Handle.h>
#include <ui/Commands.h>

#include <QDialog>
#include <QMainWindow>

#include <memory>
#include <vector>

class QAbstractButton;
class QLabel;
class Recordset;

/// The guard of a form's handlers: an error cancels every edit that is pending in the form's record sets and
/// is reported under the name of the form's class.
class FormGuard {
  public:
    explicit FormGuard(const QObject& form);
    ~FormGuard();

    /// True when `body` went through.
    template <typename Body>
    bool operator()(Body&& body) {
        return Handle(m_form.metaObject()->className(), std::forward<Body>(body), [this] { cancelEdits(); });
    }
    /// Opens a record set that the form owns until it is closed. Raises what the store raises.
    Recordset& open(const QString& source);

  private:
    void cancelEdits();
    const QObject& m_form;
    std::vector<std::unique_ptr<Recordset>> m_records;
};

/// Selects what stands in a box whenever it gets the focus, in every box of the form: what is typed next
/// replaces it.
void SelectTextOnFocus(QWidget& form);

/// A dialog on one record: the caller fills the record, shows the dialog with ShowModal and goes on when it
/// was accepted. The layout has the keys cmdOK and cmdCancel: Enter presses the one, Esc and the window's
/// cross the other, each once, wherever the focus is (a button that has the focus itself takes Enter, and so
/// does a box of several lines).
///
///     frmPersonalDetail::frmPersonalDetail(PersonalRecord& record, QWidget* parent)
///         : FormDialog(parent), m_ui(...) {
///         m_ui->setupUi(this);
///         setUpForm(m_ui->txtName);
///     }
///     void frmPersonalDetail::ok() {
///         if (FirstFailure({...}) || !m_binding.take()) return;
///         accept();
///     }
class FormDialog : public QDialog {
    Q_OBJECT

  public:
    explicit FormDialog(QWidget* parent = nullptr);
    ~FormDialog() override;
    void reject() override; ///< cancelled(), then closes; no further when `cancelled` says so

  protected:
    /// Behind setupUi. `first` has the focus when the form is shown.
    void setUpForm(QWidget* first);
    /// Other keys in the place of cmdOK and cmdCancel.
    void setKeys(QAbstractButton* confirm, QAbstractButton* cancel);
    /// The size comes back the next time.
    void rememberSize();
    [[nodiscard]] FormGuard& guard() { return m_guard; }

    /// The form was confirmed: check, write the record, accept(). What it raises is reported; the form stays
    /// open.
    virtual void ok() { accept(); }
    /// The form is given up; false keeps it open.
    virtual bool cancelled() { return true; }

    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    FormGuard m_guard;
    QAbstractButton *m_confirm = nullptr, *m_cancel = nullptr;
    QWidget* m_first = nullptr;
};

/// An area of the back office: a window of its own beside the shell, with menus and a bar of its commands,
/// panels between splitters, and a status bar that tells the store, what was done last, and who works here.
/// Esc closes it.
///
///     class frmPersonal : public AreaForm { ... };
///     frmPersonal::frmPersonal(QWidget* parent) : AreaForm(parent), ... {
///         m_ui->setupUi(this);
///         commands().add({...});
///         setUpArea({{u"&Datei"_s, {u"FileNew"_s, ...}}, ...}, {u"FileNew"_s, ...});
///     }
class AreaForm : public QMainWindow {
    Q_OBJECT

  public:
    explicit AreaForm(QWidget* parent = nullptr);
    ~AreaForm() override;

  signals:
    /// The form has been closed.
    void Unloaded();

  protected:
    struct Menu {
        QString title;
        std::vector<QString> keys;
    };
    /// Behind setupUi and the commands: menus, the bar above the form, the status bar, and the memory of
    /// window and splitters. The menu of help comes by itself.
    void setUpArea(const std::vector<Menu>& menus, const std::vector<QString>& bar);
    [[nodiscard]] Commands& commands() { return m_commands; }
    [[nodiscard]] FormGuard& guard() { return m_guard; }
    /// In the middle of the status bar until the next one.
    void tell(const QString& message);

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    FormGuard m_guard;
    Commands m_commands;
    QLabel* m_message = nullptr;
};
