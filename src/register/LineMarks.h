#pragma once

#include <text/Currency.h>

#include <QHash>
#include <QString>
#include <QStringList>

namespace till {

/// The mark of a discounted line, "−10 %", from its list price and its price, per unit. "" where the
/// customer pays the list price or more, or where there is none.
[[nodiscard]] QString DiscountMark(Currency VKPreis, Currency VKPreis_Rabatt);

/// "8 Zeilen · 36 Artikel"; "" for no line. `pieces` is the sum of the quantities.
[[nodiscard]] QString CountText(int lines, double pieces);

/// Which lines of a sale came by themselves with the line above them. The store does not keep that, so it is
/// found anew: a line that the links of the last article of its own demand, each link once.
///
///     LinkedLines links;
///     links.link(u"wasser", u"pfand");
///     links.next(u"wasser");   // false
///     links.next(u"pfand");    // true
///     links.next(u"pfand");    // false: this one was scanned
class LinkedLines {
  public:
    void link(const QString& source, const QString& dest) { m_links[source] << dest; }
    /// The lines in the order of the sale.
    [[nodiscard]] bool next(const QString& ArtikelNummer);

  private:
    QHash<QString, QStringList> m_links;
    QStringList m_due; ///< what may still come with the article above
};

} // namespace till
