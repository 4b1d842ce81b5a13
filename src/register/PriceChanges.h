#pragma once

#include <register/Register.h>

namespace till {

/// Prices changed by hand after a line was entered. A discount always starts from `VKPreis`, so a second one
/// replaces the first; a free price overwrites both columns and becomes the base of a later discount.
class Register::PriceChanges {
  public:
    explicit PriceChanges(Register& owner)
        : m_owner(owner) {}

    void Rabatt();       ///< cmdRabatt
    void ArtikelPreis(); ///< cmdArtikelPreis

  private:
    [[nodiscard]] bool mayChange() const; ///< the right, its absence told
    [[nodiscard]] bool lineMayBeDiscounted() const;
    [[nodiscard]] bool askRabatt() const;
    void discountLine();
    void discountAll();

    Register& m_owner;
};

} // namespace till
