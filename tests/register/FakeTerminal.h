#pragma once

#include <session/gZVT.h>
#include <text/RuntimeError.h>

#include <QStringList>

using namespace Qt::StringLiterals;

/// A terminal that books or not.
class FakeTerminal : public CardTerminal {
  public:
    explicit FakeTerminal(QStringList& calls)
        : m_calls(calls) {}
    void SetProtokoll(bool) override {}
    bool FindTerminal() override { return false; }
    QString Hersteller() const override { return {}; }
    QString Version() const override { return {}; }
    bool Bezahlen(Currency betrag) override {
        m_calls << u"Bezahlen %1"_s.arg(betrag.scaled());
        return books;
    }
    QString KartenName() const override { return u"girocard"_s; }
    void Storno() override { m_calls << u"Storno"_s; }
    void Gutschrift() override { throw RuntimeError(51, u"Terminal"_s); }
    void Kassenschnitt() override { m_calls << u"Kassenschnitt"_s; }
    bool books = false;

  private:
    QStringList& m_calls;
};
