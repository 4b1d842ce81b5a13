#include <session/MsgBox.h>
#include <text/RuntimeError.h>
#include <ui/PictureField.h>

#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QMimeData>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

/// Sharp on every screen of a till, and small enough for a network.
constexpr QSize largest(800, 800);

[[noreturn]] void raiseUnwritable(const QString& file) {
    throw RuntimeError(70, u"\"%1\" kann nicht geschrieben werden."_s.arg(QDir::toNativeSeparators(file)));
}

QString droppedFile(const QMimeData& data) {
    return data.urls().size() == 1 ? data.urls().constFirst().toLocalFile() : QString();
}

} // namespace

QImage ReadPicture(const QString& file) {
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.width() > largest.width() || size.height() > largest.height())
        reader.setScaledSize(size.scaled(largest, Qt::KeepAspectRatio));
    return reader.read();
}

PictureField::PictureField(QWidget* parent)
    : PictureLabel(parent) {
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    // The picture follows the room, and never the room the picture.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setAcceptDrops(true);
}

void PictureField::setCaption(const QString& none) {
    m_caption = none;
    if (!hasPicture()) showImage();
}

void PictureField::load(const QString& file) {
    m_file = file;
    m_changed = false;
    m_image = file.isEmpty() ? QImage() : ReadPicture(file);
    showImage();
    if (m_image.isNull() && !file.isEmpty() && QFileInfo::exists(file))
        PictureLabel::showPicture(QPixmap(), u"Das Bild ist beschädigt"_s);
}

void PictureField::showImage() { PictureLabel::showPicture(QPixmap::fromImage(m_image), m_caption); }

bool PictureField::take(const QString& file) {
    QImage image = ReadPicture(file);
    if (image.isNull()) {
        MsgBox(u"Die Datei \"%1\" enthält kein Bild, das gelesen werden kann."_s.arg(
            QDir::toNativeSeparators(file)));
        return false;
    }
    m_image = std::move(image);
    m_changed = true;
    showImage();
    return true;
}

bool PictureField::choose() {
    const auto file = ChooseFile({u"Grafik aus Datei einfügen"_s,
                                  u"GIF, JPEG, BMP    (*.gif;*.jpg;*.bmp)|*.gif;*.jpg;*.bmp"_s,
                                  {},
                                  false});
    return file && take(*file);
}

void PictureField::clear() {
    m_image = {};
    m_changed = true;
    showImage();
}

void PictureField::storeAs(const QString& file) {
    m_file = file;
    if (!m_changed) return;
    if (m_image.isNull()) {
        if (QFileInfo::exists(file) && !QFile::remove(file)) raiseUnwritable(file);
    } else {
        QSaveFile target(file);
        if (!target.open(QIODevice::WriteOnly)) raiseUnwritable(file);
        // The file's kind keeps no transparency.
        QImageWriter writer(&target, "bmp");
        if (!writer.write(m_image.convertToFormat(QImage::Format_RGB32)) || !target.commit())
            raiseUnwritable(file);
    }
    m_changed = false;
}

void PictureField::dragEnterEvent(QDragEnterEvent* event) {
    if (!droppedFile(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void PictureField::dropEvent(QDropEvent* event) {
    const QString file = droppedFile(*event->mimeData());
    event->acceptProposedAction();
    if (take(file)) emit dropped();
}
