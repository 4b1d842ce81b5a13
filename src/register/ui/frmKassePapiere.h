#pragma once

#include "DayRow.h"

#include <register/Papers.h>
#include <ui/Form.h>
#include <ui/RecordList.h>

namespace Ui {
class frmKassePapiere;
}

/// The history of the offers or of the delivery notes: a day or all, the lines of the selected one, and what
/// can be done with it.
class frmKassePapiere : public FormDialog {
    Q_OBJECT

  public:
    frmKassePapiere(const till::PaperHistory& history, QWidget* parent);
    ~frmKassePapiere() override;

  protected:
    void ok() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showPapers();
    void showLines(const QString& key);
    void withSelected(const std::function<void(int id)>& act);

    till::PaperHistory m_history;
    std::unique_ptr<Ui::frmKassePapiere> m_ui;
    RecordList *m_papers, *m_lines;
    std::optional<DayRow> m_days;
};

class frmKasseAngebote : public frmKassePapiere {
    Q_OBJECT
  public:
    using frmKassePapiere::frmKassePapiere;
};

class frmKasseLieferung : public frmKassePapiere {
    Q_OBJECT
  public:
    using frmKassePapiere::frmKassePapiere;
};
