#pragma once

#include <session/WaitScreen.h>
#include <session/gZVT.h>
#include <zvt/TerminalConfig.h>

#include <QStringList>

#include <functional>
#include <memory>

/// The till's side of a card terminal on the network or on a serial line. It says "booked" only of what the
/// terminal has confirmed: when the line breaks after a payment was sent, it asks the terminal what became of
/// it, and when that remains open it tells the cashier so, books nothing and asks again before the next
/// payment. A payment is never sent twice by itself.
///
///     CZVT terminal(zvt::TerminalConfig::Read(*gSystem, KonfigIni()), screen, print);
///     if (terminal.Bezahlen(Currency::fromDouble(12.34))) gZahlung.KartenTyp = terminal.KartenName();
class CZVT : public CardTerminal {
  public:
    /// Prints a receipt of the terminal; what it raises is told to the cashier.
    using Print = std::function<void(const QStringList& lines)>;

    /// `screen` is kept by reference. `config` must be configured.
    CZVT(const zvt::TerminalConfig& config, WaitScreen& screen, Print print = {});
    ~CZVT() override;

    void SetProtokoll(bool on) override;
    [[nodiscard]] bool FindTerminal() override;
    [[nodiscard]] QString Hersteller() const override;
    [[nodiscard]] QString Version() const override;
    [[nodiscard]] bool Bezahlen(Currency betrag) override;
    [[nodiscard]] QString KartenName() const override;
    void Storno() override;     ///< asks for the receipt number, the last payment's is offered
    void Gutschrift() override; ///< asks for the amount
    void Kassenschnitt() override;

  private:
    class Cashier;
    std::unique_ptr<Cashier> m_cashier;
};
