#include "ui_NumberDialog.h"

#include <ui/NumberDialog.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/Wizard.h>

using namespace Qt::StringLiterals;

NumberDialog::NumberDialog(const QString& title, const QString& description, DigitPad::Keys keys,
                           QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::NumberDialog>()) {
    m_ui->setupUi(this);
    setWindowTitle(title);
    m_ui->wizPane->setHeaderTitle(title);
    m_ui->wizPane->setHeaderDescription(description);
    m_ui->lblHelp->hide();
    m_ui->txtInput->setDecimal(keys.testFlag(DigitPad::Decimal));
    m_ui->txtInput->setMinus(keys.testFlag(DigitPad::Minus));
    m_ui->txtInput->setAccessibleName(title);
    m_ui->pad->setKeys(keys | DigitPad::Clear | DigitPad::Enter);
    m_ui->pad->setTarget(m_ui->txtInput);
    const int edge = Theme::Current().keyHeight;
    m_ui->pad->setMinimumSize(edge * 6, edge * 9 / 2);
    setUpForm(m_ui->txtInput);
    auto* cancel = new TouchKey(u"Abbrechen"_s, this);
    cancel->setObjectName(u"cmdCancel"_s);
    cancel->setHint(u"Esc"_s);
    cancel->setFocusPolicy(Qt::NoFocus);
    cancel->setFixedSize(edge * 9 / 4, edge);
    m_ui->wizPane->addToHeader(cancel);
    setKeys(m_ui->pad->key(DigitPad::Enter), cancel);
}

NumberDialog::~NumberDialog() = default;

QString NumberDialog::text() const { return m_ui->txtInput->text(); }
NumberEdit* NumberDialog::input() const { return m_ui->txtInput; }
DigitPad* NumberDialog::pad() const { return m_ui->pad; }
QVBoxLayout* NumberDialog::body() const { return m_ui->layBody; }
WizardPane* NumberDialog::pane() const { return m_ui->wizPane; }

void NumberDialog::setText(const QString& text) {
    m_ui->txtInput->setText(text);
    m_ui->txtInput->selectAll();
}

void NumberDialog::setHelp(const QString& text) {
    m_ui->lblHelp->setText(text);
    m_ui->lblHelp->setVisible(!text.isEmpty());
}
