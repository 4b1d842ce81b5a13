#include "PropertyEditors.h"

#include <templates/ValueText.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

// Positions may lie outside the margins, but hardly outside the paper.
constexpr double largestCm = 120, largestPoint = 200;

QHBoxLayout* rowOf(QWidget* widget) {
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    row->setSpacing(Theme::Current().gap);
    return row;
}

} // namespace

TruthEditor::TruthEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_box(new QCheckBox(this)) {
    m_box->setObjectName(u"chkValue"_s);
    rowOf(this)->addWidget(m_box, 0, Qt::AlignTop);
    connect(m_box, &QCheckBox::toggled, this, [this](bool on) { emit edited(on); });
}

void TruthEditor::display(const PropertiesList&, const Property& property) {
    const QSignalBlocker silence(m_box);
    m_box->setText(property.caption);
    m_box->setChecked(std::get<bool>(property.value));
}

QWidget& TruthEditor::entry() { return *m_box; }

NumberEditor::NumberEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_box(new QDoubleSpinBox(this)) {
    const int edge = Theme::Current().keyHeight;
    m_box->setObjectName(u"spnValue"_s);
    m_box->setLocale(QLocale(QLocale::German, QLocale::Germany));
    m_box->setGroupSeparatorShown(false);
    m_box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    m_box->setAlignment(Qt::AlignRight);
    m_box->setMinimumHeight(edge);
    auto* row = rowOf(this);
    const auto addKey = [&](const QString& caption, const QString& name, int steps) {
        auto* key = new TouchKey(caption, this);
        key->setObjectName(name);
        key->setAccessibleName(steps < 0 ? u"Verringern"_s : u"Erhöhen"_s);
        key->setLarge(true);
        key->setAutoRepeat(true);
        key->setFixedSize(edge * 5 / 4, edge);
        connect(key, &TouchKey::clicked, this, [this, steps] { step(steps); });
        row->addWidget(key, 0, Qt::AlignTop);
    };
    addKey(u"−"_s, u"cmdLess"_s, -1);
    row->addWidget(m_box, 1, Qt::AlignTop);
    addKey(u"+"_s, u"cmdMore"_s, 1);
    connect(m_box, &QDoubleSpinBox::valueChanged, this, [this](double value) { emit edited(value); });
}

void NumberEditor::display(const PropertiesList&, const Property& property) {
    const QSignalBlocker silence(m_box);
    const NumberFormat format = numberFormat(property);
    const double value = std::get<double>(property.value);
    const bool points = property.type == PropertyType::Point;
    // A value from elsewhere may lie outside what can be typed here; to look at it must not change it.
    const double least = std::min(value, points ? 1.0 : 0.0),
                 most = std::max(value, points ? largestPoint : largestCm);
    const QString suffix = format.unit.isEmpty() ? QString() : u' ' + format.unit;
    const double oneStep = points ? 0.5 : 0.1;
    // Each of these writes the box anew, and a person on the way from "4," to "4,5" must find the comma
    // there.
    if (m_box->singleStep() != oneStep) m_box->setSingleStep(oneStep);
    if (m_box->decimals() != format.decimals) m_box->setDecimals(format.decimals);
    if (m_box->suffix() != suffix) m_box->setSuffix(suffix);
    if (m_box->minimum() != least || m_box->maximum() != most) m_box->setRange(least, most);
    if (m_box->value() != value) m_box->setValue(value);
}

QWidget& NumberEditor::entry() { return *m_box; }

void NumberEditor::begin() { m_box->selectAll(); }

void NumberEditor::step(int steps) { m_box->stepBy(steps); }

ChoiceEditor::ChoiceEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_box(new QComboBox(this)) {
    m_box->setObjectName(u"cboValue"_s);
    rowOf(this)->addWidget(m_box, 1, Qt::AlignTop);
    connect(m_box, &QComboBox::activated, this, [this](int row) { emit edited(row + 1); });
}

void ChoiceEditor::display(const PropertiesList&, const Property& property) {
    const QSignalBlocker silence(m_box);
    m_box->clear();
    m_box->addItems(property.choices);
    m_box->setCurrentIndex(std::get<int>(property.value) - 1); // none for a value without a caption
}

QWidget& ChoiceEditor::entry() { return *m_box; }

TextEditor::TextEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_box(new QPlainTextEdit(this))
    , m_macros(new QWidget(this)) {
    m_box->setObjectName(u"txtValue"_s);
    m_box->setTabChangesFocus(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(Theme::Current().gap);
    column->addWidget(m_box, 1);
    column->addWidget(m_macros);
    auto* row = rowOf(m_macros);
    const auto addMacro = [&](const QString& macro, const QString& name, const QString& tip) {
        auto* key = new TouchKey(macro, m_macros);
        key->setObjectName(name);
        key->setCompact(true);
        key->setToolTip(tip);
        key->setAccessibleDescription(tip);
        connect(key, &TouchKey::clicked, this, [this, macro] { m_box->insertPlainText(macro); });
        row->addWidget(key);
    };
    addMacro(u"[SUMME]"_s, u"cmdSumme"_s, u"Fügt den Betrag des Belegs ein"_s);
    addMacro(u"DateAdd[14]"_s, u"cmdDateAdd"_s, u"Fügt das Datum 14 Tage nach dem des Belegs ein"_s);
    connect(m_box, &QPlainTextEdit::textChanged, this,
            [this] { emit edited(storableText(m_box->toPlainText())); });
}

void TextEditor::display(const PropertiesList&, const Property& property) {
    const QSignalBlocker silence(m_box);
    m_macros->setVisible(property.key == u"schlusstext_text");
    const QString& text = std::get<QString>(property.value);
    if (storableText(m_box->toPlainText()) != storableText(text)) m_box->setPlainText(text);
}

QWidget& TextEditor::entry() { return *m_box; }

FontNameEditor::FontNameEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_box(new QComboBox(this)) {
    m_box->setObjectName(u"cboFontName"_s);
    m_box->setEditable(true);
    m_box->setInsertPolicy(QComboBox::NoInsert);
    rowOf(this)->addWidget(m_box, 1, Qt::AlignTop);
    connect(m_box, &QComboBox::currentTextChanged, this,
            [this](const QString& name) { emit edited(storableText(name)); });
}

void FontNameEditor::setNames(const QStringList& names) {
    const QSignalBlocker silence(m_box);
    const QString shown = m_box->currentText();
    m_box->clear();
    m_box->addItems(names);
    m_box->setEditText(shown);
}

void FontNameEditor::display(const PropertiesList&, const Property& property) {
    const QSignalBlocker silence(m_box);
    const QString& name = std::get<QString>(property.value);
    if (m_box->currentText() != name) m_box->setEditText(name);
}

QWidget& FontNameEditor::entry() { return *m_box; }

void FontNameEditor::begin() { m_box->lineEdit()->selectAll(); }
