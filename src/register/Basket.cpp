#include "CustomerDisplay.h"
#include "LineMarks.h"

#include <register/Basket.h>
#include <register/Prices.h>
#include <register/RegisterScreen.h>
#include <register/gMaschine.h>
#include <session/Bilder.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <session/RowGone.h>
#include <session/gArtikel.h>
#include <session/gKunde.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <store/Trouble.h>
#include <text/Convert.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace till {

Basket::Basket(RegisterScreen& screen, CustomerDisplay& display, QObject* parent)
    : QAbstractTableModel(parent)
    , m_screen(screen)
    , m_display(display)
    , m_stock{u"aktueller Bestand"_s, false, false} {}

Basket::~Basket() = default;

void Basket::Open() {
    m_rs = gDB->OpenRecordset(u"SELECT * FROM Bestellung WHERE Maschine="_s + sql::text(gMaschine) +
                              u" ORDER BY ID ASC;"_s);
}

Recordset& Basket::rsBestellung() {
    if (!m_rs) throw RuntimeError(91, u"Die offene Bestellung ist nicht geladen"_s, u"frmKasse"_s);
    return *m_rs;
}

Basket::Row Basket::makeRow(const Line& line, Net net) const {
    Row row;
    row.ID = line.ID;
    row.text[ArtikelNr] = line.Nummer;
    row.text[Artikelname] = line.Name;
    row.text[Anz] = NumberText(line.Buchungs_Menge);
    row.text[Menge] = NumberText(line.Menge) + u' ' + line.Einheit;
    row.text[EPreis] = MoneyText(line.Price);
    if (gDecimalStellen < 3) {
        row.text[GPreis] = MoneyText(line.Price * Currency::fromDouble(line.Buchungs_Menge));
    } else {
        // A reload starts from the net price as money, so the last place may differ from the line as it was
        // entered.
        double price = NetPrice(line.Price, line.SteuerSatz);
        if (net == Net::Rounded) price = Currency::fromDouble(price).toDouble();
        row.text[GPreis] = MoneyText(price * line.Buchungs_Menge * (1 + line.SteuerSatz / 100));
    }
    row.amount = ReadMoney(row.text[GPreis]);
    row.price = line.Price;
    row.menge = line.Buchungs_Menge;
    row.mark = DiscountMark(line.ListPrice, line.Price);
    return row;
}

void Basket::AddArtikelToBestellung(LineOrigin origin) {
    Recordset& rs = rsBestellung();
    if (gSystem->ReadProfileString(u"GLOBAL"_s, gArtikel.Nummer, gDBPath + u"artikel.ini"_s) == u"1"_s) {
        gArtikel.VKPreis = -gArtikel.VKPreis;
        gArtikel.VKPreis2 = -gArtikel.VKPreis2;
        gArtikel.VKPreis3 = -gArtikel.VKPreis3;
    }
    rs.AddNew();
    const int id = rs.Long(u"ID");
    rs.Set(u"Maschine", gMaschine);
    rs.Set(u"KundenNummer", gKunde.KundenID);
    rs.Set(u"PersonalNummer", gKassenUser.ID);
    rs.Set(u"ArtikelNummer", gArtikel.Nummer);
    rs.Set(u"ArtikelName", gArtikel.Name);
    rs.Set(u"Buchungs_Menge", gArtikel.Buchungs_Menge);
    rs.Set(u"Menge", gArtikel.Menge);
    rs.Set(u"Einheit", gArtikel.Einheit);
    rs.Set(u"EKPreis", gArtikel.EKPreis);
    const LinePrices prices = ChoosePrices(gArtikel, gKunde);
    rs.Set(u"VKPreis", prices.VKPreis);
    rs.Set(u"VKPreis_Rabatt", prices.VKPreis_Rabatt);
    rs.Set(u"SteuerSatz", gArtikel.SteuerSatz);
    rs.Set(u"IsRabatt", gArtikel.Rabatt);
    rs.Set(u"SNNummer", gArtikel.SNNummer);
    rs.Set(u"WarenGruppe", gArtikel.WarenGruppe);
    rs.Set(u"LangText", gArtikel.LangText);
    rs.Set(u"Zusatz1", gArtikel.Zusatz1);
    rs.Set(u"Zusatz2", gArtikel.Zusatz2);
    QString info;
    if (gArtikel.VolumenAngabe)
        info =
            NumberText(gArtikel.GrundMenge) + u' ' + gArtikel.Einheit + u'=' + MoneyText(gArtikel.GrundPreis);
    rs.Set(u"PreisInfo", info.left(50));
    // The row is formatted before it is written: a line that cannot be shown is not stored either.
    const Line line{id,
                    gArtikel.Nummer,
                    gArtikel.Name,
                    double(gArtikel.Buchungs_Menge),
                    gArtikel.Menge,
                    gArtikel.Einheit,
                    prices.VKPreis,
                    prices.VKPreis_Rabatt,
                    gArtikel.SteuerSatz.toDouble()};
    Row row = makeRow(line, Net::Exact);
    row.linked = origin == LineOrigin::Linked;
    const bool repeated = !row.linked && repeatsLast(line.Nummer);
    rs.Update();
    rs.MoveToLastModified();

    const int last = rowCount();
    beginInsertRows({}, last, last);
    m_rows.push_back(std::move(row));
    endInsertRows();
    select(last);
    RefreshGesamt();
    if (repeated) emit Repeated(last);
    Trap([&] { show(last, line); }); // nobody needs to ask whether the row is there
}

