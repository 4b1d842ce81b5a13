#pragma once

#include <register/RegisterScreen.h>
#include <session/CSystem.h>
#include <session/Globals.h>
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

/// What a till without start-up needs before its store is opened; `folder` ends in a separator.
inline void startSession(const QString& folder) {
    ResetSession();
    gSystem = std::make_unique<CSystem>();
    gAppPath = gDBPath = folder;
    gFormatPreis = QStringLiteral("###0.00");
    gDecimalStellen = 2;
    gVollerSteuerSatz = 19;
}
