#pragma once

#include <QFrame>
#include <QWidget>

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

/// The head of a dialog: what it is about in one line, and what to do in a second.
class WizardPane : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString headerTitle READ headerTitle WRITE setHeaderTitle)
    Q_PROPERTY(QString headerDescription READ headerDescription WRITE setHeaderDescription)

  public:
    explicit WizardPane(QWidget* parent = nullptr);
    [[nodiscard]] QString headerTitle() const;
    void setHeaderTitle(const QString& text);
    [[nodiscard]] QString headerDescription() const;
    void setHeaderDescription(const QString& text);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QLabel *m_title, *m_description;
};
