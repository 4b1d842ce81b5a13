#pragma once

#include <store/Recordset.h>
#include <text/Currency.h>

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace till {

class CustomerDisplay;
class RegisterScreen;

/// The label under the list that tells the stock of the selected article.
struct StockLabel {
    QString text;
    bool warning = false; ///< the line takes the stock below its target
    bool visible = false;
    friend bool operator==(const StockLabel&, const StockLabel&) = default;
};

/// The selected article: its picture, a file or a caption in its place, and what stands beneath it.
struct ArticlePicture {
    QString file, caption;
    QString name, basePrice; ///< "Bergkäse", "24,00 € / kg"; "" without a content to divide by
    friend bool operator==(const ArticlePicture&, const ArticlePicture&) = default;
};

/// How a line came into the sale.
enum class LineOrigin { Own, Linked };

/// The open sale of this till. Its rows live in table Bestellung from the moment they are entered; this is
/// the list of them (lvwBestellung) as a model. Texts are formatted once, when a row changes, and the total
/// is the sum of what the list shows.
///
/// The record set `rsBestellung` stands on the selected row; what acts on "the selected line" acts on it.
class Basket : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Role {
        MarkRole = Qt::UserRole, ///< "−10 %" of a discounted line, else ""
        LinkedRole,              ///< the line came with the one above it (deposit)
    };
    enum Column { ArtikelNr, Artikelname, Anz, Menge, EPreis, GPreis, ColumnCount };

    Basket(RegisterScreen& screen, CustomerDisplay& display, QObject* parent = nullptr);
    ~Basket() override;

    /// Opens the rows of gMaschine; nothing is shown before LoadBestellungen.
    void Open();

    /// The guard of every handler of the register: a failure drops what is pending in the record set, is
    /// reported, and the total is summed anew. True when the body went through.
    bool Trap(const std::function<void()>& body);

    /// Adds a line from gArtikel, gKunde, gKassenUser and gMaschine and selects it.
    void AddArtikelToBestellung(LineOrigin origin = LineOrigin::Own);
    /// Rebuilds the list from the store, selects the last row and refreshes the total.
    void LoadBestellungen();
    /// Sums the list into Gesamt().
    void RefreshGesamt();
    /// Selects `row` and follows it: record set, stock label, picture, customer display. A row that another
    /// till deleted is told and the list is rebuilt. A row outside the list does nothing. A handler of its
    /// own: failures are reported here.
    void ItemClick(int row);

    /// Adds `amount` to the quantity of the selected line.
    void ChangeQuantity(double amount);
    /// Shows price and amount of the selected line anew after they were changed in the record
    /// set, and follows it.
    void ShowPrices();
    /// Drops a pending AddNew or Edit; never raises.
    void CancelEdit() noexcept;
    /// Thanks the customer on the display; a handler of its own.
    void SetLCDDefault();
    /// "DELETE FROM Bestellung" for this till, without touching the list.
    void DeleteRows();
    /// The statement that deletes the lines of this till up to `lastID`.
    [[nodiscard]] static QString DeleteStatement(int lastID);

    /// Compares each line of the list with the store, by its number, price and quantity. False when they
    /// differ: the list is read and shown anew, and the differences are told, `more` behind them.
    [[nodiscard]] bool IsAsStored(const QString& more = {});
    /// The same after a write of which nobody knows whether it arrived, else true without asking.
    [[nodiscard]] bool Confirm();

    /// Raises 91 before Open.
    [[nodiscard]] Recordset& rsBestellung();
    [[nodiscard]] bool isEmpty() const { return m_rows.empty(); }
    [[nodiscard]] int ID(int row) const { return m_rows.at(size_t(row)).ID; } ///< of its row in Bestellung
    /// Whether a line of this article number is shown.
    [[nodiscard]] bool Holds(QStringView ArtikelNummer) const;
    [[nodiscard]] int rowOf(int ID) const; ///< -1 when it is not in the list
    [[nodiscard]] int lastID() const { return m_rows.empty() ? 0 : m_rows.back().ID; } ///< of the last line
    [[nodiscard]] int selected() const { return m_selected; } ///< -1 when the list is empty
    [[nodiscard]] const QString& cell(int row, Column column) const;
    [[nodiscard]] const QString& Gesamt() const { return m_gesamt; } ///< text of lblGesamt
    /// "8 Zeilen · 36 Artikel"; "" for an empty list.
    [[nodiscard]] const QString& Zaehler() const { return m_count; }
    /// Shows an amount over an empty list until the next refresh.
    void ShowGesamt(const QString& text);
    [[nodiscard]] const StockLabel& Bestand() const { return m_stock; }
    [[nodiscard]] const ArticlePicture& Bild() const { return m_picture; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

    /// True for a sale that was loaded from a delivery note, whose stock has left with it.
    bool IsLieferscheinBon = false;
    int LieferungNummer = 0; ///< of that note; 0 for none

  signals:
    void GesamtChanged(const QString& text);
    /// The list should show and mark this row; -1 for an empty list.
    void SelectedChanged(int row);
    void ZaehlerChanged(const QString& text);
    /// The line was entered although the article entered before it is the same: a code read twice, or two of
    /// a kind.
    void Repeated(int row);
    void BestandChanged(const till::StockLabel& label);
    void BildChanged(const till::ArticlePicture& picture);

  private:
    struct Row {
        int ID = 0;
        std::array<QString, ColumnCount> text;
        Currency amount; ///< the last text read back
        // What the store has in the line, as far as it makes the amount.
        Currency price;
        double menge = 0;
        QString mark;
        bool linked = false;
    };
    enum class Net { Exact, Rounded };
    struct Line {
        int ID;
        QString Nummer, Name;
        double Buchungs_Menge, Menge;
        QString Einheit;
        Currency ListPrice, Price; ///< gross, per unit
        double SteuerSatz;
    };
    [[nodiscard]] Row makeRow(const Line& line, Net net) const;
    [[nodiscard]] std::vector<Row> readRows();
    /// Lines that stood in the list keep their origin, others are held against the links on file.
    void findLinked(std::vector<Row>& rows, const std::vector<Row>& before) const;
    [[nodiscard]] bool sameAsStored() const;
    /// What became of the lines of `before`, a line for each change.
    [[nodiscard]] QStringList changesSince(const std::vector<Row>& before) const;
    void replaceRows(std::vector<Row> rows);
    void setText(Column column, const QString& text); ///< of the selected row
    void select(int row);
    [[nodiscard]] Line currentLine(); ///< of rsBestellung
    void follow(int row);
    [[nodiscard]] bool repeatsLast(const QString& nummer) const;
    void show(int row, const Line& line); ///< stock, picture, customer's display
    void showStock(const Line& line);
    void showPicture(const Line& line);
    void setStock(StockLabel label);
    void setPicture(ArticlePicture picture);

    RegisterScreen& m_screen;
    CustomerDisplay& m_display;
    std::unique_ptr<Recordset> m_rs;
    std::vector<Row> m_rows;
    int m_selected = -1;
    bool m_inDoubt = false; ///< nobody knows whether the last write arrived
    QString m_gesamt, m_count;
    StockLabel m_stock;
    ArticlePicture m_picture;
};

} // namespace till
