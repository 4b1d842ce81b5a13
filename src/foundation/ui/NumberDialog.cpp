#include "ui_NumberDialog.h"

#include <session/Handle.h>
#include <ui/NumberDialog.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/Wizard.h>

NumberDialog::NumberDialog(const QString& title, const QString& description, DigitPad::Keys keys,
                           QWidget* parent)
    : QDialog(parent)
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
    m_ui->pad->setMinimumSize(edge * 6, edge * 5);
    connect(m_ui->txtInput, &NumberEdit::enterPressed, m_ui->pad->key(DigitPad::Enter), &TouchKey::click);
    connect(m_ui->pad, &DigitPad::enter, this, &NumberDialog::run);
}

NumberDialog::~NumberDialog() = default;

QString NumberDialog::text() const { return m_ui->txtInput->text(); }
NumberEdit* NumberDialog::input() const { return m_ui->txtInput; }
DigitPad* NumberDialog::pad() const { return m_ui->pad; }
WizardPane* NumberDialog::pane() const { return m_ui->wizPane; }

void NumberDialog::setText(const QString& text) {
    m_ui->txtInput->setText(text);
    m_ui->txtInput->selectAll();
}

void NumberDialog::setHelp(const QString& text) {
    m_ui->lblHelp->setText(text);
    m_ui->lblHelp->setVisible(!text.isEmpty());
}

void NumberDialog::run() {
    const QByteArray source = metaObject()->className();
    Handle(source.constData(), [this] { enter(); });
}

void NumberDialog::reject() {
    cancelled();
    QDialog::reject();
}

void NumberDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    m_ui->txtInput->setFocus();
    m_ui->txtInput->selectAll();
}
