#include "KassenFunktionen.h"

#include "FunctionKeys.h"

#include <register/Documents.h>
#include <register/Register.h>
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
    add(gKFFreierArtikelPreis, u"cmdArtikelPreis"_s, [&till] { till.cmdArtikelPreis_Click(); });
    add(gKFRabatt, u"cmdRabatt"_s, [&till] { till.cmdRabatt_Click(); });
    add(gKFKunden, u"cmdKunde"_s, [&till] { till.cmdKunde_Click(); });
    add(true, u"cmdStorno"_s, [&till] { till.cmdStorno_Click(); });
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
        gKFAngebotsHistorie, u"FileAngebote"_s, [&till] { till.documents().ShowAngebote(); },
        u"Angebotshistorie"_s);
    add(
        gKFLieferscheinHistorie, u"FileLieferscheine"_s, [&till] { till.documents().ShowLieferungen(); },
        u"Lieferschein Historie"_s);
    add(
        gKFBenutzerWechsel, u"FileChangeUser"_s, [&till] { till.ChangeUser(); }, u"Benutzerwechsel"_s);
    add(
        gKFKassenlade, u"FileOpenLade"_s, [&till] { till.OpenLade_Click(); }, u"Kassenlade öffnen"_s);
    add(
        true, u"FilePrintLast"_s, [&till] { till.PrintLast(); }, u"Letzten Bon drucken"_s);
    add(
        true, u"FileUnvollstaendig"_s, [&till] { till.ShowIncompleteReceipts(); },
        u"Unvollständige Belege"_s);
    commands.add({.key = u"FileUndo"_s,
                  .caption = till.UndoCaption(),
                  .act = [&till] { till.TakeBack(); },
                  .enabled = [&till] { return till.CanTakeBack(); }});

    // popECTerminal
    add(
        true, u"ECStorno"_s, [&till] { till.TerminalFunction(Act::Storno); }, u"Stornieren"_s);
    add(
        true, u"ECKassenSchnitt"_s, [&till] { till.TerminalFunction(Act::KassenSchnitt); },
        u"Kassenschnitt"_s);
    add(
        true, u"ECGutschrift"_s, [&till] { till.TerminalFunction(Act::Gutschrift); }, u"Gutschrift"_s);
}
