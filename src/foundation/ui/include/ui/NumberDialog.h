#pragma once

#include <ui/DigitPad.h>
#include <ui/Form.h>

#include <memory>

class QVBoxLayout;
class WizardPane;
namespace Ui {
class NumberDialog;
}

/// The common design of the small number dialogs: head `wizPane`, box `txtInput` with its content selected,
/// digits, C, OK. Enter presses cmdEnter. A dialog of the register derives from it, fills the box in its
/// constructor and writes its record:
///
///     frmKasseFreierPreis::frmKasseFreierPreis(QWidget* parent)
///         : NumberDialog(u"Freier Preis..."_s, u"..."_s, DigitPad::Decimal | DigitPad::Minus, parent) {
///         setText(Format(gPreisAngabe.Preis, gFormatPreis));
///     }
///     void frmKasseFreierPreis::ok() { ...; accept(); }
///     bool frmKasseFreierPreis::cancelled() { gPreisAngabe.Ergebnis = 0; return true; }
class NumberDialog : public FormDialog {
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
    /// Box and pad stand in it one below the other; a dialog that asks for more puts it between or below
    /// them.
    [[nodiscard]] QVBoxLayout* body() const;
    /// A line under the box, e.g. what the amount is for; hidden when empty.
    void setHelp(const QString& text);

  protected:
    /// cmdEnter: convert, write the record, accept(). What it raises is reported and the dialog stays open.
    void ok() override = 0;

  private:
    std::unique_ptr<Ui::NumberDialog> m_ui;
};
