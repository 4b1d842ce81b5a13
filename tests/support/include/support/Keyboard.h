#pragma once

#include <ui/ScanGuard.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QTest>
#include <QWidget>

/// A keyboard with a clock of its own, in front of a ScanGuard that goes by it: keys come as from the system,
/// with or without its time stamps, and nobody waits for real.
///
///     Keyboard keys;
///     keys.scan(dialog, u"2005000000171"_s);
///     keys.type(dialog, u"12,50\r"_s, 90);
class Keyboard {
  public:
    explicit Keyboard(const ScanFigures& figures = {})
        : guard(figures) {
        guard.setClock([this] { return now; });
    }

    /// A key goes down and comes up `gap` milliseconds after the one before, at whatever has the focus in
    /// `form`.
    void key(QWidget& form, int code, const QString& text, qint64 gap) {
        now += gap;
        const QPointer<QWidget> target = form.focusWidget() != nullptr ? form.focusWidget() : &form;
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, Qt::NoModifier, text);
            if (stamped) event.setTimestamp(quint64(now + 7777)); // the system counts from elsewhere
            QSpontaneKeyEvent::setSpontaneous(&event);
            if (target) qApp->notify(target, &event);
        }
    }
    /// "\r" is Enter, "\t" Tab.
    void type(QWidget& form, const QString& text, qint64 gap) {
        for (const QChar c : text)
            key(form, codeOf(c), QString(c), gap);
    }
    /// The code and its end, 5 ms a key.
    void scan(QWidget& form, const QString& code, const QString& end = QStringLiteral("\r")) {
        now += 500;
        type(form, code + end, 5);
    }
    /// Nothing for a while: what was held back and typed comes out.
    void rest() {
        now += 500;
        guard.settle();
    }

    ScanGuard guard;
    qint64 now = 0;
    bool stamped = true;

  private:
    static int codeOf(QChar c) {
        if (c == u'\r') return Qt::Key_Return;
        return c == u'\t' ? int(Qt::Key_Tab) : int(c.toUpper().unicode());
    }
};
