#pragma once

namespace till {

class Sale;

/// Prices changed by hand after a line was entered. A discount always starts from `VKPreis`, so a second one
/// replaces the first; a free price overwrites both columns and becomes the base of a later discount.
class PriceChanges {
  public:
    explicit PriceChanges(Sale& sale)
        : m_sale(sale) {}

    void Rabatt();       ///< cmdRabatt
    void ArtikelPreis(); ///< cmdArtikelPreis

  private:
    [[nodiscard]] bool mayChange() const; ///< the right, its absence told
    [[nodiscard]] bool lineMayBeDiscounted() const;
    [[nodiscard]] bool askRabatt() const;
    void discountLine();
    void discountAll();

    Sale& m_sale;
};

} // namespace till
