#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The one seam for every stop that waits for a person. Production installs a host with touch-sized windows,
/// tests one that answers from a script. Cores call these functions and never know which host answers.

enum class MsgButtons { OK, OKCancel, YesNo, RetryCancel };
enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgAnswer { OK, Cancel, Yes, No, Retry };

struct FileRequest {
    QString title;
    QString filter; ///< "Text    (*.txt)|*.txt"
    QString name;   ///< suggested path
    bool save = false;
};

class DialogHost {
  public:
    virtual ~DialogHost() = default;
    virtual MsgAnswer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                             MsgAnswer preset) = 0;
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                            const QString& preset) = 0;
    /// A host that knows no scanner asks as inputBox does.
    virtual std::optional<QString> inputCode(const QString& prompt, const QString& title) {
        return inputBox(prompt, title, {});
    }
    virtual std::optional<QString> chooseFile(const FileRequest& request) = 0;
};

/// Installs `host` (not owned) and returns the one before; without a host every box raises error 5.
DialogHost* SetDialogHost(DialogHost* host);
[[nodiscard]] DialogHost* CurrentDialogHost();

inline constexpr char16_t SystemTitle[] = u"Systemmeldung...";

/// Shows a message and waits. `preset` is the button that Enter presses; by default OK, Yes
/// or Retry.
MsgAnswer MsgBox(const QString& text, MsgIcon icon = MsgIcon::Information,
                 MsgButtons buttons = MsgButtons::OK, const QString& title = QString::fromUtf16(SystemTitle),
                 std::optional<MsgAnswer> preset = {});
/// True for Yes. Question icon.
bool AskYesNo(const QString& text, const QString& title = QString::fromUtf16(SystemTitle));
/// std::nullopt when cancelled.
std::optional<QString> InputBox(const QString& prompt, const QString& title, const QString& preset = {});
/// The same for a number or code that may be scanned as well as typed: the end of a scan presses OK. In every
/// other box a scan is refused.
std::optional<QString> InputCode(const QString& prompt, const QString& title);
std::optional<QString> ChooseFile(const FileRequest& request);
