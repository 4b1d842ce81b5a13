#pragma once

#include <templates/PropertiesList.h>

#include <QWidget>

class FontNameEditor;
class NumberEditor;
class PropertyEditor;
class PropertyModel;
class QLabel;
class QStackedWidget;
class QTreeView;
class TemplateDocument;

/// Shows the properties of a template in a list, the parts of the page one below the other, and below the
/// list what the selected one means and how to change it. Every change goes into the document at once.
///
/// The keys of the list: the arrows select, Space ticks a truth value, plus and minus change a number by a
/// step, Enter, F2 or typing goes to the value. Esc and Enter go back from there to the list.
class PropertyGrid : public QWidget {
    Q_OBJECT

  public:
    explicit PropertyGrid(QWidget* parent = nullptr);
    ~PropertyGrid() override;

    /// Not owned; must live as long as the grid.
    void setDocument(TemplateDocument& document);
    /// What `page_fontname` can be.
    void setFontNames(const QStringList& names);
    /// Selects a property and opens the part of the page that it belongs to; False when there is none.
    bool select(const QString& key);
    [[nodiscard]] QString selectedKey() const; ///< empty when a part of the page is selected
    [[nodiscard]] QTreeView& list() const { return *m_tree; }

  signals:
    void selectionChanged(const QString& key);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void addEditor(PropertyEditor* editor);
    [[nodiscard]] PropertyEditor* editorFor(const Property& property) const;
    void onSelected();
    void refresh();
    void edit();
    bool handleListKey(QKeyEvent& event);
    bool handleEditorKey(const QObject* watched, const QKeyEvent& event);
    void fitColumns();

    QTreeView* m_tree;
    QLabel *m_caption, *m_description;
    QStackedWidget* m_stack;
    QWidget* m_nothing;
    PropertyEditor *m_truth, *m_choice, *m_text, *m_font, *m_picture;
    NumberEditor* m_number;
    FontNameEditor* m_fontName;
    TemplateDocument* m_document = nullptr;
    PropertyModel* m_model = nullptr;
};
