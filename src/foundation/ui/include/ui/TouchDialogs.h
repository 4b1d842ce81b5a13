#pragma once

#include <session/MsgBox.h>

#include <QDialog>

#include <memory>

namespace Ui {
class MessageDialog;
class InputDialog;
} // namespace Ui

/// A message with touch-sized keys cmdOK, cmdCancel, cmdYes, cmdNo, cmdRetry. Enter presses the preset one;
/// Esc presses the one that changes nothing (Abbrechen, Nein, or the only OK); J and N answer a question.
/// `details` are behind a key of their own, cmdDetails.
class MessageDialog : public QDialog {
    Q_OBJECT

  public:
    MessageDialog(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                  MsgAnswer preset, QWidget* parent = nullptr, const QString& details = {});
    ~MessageDialog() override;
    [[nodiscard]] MsgAnswer answer() const { return m_answer; }
    void reject() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void finish(MsgAnswer answer);
    std::unique_ptr<Ui::MessageDialog> m_ui;
    MsgAnswer m_preset, m_escape, m_answer;
    bool m_question;
};

/// A line of text with cmdOK and cmdCancel; box `txtInput`, question `lblPrompt`.
class InputDialog : public QDialog {
    Q_OBJECT

  public:
    InputDialog(const QString& prompt, const QString& title, const QString& preset,
                QWidget* parent = nullptr);
    ~InputDialog() override;
    [[nodiscard]] QString text() const;
    /// A code may be scanned into the box, and there are keys for the digits of one.
    void waitForCode();

  private:
    std::unique_ptr<Ui::InputDialog> m_ui;
};

/// The host of production: shows the windows above over the active one. Making it also brings the toolkit's
/// own texts (file dialog, context menus) into German.
class TouchDialogHost : public DialogHost {
  public:
    TouchDialogHost();
    MsgAnswer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                     MsgAnswer preset) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& preset) override;
    std::optional<QString> inputCode(const QString& prompt, const QString& title) override;
    std::optional<QString> chooseFile(const FileRequest& request) override;
};

/// "Text    (*.txt)|*.txt|Alle (*.*)|*.*" as the toolkit's name filters, the pattern once each.
[[nodiscard]] QStringList NameFilters(const QString& filter);
