#include <text/RuntimeError.h>
#include <ui/Commands.h>
#include <ui/TouchKey.h>

#include <QAction>
#include <QBoxLayout>
#include <QKeySequence>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

Commands::Commands(QWidget& form, Runner run, const Rechte& who)
    : QObject(&form)
    , m_form(form)
    , m_run(std::move(run))
    , m_who(who) {}

void Commands::add(Command command) {
    if (find(command.key) != nullptr)
        throw RuntimeError(457, u"Der Befehl "_s + command.key + u" ist bereits vorhanden."_s, u"Commands"_s);
    auto* action = new QAction(command.caption, this);
    action->setObjectName(command.key);
    action->setToolTip(command.toolTip);
    if (!command.shortcut.isEmpty()) action->setShortcut(QKeySequence(command.shortcut));
    connect(action, &QAction::triggered, this, [this, key = command.key] { trigger(key); });
    m_form.addAction(action);
    m_actions.insert(command.key, action);
    m_commands.push_back(std::move(command));
}

void Commands::remove(const QString& key) {
    std::erase_if(m_commands, [&](const Command& c) { return c.key == key; });
    delete m_actions.take(key);
}

const Command* Commands::find(const QString& key) const {
    const auto found =
        std::find_if(m_commands.begin(), m_commands.end(), [&](const Command& c) { return c.key == key; });
    return found == m_commands.end() ? nullptr : &*found;
}

QAction* Commands::action(const QString& key) const { return m_actions.value(key); }

bool Commands::trigger(const QString& key) {
    const Command* command = find(key);
    if (command == nullptr || (command->enabled && !command->enabled())) return false;
    if (command->right != nullptr && !(m_who.*command->right)) {
        MsgBox(command->refusal, command->refusalIcon);
        return false;
    }
    // A copy: the act may change the table.
    if (const std::function<void()> act = command->act) m_run(act);
    return true;
}

void Commands::fillBar(QBoxLayout& bar, const std::vector<QString>& keys) {
    for (const QString& name : keys) {
        if (name.isEmpty()) {
            bar.addSpacing(12);
            continue;
        }
        const Command* command = find(name);
        if (command == nullptr) continue;
        QAction* action = m_actions.value(name);
        auto* key = new TouchKey(command->caption, bar.parentWidget());
        key->setObjectName(u"bar"_s + name);
        key->setToolTip(command->toolTip);
        key->setHint(command->hint.isEmpty() ? ShortcutText(command->shortcut) : command->hint);
        key->setEnabled(action->isEnabled());
        bar.addWidget(key);
        connect(key, &TouchKey::clicked, action, &QAction::trigger);
        connect(action, &QAction::changed, key, [key, action] { key->setEnabled(action->isEnabled()); });
        connect(action, &QObject::destroyed, key, &QObject::deleteLater);
    }
}

void Commands::fillMenu(QMenu& menu, const std::vector<QString>& keys) {
    for (const QString& name : keys) {
        if (name.isEmpty())
            menu.addSeparator();
        else if (QAction* action = m_actions.value(name))
            menu.addAction(action);
    }
}

QMenu* Commands::popUp(QWidget& place, const QString& name, const std::vector<QString>& keys) {
    auto* menu = new QMenu(&place);
    menu->setObjectName(name);
    fillMenu(*menu, keys);
    place.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&place, &QWidget::customContextMenuRequested, menu, [this, menu, &place](const QPoint& at) {
        update();
        menu->popup(place.mapToGlobal(at));
    });
    return menu;
}

void Commands::update() {
    for (const Command& command : m_commands)
        m_actions.value(command.key)->setEnabled(!command.enabled || command.enabled());
}

QString ShortcutText(const QString& shortcut) {
    static const std::pair<QString, QString> german[] = {{u"Ctrl"_s, u"Strg"_s},
                                                         {u"Shift"_s, u"Umsch"_s},
                                                         {u"Del"_s, u"Entf"_s},
                                                         {u"Ins"_s, u"Einfg"_s},
                                                         {u"Return"_s, u"Enter"_s}};
    QStringList parts = shortcut.split(u'+');
    for (QString& part : parts) {
        for (const auto& [english, local] : german) {
            if (part == english) part = local;
        }
    }
    return parts.join(u'+');
}
