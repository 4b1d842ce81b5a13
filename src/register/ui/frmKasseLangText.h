#pragma once

#include <ui/Form.h>

namespace Ui {
class frmKasseLangText;
}

/// The long text of a line: gLangTextAngabe.
class frmKasseLangText : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseLangText(QWidget* parent = nullptr);
    ~frmKasseLangText() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    std::unique_ptr<Ui::frmKasseLangText> m_ui;
};
