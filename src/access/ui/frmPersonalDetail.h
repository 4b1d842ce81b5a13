#pragma once

#include <access/PersonalRecord.h>
#include <ui/Binding.h>
#include <ui/Form.h>

#include <memory>

class PictureField;
namespace Ui {
class frmPersonalDetail;
}

/// One person of the staff. The record is filled by the caller and changed when the form was accepted; the
/// picture is shown then and has to be stored.
class frmPersonalDetail : public FormDialog {
    Q_OBJECT

  public:
    explicit frmPersonalDetail(PersonalRecord& record, QWidget* parent = nullptr);
    ~frmPersonalDetail() override;
    [[nodiscard]] PictureField& picture() const;

  protected:
    void ok() override;

  private:
    void showKeys();
    std::unique_ptr<Ui::frmPersonalDetail> m_ui;
    Binding m_binding;
};
