#include "Undo.h"

#include "InOneGo.h"
#include "Sale.h"

#include <register/gMaschine.h>
#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/SonderArtikel.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

QString shortName(const QString& name) { return name.size() > 32 ? name.left(31).trimmed() + u'…' : name; }

QString stornoOf(const QString& name) { return u"Storno "_s + shortName(name); }

/// What a line that comes back gets anew, as every new line does.
bool isNew(const QString& column) {
    static const QStringList columns{u"ID"_s, u"Datum"_s, u"Zeit"_s, u"PersonalNummer"_s};
    return columns.contains(column, Qt::CaseInsensitive);
}

} // namespace

Undo::Undo(Sale& sale, QObject* parent)
    : QObject(parent)
    , m_sale(sale) {
    connect(&sale, &Sale::Closed, this, &Undo::Forget);
    connect(&sale.basket, &Basket::rowsInserted, this, [this](const QModelIndex&, int first) {
        if (first == 0) Forget(); // the first line of another sale
    });
}

std::vector<Undo::Priced> Undo::ReadPrices() {
    std::vector<Priced> prices;
    const auto rs =
        gDB->OpenRecordset(u"SELECT ID, VKPreis, VKPreis_Rabatt FROM Bestellung WHERE Maschine="_s +
                           sql::text(gMaschine) + u" ORDER BY ID ASC;"_s);
    for (; !rs->Eof(); rs->MoveNext())
        prices.push_back({rs->Long(u"ID"), rs->Money(u"VKPreis"), rs->Money(u"VKPreis_Rabatt")});
    return prices;
}

Undo::Line Undo::Read(const Recordset& row) {
    Line line{
        row.Long(u"ID"), row.Text(u"ArtikelNummer"), row.Text(u"ArtikelName"), row.Text(u"SNNummer"), {}};
    for (const QString& column : row.FieldNames()) {
        if (!isNew(column)) line.columns.emplace_back(column, row.Field(column));
    }
    return line;
}

void Undo::Cancelled(Line line, bool deliveryNote) {
    if (!line.SNNummer.isEmpty() || line.ArtikelNummer == SonderArtikel::Gutschein) return Forget();
    Step step;
    step.what = stornoOf(line.ArtikelName);
    step.deliveryNote = deliveryNote;
    step.lines.push_back(std::move(line));
    m_steps.push_back(std::move(step));
    emit Changed();
    while (m_steps.size() > 1 && belong(m_steps.back(), m_steps[m_steps.size() - 2])) {
        Step joined = std::move(m_steps.back());
        m_steps.pop_back();
        Step& into = m_steps.back();
        into.lines.insert(into.lines.end(), joined.lines.begin(), joined.lines.end());
        std::sort(into.lines.begin(), into.lines.end(),
                  [](const Line& a, const Line& b) { return a.ID < b.ID; });
        into.deliveryNote |= joined.deliveryNote;
        into.what = stornoOf(into.lines.front().ArtikelName) + u" (%1 Zeilen)"_s.arg(into.lines.size());
        emit Changed();
    }
}

bool Undo::belong(const Step& step, const Step& other) const {
    if (other.lines.empty()) return false;
    const Line &ours = step.lines.front(), &theirs = other.lines.front();
    // A line with others of its own follows from none.
    return ours.ID < theirs.ID ? other.lines.size() == 1 && follows(ours, theirs)
                               : step.lines.size() == 1 && follows(theirs, ours);
}

bool Undo::follows(const Line& source, const Line& linked) const {
    if (source.ArtikelNummer.contains(u'\'')) return false; // no statement could hold it
    const QStringList links =
        sql::firstTexts(*gDB, u"SELECT DestArtikelNummer FROM VerbundArtikel WHERE SourceArtikelNummer="_s +
                                  sql::text(source.ArtikelNummer) + u';');
    if (!links.contains(linked.ArtikelNummer)) return false;
    // What was entered in between tells that the one is not the other's.
    const Basket& basket = m_sale.basket;
    for (int row = 0; row < basket.rowCount(); ++row) {
        if (basket.ID(row) > source.ID && basket.ID(row) < linked.ID &&
            !links.contains(basket.cell(row, Basket::ArtikelNr)))
            return false;
    }
    return true;
}

