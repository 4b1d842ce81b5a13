#pragma once

#include <store/Database.h>
#include <support/Print.h>
#include <support/TestStore.h>

#include <QStringList>

/// A shop of its own for the life of the object: a folder with konfig.ini and an empty store with all tables,
/// the session's globals at their start values and pointing to it, gDB opened. The machine is called
/// "KASSE-1".
///
///     TempShop shop;
///     shop.insert(u"Artikel", {{u"Nummer", u"4711"_s}, {u"VKPreis", Currency::fromDouble(1.99)}});
///     EXPECT_EQ(1, shop.count(u"Bestellung"));
class TempShop {
  public:
    /// `server`: the address of an empty database for the store; else it lies where TestStore says.
    explicit TempShop(const QString& server = {});
    ~TempShop();
    TempShop(const TempShop&) = delete;
    TempShop& operator=(const TempShop&) = delete;

    [[nodiscard]] QString folder() const;    ///< ends in a separator
    [[nodiscard]] QString storePath() const; ///< or the address on a server
    [[nodiscard]] Database& db() const;

    using Fields = std::vector<std::pair<QString, Value>>;
    /// Adds a row with these columns, the rest by default; gives the AutoNumber, 0 when the table has none.
    int insert(const QString& table, const Fields& fields);
    /// An article with what a sale needs, active, tax rate 7, may be discounted; `more` overrides.
    int article(const QString& number, const QString& name, double price, const Fields& more = {});
    /// A person with all rights; `more` overrides.
    int person(const QString& firstName, const QString& name, const QString& pin, const Fields& more = {});

    /// Rows of a table, or of a query that starts with "SELECT".
    [[nodiscard]] int count(const QString& tableOrQuery) const;
    /// The first column of the first row; Null when there is none.
    [[nodiscard]] Value value(const QString& query) const;
    /// All rows as texts, columns separated by "|".
    [[nodiscard]] QStringList rows(const QString& query) const;

    void setIni(const QString& section, const QString& key, const QString& value);
    [[nodiscard]] QString ini(const QString& section, const QString& key) const;

    /// Closes the store and opens it again, as after a restart of the till.
    void reopen();

  private:
    TestStore m_place;
    QString m_store;
};
