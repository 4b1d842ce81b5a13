#include "KassenMenus.h"

#include <register/Register.h>
#include <session/Globals.h>
#include <ui/Commands.h>

#include <QAction>
#include <QMenu>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QMenu* menu(QWidget& form, const QString& name) {
    auto* made = new QMenu(&form);
    made->setObjectName(name);
    // A tap beside a menu closes it and does nothing else.
    made->setAttribute(Qt::WA_NoMouseReplay);
    return made;
}

} // namespace

KassenMenus::KassenMenus(QWidget& form, Commands& commands, till::Register& till)
    : QObject(&form)
    , m_form(form)
    , m_commands(commands)
    , m_till(till)
    , m_popFunction(menu(form, u"popFunction"_s))
    , m_popKarte(menu(form, u"popKarte"_s))
    , m_popAuftrag(menu(form, u"popAuftrag"_s))
    , m_popECTerminal(menu(form, u"popECTerminal"_s)) {
    const auto* functionKey = form.findChild<QWidget*>(u"cmdFunction"_s);
    const auto* orderKey = form.findChild<QWidget*>(u"cmdAuftrag"_s);
    if (gZVTEnabled) {
        m_commands.add({.key = u"FileECFunction"_s,
                        .caption = u"EC Terminal Funktionen"_s,
                        .act = [this, functionKey] { open(m_popECTerminal, functionKey); }});
    }
    m_commands.add({.key = u"cmdFunction"_s, .act = [this, functionKey] {
                        offerIncompleteReceipts();
                        open(m_popFunction, functionKey);
                    }});
    m_commands.fillMenu(*m_popFunction, {u"FileChangeUser"_s,
                                         {},
                                         u"FileEinlage"_s,
                                         u"FileEntnahme"_s,
                                         u"FileGutschrift"_s,
                                         {},
                                         u"FileNewGutschein"_s,
                                         u"FileFromGutschein"_s,
                                         u"FileGutscheinAuszahlung"_s,
                                         {},
                                         u"FileKassenAbschluss"_s,
                                         u"FileKassenZwischenBericht"_s,
                                         {},
                                         u"FileReklamation"_s,
                                         u"FileBonHistorie"_s,
                                         u"FileAngebote"_s,
                                         u"FileLieferscheine"_s,
                                         {},
                                         u"FileSaveTemp"_s,
                                         u"FileLoadTemp"_s,
                                         {},
                                         u"FileShowBestand"_s,
                                         u"FileOpenLade"_s,
                                         u"FileArtikelInfo"_s,
                                         u"FileLangText"_s,
                                         {},
                                         u"FilePrintLast"_s,
                                         u"FileECFunction"_s,
                                         u"FileUnvollstaendig"_s,
                                         u"FileUndo"_s});
    m_commands.fillMenu(*m_popECTerminal, {u"ECStorno"_s, u"ECKassenSchnitt"_s, u"ECGutschrift"_s});
    m_commands.fillMenu(*m_popAuftrag, {u"Auftrag_Rechnung"_s, u"Auftrag_Lieferschein"_s,
                                        u"Auftrag_Angebot"_s, u"Auftrag_RechnungFromLieferschein"_s,
                                        u"Auftrag_AufKundenKonto"_s, u"Auftrag_KundenKonto"_s});
    if (gKFAuftrag && !m_popAuftrag->isEmpty())
        m_commands.add({.key = u"cmdAuftrag"_s, .act = [this, orderKey] { open(m_popAuftrag, orderKey); }});
    connect(&m_till, &till::Register::UndoChanged, this, &KassenMenus::showUndo);
    showUndo();
    offerIncompleteReceipts();
}

void KassenMenus::setKarten(const QStringList& karten) {
    std::vector<QString> keys;
    const auto add = [&](const QString& key, const QString& card) {
        QString shown = card;
        m_commands.add({.key = key, .caption = shown.replace(u'&', u"&&"_s), .act = [this, card] {
                            m_till.PayByKarte(card);
                        }});
        keys.push_back(key);
    };
    add(u"FileOtherKarte"_s, u"sonstige Kreditkarte"_s);
    if (!karten.isEmpty()) keys.emplace_back(); // a line
    for (qsizetype i = 0; i < karten.size(); ++i)
        add(u"Karte%1"_s.arg(i), karten[i]);
    m_commands.fillMenu(*m_popKarte, keys);
}

void KassenMenus::showUndo() {
    QString caption = m_till.UndoCaption();
    // Behind the tabulator stands the key; the register itself listens to it.
    m_commands.action(u"FileUndo"_s)
        ->setText(caption.replace(u'&', u"&&"_s) + u'\t' + ShortcutText(u"Ctrl+Z"_s));
    m_commands.update();
}

void KassenMenus::offerIncompleteReceipts() {
    m_commands.action(u"FileUnvollstaendig"_s)->setVisible(m_till.HasIncompleteReceipts());
}

void KassenMenus::showKarte(const QWidget* key) { open(m_popKarte, key); }

void KassenMenus::open(QMenu* menu, const QWidget* key) {
    if (menu->isVisible()) {
        menu->close();
        return;
    }
    if (menu->isEmpty()) return;
    menu->setMinimumWidth(std::max(key->width(), 320));
    const QSize size = menu->sizeHint().expandedTo(menu->minimumSize());
    const QRect window = key->window()->frameGeometry();
    QPoint at = key->mapToGlobal(QPoint(0, -size.height() - 4));
    at.setX(std::clamp(at.x(), window.left(), std::max(window.left(), window.right() - size.width())));
    menu->popup(at);
    // Whoever opened it by the keyboard goes on with the arrows and Enter.
    for (QAction* action : menu->actions()) {
        if (!action->isEnabled()) continue;
        menu->setActiveAction(action);
        return;
    }
}
