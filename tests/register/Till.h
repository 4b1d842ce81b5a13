#pragma once

#include <register/Register.h>
#include <session/Globals.h>
#include <session/gAngaben.h>
#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <session/gZahlung.h>
#include <support/FixedClock.h>
#include <support/Print.h>
#include <support/ScriptedDialogs.h>
#include <support/TempShop.h>

#include <QFile>

#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <harness/Session.h>
#include <set>

using namespace Qt::StringLiterals;

/// A screen whose dialogs answer from a script; one too many or too few fails the test.
class ScriptedScreen : public till::RegisterScreen {
  public:
    ~ScriptedScreen() override {
        for (const auto& [which, answer] : m_expected)
            ADD_FAILURE() << "never shown: dialog " << int(which);
    }
    void expect(till::Dialog which, std::function<void()> answer) {
        m_expected.emplace_back(which, std::move(answer));
    }

    void Show(till::Dialog which) override {
        if (isQuiet) return;
        if (m_expected.empty() || m_expected.front().first != which) {
            ADD_FAILURE() << "nobody expected dialog " << int(which);
            return;
        }
        const auto answer = m_expected.front().second;
        m_expected.pop_front();
        answer();
    }
    [[nodiscard]] bool CanShow(till::Dialog which) const override { return shown.contains(which); }
    void UnknownArticleSound() override { ++sounds; }
    void Hint(const QString& text) override { hints << text; }
    void MovePointerAway() override {}
    void Yield() override {
        if (onYield) onYield();
    }
    void FocusInput() override { ++focused; }
    void FocusGruppe() override {}

    std::set<till::Dialog> shown; ///< what not every screen has
    int sounds = 0, focused = 0;
    QStringList hints;
    bool isQuiet = false; ///< every dialog is left without an answer
    std::function<void()> onYield;

  private:
    std::deque<std::pair<till::Dialog, std::function<void()>>> m_expected;
};

/// A till in a small shop: what is typed and scanned here goes through the real core into a real store.
class Till : public testing::Test {
  protected:
    explicit Till(const QString& server = {})
        : shop(server) {
        tillSession();
        writeFile(u"karten.txt"_s, "VISA\r\n\r\nGirocard\r\n");
    }
    void SetUp() override { open(); }

    void writeFile(const QString& name, const QByteArray& content) {
        QFile file(shop.folder() + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    /// The till is switched on, for the first time or again.
    void open() {
        reg = std::make_unique<till::Register>(screen);
        reg->Load();
        reg->ResumeBooking();
    }
    /// As a scanner: the text, then Enter.
    void scan(const QString& text) {
        for (const QChar c : text)
            reg->SetInput(reg->Input() + c);
        reg->cmdEnter_Click();
    }
    void type(const QString& text) {
        for (const QChar c : text)
            reg->SetInput(reg->Input() + c);
    }
    [[nodiscard]] QString line(int row) {
        QStringList cells;
        for (int c = 0; c < till::Basket::ColumnCount; ++c)
            cells << reg->basket().cell(row, till::Basket::Column(c));
        return cells.join(u'|');
    }
    [[nodiscard]] QStringList list() {
        QStringList lines;
        for (int row = 0; row < reg->basket().rowCount(); ++row)
            lines << line(row);
        return lines;
    }
    void payCash(double given) {
        screen.expect(till::Dialog::KasseTotal, [given] {
            gZahlung.Ergebnis = 1;
            gZahlung.ZahlArt = u"BAR"_s;
            gZahlung.Betrag_Gegeben = Currency::fromDouble(given);
            gZahlung.Betrag_Zurueck = gZahlung.Betrag_Gegeben - gZahlung.Betrag_Gesamt;
        });
        reg->cmdTotal_Click();
    }

    TempShop shop;
    FixedClock clock;
    ScriptedDialogs dialogs;
    ScriptedScreen screen;
    std::unique_ptr<till::Register> reg;
};
