#pragma once

#include <session/MsgBox.h>
#include <session/gUser.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QAction;
class QBoxLayout;
class QMenu;
class QWidget;
class TouchKey;

/// What a form can do, told once: from it come its bar, its menus and its shortcuts.
struct Command {
    QString key; ///< unique in the form; the object name of its action
    QString caption{};
    QString toolTip{};
    QString shortcut{}; ///< portable: "F4", "Ctrl+P"; "" for none
    std::function<void()> act{};
    std::function<bool()> enabled{}; ///< asked by Commands::update; always when empty
    bool Rechte::*right = nullptr;   ///< the right it takes; none for everybody
    QString hint{}; ///< stands on the key in place of a shortcut that a view binds itself, such as "Enter" of
                    ///< a list
    MsgIcon refusalIcon = MsgIcon::Critical;
    QString refusal = QStringLiteral("Sie haben nicht die nötigen Rechte um diese Aktion auszuführen.");
};

/// The commands of one form. Every way to one (bar, menu, pop-up, shortcut) tests whether it is enabled, then
/// the right, tells a refusal, and runs the act as the form runs its handlers.
///
///     m_commands.add({u"FileNew"_s, u"Neu"_s, u"Legt einen Mitarbeiter an"_s, u"F4"_s, [this] { edit(true);
///     }}); m_commands.fillBar(*m_ui->layTools, {u"FileNew"_s, u"FileOpen"_s, {}, u"FileExit"_s});
///     m_commands.fillMenu(*menu, {u"FileNew"_s, {}, u"FileExit"_s});
///     m_commands.update();   // whenever what they depend on has changed
class Commands : public QObject {
    Q_OBJECT

  public:
    /// Runs an act under the form's guard.
    using Runner = std::function<void(const std::function<void()>& act)>;
    /// `form` gets the shortcuts; `who` is the person whose rights count.
    Commands(QWidget& form, Runner run, const Rechte& who = gUser);

    /// Raises 457 for a key that is there already.
    void add(Command command);
    /// Takes a command away from everywhere; unknown keys are ignored.
    void remove(const QString& key);
    /// In the order in which they were added.
    [[nodiscard]] const std::vector<Command>& all() const { return m_commands; }
    /// As a click on it. True when the act was started; False also for an unknown key.
    bool trigger(const QString& key);

    /// Below, an empty key is a gap or a separating line, and a key that does not exist is left out: the
    /// table alone tells what a form can do.

    /// One key of the bar for each command, named "bar" and the command's key.
    void fillBar(QBoxLayout& bar, const std::vector<QString>& keys);
    void fillMenu(QMenu& menu, const std::vector<QString>& keys);
    /// A menu for the right mouse button (and the menu key) on `place`; `name` is its object name. `before`
    /// runs before it opens, for instance to select the row under the mouse.
    QMenu* popUp(QWidget& place, const QString& name, const std::vector<QString>& keys);
    [[nodiscard]] QAction* action(const QString& key) const; ///< nullptr for an unknown key

    /// Asks for each command whether it is enabled.
    void update();

  private:
    [[nodiscard]] const Command* find(const QString& key) const;

    QWidget& m_form;
    Runner m_run;
    const Rechte& m_who;
    std::vector<Command> m_commands;
    QHash<QString, QAction*> m_actions;
};

/// A shortcut as it stands on a key: "Strg+P", "Entf".
[[nodiscard]] QString ShortcutText(const QString& shortcut);
