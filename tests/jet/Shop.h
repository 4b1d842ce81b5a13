#pragma once

#include <jet/Translator.h>

using namespace Qt::StringLiterals;

/// The small shop on which translations are tested.
class ShopCatalogue : public jet::Catalogue {
  public:
    ShopCatalogue() {
        add({u"Ware"_s,
             {column(u"ID"_s, Type::Long, 0, {}, true), column(u"Nummer"_s, Type::Text, 30),
              column(u"Name"_s, Type::Text, 40), column(u"Preis"_s, Type::Currency, 0, u"0"_s),
              column(u"Menge"_s, Type::Double), column(u"Bestand"_s, Type::Long, 0, u"0"_s),
              column(u"Aktiv"_s, Type::Boolean), column(u"Seit"_s, Type::Date, 0, u"Date()"_s),
              column(u"Notiz"_s, Type::Memo), column(u"GruppeID"_s, Type::Long)}});
        add({u"Gruppe"_s,
             {column(u"ID"_s, Type::Long, 0, {}, true), column(u"Bezeichnung"_s, Type::Text, 20),
              column(u"Land"_s, Type::Text, 20, u"\"Deutschland\""_s), column(u"Steuer"_s, Type::Double)}});
        add({u"Verkauf"_s,
             {column(u"ID"_s, Type::Long, 0, {}, true), column(u"WareID"_s, Type::Long),
              column(u"Anzahl"_s, Type::Short), column(u"Betrag"_s, Type::Currency),
              column(u"Datum"_s, Type::Date)}});
    }

    [[nodiscard]] const jet::Table* find(QStringView table) const override {
        for (const jet::Table& t : m_tables)
            if (table.compare(t.name, Qt::CaseInsensitive) == 0) return &t;
        return nullptr;
    }

  private:
    static jet::Column column(const QString& name, Type type, int size = 0, const QString& defaultText = {},
                              bool autoNumber = false) {
        jet::Column c;
        c.name = name;
        c.type = type;
        c.size = size;
        c.defaultText = defaultText;
        c.autoNumber = autoNumber;
        return c;
    }
    void add(jet::Table table) { m_tables.push_back(std::move(table)); }
    std::vector<jet::Table> m_tables;
};
