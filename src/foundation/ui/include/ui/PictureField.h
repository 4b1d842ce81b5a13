#pragma once

#include <ui/PictureLabel.h>

#include <QImage>

#include <optional>

/// The picture of a record: a file of the shop that every till sees. It shows the picture, takes another one
/// from a file that is chosen or dropped on it, and writes or removes the file when it is told to.
///
///     m_picture->load(ShopPicture(u"persimg_"_s, id));
///     if (m_picture->choose()) m_picture->store();
class PictureField : public PictureLabel {
    Q_OBJECT

  public:
    explicit PictureField(QWidget* parent = nullptr);

    /// What stands in the place of a picture.
    void setCaption(const QString& none);
    /// Shows the picture of a file. A missing one counts as no picture; one that cannot be read is told in
    /// the place of the picture and stays until it is replaced. "" for a record that has no file yet.
    void load(const QString& file);
    [[nodiscard]] bool hasPicture() const { return !m_image.isNull(); }
    [[nodiscard]] bool isChanged() const { return m_changed; }

    /// Asks for a file and shows it. False when none was chosen, or none that holds a picture, which is told.
    bool choose();
    void clear(); ///< shows none
    /// Brings the file to what is shown: written anew, or deleted. Nothing happens without a change. Raises
    /// 70 when the file cannot be written or deleted.
    void store() { storeAs(m_file); }
    void storeAs(const QString& file); ///< for a record whose number was not known at load

  signals:
    /// Somebody dropped a picture on the field; it is shown already.
    void dropped();

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    bool take(const QString& file);
    void showImage();

    QString m_file, m_caption;
    QImage m_image;
    bool m_changed = false;
};

/// Reads a picture, at most as large as a shop's pictures are kept; null when the file holds none.
[[nodiscard]] QImage ReadPicture(const QString& file);
