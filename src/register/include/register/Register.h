#pragma once

#include <register/ArticleKeys.h>
#include <register/Basket.h>
#include <register/RegisterScreen.h>
#include <register/SalePanel.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace till {

class CashMovements;
class CustomerAccount;
class Documents;
class Entry;
class Parking;
class ReceiptHistory;
class Returns;
class Sale;
class SpecialLines;
class Undo;
class Vouchers;

/// What became of the wish to leave the register.
enum class Unload {
    Stay, ///< the user keeps the open sale and the register
    Close,
    CloseWithParked ///< parked sales were kept
};

/// The register (frmKasse) without its widgets. Every routine here is an event handler of its own: it traps
/// its failures, drops what was pending in the record sets, reports and refreshes the total. So none of them
/// raises.
///
///     Register till(screen);
///     till.Load();
///     till.SetInput(u"4711"_s);   // what the keyboard or a scanner typed
///     till.cmdEnter_Click();      // the line stands in till.basket()
///     till.cmdTotal_Click();
///
/// The entry text and the multiplier live here. The form hands every change of txtInput to SetInput and sets
/// its box from InputChanged; setting the text that is already there does nothing.
class Register : public QObject {
    Q_OBJECT
  public:
    explicit Register(RegisterScreen& screen, QObject* parent = nullptr);
    ~Register() override;

    /// Print mode, cards, customer, gMaschine, record sets, keys, title and the rows of an interrupted sale.
    void Load();
    /// Settles what an earlier process of this till left in the middle of a booking: tells it and asks. To be
    /// called once the register is on the screen; every act of the cashier does it first where nobody has.
    void ResumeBooking();
    /// Receipts whose booking was interrupted and that were left as they are, until the owner settles them.
    [[nodiscard]] bool HasIncompleteReceipts();
    void ShowIncompleteReceipts();
    using Unload = till::Unload;
    /// Asks about open and parked sales and cancels them.
    [[nodiscard]] Unload QueryUnload();

    // Entry
    [[nodiscard]] const QString& Input() const; ///< txtInput
    [[nodiscard]] const QString& Mal() const;   ///< txtMal, "" stands for 1
    void SetInput(const QString& text);
    void SetMal(const QString& text);
    void cmdNumber_Click(int Index);
    void cmdDecimal_Click();
    void cmdMal_Click();
    void cmdMinus_Click();
    void cmdClear_Click();
    void cmdPlus_Click();
    void cmdEnter_Click();
    void cmdSearch_Click(); ///< F3: enters the article that is chosen in the search
    /// Adds the articles that are sold together with an article.
    void BookVerbundArtikel(const QString& ArtikelNummer, double Menge);
    [[nodiscard]] bool IsVerbundBuchung() const; ///< linked articles are being entered
    /// Up (-1) and down (+1) in txtInput; stops at the ends.
    void MoveSelection(int rows);
    void txtInput_GotFocus();
    void txtInput_LostFocus(); ///< fetches the focus back
    void cmdGruppe_GotFocus();
    void ToggleShortCutFocus(); ///< Shift+S

    // Basket
    [[nodiscard]] Basket& basket();
    [[nodiscard]] const SalePanel& panel() const;
    void lvwBestellung_ItemClick(int row) { ItemClick(row); }
    void ItemClick(int row);
    /// Adds a line from gArtikel and empties the entry; false when it failed and nothing was added.
    bool AddArtikelToBestellung();
    void LoadBestellungen();
    void RefreshGesamt();
    void cmdStorno_Click();
    void cmdRabatt_Click();
    void cmdArtikelPreis_Click();
    void TakeBack(); ///< undoes the last cancelled line, discount or price
    [[nodiscard]] bool CanTakeBack() const;
    [[nodiscard]] QString UndoCaption() const; ///< "Rückgängig: Storno Bergkäse"

    // Payment
    void cmdTotal_Click();
    void cmdKarte_Click();
    void PayByKarte(const QString& KartenName);
    enum class TerminalAct { Storno, Gutschrift, KassenSchnitt };
    /// The functions of the card terminal; nothing is booked for them.
    void TerminalFunction(TerminalAct act);

    [[nodiscard]] Vouchers& vouchers() { return *m_vouchers; }

    void PrintLast(); ///< the receipt of the last sale once more

    [[nodiscard]] SpecialLines& special() { return *m_special; }
    [[nodiscard]] CashMovements& movements() { return *m_movements; }
    [[nodiscard]] Parking& parking() { return *m_parking; }
    [[nodiscard]] Returns& returns() { return *m_returns; }
    [[nodiscard]] CustomerAccount& account() { return *m_account; }
    [[nodiscard]] Documents& documents() { return *m_documents; } ///< offers, delivery notes, invoices

    void ShowBonHistorie(); ///< the booked receipts, if gKFRechnungsHistorie
    void ShowArtikelInfo(); ///< what is on file for the selected line, if gKFArtikelInfo
    [[nodiscard]] ReceiptHistory receipts();

    // Drawer and display
    void OpenKassenLade();
    void OpenLade_Click(); ///< the same from key and menu, if gKFKassenlade
    void SetLCDDefault();

    // Customer and user
    void cmdKunde_Click();
    void ChangeUser();
    [[nodiscard]] const QString& Title() const; ///< Title_Bestellung; "&&" stands for one "&"
    [[nodiscard]] QString UserDisplay() const;

    // Keys
    [[nodiscard]] const ArticleKeys& keys() const { return m_keys; }
    void cmdGruppe_Click(int Index);
    void cmdArtikel_Click(int Index);
    [[nodiscard]] const QStringList& Karten() const { return m_karten; } ///< of karten.txt

    bool IsShortCutFocus = false; ///< the focus is wanted on the group keys

  signals:
    void InputChanged(const QString& text);
    void MalChanged(const QString& text);
    /// An error has left its text in the box: what comes next should replace it.
    void InputLeft();
    void TitleChanged(const QString& text);
    void UserChanged(const QString& text);
    void KeysChanged(); ///< group or article keys
    void UndoChanged(); ///< UndoCaption and CanTakeBack

  private:
    /// Runs a handler's body under its trap.
    template <typename Body>
    bool Trap(Body&& body);

    std::unique_ptr<Sale> m_sale;
    std::unique_ptr<Entry> m_entry;
    std::unique_ptr<Undo> m_undo;
    std::unique_ptr<SpecialLines> m_special;
    std::unique_ptr<CashMovements> m_movements;
    std::unique_ptr<Parking> m_parking;
    std::unique_ptr<Returns> m_returns;
    std::unique_ptr<CustomerAccount> m_account;
    std::unique_ptr<Vouchers> m_vouchers;
    std::unique_ptr<Documents> m_documents;
    ArticleKeys m_keys;
    QStringList m_karten;
};

} // namespace till
