#pragma once

namespace till {

class Sale;

/// Money that goes into the till or out of it without a sale, and what was taken since the last closing. Each
/// routine is a handler of its own. A movement is booked like a sale of one line, so it needs an empty list.
class CashMovements {
  public:
    explicit CashMovements(Sale& sale)
        : m_sale(sale) {}

    void BookEinlage();
    void BookEntnahme();
    void ShowUmsatzAbfrage(); ///< needs R_Setup

  private:
    struct Kind;
    void book(const Kind& kind);

    Sale& m_sale;
};

} // namespace till
