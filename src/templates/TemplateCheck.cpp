#include <templates/TemplateCheck.h>
#include <templates/TemplateKeys.h>
#include <templates/Units.h>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Columns from left to right; the last one holds the amounts that the document is about.
using Table = std::vector<QStringView>;

std::vector<Table> tablesOf(TemplateKind kind) {
    switch (kind) {
    case TemplateKind::Form:
    case TemplateKind::Purchase:
        return {{u"tabelle_bestellnummer_width", u"tabelle_anzahl_width", u"tabelle_einheit_width",
                 u"tabelle_artikelname_width", u"tabelle_epreis_width", u"tabelle_steuer_width",
                 u"tabelle_gpreis_width"}};
    case TemplateKind::Bon:
        return {{u"tabelle_anzahl_width", u"tabelle_artikelname_width", u"tabelle_steuer_width",
                 u"tabelle_gpreis_width"}};
    case TemplateKind::Closing:
        return {{u"table_warengruppe_name", u"table_warengruppe_summe"},
                {u"table_steuer", u"table_netto", u"table_ust", u"table_brutto"}};
    case TemplateKind::Voucher:
        break;
    }
    return {};
}

/// "tabelle_gpreis_width" (Breite Gesamtpreis)
QString named(QStringView key) {
    const TemplateKey* known = findTemplateKey(key);
    const QString quoted = u'"' + key.toString() + u'"';
    return known ? quoted + u" ("_s + known->caption.toString() + u')' : quoted;
}

double positionMm(const PropertiesList& list, QStringView key) {
    return std::max(0.0, list.Number(key)) * twipsPerPosition * mmPerTwip;
}

/// The left edge of the text, as the page control takes it: margins that leave no room are none.
double leftEdge(const PropertiesList& list, double width) {
    constexpr double narrowestText = 10;
    const double left = positionMm(list, u"page_marginleft"), right = positionMm(list, u"page_marginright");
    return width - left - right < narrowestText ? 0 : left;
}

} // namespace

QString templateFault(const PropertiesList& list, TemplateKind kind, QSizeF sheet) {
    if (kind == TemplateKind::Voucher && list.find(u"gutschein_fontsize") == nullptr)
        return u"Es fehlt "_s + named(u"gutschein_fontsize") + u'.';
    const QSizeF told = paperSize(list);
    const double width = told.isEmpty() ? sheet.width() : told.width();
    constexpr double mmPerCm = 10, tolerance = 1;
    for (const Table& table : tablesOf(kind)) {
        if (list.Number(table.back()) <= 0) return u"Es fehlt "_s + named(table.back()) + u'.';
        double edge = leftEdge(list, width);
        for (const QStringView key : table) {
            edge += std::max(0.0, list.Number(key)) * mmPerCm;
            if (width > 0 && edge > width + tolerance)
                return u"Über das Papier hinaus reicht "_s + named(key) + u'.';
        }
    }
    return {};
}
