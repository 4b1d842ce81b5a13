#pragma once

#include <QLabel>
#include <QPixmap>

/// Shows a picture as large as its room allows, or a caption in its place.
class PictureLabel : public QLabel {
    Q_OBJECT

  public:
    explicit PictureLabel(QWidget* parent = nullptr)
        : QLabel(parent) {}
    /// A file that cannot be read as a picture leaves only the caption.
    void showPicture(const QString& file, const QString& caption);
    void showPicture(const QPixmap& picture, const QString& caption);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void fit();
    QPixmap m_picture;
};