Basket::Line Basket::currentLine() {
    const Recordset& rs = rsBestellung();
    return {rs.Long(u"ID"),          rs.Text(u"ArtikelNummer"),
            rs.Text(u"ArtikelName"), rs.Number(u"Buchungs_Menge"),
            rs.Number(u"Menge"),     rs.Text(u"Einheit"),
            rs.Money(u"VKPreis"),    rs.Money(u"VKPreis_Rabatt"),
            rs.Number(u"SteuerSatz")};
}

void Basket::LoadBestellungen() {
    std::vector<Row> shown = m_rows;
    const int selected = m_selected;
    replaceRows({});
    m_screen.Yield();
    try {
        std::vector<Row> rows = readRows();
        findLinked(rows, shown);
        replaceRows(std::move(rows));
    } catch (...) { // the sale is still open, so it stays on the screen
        replaceRows(std::move(shown));
        select(selected);
        throw;
    }
    RefreshGesamt();
    if (isEmpty()) {
        IsLieferscheinBon = false;
        LieferungNummer = 0;
        SetLCDDefault();
        setPicture({});
        return;
    }
    select(rowCount() - 1);
    m_screen.Yield();
    ItemClick(m_selected);
}

std::vector<Basket::Row> Basket::readRows() {
    std::vector<Row> rows;
    Recordset& rs = rsBestellung();
    for (rs.Requery(); !rs.Eof(); rs.MoveNext())
        rows.push_back(makeRow(currentLine(), Net::Rounded));
    return rows;
}

void Basket::findLinked(std::vector<Row>& rows, const std::vector<Row>& before) const {
    // Both are in the order of their IDs.
    bool strangers = false;
    auto known = before.begin();
    for (Row& row : rows) {
        known = std::find_if(known, before.end(), [&](const Row& old) { return old.ID >= row.ID; });
        if (known != before.end() && known->ID == row.ID)
            row.linked = known->linked;
        else
            strangers = true;
    }
    if (!strangers || rows.size() < 2) return;
    LinkedLines links;
    const auto rs = gDB->OpenRecordset(
        u"SELECT SourceArtikelNummer, DestArtikelNummer FROM VerbundArtikel WHERE SourceArtikelNummer IN "
        "(SELECT ArtikelNummer FROM Bestellung WHERE Maschine=%1);"_s.arg(sql::text(gMaschine)));
    for (; !rs->Eof(); rs->MoveNext())
        links.link(rs->Text(u"SourceArtikelNummer"), rs->Text(u"DestArtikelNummer"));
    for (Row& row : rows)
        row.linked = links.next(row.text[ArtikelNr]);
}

bool Basket::repeatsLast(const QString& nummer) const {
    const auto own = std::find_if(m_rows.rbegin(), m_rows.rend(), [](const Row& row) { return !row.linked; });
    return own != m_rows.rend() && own->text[ArtikelNr] == nummer;
}

void Basket::replaceRows(std::vector<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
    select(-1);
}

void Basket::RefreshGesamt() {
    Currency sum;
    double pieces = 0;
    for (const Row& row : m_rows) {
        sum += row.amount;
        pieces += row.menge;
    }
    ShowGesamt(MoneyText(sum));
    if (QString count = CountText(rowCount(), pieces); count != m_count) {
        m_count = std::move(count);
        emit ZaehlerChanged(m_count);
    }
    StockLabel label = m_stock;
    label.visible = !isEmpty();
    setStock(std::move(label));
}

void Basket::ShowGesamt(const QString& text) {
    if (text == m_gesamt) return;
    m_gesamt = text;
    emit GesamtChanged(m_gesamt);
}

void Basket::ItemClick(int row) {
    if (row < 0 || row >= rowCount()) return;
    Trap([&] { follow(row); });
}

