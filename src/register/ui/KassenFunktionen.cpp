#include "KassenFunktionen.h"

#include "FunctionKeys.h"

#include <register/CashMovements.h>
#include <register/CustomerAccount.h>
#include <register/Documents.h>
#include <register/Parking.h>
#include <register/Register.h>
#include <register/Returns.h>
#include <register/SpecialLines.h>
#include <register/Vouchers.h>
#include <session/Globals.h>
#include <ui/Commands.h>

using namespace Qt::StringLiterals;

void AddKassenFunktionen(Commands& commands, till::Register& till) {
    using Act = till::Register::TerminalAct;
    const auto add = [&](bool wanted, const QString& key, std::function<void()> act,
                         const QString& caption = {}) {
        if (!wanted) return;
        const QString shownKey = FunctionKeys::ShownKey(key);
        // Behind the tabulator stands the key; the register itself listens to it.
        commands.add({.key = key,
                      .caption = shownKey.isEmpty() ? caption : caption + u'\t' + shownKey,
                      .act = std::move(act)});
    };

    // Keys of the screen
    add(true, u"cmdClear"_s, [&till] { till.cmdClear_Click(); });
    add(true, u"cmdSearch"_s, [&till] { till.cmdSearch_Click(); });
    add(gKFFreierArtikelPreis, u"cmdArtikelPreis"_s, [&till] { till.cmdArtikelPreis_Click(); });
    add(gKFRabatt, u"cmdRabatt"_s, [&till] { till.cmdRabatt_Click(); });
    add(gKFKunden, u"cmdKunde"_s, [&till] { till.cmdKunde_Click(); });
    add(true, u"cmdStorno"_s, [&till] { till.cmdStorno_Click(); });
    add(true, u"cmdPfand"_s, [&till] { till.special().cmdPfand_Click(); });
    add(true, u"cmdKarte"_s, [&till] { till.cmdKarte_Click(); });
    add(true, u"cmdTotal"_s, [&till] { till.cmdTotal_Click(); });
    add(true, u"ShortCutFocus"_s, [&till] { till.ToggleShortCutFocus(); });

    // popAuftrag
    add(
        true, u"Auftrag_Rechnung"_s, [&till] { till.documents().BookRechnungOffen(); }, u"Auf Rechnung"_s);
    add(
        true, u"Auftrag_Lieferschein"_s, [&till] { till.documents().BookLieferschein(); }, u"Lieferschein"_s);
    add(
        true, u"Auftrag_Angebot"_s, [&till] { till.documents().BookAngebot(); }, u"Angebot"_s);
    add(
        true, u"Auftrag_RechnungFromLieferschein"_s,
        [&till] { till.documents().ShowRechnungFromLieferschein(); }, u"Neue Rechnung aus Lieferschein"_s);

    // popFunction
    add(
        gKFBenutzerWechsel, u"FileChangeUser"_s, [&till] { till.ChangeUser(); }, u"Benutzerwechsel"_s);
    add(
        gKFKasseneinlage, u"FileEinlage"_s, [&till] { till.movements().BookEinlage(); },
        u"401-Einlage in die Kasse"_s);
    add(
        gKFKassenentnahme, u"FileEntnahme"_s, [&till] { till.movements().BookEntnahme(); },
        u"401-Entnahme aus der Kasse"_s);
    add(
        gKFKassenBestand, u"FileShowBestand"_s, [&till] { till.movements().ShowUmsatzAbfrage(); },
        u"Kassenbestand anzeigen"_s);
    add(
        gKFGutscheinErstellen, u"FileNewGutschein"_s, [&till] { till.vouchers().CreateGutschein(); },
        u"Neuen Gutschein erstellen"_s);
    add(
        gKFGutscheinEinloesen, u"FileFromGutschein"_s, [&till] { till.vouchers().RedeemGutschein(); },
        u"Gutschein einlösen"_s);
    add(
        gKFGutscheinAuszahlung, u"FileGutscheinAuszahlung"_s, [&till] { till.vouchers().PayoutGutschein(); },
        u"Gutscheinbetrag Bar auszahlen"_s);
    add(
        gKFRechnungsHistorie, u"FileBonHistorie"_s, [&till] { till.ShowBonHistorie(); },
        u"Bon / Rechnungshistorie"_s);
    add(
        gKFArtikelInfo, u"FileArtikelInfo"_s, [&till] { till.ShowArtikelInfo(); }, u"Artikelinfo anzeigen"_s);
    add(
        gKFAngebotsHistorie, u"FileAngebote"_s, [&till] { till.documents().ShowAngebote(); },
        u"Angebotshistorie"_s);
    add(
        gKFLieferscheinHistorie, u"FileLieferscheine"_s, [&till] { till.documents().ShowLieferungen(); },
        u"Lieferschein Historie"_s);
    add(
        gKFKassenlade, u"FileOpenLade"_s, [&till] { till.OpenLade_Click(); }, u"Kassenlade öffnen"_s);
    add(
        true, u"FilePrintLast"_s, [&till] { till.PrintLast(); }, u"Letzten Bon drucken"_s);
    add(
        true, u"FileUnvollstaendig"_s, [&till] { till.ShowIncompleteReceipts(); },
        u"Unvollständige Belege"_s);
    add(
        gKFWarenrueckgabe, u"FileReklamation"_s, [&till] { till.returns().ShowReklamation(); },
        u"Warenrückgabe / Reklamation"_s);
    commands.add({.key = u"FileUndo"_s,
                  .caption = till.UndoCaption(),
                  .act = [&till] { till.TakeBack(); },
                  .enabled = [&till] { return till.CanTakeBack(); }});

    add(
        gKFBestellungParken, u"FileSaveTemp"_s, [&till] { till.parking().ParkBestellung(); },
        u"Bestellung parken"_s);
    add(
        gKFBestellungParken, u"FileLoadTemp"_s, [&till] { till.parking().LoadParkedBestellung(); },
        u"geparkte Bestellung abrufen"_s);

    add(
        gKFGutschrift, u"FileGutschrift"_s, [&till] { till.special().BookGutschrift(); }, u"Gutschrift"_s);
    add(
        gKFLangText, u"FileLangText"_s, [&till] { till.special().EditLangText(); }, u"Langtext bearbeiten"_s);

    // popAuftrag
    add(
        true, u"Auftrag_AufKundenKonto"_s, [&till] { till.account().BookToKundenKonto(); },
        u"Bestellung auf Kundenkonto buchen"_s);
    add(
        true, u"Auftrag_KundenKonto"_s, [&till] { till.account().LoadKundenKonto(); },
        u"Kundenkonto abrufen"_s);

    // popECTerminal
    add(
        true, u"ECStorno"_s, [&till] { till.TerminalFunction(Act::Storno); }, u"Stornieren"_s);
    add(
        true, u"ECKassenSchnitt"_s, [&till] { till.TerminalFunction(Act::KassenSchnitt); },
        u"Kassenschnitt"_s);
    add(
        true, u"ECGutschrift"_s, [&till] { till.TerminalFunction(Act::Gutschrift); }, u"Gutschrift"_s);
}
