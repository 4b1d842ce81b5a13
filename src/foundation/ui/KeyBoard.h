#pragma once

#include <QList>
#include <QWidget>

class QGridLayout;
class TouchKey;

/// A box that takes numbers only.
[[nodiscard]] bool isNumberBox(const QWidget& box);

/// The window of the keyboard on the screen: it never becomes the active one. Made for one box, and gone with
/// the window of that box.
class KeyBoard : public QWidget {
    Q_OBJECT

  public:
    KeyBoard(QWidget& box, bool digitsOnly);
    /// Its size on a screen: keys grow with it, and none is lower or narrower than a key of the till.
    [[nodiscard]] QSize fitted(const QSize& screen) const;

  signals:
    void key(int key, const QString& text); ///< a keystroke for the box
    void done();

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    enum class Shift { Off, Once, Locked };
    struct Sign {
        TouchKey* key;
        QString plain, shifted;
    };

    void addLetters();
    void addDigits(QWidget& box);
    TouchKey* add(const QString& name, const QString& caption, int row, int column, int columns);
    void addStroke(const QString& name, const QString& caption, const QString& spoken, int row, int column,
                   int columns, int code);
    void addSign(QChar plain, QChar shifted, int row, int column);
    void press(const Sign& sign);
    void setShift(Shift shift);

    QGridLayout* m_grid;
    QList<Sign> m_signs;
    TouchKey* m_shiftKey = nullptr;
    Shift m_shift = Shift::Off;
    bool m_digitsOnly;
};
