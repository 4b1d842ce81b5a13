#pragma once

#include <store/SqlText.h>

#include <QDate>
#include <QString>

#include <optional>

class Recordset;

namespace till {

class Sale;

/// What a sale can become that is no receipt.
enum class Papier { Angebot, Lieferung };

/// In what offers and delivery notes differ.
struct PaperKind {
    Papier kind;
    QString head, detail, key;  ///< tables, and the column that ties them
    QString one, article;       ///< "Angebot", "Das Angebot"
    QString noCustomer, failed; ///< messages
    QString printTitle, printQuestion;
    QString deleteQuestion;
    QString vorlage; ///< the template, and its kind for Print_Formular
    int form;
    bool movesStock;
};
[[nodiscard]] const PaperKind& KindOf(Papier papier);

/// The rules of frmKasseAngebote and frmKasseLieferung. All of it raises what the store raises.
class PaperHistory {
  public:
    PaperHistory(Sale& sale, Papier papier)
        : m_sale(sale)
        , m_kind(KindOf(papier)) {}

    [[nodiscard]] const PaperKind& kind() const { return m_kind; }
    /// The papers of a day, the latest first; of all days without one.
    [[nodiscard]] sql::Query List(std::optional<QDate> day) const;
    [[nodiscard]] sql::Query Lines(int id) const;

    /// The lines come into the open sale with their customer; those of a note move no stock when they are
    /// booked. False, and told, when that is refused or the cashier does not want it.
    [[nodiscard]] bool AddToOrder(int id);
    /// Asks, and takes the goods of a note back into stock when the cashier wants that. False when nothing
    /// was deleted.
    bool Delete(int id);
    void Print(int id); ///< the customer of the open sale stays
    /// Saves a note as a delivery file: asks where, and tells when it is written. A file that was there stays
    /// as it was when that fails (70).
    void SaveCsv(int id);

  private:
    [[nodiscard]] QString where(int id) const;
    [[nodiscard]] bool mayJoinOpenLines() const;
    void copyLine(const Recordset& from);

    Sale& m_sale;
    const PaperKind& m_kind;
};

} // namespace till
