#pragma once

#include <register/ArticleKeys.h>
#include <register/Basket.h>
#include <register/RegisterScreen.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace till {

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
    enum class Unload {
        Stay, ///< the user keeps the open sale and the register
        Close,
        CloseWithParked ///< parked sales were kept
    };
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
    /// Adds the articles that are sold together with an article.
    void BookVerbundArtikel(const QString& ArtikelNummer, double Menge);
    /// Up (-1) and down (+1) in txtInput; stops at the ends.
    void MoveSelection(int rows);
    void txtInput_GotFocus();
    void txtInput_LostFocus(); ///< fetches the focus back
    void cmdGruppe_GotFocus();
    void ToggleShortCutFocus(); ///< Shift+S

    // Basket
    [[nodiscard]] Basket& basket() { return m_basket; }
    void lvwBestellung_ItemClick(int row) { ItemClick(row); }
    void ItemClick(int row);
    /// Adds a line from gArtikel and empties the entry; false when it failed and nothing was added.
    bool AddArtikelToBestellung();
    void LoadBestellungen();
    void RefreshGesamt();
    void cmdStorno_Click();
    void cmdRabatt_Click();
    void cmdArtikelPreis_Click();

    // Payment
    void cmdTotal_Click();
    void cmdKarte_Click();
    void PayByKarte(const QString& KartenName);
    enum class TerminalAct { Storno, Gutschrift, KassenSchnitt };
    /// The functions of the card terminal; nothing is booked for them.
    void TerminalFunction(TerminalAct act);

    // Drawer and display
    void OpenKassenLade();
    void OpenLade_Click(); ///< the same from key and menu, if gKFKassenlade
    void SetLCDDefault() { m_basket.SetLCDDefault(); }

    // Customer and user
    void cmdKunde_Click();
    void ChangeUser();
    [[nodiscard]] const QString& Title() const {
        return m_title;
    } ///< Title_Bestellung; "&&" stands for one "&"
    [[nodiscard]] QString UserDisplay() const;

    // Keys
    [[nodiscard]] const ArticleKeys& keys() const { return m_keys; }
    void cmdGruppe_Click(int Index);
    void cmdArtikel_Click(int Index);
    [[nodiscard]] const QStringList& Karten() const { return m_karten; } ///< of karten.txt

    bool IsVerbundBuchung = false; ///< linked articles are being entered and expand no further
    bool IsShortCutFocus = false;  ///< the focus is wanted on the group keys

  signals:
    void InputChanged(const QString& text);
    void MalChanged(const QString& text);
    void TitleChanged(const QString& text);
    void UserChanged(const QString& text);
    void KeysChanged(); ///< group or article keys

  private:
    class Entry;
    class Payment;
    class PriceChanges;
    class Cancellation;

    /// Runs a handler's body under its trap; true when it went through.
    bool Trap(const std::function<void()>& body);
    [[nodiscard]] Recordset& rsArtikel(); ///< raises 91 before Load
    void ClearPaid();                     ///< takes the lines away that m_paid left
    void ResetKunde();                    ///< to the standard customer
    /// A title that shows an ampersand of the customer's name has it doubled.
    void RebuildTitle(bool doubleAmpersand);

    RegisterScreen& m_screen;
    std::unique_ptr<CustomerDisplay> m_display;
    Basket m_basket;
    ArticleKeys m_keys;
    std::unique_ptr<Recordset> m_rsArtikel;
    QString m_title;
    QStringList m_karten;
    std::unique_ptr<Entry> m_entry;
    /// A sale that is booked and whose lines could not be taken away yet.
    struct Paid {
        int Rechnung, lastID;
    };
    std::optional<Paid> m_paid;
    bool m_paying = false; ///< a second total key must not book the same lines again
};

} // namespace till
