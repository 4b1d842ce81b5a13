#pragma once

#include "PropertyEditor.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPlainTextEdit;

class TruthEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit TruthEditor(QWidget* parent = nullptr);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;

  private:
    QCheckBox* m_box;
};

/// Centimetres and points, with keys for a step up and down.
class NumberEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit NumberEditor(QWidget* parent = nullptr);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;
    void begin() override;
    void step(int steps);

  private:
    QDoubleSpinBox* m_box;
};

class ChoiceEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit ChoiceEditor(QWidget* parent = nullptr);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;

  private:
    QComboBox* m_box;
};

/// A text of one line or more; for closing texts with the macros to insert.
class TextEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit TextEditor(QWidget* parent = nullptr);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;

  private:
    QPlainTextEdit* m_box;
    QWidget* m_macros;
};

/// The name of a font of the printer: chosen from those that are there, or typed.
class FontNameEditor : public PropertyEditor {
    Q_OBJECT

  public:
    explicit FontNameEditor(QWidget* parent = nullptr);
    void setNames(const QStringList& names);
    void display(const PropertiesList& list, const Property& property) override;
    [[nodiscard]] QWidget& entry() override;
    void begin() override;

  private:
    QComboBox* m_box;
};
