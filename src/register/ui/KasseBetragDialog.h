#pragma once

#include <register/BetragDialog.h>
#include <ui/Form.h>

class QLineEdit;
namespace Ui {
class KasseBetragDialog;
}

/// The dialogs that ask for group, name, amount and tax rate of a line which stands for money. What they take
/// is the rule of the core.
class KasseBetragDialog : public FormDialog {
    Q_OBJECT

  public:
    KasseBetragDialog(till::BetragDialog rules, QWidget* parent);
    ~KasseBetragDialog() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    [[nodiscard]] QLineEdit* box(till::BetragDialog::Field field) const;

    till::BetragDialog m_rules;
    std::unique_ptr<Ui::KasseBetragDialog> m_ui;
};

/// A movement of cash: gKassenBuchung.
class frmKasseEinlage : public KasseBetragDialog {
    Q_OBJECT

  public:
    explicit frmKasseEinlage(QWidget* parent = nullptr);
};

/// A voucher that is to be sold: gGutscheinAngabe.
class frmKasseGutschein : public KasseBetragDialog {
    Q_OBJECT

  public:
    explicit frmKasseGutschein(QWidget* parent = nullptr);
};
