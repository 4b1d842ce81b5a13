#pragma once

#include <text/Currency.h>

#include <QString>

#include <functional>
#include <memory>

/// The card terminal as the till sees it. Every call waits until the terminal is done, with events running,
/// and tells the cashier itself what there is to tell; none of them raises for what a terminal does.
class CardTerminal {
  public:
    virtual ~CardTerminal() = default;
    virtual void SetProtokoll(bool on) = 0; ///< the log of the line
    /// Looks for a terminal on the configured line; True when a compatible one answers.
    [[nodiscard]] virtual bool FindTerminal() = 0;
    [[nodiscard]] virtual QString Hersteller() const = 0;
    [[nodiscard]] virtual QString Version() const = 0;
    /// A payment of `betrag`, which is above 0 and has two decimals. True when it is booked.
    [[nodiscard]] virtual bool Bezahlen(Currency betrag) = 0;
    [[nodiscard]] virtual QString KartenName() const = 0; ///< card of the last payment
    virtual void Storno() = 0;
    virtual void Gutschrift() = 0;
    virtual void Kassenschnitt() = 0;
};

/// nullptr when there is none. To be used only while gZVTEnabled.
inline std::unique_ptr<CardTerminal> gZVT;

/// Makes the component from the settings in force; nullptr when none is configured.
using CardTerminalFactory = std::function<std::unique_ptr<CardTerminal>()>;
/// What CreateZVTObject calls; without one there is no terminal. Returns the factory before.
CardTerminalFactory SetCardTerminalFactory(CardTerminalFactory factory);
