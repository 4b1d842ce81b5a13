#pragma once

#include <session/MsgBox.h>

#include <QWidget>

/// The sign beside a message: what kind of message it is, told by shape as well as by colour.
class IconSign : public QWidget {
    Q_OBJECT

  public:
    explicit IconSign(QWidget* parent = nullptr);
    void setIcon(MsgIcon icon); ///< None hides it

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    MsgIcon m_icon = MsgIcon::Information;
};
