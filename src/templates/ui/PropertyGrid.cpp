#include "FontEditor.h"
#include "PictureEditor.h"
#include "PropertyEditors.h"
#include "PropertyModel.h"

#include <session/Handle.h>
#include <templates/TemplateDocument.h>
#include <templates/TemplateKeys.h>
#include <templates/ui/PropertyGrid.h>
#include <ui/ListView.h>
#include <ui/Theme.h>
#include <ui/UserSettings.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString whySwitchedOff(const QString& key) {
    if (key == u"page_width" || key == u"page_height") return u"Gilt nur beim freien Papierformat."_s;
    if (key == u"page_font") return u"Gilt nur ohne die Druckerschrift."_s;
    return u"Gilt nur mit der Druckerschrift."_s;
}

} // namespace

PropertyGrid::PropertyGrid(QWidget* parent)
    : QWidget(parent)
    , m_tree(new TreeView(this))
    , m_caption(new QLabel(this))
    , m_description(new QLabel(this))
    , m_stack(new QStackedWidget(this))
    , m_nothing(new QWidget(this))
    , m_truth(new TruthEditor(this))
    , m_choice(new ChoiceEditor(this))
    , m_text(new TextEditor(this))
    , m_font(new FontEditor(this))
    , m_picture(new PictureEditor(this))
    , m_number(new NumberEditor(this))
    , m_fontName(new FontNameEditor(this)) {
    const Theme& t = Theme::Current();
    m_tree->setObjectName(u"lvwProperties"_s);
    m_tree->setAccessibleName(u"Eigenschaften der Druckvorlage"_s);
    m_tree->setAllColumnsShowFocus(true);
    m_tree->setRootIsDecorated(true);
    m_tree->setIndentation(t.gap * 2);
    m_tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_tree->setMinimumHeight(t.keyHeight * 3);
    m_tree->installEventFilter(this);
    m_caption->setObjectName(u"lblCaption"_s);
    m_caption->setProperty("role", u"strong"_s);
    m_description->setObjectName(u"lblDescription"_s);
    m_description->setProperty("role", u"muted small"_s);
    m_description->setWordWrap(true);
    m_stack->addWidget(m_nothing);
    for (PropertyEditor* editor :
         {m_truth, m_choice, m_text, m_font, m_picture, static_cast<PropertyEditor*>(m_number),
          static_cast<PropertyEditor*>(m_fontName)})
        addEditor(editor);

    auto* pane = new QWidget(this);
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(t.gap, t.gap, t.gap, t.gap);
    column->setSpacing(t.gap);
    column->addWidget(m_caption);
    column->addWidget(m_description);
    column->addWidget(m_stack, 1);
    pane->setMinimumHeight(t.keyHeight * 9 / 2);

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(u"splitGrid"_s);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_tree);
    splitter->addWidget(pane);
    splitter->setStretchFactor(0, 1);
    splitter->setSizes({t.keyHeight * 20, pane->minimumHeight()});
    RememberSplitter(*splitter, u"PropertyGrid/splitGrid"_s);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(splitter);
    setFocusProxy(m_tree);
}

PropertyGrid::~PropertyGrid() = default;

void PropertyGrid::addEditor(PropertyEditor* editor) {
    m_stack->addWidget(editor);
    for (QWidget* widget : editor->findChildren<QWidget*>())
        widget->installEventFilter(this);
    connect(editor, &PropertyEditor::edited, this, [this](const PropertyValue& value) {
        Handle("PropertyGrid", [&] {
            if (const QString key = selectedKey(); !key.isEmpty()) m_document->setValue(key, value);
        });
    });
}

void PropertyGrid::setDocument(TemplateDocument& document) {
    if (m_document != nullptr) m_document->disconnect(this);
    m_document = &document;
    delete std::exchange(m_model, new PropertyModel(document, this));
    m_tree->setModel(m_model);
    m_tree->header()->setSectionResizeMode(QHeaderView::Interactive);
    m_tree->header()->setStretchLastSection(true);
    const auto arrange = [this] {
        for (int row = 0; row < m_model->rowCount(); ++row)
            m_tree->setFirstColumnSpanned(row, {}, true);
        m_tree->expandAll();
        if (m_model->rowCount() > 0) m_tree->setCurrentIndex(m_model->index(0, 0, m_model->index(0, 0)));
        fitColumns();
    };
    connect(m_model, &QAbstractItemModel::modelReset, this, arrange);
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, this, &PropertyGrid::onSelected);
    connect(&document, &TemplateDocument::changed, this, &PropertyGrid::refresh);
    arrange();
    onSelected();
}

