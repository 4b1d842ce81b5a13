#pragma once

#include <register/RegisterScreen.h>
#include <session/MsgBox.h>

#include <cstdio>
#include <cstdlib>

/// A screen that nobody looks at: every dialog is left without an answer.
class NoScreen : public till::RegisterScreen {
  public:
    void Show(till::Dialog) override {}
    void UnknownArticleSound() override {}
    void MovePointerAway() override {}
    void Yield() override {}
    void FocusInput() override {}
    void FocusGruppe() override {}
};

/// Any message ends the program: there is nobody to read it.
class NoDialogs : public DialogHost {
  public:
    MsgAnswer msgBox(const QString& text, MsgButtons, MsgIcon, const QString&, MsgAnswer) override {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::exit(1);
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { std::exit(1); }
    std::optional<QString> chooseFile(const FileRequest&) override { std::exit(1); }
};
