#pragma once

#include <ui/Form.h>

#include <memory>

class RecordList;
class RowsModel;
namespace Ui {
class frmPersonal;
}

/// Staff maintenance: the people who may log in, with picture, contact and rights. A list that a search
/// narrows, the selected person beside it.
class frmPersonal : public AreaForm {
    Q_OBJECT

  public:
    explicit frmPersonal(QWidget* parent = nullptr);
    ~frmPersonal() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addCommands();
    void LoadPersonal();
    void search();
    void goTo();
    void EditPersonal(bool IsNew);
    void DeletePersonal();
    void AddGrafik();
    void DeleteGrafik();
    void SendEMail();
    void exportPersonal();
    void showPerson(const QString& key);
    void showHits();
    [[nodiscard]] int id() const; ///< of the selected person, 0 for none

    std::unique_ptr<Ui::frmPersonal> m_ui;
    RecordList* m_list;
    RowsModel* m_details;
    std::vector<std::pair<QString, QString>> m_facts; ///< of the selected person
    Recordset& m_personal;
    QString m_email;
    bool m_searched = false; ///< the list shows hits only
};
