#pragma once

#include "PropertyEditor.h"

class QLabel;
class TouchKey;

/// A picture with its size on paper; it is read from a file, saved to one, or removed.
class PictureEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit PictureEditor(QWidget* parent = nullptr);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;

  private:
    void choose();
    void exportPicture();

    QByteArray m_picture;
    QLabel *m_preview, *m_remark;
    TouchKey *m_choose, *m_export, *m_remove;
};
