#pragma once

namespace till {

/// What the register asks of its screen. The form implements it, tests script it. Message boxes go through
/// <session/MsgBox.h>. The Show functions are modal: the register fills a session record, the dialog works on
/// it and leaves its answer there; a dialog that was closed without a decision leaves `Ergebnis` 0.
class RegisterScreen {
  public:
    virtual ~RegisterScreen() = default;

    virtual void ShowPreisAngabe() = 0;        ///< gArtikel.VKPreis and gArtikel.Ergebnis
    virtual void ShowRabatt() = 0;             ///< gRabattAngabe
    virtual void ShowFreierPreis() = 0;        ///< gPreisAngabe
    virtual void ShowFreierArtikel() = 0;      ///< gFreierArtikel
    virtual void ShowArtikelLieferanten() = 0; ///< gArtikelLieferant
    virtual void ShowKasseTotal() = 0;         ///< gZahlung
    virtual void ShowPrintDlg() = 0;           ///< sets gPrintMode to 0, 1 or 2
    virtual void ShowRechnungsVorlage() = 0;   ///< gVorlagenAuswahl
    virtual void ShowKundenSuche() = 0;        ///< gKunde, Ergebnis 1 when one was chosen
    virtual void ShowDesktopLogin() = 0;       ///< gKassenUser
    /// Opens the menu of the cards; a choice there calls Register::PayByKarte.
    virtual void ShowKartenMenu() = 0;

    virtual void UnknownArticleSound() = 0;
    /// Throws the mouse pointer into the lower right corner, so that a finger's last place hides nothing.
    virtual void MovePointerAway() = 0;
    /// Lets pending events run.
    virtual void Yield() = 0;
    virtual void FocusInput() = 0;
    virtual void FocusGruppe() = 0; ///< the first group key
};

} // namespace till