void Undo::Repriced(const QString& what, const std::vector<Priced>& before) {
    Step step;
    for (const Priced& now : ReadPrices()) {
        const auto was =
            std::find_if(before.begin(), before.end(), [&](const Priced& line) { return line.ID == now.ID; });
        if (was == before.end() || *was == now) continue;
        step.before.push_back(*was);
        step.after.push_back(now);
    }
    if (step.before.empty()) return;
    step.what = what;
    if (step.before.size() == 1) {
        const Basket& basket = m_sale.basket;
        const int row = basket.rowOf(step.before.front().ID);
        if (row >= 0) step.what += u' ' + shortName(basket.cell(row, Basket::Artikelname));
    } else {
        step.what += u" (%1 Zeilen)"_s.arg(step.before.size());
    }
    m_steps.push_back(std::move(step));
    emit Changed();
}

bool Undo::stillFits(const Step& step) const {
    const std::vector<Priced> stored = ReadPrices();
    const Basket& basket = m_sale.basket;
    if (int(stored.size()) != basket.rowCount()) return false;
    for (int row = 0; row < basket.rowCount(); ++row)
        if (stored[size_t(row)].ID != basket.ID(row)) return false;
    return std::all_of(step.after.begin(), step.after.end(), [&](const Priced& line) {
        return std::find(stored.begin(), stored.end(), line) != stored.end();
    });
}

void Undo::TakeBack() {
    if (!m_sale.Settle() || m_steps.empty()) return;
    Basket& basket = m_sale.basket;
    if (!stillFits(m_steps.back())) {
        Forget();
        basket.LoadBestellungen();
        MsgBox(u"Das lässt sich nicht mehr rückgängig machen: Der Verkauf wurde inzwischen an anderer Stelle "
               "geändert. Die Liste zeigt ihn jetzt, wie er gespeichert ist."_s);
        return;
    }
    const Step step = m_steps.back();
    if (step.lines.empty())
        InOneGo([&] { reprice(step); });
    else
        restore(step);
    m_steps.pop_back();
    emit Changed();
    basket.LoadBestellungen();
    if (step.before.size() == 1) basket.ItemClick(basket.rowOf(step.before.front().ID));
}

void Undo::restore(const Step& step) {
    Recordset& rs = m_sale.basket.rsBestellung();
    std::vector<std::pair<int, int>> numbers;
    InOneGo([&] {
        for (const Line& line : step.lines) {
            rs.AddNew();
            numbers.emplace_back(line.ID, rs.Long(u"ID"));
            for (const auto& [column, value] : line.columns)
                rs.Set(column, value);
            rs.Set(u"PersonalNummer", gKassenUser.ID);
            rs.Update();
        }
    });
    for (const auto& [from, to] : numbers)
        renumber(from, to);
    if (m_sale.basket.isEmpty()) m_sale.basket.IsLieferscheinBon = step.deliveryNote;
}

void Undo::renumber(int from, int to) {
    for (Step& step : m_steps) {
        for (auto* prices : {&step.before, &step.after})
            for (Priced& line : *prices)
                if (line.ID == from) line.ID = to;
    }
}

void Undo::reprice(const Step& step) {
    for (const Priced& line : step.before) {
        gDB->Execute(u"UPDATE Bestellung SET VKPreis=%1, VKPreis_Rabatt=%2 WHERE ID=%3;"_s.arg(
            sql::number(line.VKPreis), sql::number(line.VKPreis_Rabatt), sql::number(line.ID)));
    }
}

void Undo::Forget() {
    if (m_steps.empty()) return;
    m_steps.clear();
    emit Changed();
}

QString Undo::Caption() const {
    return m_steps.empty() ? u"Rückgängig"_s : u"Rückgängig: "_s + m_steps.back().what;
}

} // namespace till
