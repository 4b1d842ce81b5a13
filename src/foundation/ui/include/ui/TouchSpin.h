#pragma once

#include <QWidget>

class TouchKey;

/// Two keys that count a value down and up; the value itself is shown by a box beside them. Plus and minus of
/// the keyboard and its arrows count too while it has the focus.
class TouchSpin : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

  public:
    explicit TouchSpin(QWidget* parent = nullptr);
    [[nodiscard]] int value() const { return m_value; }
    /// Values outside the range are brought to its end.
    void setValue(int value);
    void setRange(int least, int most);

  signals:
    void valueChanged(int value);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    TouchKey *m_less, *m_more;
    int m_value = 0, m_least = 0, m_most = 99;
};
