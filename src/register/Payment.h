#pragma once

class QString;

namespace till {

class Sale;

/// The payment of the open sale, from the key to the printed document.
class Payment {
  public:
    explicit Payment(Sale& sale)
        : m_sale(sale) {}

    void Total();                            ///< cmdTotal
    void ByKarte(const QString& KartenName); ///< PayByKarte

  private:
    Sale& m_sale;
};

} // namespace till
