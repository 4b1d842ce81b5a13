#pragma once

#include <QObject>
#include <QStringList>

class QAction;
class QMenu;
class QWidget;

/// The menus of the register, popFunction, popKarte and popECTerminal. Every entry is a tool with a name, which is the
/// object name of its action, and a caption.
class KassenMenus : public QObject {
    Q_OBJECT

  public:
    /// The function menu holds what the switches of the till allow.
    explicit KassenMenus(QWidget* form);
    /// Fills the card menu: any other card first, then `karten` as a group of their own.
    void setKarten(const QStringList& karten);

    [[nodiscard]] bool hasFunctions() const;
    /// The menus open above the key that calls them; a second call closes them.
    void showFunction(const QWidget* key);
    void showKarte(const QWidget* key);
    void showECTerminal(const QWidget* key);

  signals:
    void tool(const QString& name, const QString& caption);

  private:
    QAction* add(QMenu* menu, const QString& name, const QString& caption);
    void open(QMenu* menu, const QWidget* key);

    QMenu *m_popFunction, *m_popKarte, *m_popECTerminal;
};
