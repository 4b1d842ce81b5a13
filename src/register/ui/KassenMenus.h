#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class Commands;
class QMenu;
class QWidget;
namespace till {
class Register;
}

/// The menus of the register, popFunction, popKarte, popAuftrag and popECTerminal. Their entries are commands
/// of the form.
class KassenMenus : public QObject {
    Q_OBJECT

  public:
    /// The menus hold those of their functions that are there; the commands that open a menu are added here.
    KassenMenus(QWidget& form, Commands& commands, till::Register& till);
    /// Fills the card menu: any other card first, then `karten` as a group of their own.
    void setKarten(const QStringList& karten);

    /// The menus open above the key that calls them; a second call closes them.
    void showKarte(const QWidget* key);

  private:
    void open(QMenu* menu, const QWidget* key);
    void showUndo();
    void offerIncompleteReceipts();

    QWidget& m_form;
    Commands& m_commands;
    till::Register& m_till;
    QMenu *m_popFunction, *m_popKarte, *m_popAuftrag, *m_popECTerminal;
};
