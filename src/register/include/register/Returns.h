#pragma once

#include <register/ReturnDialog.h>

namespace till {

class Sale;

/// Goods that come back against a booked receipt.
class Returns {
  public:
    explicit Returns(Sale& sale)
        : m_sale(sale) {}

    /// A handler of its own; needs R_RechnungEdit.
    void ShowReklamation();
    [[nodiscard]] ReturnDialog NewDialog() { return ReturnDialog(m_sale); }

  private:
    Sale& m_sale;
};

} // namespace till
