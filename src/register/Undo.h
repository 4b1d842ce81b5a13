#pragma once

#include <text/Currency.h>
#include <text/Value.h>

#include <QObject>
#include <QString>

#include <utility>
#include <vector>

class Recordset;

namespace till {

class Sale;

/// What was done to the open sale last, and the way back: cancelled lines return as new lines with the price
/// and the customer that they had, a discount or a price by hand gives way to what stood before. Rows of
/// Stornos stay. Steps are taken back one by one, the last one first; they belong to one sale and are
/// forgotten when it is booked, when another one begins, or when its rows were changed elsewhere.
class Undo : public QObject {
    Q_OBJECT
  public:
    explicit Undo(Sale& sale, QObject* parent = nullptr);

    /// The two prices of a line.
    struct Priced {
        int ID;
        Currency VKPreis, VKPreis_Rabatt;
        friend bool operator==(const Priced&, const Priced&) = default;
    };
    /// Of all open lines of this till, in their order. Raises what the store raises.
    [[nodiscard]] static std::vector<Priced> ReadPrices();

    struct Line {
        int ID = 0;
        QString ArtikelNummer, ArtikelName, SNNummer;
        std::vector<std::pair<QString, Value>> columns;
    };
    /// What is needed to bring the current row back. Raises what the store raises.
    [[nodiscard]] static Line Read(const Recordset& row);

    /// The line has been deleted and the list read again. A line that follows from another one (a deposit)
    /// and is cancelled right before or behind it becomes one step with it. A line with a number of its own
    /// (voucher, serial number) ends all that can be undone: whether its number is still free is not known.
    /// `deliveryNote`: the sale was loaded from one.
    void Cancelled(Line line, bool deliveryNote = false);
    /// Prices were changed; `before` was read before. Nothing that has changed makes no step.
    void Repriced(const QString& what, const std::vector<Priced>& before);

    /// Takes the last step back, or tells that the sale was changed elsewhere. Nothing happens without a
    /// step. Raises what the store raises, and then nothing has been taken back.
    void TakeBack();
    void Forget();

    [[nodiscard]] bool CanTakeBack() const { return !m_steps.empty(); }
    /// "Rückgängig: Storno Bergkäse", or the bare word when there is nothing.
    [[nodiscard]] QString Caption() const;

  signals:
    void Changed();

  private:
    /// Either lines that were cancelled or prices that were changed.
    struct Step {
        QString what;
        std::vector<Line> lines; ///< in the order of their entry; the others follow from the first
        bool deliveryNote = false;
        std::vector<Priced> before; ///< the lines whose prices changed
        std::vector<Priced> after;
    };

    [[nodiscard]] bool belong(const Step& step, const Step& other) const;
    [[nodiscard]] bool follows(const Line& source, const Line& linked) const;
    [[nodiscard]] bool stillFits(const Step& step) const;
    void restore(const Step& step);
    static void reprice(const Step& step);
    void renumber(int from, int to);

    Sale& m_sale;
    std::vector<Step> m_steps;
};

} // namespace till
