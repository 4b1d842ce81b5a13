#pragma once

#include <session/MsgBox.h>
#include <support/Print.h>

#include <deque>
#include <functional>

/// Answers every stop for a person from a script and fails the test on a box too many, too few, in another
/// order or with another text. Installed for the life of the object.
///
///     ScriptedDialogs dialogs;
///     dialogs.expectMsgBox(u"Möchten Sie alle Artikel rabattieren?"_s, MsgIcon::Question, MsgAnswer::Yes);
///     register.Rabatt();
///     // the destructor fails the test when the box never came
class ScriptedDialogs : public DialogHost {
  public:
    ScriptedDialogs();
    ~ScriptedDialogs() override;
    ScriptedDialogs(const ScriptedDialogs&) = delete;
    ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

    /// A box whose whole text is `text`, or starts with it when `text` ends in "...*" ("Es sind noch...*").
    ScriptedDialogs& expectMsgBox(const QString& text, MsgIcon icon = MsgIcon::Information,
                                  MsgAnswer answer = MsgAnswer::OK, const QString& title = {});
    /// `answer` empty: cancelled.
    ScriptedDialogs& expectInput(const QString& prompt, std::optional<QString> answer,
                                 const QString& title = {});
    ScriptedDialogs& expectFile(const QString& title, std::optional<QString> path);
    /// The program reports an unexpected error of this number.
    ScriptedDialogs& expectError(int number);

    /// Fails the test when something expected has not come, and forgets it.
    void verify();
    [[nodiscard]] bool done() const { return m_steps.empty(); }

    MsgAnswer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                     MsgAnswer preset) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& preset) override;
    std::optional<QString> chooseFile(const FileRequest& request) override;

    QString lastMessage; ///< the whole text of the last box
    /// What inputBox and chooseFile offered last, for tests of presets.
    QString lastPreset;
    FileRequest lastFile;

  protected:
    enum class Kind { MsgBox, Input, File, Error, Modal };
    struct Step {
        Kind kind = Kind::MsgBox;
        QString text, title;
        MsgIcon icon = MsgIcon::None;
        MsgAnswer answer = MsgAnswer::OK;
        std::optional<QString> value;
        int number = 0;
        std::function<void(void*)> drive; ///< of a modal form
    };
    /// Adds a step to be filled.
    Step& expect(Kind kind);
    /// The next step when it is of this kind; otherwise fails the test, telling what came, and gives nothing.
    std::optional<Step> take(Kind kind, const QString& what);
    static QString describe(const Step& step);

  private:
    std::deque<Step> m_steps;
    DialogHost* m_before;
};
