#pragma once

namespace till {

class Sale;

/// One open sale of this till is set aside, so that the next customer can be served, and fetched again. Each
/// routine is a handler of its own. Lines are copied first and deleted then; an interruption in between
/// leaves them in both places, which the next act of the cashier asks about.
class Parking {
  public:
    explicit Parking(Sale& sale)
        : m_sale(sale) {}

    void ParkBestellung();
    void LoadParkedBestellung();
    /// Tells the panel which sale is parked, if any.
    void ShowParked();

  private:
    void park();
    void fetch();

    Sale& m_sale;
};

} // namespace till
