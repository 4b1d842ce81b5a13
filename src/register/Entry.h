#pragma once

#include <session/gArtikel.h>
#include <store/Recordset.h>
#include <text/Currency.h>

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace till {

class Sale;

/// What the cashier types and what becomes of it: the rules of the entry text and the one decision routine.
class Entry : public QObject {
    Q_OBJECT
  public:
    explicit Entry(Sale& sale, QObject* parent = nullptr)
        : QObject(parent)
        , m_sale(sale) {}
    void Open(); ///< the articles

    [[nodiscard]] const QString& input() const { return m_input; }
    [[nodiscard]] const QString& mal() const { return m_mal; }
    /// Stores the text and examines it for "*", "+" and a trailing "-".
    void SetInput(const QString& text);
    void SetMal(const QString& text);
    void Clear();
    /// An error has left the text that stands in the box, if any.
    void TellLeft();
    /// cmdPlus and "+": more of the selected line, whatever it is; the entry is empty afterwards.
    void AddQuantity(int amount);

    // Handlers of their own
    void Enter(); ///< cmdEnter
    /// Adds a line from gArtikel and empties the entry; false when it failed and nothing was added.
    bool AddArtikelToBestellung();
    /// Adds a line that stands for money: without a purchase price, and with the amount that was told whoever
    /// the customer is. As AddArtikelToBestellung.
    bool AddAmount(ArtikelRecord line);
    void BookVerbundArtikel(const QString& ArtikelNummer, double Menge);

    bool IsVerbundBuchung = false; ///< linked articles are being entered and expand no further

  signals:
    void InputChanged(const QString& text);
    void MalChanged(const QString& text);
    /// What an error has left in the box should be replaced by what is typed or scanned next.
    void InputLeft();

  private:
    enum class Next { Add, Again, End };

    void decide();

    void examine();
    void plus();
    void minus();
    [[nodiscard]] bool voucherSelected();
    [[nodiscard]] int multiplier() const;
    [[nodiscard]] bool isMultiplierMeant() const;

    [[nodiscard]] Next freeAmount(const QString& trimmed);
    /// Nothing for an amount that cannot be meant, which is told.
    [[nodiscard]] static std::optional<Currency> readAmount(const QString& trimmed);
    /// The text in a criterion. Raises 3075, in the words of a till, for one that cannot stand there.
    [[nodiscard]] static QString searchable(const QString& text);
    [[nodiscard]] Next lookup(const QString& text, bool& orderSearchDone);
    [[nodiscard]] Next found(const QString& trimmed);
    [[nodiscard]] Next notFound(const QString& text, bool& orderSearchDone);
    [[nodiscard]] bool priceTemplate(const QString& text, const QString& trimmed);
    void pressCode(const QString& trimmed, Currency price, double steuerSatz);
    /// nullopt when no supplier knows the number; an empty text when the choice was cancelled.
    [[nodiscard]] std::optional<QString> orderNumber(const QString& text);
    [[nodiscard]] Recordset& rsArtikel(); ///< raises 91 before Open

    Sale& m_sale;
    std::unique_ptr<Recordset> m_rsArtikel;
    QString m_input, m_mal;
    bool m_mayHaveLinks = true; ///< false for an article that is known to have none
};

} // namespace till