void PropertyGrid::fitColumns() {
    m_tree->resizeColumnToContents(PropertyModel::Caption);
    m_tree->header()->resizeSection(PropertyModel::Caption,
                                    m_tree->columnWidth(PropertyModel::Caption) + Theme::Current().gap);
}

void PropertyGrid::setFontNames(const QStringList& names) { m_fontName->setNames(names); }

bool PropertyGrid::select(const QString& key) {
    const QModelIndex index = m_model == nullptr ? QModelIndex() : m_model->indexOf(key);
    if (!index.isValid()) return false;
    m_tree->expand(index.parent());
    m_tree->setCurrentIndex(index);
    return true;
}

QString PropertyGrid::selectedKey() const {
    const Property* property = m_model == nullptr ? nullptr : m_model->property(m_tree->currentIndex());
    return property == nullptr ? QString() : property->key;
}

PropertyEditor* PropertyGrid::editorFor(const Property& property) const {
    switch (property.type) {
    case PropertyType::Boolean:
        return m_truth;
    case PropertyType::Cm:
    case PropertyType::Point:
        return m_number;
    case PropertyType::Choice:
        return m_choice;
    case PropertyType::Text:
        return property.key == u"page_fontname" ? static_cast<PropertyEditor*>(m_fontName) : m_text;
    case PropertyType::Font:
        return m_font;
    case PropertyType::Picture:
        return m_picture;
    }
    return nullptr;
}

void PropertyGrid::onSelected() {
    m_document->endStep();
    refresh();
    emit selectionChanged(selectedKey());
}

void PropertyGrid::refresh() {
    const Property* property = m_model->property(m_tree->currentIndex());
    if (property == nullptr) {
        m_caption->setText(m_tree->currentIndex().data().toString());
        m_description->clear();
        m_stack->setCurrentWidget(m_nothing);
        return;
    }
    PropertyEditor* editor = editorFor(*property);
    const bool inForce = isInForce(m_document->list(), property->key);
    m_caption->setText(groupOf(property->key) + u": "_s + property->caption);
    m_description->setText(inForce ? property->description : whySwitchedOff(property->key));
    editor->display(m_document->list(), *property);
    editor->setEnabled(inForce);
    editor->entry().setAccessibleName(property->caption);
    editor->entry().setAccessibleDescription(property->description);
    m_stack->setCurrentWidget(editor);
}

void PropertyGrid::edit() {
    const Property* property = m_model->property(m_tree->currentIndex());
    if (property == nullptr || !isInForce(m_document->list(), property->key)) return;
    m_document->endStep();
    PropertyEditor* editor = editorFor(*property);
    editor->entry().setFocus(Qt::ShortcutFocusReason);
    editor->begin();
}

bool PropertyGrid::handleListKey(QKeyEvent& event) {
    const QModelIndex index = m_tree->currentIndex();
    const Property* property = m_model->property(index);
    if (property == nullptr || !m_model->isEnabled(index)) return false;
    const bool isNumber = property->type == PropertyType::Cm || property->type == PropertyType::Point;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        edit();
        return true;
    case Qt::Key_Space:
        if (property->type != PropertyType::Boolean) return false;
        m_document->setValue(property->key, !std::get<bool>(property->value));
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        if (!isNumber) return false;
        m_number->step(event.key() == Qt::Key_Plus ? 1 : -1);
        return true;
    default:
        break;
    }
    // A digit begins a new number; letters look for a caption, as in every list.
    if (!isNumber || event.text().isEmpty() || !event.text().at(0).isDigit()) return false;
    edit();
    QApplication::sendEvent(&m_number->entry(), &event);
    return true;
}

bool PropertyGrid::handleEditorKey(const QObject* watched, const QKeyEvent& event) {
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (event.key() != Qt::Key_Escape && !enter) return false;
    if (enter && (qobject_cast<const QPlainTextEdit*>(watched) != nullptr ||
                  qobject_cast<const QAbstractButton*>(watched) != nullptr)) {
        return false;
    }
    // The list of an open combo box is a window of its own and never comes here.
    m_document->endStep();
    m_tree->setFocus(Qt::ShortcutFocusReason);
    return true;
}

bool PropertyGrid::eventFilter(QObject* watched, QEvent* event) {
    if (m_document == nullptr) return false;
    if (event->type() == QEvent::ShortcutOverride && watched != m_tree) {
        // Undo is that of the template; a box's own would know the typing only.
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->ignore();
            return true;
        }
    }
    if (event->type() != QEvent::KeyPress) return false;
    auto* key = static_cast<QKeyEvent*>(event);
    bool handled = false;
    Handle("PropertyGrid",
           [&] { handled = watched == m_tree ? handleListKey(*key) : handleEditorKey(watched, *key); });
    return handled;
}
