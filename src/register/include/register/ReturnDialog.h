#pragma once

#include <text/Currency.h>

#include <QString>

#include <vector>

namespace till {

class Sale;

/// A line of a booked receipt.
struct ReturnPosition {
    int KundenNummer = 0;
    QString Kunde, ArtikelNummer, ArtikelName;
    double Buchungs_Menge = 0; ///< booked
    double Rueckgabe = 0;      ///< of it, what comes back
    double Menge = 0;
    QString Einheit;
    Currency EKPreis, VKPreis_Brutto;
    double VKPreis_Netto = 0, SteuerSatz = 0;
    QString SNNummer, WarenGruppe;
    bool ticked = false;
};

/// The rules of frmKasseReklamation: finds a receipt, and takes back the lines of it that are ticked. All
/// raise what the store raises.
class ReturnDialog {
  public:
    explicit ReturnDialog(Sale& sale)
        : m_sale(sale) {}

    /// cmdSuche. False when the box is to be emptied or typed again, which is told.
    bool Search(const QString& RechnungID);
    /// cmdSearchSerienNummer: the receipt on which the piece was sold.
    bool SearchSerienNummer(const QString& SNNummer);
    [[nodiscard]] const std::vector<ReturnPosition>& positions() const { return m_positions; }
    [[nodiscard]] QString Heading() const; ///< which receipt is listed, or that nothing was found
    void Tick(int row);                    ///< on and off; rows outside the list are ignored
    [[nodiscard]] Currency TickedSum() const;

    /// cmdOK: asks for the quantities and for a payout, books and prints. True when the dialog closes. A
    /// write that fails tells what stands in the store by then, and empties the list, so that the same
    /// positions are not taken back again without another search.
    [[nodiscard]] bool Confirm();

  private:
    [[nodiscard]] bool askQuantities();
    void write(bool payout, Currency sum);
    [[nodiscard]] QString whatIsWritten() const;

    Sale& m_sale;
    std::vector<ReturnPosition> m_positions;
    QString m_heading;

    struct Progress {
        int id = 0;           ///< of the return document; 0 without payout
        bool hasHead = false; ///< it is written
        int whole = 0, all = 0;
        QString current; ///< the position that is being written
    } m_progress;
};

} // namespace till
