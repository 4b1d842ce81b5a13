#include <support/ScriptedDialogs.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const char* iconName(MsgIcon icon) {
    switch (icon) {
    case MsgIcon::None:
        return "none";
    case MsgIcon::Critical:
        return "critical";
    case MsgIcon::Question:
        return "question";
    case MsgIcon::Exclamation:
        return "exclamation";
    case MsgIcon::Information:
        return "information";
    }
    return "?";
}

bool matches(const QString& expected, const QString& actual) {
    if (expected.endsWith(u"...*"_s)) return actual.startsWith(expected.chopped(4));
    return actual == expected;
}

MsgAnswer harmless(MsgButtons buttons) {
    return buttons == MsgButtons::YesNo ? MsgAnswer::No
           : buttons == MsgButtons::OK  ? MsgAnswer::OK
                                        : MsgAnswer::Cancel;
}

bool offers(MsgButtons buttons, MsgAnswer answer) {
    switch (buttons) {
    case MsgButtons::OK:
        return answer == MsgAnswer::OK;
    case MsgButtons::OKCancel:
        return answer == MsgAnswer::OK || answer == MsgAnswer::Cancel;
    case MsgButtons::YesNo:
        return answer == MsgAnswer::Yes || answer == MsgAnswer::No;
    case MsgButtons::RetryCancel:
        return answer == MsgAnswer::Retry || answer == MsgAnswer::Cancel;
    }
    return false;
}

} // namespace

ScriptedDialogs::ScriptedDialogs()
    : m_before(SetDialogHost(this)) {}

ScriptedDialogs::~ScriptedDialogs() {
    verify();
    SetDialogHost(m_before);
}

ScriptedDialogs& ScriptedDialogs::expectMsgBox(const QString& text, MsgIcon icon, MsgAnswer answer,
                                               const QString& title) {
    Step& step = expect(Kind::MsgBox);
    step.text = text;
    step.icon = icon;
    step.answer = answer;
    step.title = title;
    return *this;
}

ScriptedDialogs& ScriptedDialogs::expectInput(const QString& prompt, std::optional<QString> answer,
                                              const QString& title) {
    Step& step = expect(Kind::Input);
    step.text = prompt;
    step.value = std::move(answer);
    step.title = title;
    return *this;
}

ScriptedDialogs& ScriptedDialogs::expectFile(const QString& title, std::optional<QString> path) {
    Step& step = expect(Kind::File);
    step.text = title;
    step.value = std::move(path);
    return *this;
}

ScriptedDialogs& ScriptedDialogs::expectError(int number) {
    Step& step = expect(Kind::Error);
    step.number = number;
    return *this;
}

ScriptedDialogs::Step& ScriptedDialogs::expect(Kind kind) {
    Step& step = m_steps.emplace_back();
    step.kind = kind;
    return step;
}

QString ScriptedDialogs::describe(const Step& step) {
    switch (step.kind) {
    case Kind::MsgBox:
        return u"message \""_s + step.text + u'"';
    case Kind::Input:
        return u"input \""_s + step.text + u'"';
    case Kind::File:
        return u"file dialog \""_s + step.text + u'"';
    case Kind::Error:
        return u"error report "_s + QString::number(step.number);
    case Kind::Modal:
        return u"form "_s + step.text;
    }
    return {};
}

std::optional<ScriptedDialogs::Step> ScriptedDialogs::take(Kind kind, const QString& what) {
    if (m_steps.empty()) {
        ADD_FAILURE() << "nobody expected: " << what.toStdString();
        return std::nullopt;
    }
    if (m_steps.front().kind != kind) {
        ADD_FAILURE() << "came:     " << what.toStdString()
                      << "\nexpected: " << describe(m_steps.front()).toStdString();
        return std::nullopt;
    }
    Step step = std::move(m_steps.front());
    m_steps.pop_front();
    return step;
}

void ScriptedDialogs::verify() {
    for (const Step& step : m_steps)
        ADD_FAILURE() << "never came: " << describe(step).toStdString();
    m_steps.clear();
}

MsgAnswer ScriptedDialogs::msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                                  MsgAnswer) {
    lastMessage = text;
    const QString what = u"message \""_s + text + u"\" ("_s + QLatin1StringView(iconName(icon)) +
                         u", title \""_s + title + u"\")"_s;
    const bool report = icon == MsgIcon::Critical && title == u"Unerwarteter Fehler..."_s;
    const std::optional<Step> step = take(report ? Kind::Error : Kind::MsgBox, what);
    if (!step) return harmless(buttons);
    if (report) {
        EXPECT_TRUE(text.contains(u"\n"_s + QString::number(step->number) + u" - "_s))
            << "expected error " << step->number << ", came: " << text.toStdString();
        return MsgAnswer::OK;
    }
    EXPECT_TRUE(matches(step->text, text))
        << "came:     " << text.toStdString() << "\nexpected: " << step->text.toStdString();
    EXPECT_STREQ(iconName(step->icon), iconName(icon)) << text.toStdString();
    if (!step->title.isEmpty()) {
        EXPECT_EQ(step->title.toStdString(), title.toStdString()) << text.toStdString();
    }
    if (!offers(buttons, step->answer)) {
        ADD_FAILURE() << "the box has no such button: " << text.toStdString();
        return harmless(buttons);
    }
    return step->answer;
}

std::optional<QString> ScriptedDialogs::inputBox(const QString& prompt, const QString& title,
                                                 const QString& preset) {
    lastPreset = preset;
    const std::optional<Step> step = take(Kind::Input, u"input \""_s + prompt + u'"');
    if (!step) return std::nullopt;
    EXPECT_TRUE(matches(step->text, prompt))
        << "came:     " << prompt.toStdString() << "\nexpected: " << step->text.toStdString();
    if (!step->title.isEmpty()) {
        EXPECT_EQ(step->title.toStdString(), title.toStdString());
    }
    return step->value;
}

std::optional<QString> ScriptedDialogs::chooseFile(const FileRequest& request) {
    lastFile = request;
    const std::optional<Step> step = take(Kind::File, u"file dialog \""_s + request.title + u'"');
    if (!step) return std::nullopt;
    EXPECT_EQ(step->text.toStdString(), request.title.toStdString());
    return step->value;
}
