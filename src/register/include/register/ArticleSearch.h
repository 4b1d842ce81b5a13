#pragma once

#include <store/SqlText.h>

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace till {

class Entry;
class Sale;

/// The search for an article (cmdSearch), and the rules of its form, frmKasseArtikelSuche. The list shows
/// articles under the key "ID_" and their number.
class ArticleSearch {
  public:
    ArticleSearch(Sale& sale, Entry& entry)
        : m_sale(sale)
        , m_entry(entry) {}
    /// Shows the search with what stands in the entry box and enters the article that was chosen; the
    /// multiplier holds for it. A handler of its own.
    void cmdSearch_Click();

    /// What is looked through: the columns of `Artikel`.
    [[nodiscard]] static QStringList Columns();
    /// The column, counted as in Columns, and what it must be like: one of them has to be. Wildcards keep
    /// their meaning, an apostrophe is a sign like any other.
    [[nodiscard]] static std::vector<std::pair<int, QString>> Patterns(const QString& text);
    [[nodiscard]] static QStringList Groups(); ///< raises what the store raises
    /// The articles of a group, or all of them for none.
    [[nodiscard]] static sql::Query InGroup(const QString& group);
    /// Loads gArtikel from the article's row. False, and nothing is changed, when it is gone.
    [[nodiscard]] static bool Select(const QString& key);
    /// cmdOK: the same, with gArtikel.Ergebnis 1; the loss is told.
    [[nodiscard]] static bool Choose(const QString& key);
    /// The stock of gArtikel as a line of text.
    [[nodiscard]] static QString StockText();

    inline static const QString KeyPrefix = QStringLiteral("ID_");

  private:
    Sale& m_sale;
    Entry& m_entry;
};

} // namespace till
