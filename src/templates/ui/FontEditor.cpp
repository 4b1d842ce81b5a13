#include "FontEditor.h"

#include <ui/Theme.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

constexpr double smallestPoint = 4, largestPoint = 200;

} // namespace

FontEditor::FontEditor(QWidget* parent)
    : PropertyEditor(parent)
    , m_family(new QComboBox(this))
    , m_size(new QDoubleSpinBox(this))
    , m_bold(new QCheckBox(u"Fett"_s, this))
    , m_italic(new QCheckBox(u"Kursiv"_s, this))
    , m_underline(new QCheckBox(u"Unterstrichen"_s, this))
    , m_sample(new QLabel(this)) {
    m_family->setObjectName(u"cboFamily"_s);
    m_family->setAccessibleName(u"Schriftart"_s);
    m_family->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_family->setMinimumContentsLength(8);
    m_family->addItems(QFontDatabase::families());
    m_size->setObjectName(u"spnSize"_s);
    m_size->setAccessibleName(u"Schriftgröße"_s);
    m_size->setLocale(QLocale(QLocale::German, QLocale::Germany));
    m_size->setButtonSymbols(QAbstractSpinBox::NoButtons);
    m_size->setDecimals(1);
    m_size->setSingleStep(0.5);
    m_size->setSuffix(u" pt"_s);
    m_size->setAlignment(Qt::AlignRight);
    m_size->setMinimumHeight(m_family->sizeHint().height());
    m_bold->setObjectName(u"chkBold"_s);
    m_italic->setObjectName(u"chkItalic"_s);
    m_underline->setObjectName(u"chkUnderline"_s);
    m_sample->setObjectName(u"lblSample"_s);

    auto* styles = new QHBoxLayout;
    styles->setSpacing(Theme::Current().gap * 2);
    for (QCheckBox* box : {m_bold, m_italic, m_underline})
        styles->addWidget(box);
    styles->addStretch();
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setSpacing(Theme::Current().gap);
    grid->addWidget(m_family, 0, 0);
    grid->addWidget(m_size, 0, 1);
    grid->addLayout(styles, 1, 0, 1, 2);
    grid->addWidget(m_sample, 2, 0, 1, 2);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);

    connect(m_family, &QComboBox::activated, this, &FontEditor::emitFont);
    connect(m_size, &QDoubleSpinBox::valueChanged, this, &FontEditor::emitFont);
    for (QCheckBox* box : {m_bold, m_italic, m_underline})
        connect(box, &QCheckBox::toggled, this, &FontEditor::emitFont);
}

void FontEditor::display(const PropertiesList&, const Property& property) {
    const QSignalBlocker silence[] = {QSignalBlocker(m_family), QSignalBlocker(m_size),
                                      QSignalBlocker(m_bold), QSignalBlocker(m_italic),
                                      QSignalBlocker(m_underline)};
    const QFont& font = std::get<QFont>(property.value);
    // A template may come from a machine that has other fonts; to look at it must not change it.
    if (m_family->findText(font.family()) < 0) m_family->addItem(font.family());
    m_family->setCurrentText(font.family());
    m_size->setRange(std::min(smallestPoint, font.pointSizeF()), std::max(largestPoint, font.pointSizeF()));
    if (m_size->value() != font.pointSizeF()) m_size->setValue(font.pointSizeF());
    m_bold->setChecked(font.bold());
    m_italic->setChecked(font.italic());
    m_underline->setChecked(font.underline());
    showSample(font);
}

QWidget& FontEditor::entry() { return *m_family; }

void FontEditor::emitFont() {
    QFont font(QStringList{m_family->currentText()});
    font.setPointSizeF(m_size->value());
    font.setBold(m_bold->isChecked());
    font.setItalic(m_italic->isChecked());
    font.setUnderline(m_underline->isChecked());
    emit edited(font);
}

void FontEditor::showSample(const QFont& font) {
    const bool installed = QFontDatabase::hasFamily(font.family());
    m_sample->setProperty("role", installed ? QVariant(u"muted"_s) : QVariant(u"warning"_s));
    // The style sheet of the program tells labels their font; a sheet of its own is the only thing stronger.
    m_sample->setStyleSheet(
        installed
            ? u"font-family: \"%1\"; font-size: %2px; font-weight: %3; font-style: %4; text-decoration: %5;"_s
                  .arg(font.family(), QString::number(Theme::Current().normal),
                       font.bold() ? u"bold"_s : u"normal"_s, font.italic() ? u"italic"_s : u"normal"_s,
                       font.underline() ? u"underline"_s : u"none"_s)
            : QString());
    m_sample->setText(installed ? u"Äpfel 12,50 €"_s : u"Diese Schrift fehlt auf diesem Rechner."_s);
}