bool Basket::Trap(const std::function<void()>& body) {
    const auto noticingDoubt = [&] {
        try {
            body();
        } catch (const RuntimeError& error) {
            m_inDoubt |= error.Number == store::outcomeUnknown;
            throw;
        }
    };
    const bool ok = Handle("frmKasse", noticingDoubt, [this] { CancelEdit(); });
    if (!ok) Handle("frmKasse", [this] { RefreshGesamt(); });
    return ok;
}

void Basket::follow(int row) {
    if (row != m_selected) select(row);
    Recordset& rs = rsBestellung();
    rs.FindFirst(u"ID="_s + sql::number(m_rows[size_t(row)].ID));
    if (rs.NoMatch()) {
        TellRowGone(RowGone::Zeile);
        rs.Requery();
        LoadBestellungen();
        return;
    }
    show(row, currentLine());
}

void Basket::show(int row, const Line& line) {
    showStock(line);
    showPicture(line);
    m_display.ShowLine(cell(row, Artikelname), cell(row, Anz), cell(row, Menge), cell(row, EPreis));
}

void Basket::SetLCDDefault() {
    Handle("frmKasse", [this] { m_display.ShowDefault(); });
}

void Basket::showStock(const Line& line) {
    StockLabel label = m_stock;
    label.visible = gShowLagerBestand;
    if (!gShowLagerBestand) return setStock(std::move(label));
    // One question for both: it is asked at every scan, and the store may be on a server.
    const auto article = gDB->OpenRecordset(
        u"SELECT SollBestand, IstBestand, LagerAktiv, (SELECT SUM(Buchungs_Menge * Menge) FROM Bestellung "
        "WHERE ArtikelNummer=%1) AS Anzahl FROM Artikel WHERE Nummer=%1;"_s.arg(sql::text(line.Nummer)));
    label.warning = false;
    if (article->Eof() || !article->Flag(u"LagerAktiv")) {
        label.text = u" keine Lagerhaltung..."_s;
    } else {
        // The colour looks at this line alone, the figure at the open lines of all tills.
        const double stock = article->Number(u"IstBestand");
        label.warning = stock - line.Buchungs_Menge * line.Menge < article->Number(u"SollBestand");
        label.text =
            u" aktueller Bestand: "_s + NumberText(stock - article->Number(u"Anzahl")) + u' ' + line.Einheit;
    }
    setStock(std::move(label));
}

void Basket::showPicture(const Line& line) {
    const QString file = VorhandenesBild(Bild::Artikel, line.Nummer);
    QString basePrice;
    if (line.Menge > 0)
        basePrice = u"%1 %2 / %3"_s.arg(MoneyText(line.Price.toDouble() / line.Menge), gWaehrungsSymbol,
                                        line.Einheit);
    setPicture({file, file.isEmpty() ? u"Kein Artikelbild verfügbar"_s : QString(), line.Name, basePrice});
}

void Basket::ChangeQuantity(double amount) {
    Recordset& rs = rsBestellung();
    rs.Edit();
    rs.Set(u"Buchungs_Menge", rs.Number(u"Buchungs_Menge") + amount);
    rs.Update();
    const double menge = rs.Number(u"Buchungs_Menge");
    if (m_selected >= 0) m_rows[size_t(m_selected)].menge = menge;
    setText(Anz, NumberText(menge));
    setText(GPreis, MoneyText(rs.Money(u"VKPreis_Rabatt") * Currency::fromDouble(menge)));
    ItemClick(m_selected);
    RefreshGesamt();
}

void Basket::ShowPrices() {
    Recordset& rs = rsBestellung();
    const Currency price = rs.Money(u"VKPreis_Rabatt");
    if (m_selected >= 0) {
        Row& row = m_rows[size_t(m_selected)];
        row.price = price;
        row.mark = DiscountMark(rs.Money(u"VKPreis"), price);
    }
    setText(EPreis, MoneyText(price));
    setText(GPreis, MoneyText(price * Currency::fromDouble(rs.Number(u"Buchungs_Menge"))));
    ItemClick(m_selected);
}

void Basket::CancelEdit() noexcept {
    if (m_rs) m_rs->CancelUpdate();
}

void Basket::DeleteRows() {
    gDB->Execute(u"DELETE FROM Bestellung WHERE Maschine="_s + sql::text(gMaschine) + u";"_s);
}

QString Basket::DeleteStatement(int lastID) {
    return u"DELETE FROM Bestellung WHERE Maschine="_s + sql::text(gMaschine) + u" AND ID<="_s +
           sql::number(lastID) + u';';
}

