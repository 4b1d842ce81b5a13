#pragma once

#include <support/ScriptedDialogs.h>
#include <ui/ShowModal.h>

#include <QWidget>

/// ScriptedDialogs that also drives modal forms. The forms are shown for real, so keys and clicks take the
/// way they take in the shop.
///
///     ScriptedForms dialogs;
///     dialogs.expectModal(u"frmKasseRabatt"_s, [](QDialog& d) { typeText(d, u"10"_s); pressKey(d,
///     Qt::Key_Return); });
class ScriptedForms : public ScriptedDialogs {
  public:
    ScriptedForms();
    ~ScriptedForms() override;

    /// A form of this class name (or object name). `drive` must bring it to its end.
    ScriptedForms& expectModal(const QString& name, std::function<void(QDialog&)> drive);

  private:
    int run(QDialog& dialog);
    ModalHook m_before;
};

/// The child with this object name; fails the test and throws when there is none of this type.
template <typename T>
T& control(const QWidget& form, const QString& name);

/// A key to whatever has the focus inside `form` (the form itself when nothing has it).
void pressKey(QWidget& form, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
/// Each character as a key press.
void typeText(QWidget& form, const QString& text);
/// A click with the left button in the middle of the control; fails the test when it is hidden or disabled.
void clickOn(QWidget& form, const QString& name);
/// Shows the form and makes it the active window.
void showForm(QWidget& form);
/// Runs the event loop until `condition` holds; false after `milliseconds`.
bool waitFor(const std::function<bool()>& condition, int milliseconds = 3000);

[[noreturn]] void failMissing(const QWidget& form, const QString& name);

template <typename T>
T& control(const QWidget& form, const QString& name) {
    T* found = form.findChild<T*>(name);
    if (found == nullptr) failMissing(form, name);
    return *found;
}
