#pragma once

namespace till {

class Sale;

/// A customer's account: open lines that wait until they are settled together. No stock moves and no receipt
/// arises before they come back into a sale. Each routine is a handler of its own.
class CustomerAccount {
  public:
    explicit CustomerAccount(Sale& sale)
        : m_sale(sale) {}

    void BookToKundenKonto();
    void LoadKundenKonto();

  private:
    void put();
    void fetch();

    Sale& m_sale;
};

} // namespace till
