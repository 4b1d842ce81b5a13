#pragma once

#include "FunctionKeys.h"

#include <QList>
#include <QObject>

class QKeyEvent;
class QLineEdit;
class QWidget;
class WorkQueue;
namespace till {
class Register;
}

/// Leads every key that arrives at the register to its place, whatever control has the focus: functions by
/// the key table, all that is typed or scanned into the entry box, Enter to the input decision. What arrives
/// while a handler runs waits for its end. Modal dialogs keep their keys; an open menu keeps those that move
/// in it, while anything typed closes it and lands in the entry box.
class EntryKeyboard : public QObject {
    Q_OBJECT

  public:
    EntryKeyboard(QWidget* form, QLineEdit* input, WorkQueue& queue, till::Register& till, FunctionKeys keys);
    ~EntryKeyboard() override;
    /// A group key: what the keystroke that led to it typed is taken back when it gets the focus.
    void addGroupKey(const QObject* key) { m_groups.append(key); }

  signals:
    void function(const QString& key); ///< the command of a key

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    bool keyPressed(QWidget* receiver, const QKeyEvent& key);
    void dispatch(const QKeyEvent& key);
    bool toShortCutKey(const QKeyEvent& key);
    void sendTo(QWidget* target, const QKeyEvent& key);
    void inputFocusChanged(const QEvent& event);

    QWidget* m_form;
    QLineEdit* m_input;
    WorkQueue& m_queue;
    till::Register& m_till;
    FunctionKeys m_keys;
    QList<const QObject*> m_groups;
    const QEvent* m_sent = nullptr; ///< the event on its way to a control, which must not be led again
};
