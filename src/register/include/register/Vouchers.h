#pragma once

#include <text/Currency.h>

#include <QString>

#include <optional>

namespace till {

class Checkout;
class Entry;
class Sale;

/// Vouchers: sold as a line "401-Gutschein" that bears their number, redeemed as a line of the same number
/// that takes the amount off the sale, or paid out. Each routine is an event handler of its own and raises
/// nothing.
///
/// The new rest of a voucher is written after its receipt. Where the till knows that it is not, it says so
/// (VoucherDoubts.h).
class Vouchers {
  public:
    Vouchers(Sale& sale, Entry& entry)
        : m_sale(sale)
        , m_entry(entry) {}

    /// Asks for name, group, rate and amount; the voucher is valid and printed before it is paid.
    void CreateGutschein();
    /// Takes a voucher for the open sale and books the sale at once, what the voucher leaves in cash or by
    /// card.
    void RedeemGutschein();
    /// Books the rest of a voucher as taken out of the till. Only with an empty list.
    void PayoutGutschein();

  private:
    struct Voucher {
        int ID = 0;
        Currency Betrag;
        double SteuerSatz = 0; ///< percent
        QString WarenGruppe;
    };

    void create();
    void redeem();
    void payout();
    /// By its number, typed or scanned; nothing when there is none to use, which is told unless the cashier
    /// gave no number.
    [[nodiscard]] static std::optional<Voucher> ask();
    [[nodiscard]] bool pay(Checkout& checkout, const Voucher& voucher);
    [[nodiscard]] static bool isUnchanged(const Voucher& voucher);
    void removeLine(int ID);
    void writeRest(const Voucher& voucher, Currency rest, int Rechnung) const;

    Sale& m_sale;
    Entry& m_entry;
};

} // namespace till
