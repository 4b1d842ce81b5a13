#pragma once

#include <QFrame>

class QLabel;

/// A panel with a dark title bar. Its layout stays below the bar, so in Designer it is filled like any frame.
class TitlePanel : public QFrame {
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle)
    Q_PROPERTY(QString titleName READ titleName WRITE setTitleName)

  public:
    explicit TitlePanel(QWidget* parent = nullptr);
    [[nodiscard]] QString title() const;
    /// An empty title takes the bar away.
    void setTitle(const QString& title);
    /// Object name of the label in the bar, e.g. "Title_Bestellung".
    [[nodiscard]] QString titleName() const;
    void setTitleName(const QString& name);
    [[nodiscard]] QLabel* titleLabel() const { return m_title; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    [[nodiscard]] int barHeight() const;
    void place();
    QLabel* m_title;
};
