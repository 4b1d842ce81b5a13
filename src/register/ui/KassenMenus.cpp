#include "KassenMenus.h"

#include <session/Globals.h>

#include <QAction>
#include <QMenu>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

KassenMenus::KassenMenus(QWidget* form)
    : QObject(form)
    , m_popFunction(new QMenu(form))
    , m_popKarte(new QMenu(form))
    , m_popECTerminal(new QMenu(form)) {
    m_popFunction->setObjectName(u"popFunction"_s);
    m_popKarte->setObjectName(u"popKarte"_s);
    m_popECTerminal->setObjectName(u"popECTerminal"_s);
    // A tap beside a menu closes it and does nothing else.
    for (QMenu* menu : {m_popFunction, m_popKarte, m_popECTerminal})
        menu->setAttribute(Qt::WA_NoMouseReplay);
    if (gKFBenutzerWechsel) add(m_popFunction, u"FileChangeUser"_s, u"Benutzerwechsel"_s);
    if (gKFKassenlade) add(m_popFunction, u"FileOpenLade"_s, u"Kassenlade öffnen"_s);
    if (gZVTEnabled) add(m_popFunction, u"FileECFunction"_s, u"EC Terminal Funktionen"_s);
    add(m_popECTerminal, u"ECStorno"_s, u"Stornieren"_s);
    add(m_popECTerminal, u"ECKassenSchnitt"_s, u"Kassenschnitt"_s);
    add(m_popECTerminal, u"ECGutschrift"_s, u"Gutschrift"_s);
    setKarten({});
}

void KassenMenus::setKarten(const QStringList& karten) {
    m_popKarte->clear();
    add(m_popKarte, u"FileOtherKarte"_s, u"sonstige Kreditkarte"_s);
    if (!karten.isEmpty()) m_popKarte->addSeparator();
    for (qsizetype i = 0; i < karten.size(); ++i)
        add(m_popKarte, u"Karte%1"_s.arg(i), karten[i]);
}

bool KassenMenus::hasFunctions() const { return !m_popFunction->isEmpty(); }
void KassenMenus::showFunction(const QWidget* key) { open(m_popFunction, key); }
void KassenMenus::showKarte(const QWidget* key) { open(m_popKarte, key); }
void KassenMenus::showECTerminal(const QWidget* key) { open(m_popECTerminal, key); }

QAction* KassenMenus::add(QMenu* menu, const QString& name, const QString& caption) {
    QString shown = caption;
    QAction* action = menu->addAction(shown.replace(u'&', u"&&"_s));
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, name, caption] { emit tool(name, caption); });
    return action;
}

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
    menu->setActiveAction(menu->actions().constFirst());
}
