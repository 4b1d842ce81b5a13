#include <session/MsgBox.h>
#include <text/RuntimeError.h>

using namespace Qt::StringLiterals;

namespace {

DialogHost* currentHost = nullptr;

MsgAnswer usual(MsgButtons buttons) {
    switch (buttons) {
    case MsgButtons::YesNo:
        return MsgAnswer::Yes;
    case MsgButtons::RetryCancel:
        return MsgAnswer::Retry;
    case MsgButtons::OK:
    case MsgButtons::OKCancel:
        break;
    }
    return MsgAnswer::OK;
}

DialogHost& host(const QString& text) {
    if (!currentHost) throw RuntimeError(5, u"Niemand kann diese Frage beantworten: "_s + text, u"MsgBox"_s);
    return *currentHost;
}

} // namespace

DialogHost* SetDialogHost(DialogHost* host) { return std::exchange(currentHost, host); }

DialogHost* CurrentDialogHost() { return currentHost; }

MsgAnswer MsgBox(const QString& text, MsgIcon icon, MsgButtons buttons, const QString& title,
                 std::optional<MsgAnswer> preset) {
    return host(text).msgBox(text, buttons, icon, title, preset.value_or(usual(buttons)));
}

bool AskYesNo(const QString& text, const QString& title) {
    return MsgBox(text, MsgIcon::Question, MsgButtons::YesNo, title) == MsgAnswer::Yes;
}

std::optional<QString> InputBox(const QString& prompt, const QString& title, const QString& preset) {
    return host(prompt).inputBox(prompt, title, preset);
}

std::optional<QString> InputCode(const QString& prompt, const QString& title) {
    return host(prompt).inputCode(prompt, title);
}

std::optional<QString> ChooseFile(const FileRequest& request) {
    return host(request.title).chooseFile(request);
}
