#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>

#include <optional>

class QWidget;

/// The keyboard on the screen, for tills that have no other: letters, umlauts, digits and signs for boxes of
/// text, a block of digits for boxes of numbers. With gBildschirmTastatur it opens on a tap into any box that
/// can be written into, except where the form has digits of its own for it. Its keys are keystrokes to the
/// box, which keeps the focus; "Fertig", Esc, or a focus that goes elsewhere close it. A box whose property
/// `screenKeyboard` is false does not open it.
///
/// One for the application; it listens to all of it for its life.
class ScreenKeyboard : public QObject {
    Q_OBJECT

  public:
    explicit ScreenKeyboard(QObject* parent = nullptr);
    ~ScreenKeyboard() override;

    /// The open keyboard ("screenKeyboard"), its keys named key1, keyQ, keyShift, keyBackspace, keySpace,
    /// keyLeft, keyRight, keyEnter and keyDone; nullptr while it is closed.
    [[nodiscard]] QWidget* board() const { return m_board; }
    /// Where a keyboard of this size leaves the box free: at the bottom of the screen, or else at its top;
    /// nothing when the box is in the way of both.
    [[nodiscard]] static std::optional<QPoint> Place(const QRect& box, const QRect& screen,
                                                     const QSize& size);

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    void open(QWidget& box);
    void close();
    void focusChanged(QWidget* now);
    void send(int key, const QString& text = {});

    QPointer<QWidget> m_board, m_box;
};
