#pragma once

#include <QWidget>

class QLabel;

/// What start-up shows while it works: a window without a frame with the label `lblInfo`.
class frmSplash : public QWidget {
    Q_OBJECT

  public:
    explicit frmSplash(QWidget* parent = nullptr);
    void SetInfo(const QString& text);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QLabel* m_info;
};
