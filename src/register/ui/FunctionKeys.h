#pragma once

#include <optional>

class QKeyEvent;

/// The functions of the register that a key of the keyboard starts.
enum class Taste {
    Clear,
    ArtikelPreis,
    Rabatt,
    Kunde,
    Storno,
    Total,
    Karte,
    Exit,
    Function,
    OpenLade,
    PrintLast,
    ShortCutFocus
};

/// The key table of the register.
class FunctionKeys {
  public:
    /// `f8IsPrice`: F8 is a second key for the free price. `shortCut`: Shift+S leads to the group keys and
    /// back.
    FunctionKeys(bool f8IsPrice, bool shortCut)
        : m_f8IsPrice(f8IsPrice)
        , m_shortCut(shortCut) {}

    /// What the key starts; nothing for a key that belongs to the control with the focus.
    [[nodiscard]] std::optional<Taste> find(const QKeyEvent& key) const;

  private:
    bool m_f8IsPrice;
    bool m_shortCut;
};
