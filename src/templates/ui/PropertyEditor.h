#pragma once

#include <templates/PropertiesList.h>

#include <QWidget>

/// What changes values of one type. It is a child of the grid for its whole life and shows one property after
/// the other.
class PropertyEditor : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;
    /// Shows the present value. Must not disturb a person who is just typing it, and reports nothing.
    virtual void display(const PropertiesList& list, const Property& property) = 0;
    /// The widget that takes the keyboard.
    [[nodiscard]] virtual QWidget& entry() = 0;
    /// Called when a person begins to work here, e.g. to select what is there.
    virtual void begin() {}

  signals:
    void edited(const PropertyValue& value);
};
