#pragma once

#include <QLabel>

/// A label for an amount. Its letters have the size of its role and shrink as far as its room demands, so
/// that an amount never loses a digit. Its width asks for nothing: a longer amount moves nothing beside it.
class AmountLabel : public QLabel {
    Q_OBJECT

  public:
    explicit AmountLabel(QWidget* parent = nullptr);
    [[nodiscard]] QFont shownFont() const; ///< the letters that the text has now
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// `font`, made smaller until `text` fits into `room`; a dimension of 0 is no limit.
[[nodiscard]] QFont FittedFont(QFont font, const QString& text, const QSize& room);

class QLineEdit;
/// The same for an entry box of amounts: its letters follow what stands in it. Call it once; `role` letters
/// are the largest.
void FitLetters(QLineEdit& box);
