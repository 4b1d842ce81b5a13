#pragma once

namespace till {

class Sale;

/// The receipt of the sale that was booked last, printed once more, in one copy and without another question.
class Reprint {
  public:
    explicit Reprint(Sale& sale)
        : m_sale(sale) {}
    void Last(); ///< tells when nothing was booked since the till was opened

  private:
    Sale& m_sale;
};

} // namespace till
