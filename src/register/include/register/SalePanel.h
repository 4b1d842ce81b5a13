#pragma once

#include <text/Currency.h>

#include <QDateTime>
#include <QObject>
#include <QString>

#include <optional>

namespace till {

/// The sale that was booked last, in the words of the panel of the total.
struct LastSale {
    int Rechnung = 0; ///< RechnungID
    QDateTime Zeit;
    QString ZahlArt, KartenTyp;
    Currency Gesamt, Gegeben, Zurueck;

    [[nodiscard]] bool byCard() const;
    [[nodiscard]] QString title() const;   ///< "letzter Verkauf 14:05"
    [[nodiscard]] QString number() const;  ///< "Beleg 17"
    [[nodiscard]] QString caption() const; ///< "Rückgeld"; "Auszahlung" where nothing was to pay; "Karte"
    [[nodiscard]] QString amount() const;  ///< "2,77 €": what `caption` names
    [[nodiscard]] QString detail() const;  ///< "bar 10,00 von 7,23"; the name of the card
};

/// The sale that is parked at this till.
struct ParkedSale {
    QDate Tag;
    int Zeilen = 0;
    Currency Gesamt;
    QString Kunde, Kassierer; ///< "" for the standard customer; the first name

    /// "Geparkt um 14:05: Hanna Vogt, 3 Zeilen, 23,40 € (Jonas)"; the day where nobody knows the time any
    /// more.
    [[nodiscard]] QString text(const QDateTime& at) const;
};

/// What the panel of the total tells beside the total: a code that nobody knows, and what the last sale gave
/// back. Both stay until the next entry begins; which sale was the last one stays known beyond that.
class SalePanel : public QObject {
    Q_OBJECT
  public:
    using QObject::QObject;

    /// Nothing on file answers to `code`. Codes of one entry (an article and what is sold with it) are told
    /// together.
    void TellUnknown(const QString& code);
    /// A sale was booked.
    void TellSold(const LastSale& sale);
    /// The next entry begins: what the one before left is no news any more.
    void EntryBegan();
    void DropUnknown(); ///< the cashier has seen it
    /// A sale was parked now. The rows of the store do not tell the time.
    void TellParked(const QDateTime& at) { m_parkedAt = at; }
    void ShowParked(const ParkedSale& sale);
    void DropParked();

    [[nodiscard]] const QString& Unknown() const { return m_unknown; } ///< "Unbekannt: 4711"; "" for none
    [[nodiscard]] const std::optional<LastSale>& Last() const { return m_last; }
    [[nodiscard]] const QString& Parked() const { return m_parked; } ///< ParkedSale::text; "" for none
    [[nodiscard]] bool ShowsChange() const { return m_showsChange; } ///< no entry since the last sale

  signals:
    void Changed();

  private:
    QString m_unknown, m_parked;
    QDateTime m_parkedAt;
    std::optional<LastSale> m_last;
    bool m_showsChange = false;
};

} // namespace till
