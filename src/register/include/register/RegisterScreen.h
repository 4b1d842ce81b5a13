#pragma once

#include <QString>

namespace till {

/// What the register opens on its screen. The register fills a session record, the dialog works on it and
/// leaves its answer there; one that was closed without a decision leaves `Ergebnis` 0. All are modal but the
/// menu.
enum class Dialog {
    PreisAngabe,              ///< gArtikel.VKPreis and gArtikel.Ergebnis
    Rabatt,                   ///< gRabattAngabe
    VolumenAngabe,            ///< gArtikel.Menge with its price, and gArtikel.Ergebnis
    SNAngabe,                 ///< gArtikel.SNNummer and gArtikel.Ergebnis
    Pfand,                    ///< gPfandAngabe
    Gutschrift,               ///< gArtikel.VKPreis and gArtikel.Ergebnis
    LangText,                 ///< gLangTextAngabe
    FreierPreis,              ///< gPreisAngabe
    FreierArtikel,            ///< gFreierArtikel
    ArtikelSuche,             ///< gArtikel, Ergebnis 1 when one was chosen
    ArtikelDetail,            ///< gArtikel, Ergebnis 1 when it is to be written; only where CanShow agrees
    ArtikelLieferanten,       ///< gBestellNummerWahl
    KasseTotal,               ///< gZahlung
    Gutschein,                ///< gGutscheinAngabe
    PrintDlg,                 ///< sets gPrintMode to 0, 1 or 2
    RechnungsVorlage,         ///< gVorlagenAuswahl
    KundenSuche,              ///< gKunde, Ergebnis 1 when one was chosen
    KassenBuchung,            ///< gKassenBuchung
    Reklamation,              ///< Register::returns().NewDialog()
    DesktopLogin,             ///< gKassenUser
    BonHistorie,              ///< Register::receipts()
    ArtikelInfo,              ///< shows gArtikel
    Angebote,                 ///< history of the offers, PaperHistory
    Lieferungen,              ///< the same of the delivery notes
    RechnungFromLieferschein, ///< CollectiveInvoice
    KartenMenu,               ///< the menu of the cards; a choice there calls Register::PayByKarte
};

/// What the register asks of its screen. The form implements it, tests script it. Message boxes go through
/// <session/MsgBox.h>.
class RegisterScreen {
  public:
    virtual ~RegisterScreen() = default;

    virtual void Show(Dialog which) = 0;
    /// For dialogs that not every screen has. One that it lacks is not offered to the cashier.
    [[nodiscard]] virtual bool CanShow(Dialog /*which*/) const { return false; }
    virtual void UnknownArticleSound() = 0;
    /// Tells something in passing: no window, no focus. A screen that nobody looks at leaves it out.
    virtual void Hint(const QString& /*text*/) {}
    /// Throws the mouse pointer into the lower right corner, so that a finger's last place hides nothing.
    virtual void MovePointerAway() = 0;
    /// Lets pending events run.
    virtual void Yield() = 0;
    virtual void FocusInput() = 0;
    virtual void FocusGruppe() = 0; ///< the first group key
};

} // namespace till
