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
    , m_popECTerminal(menu(form, u"popECTerminal"_s)) {
    using Act = till::Register::TerminalAct;
    const auto add = [&](bool wanted, const QString& key, const QString& caption, std::function<void()> act) {
        if (wanted) m_commands.add({.key = key, .caption = caption, .act = std::move(act)});
    };
    const auto* functionKey = form.findChild<QWidget*>(u"cmdFunction"_s);
    add(gKFBenutzerWechsel, u"FileChangeUser"_s, u"Benutzerwechsel"_s, [this] { m_till.ChangeUser(); });
    add(gKFKassenlade, u"FileOpenLade"_s, u"Kassenlade öffnen"_s, [this] { m_till.OpenLade_Click(); });
    add(true, u"FilePrintLast"_s, u"Letzten Bon drucken\t"_s + ShortcutText(u"Ctrl+P"_s),
        [this] { m_till.PrintLast(); });
    add(gZVTEnabled, u"FileECFunction"_s, u"EC Terminal Funktionen"_s,
        [this, functionKey] { open(m_popECTerminal, functionKey); });
    add(true, u"ECStorno"_s, u"Stornieren"_s, [this] { m_till.TerminalFunction(Act::Storno); });
    add(true, u"ECKassenSchnitt"_s, u"Kassenschnitt"_s,
        [this] { m_till.TerminalFunction(Act::KassenSchnitt); });
    add(true, u"ECGutschrift"_s, u"Gutschrift"_s, [this] { m_till.TerminalFunction(Act::Gutschrift); });
    m_commands.add({.key = u"FileUndo"_s,
                    .caption = m_till.UndoCaption(),
                    .act = [this] { m_till.TakeBack(); },
                    .enabled = [this] { return m_till.CanTakeBack(); }});
    add(true, u"FileUnvollstaendig"_s, u"Unvollständige Belege"_s,
        [this] { m_till.ShowIncompleteReceipts(); });
    m_commands.fillMenu(*m_popFunction, {u"FileChangeUser"_s, u"FileOpenLade"_s, u"FilePrintLast"_s,
                                         u"FileECFunction"_s, u"FileUnvollstaendig"_s, u"FileUndo"_s});
    connect(&m_till, &till::Register::UndoChanged, this, &KassenMenus::showUndo);
    showUndo();
    offerIncompleteReceipts();
    m_commands.fillMenu(*m_popECTerminal, {u"ECStorno"_s, u"ECKassenSchnitt"_s, u"ECGutschrift"_s});
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

void KassenMenus::showFunction(const QWidget* key) {
    offerIncompleteReceipts();
    open(m_popFunction, key);
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