bool Basket::sameAsStored() const {
    const auto rs =
        gDB->OpenRecordset(u"SELECT ID, Buchungs_Menge, VKPreis_Rabatt FROM Bestellung WHERE Maschine="_s +
                           sql::text(gMaschine) + u" ORDER BY ID ASC;"_s);
    for (const Row& row : m_rows) {
        if (rs->Eof() || rs->Long(u"ID") != row.ID || rs->Number(u"Buchungs_Menge") != row.menge ||
            rs->Money(u"VKPreis_Rabatt") != row.price)
            return false;
        rs->MoveNext();
    }
    return rs->Eof();
}

QStringList Basket::changesSince(const std::vector<Row>& before) const {
    const auto find = [](const std::vector<Row>& rows, int id) {
        return std::find_if(rows.begin(), rows.end(), [id](const Row& row) { return row.ID == id; });
    };
    const auto tell = [](const QString& what, const Row& row) {
        return what + row.text[Anz] + u" × "_s + row.text[Artikelname] + u", "_s + row.text[GPreis] + u" €"_s;
    };
    QStringList changes;
    for (const Row& row : m_rows) {
        const auto old = find(before, row.ID);
        if (old == before.end())
            changes << tell(u"neu in der Liste: "_s, row);
        else if (old->price != row.price || old->menge != row.menge)
            changes << tell(u"geändert: "_s, row);
    }
    for (const Row& row : before)
        if (find(m_rows, row.ID) == m_rows.end()) changes << tell(u"nicht mehr da: "_s, row);
    return changes;
}

bool Basket::IsAsStored(const QString& more) {
    if (sameAsStored()) {
        m_inDoubt = false;
        return true;
    }
    const std::vector<Row> before = m_rows;
    LoadBestellungen();
    m_inDoubt = false;
    constexpr qsizetype mostTold = 10;
    QStringList changes = changesSince(before);
    if (changes.size() > mostTold)
        changes = changes.first(mostTold) << u"und %1 weitere Zeilen"_s.arg(changes.size() - mostTold);
    QString text =
        u"Der Verkauf ist in der Datenbank ein anderer, als er hier stand:\n\n%1\n\nDie Liste zeigt "
        "jetzt, was gespeichert ist. Es wurde nichts weiter gebucht. Bitte prüfen Sie die Liste, auch "
        "das Pfand, und wiederholen Sie nur, was fehlt."_s.arg(changes.join(u'\n'));
    if (!more.isEmpty()) text += u"\n\n"_s + more;
    MsgBox(text, MsgIcon::Exclamation);
    return false;
}

bool Basket::Confirm() { return !m_inDoubt || IsAsStored(); }

void Basket::setText(Column column, const QString& text) {
    if (m_selected < 0) return;
    Row& row = m_rows[size_t(m_selected)];
    if (column == GPreis) row.amount = ReadMoney(text);
    row.text[column] = text;
    const QModelIndex where = index(m_selected, column);
    emit dataChanged(where, where);
}

void Basket::select(int row) {
    m_selected = row;
    emit SelectedChanged(row);
}

void Basket::setStock(StockLabel label) {
    if (label == m_stock) return;
    m_stock = std::move(label);
    emit BestandChanged(m_stock);
}

void Basket::setPicture(ArticlePicture picture) {
    if (picture == m_picture) return;
    m_picture = std::move(picture);
    emit BildChanged(m_picture);
}

const QString& Basket::cell(int row, Column column) const { return m_rows.at(size_t(row)).text.at(column); }

bool Basket::Holds(QStringView ArtikelNummer) const {
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [&](const Row& row) { return row.text[ArtikelNr] == ArtikelNummer; });
}

int Basket::rowOf(int ID) const {
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [ID](const Row& row) { return row.ID == ID; });
    return found == m_rows.end() ? -1 : int(found - m_rows.begin());
}

int Basket::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(m_rows.size()); }
int Basket::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant Basket::data(const QModelIndex& where, int role) const {
    if (!checkIndex(where, CheckIndexOption::IndexIsValid)) return {};
    const int column = where.column();
    if (role == Qt::DisplayRole) return m_rows[size_t(where.row())].text[size_t(column)];
    if (role == MarkRole) return m_rows[size_t(where.row())].mark;
    if (role == LinkedRole) return m_rows[size_t(where.row())].linked;
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignVCenter |
                   (column == ArtikelNr || column == Artikelname ? Qt::AlignLeft : Qt::AlignRight));
    return {};
}

QVariant Basket::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array<QString, ColumnCount> headers{
        u"Artikel-Nr / EAN"_s, u"Artikelname"_s, u"Anz"_s, u"Menge"_s, u"E-Preis"_s, u"G-Preis"_s};
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount) return {};
    if (role == Qt::DisplayRole) return headers[size_t(section)];
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignVCenter |
                   (section == ArtikelNr || section == Artikelname ? Qt::AlignLeft : Qt::AlignRight));
    return {};
}

} // namespace till
