#pragma once

namespace till {

class Sale;
class Undo;

/// Prices changed by hand after a line was entered. A discount always starts from `VKPreis`, so a second one
/// replaces the first; a free price overwrites both columns and becomes the base of a later discount.
class PriceChanges {
  public:
    PriceChanges(Sale& sale, Undo& undo)
        : m_sale(sale)
        , m_undo(undo) {}

    void Rabatt();       ///< cmdRabatt
    void ArtikelPreis(); ///< cmdArtikelPreis

  private:
    [[nodiscard]] bool mayChange() const; ///< the right, its absence told
    [[nodiscard]] bool lineMayBeDiscounted() const;
    [[nodiscard]] bool askRabatt() const;
    void discountLine();
    void discountAll();

    Sale& m_sale;
    Undo& m_undo;
};

} // namespace till
