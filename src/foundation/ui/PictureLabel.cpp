#include <ui/PictureLabel.h>

void PictureLabel::showPicture(const QString& file, const QString& caption) {
    showPicture(file.isEmpty() ? QPixmap() : QPixmap(file), caption);
}

void PictureLabel::showPicture(const QPixmap& picture, const QString& caption) {
    m_picture = picture;
    clear(); // setText() would keep a picture whose caption is the same
    if (m_picture.isNull())
        setText(caption);
    else
        fit();
}

void PictureLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    fit();
}

void PictureLabel::fit() {
    if (m_picture.isNull() || contentsRect().isEmpty()) return;
    const qreal ratio = devicePixelRatioF();
    QPixmap scaled =
        m_picture.scaled(contentsRect().size() * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    setPixmap(scaled);
}
