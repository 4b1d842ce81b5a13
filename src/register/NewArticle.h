#pragma once

#include <QString>

class Recordset;

namespace till {

class Sale;

/// An entry that is not on file may become an article: the question, the right, the record and the row.
class NewArticle {
  public:
    explicit NewArticle(Sale& sale)
        : m_sale(sale) {}
    /// The screen can show an article's record, and nobody has switched the question off.
    [[nodiscard]] bool isAsked() const;
    /// Asks, shows the record for `Nummer` and writes it into `rsArtikel`. False when nothing was made, which
    /// the cashier knows. Raises what the store raises; a pending row is dropped then.
    [[nodiscard]] bool Make(const QString& Nummer, Recordset& rsArtikel);

  private:
    Sale& m_sale;
};

} // namespace till
