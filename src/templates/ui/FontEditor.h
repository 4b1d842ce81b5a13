#pragma once

#include "PropertyEditor.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;

/// Family, size and style of a font, with a line that shows it.
class FontEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit FontEditor(QWidget* parent = nullptr);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;

  private:
    void emitFont();
    void showSample(const QFont& font);

    QComboBox* m_family;
    QDoubleSpinBox* m_size;
    QCheckBox *m_bold, *m_italic, *m_underline;
    QLabel* m_sample;
};
