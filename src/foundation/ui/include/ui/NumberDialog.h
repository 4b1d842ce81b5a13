#pragma once

#include <ui/DigitPad.h>

#include <QDialog>

#include <memory>

class WizardPane;
namespace Ui {
class NumberDialog;
}

/// The common design of the small number dialogs: head `wizPane`, box `txtInput` with its content selected,
/// digits, C, OK. Enter presses cmdEnter, Esc calls cancelled(). A dialog of the register derives from it,
/// fills the box in its constructor and writes its record:
///
///     frmKasseFreierPreis::frmKasseFreierPreis(QWidget* parent)
///         : NumberDialog(u"Freier Preis..."_s, u"..."_s, DigitPad::Decimal | DigitPad::Minus, parent) {
///         setText(Format(gPreisAngabe.Preis, gFormatPreis));
///     }
///     void frmKasseFreierPreis::enter() { ...; accept(); }
///     void frmKasseFreierPreis::cancelled() { gPreisAngabe.Ergebnis = 0; }
class NumberDialog : public QDialog {
    Q_OBJECT

  public:
    /// Decimal and Minus are the keys that differ; Clear and Enter are always there.
    NumberDialog(const QString& title, const QString& description, DigitPad::Keys keys,
                 QWidget* parent = nullptr);
    ~NumberDialog() override;

    [[nodiscard]] QString text() const;
    void setText(const QString& text); ///< and selects it
    [[nodiscard]] NumberEdit* input() const;
    [[nodiscard]] DigitPad* pad() const;
    [[nodiscard]] WizardPane* pane() const;
    /// A line under the box, e.g. what the amount is for; hidden when empty.
    void setHelp(const QString& text);

    void reject() override; ///< Esc and closing the window: cancelled(), then closes

  protected:
    /// cmdEnter: convert, write the record, accept(). What it raises is reported and the dialog stays open.
    virtual void enter() = 0;
    /// The record's result becomes "cancelled".
    virtual void cancelled() = 0;
    void showEvent(QShowEvent* event) override;

  private:
    void run();
    std::unique_ptr<Ui::NumberDialog> m_ui;
};
