#pragma once

#include <ui/Form.h>
#include <ui/RecordList.h>

#include <QStandardItemModel>

class TypedSearch;
namespace Ui {
class frmKasseArtikelSuche;
}

/// The search for an article: gArtikel. The list follows what is typed or scanned, or shows a group.
class frmKasseArtikelSuche : public FormDialog {
    Q_OBJECT

  public:
    explicit frmKasseArtikelSuche(QWidget* parent = nullptr);
    ~frmKasseArtikelSuche() override;

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    void fillGroups();
    void showGroup(const QModelIndex& group);
    void showArticle(const QString& key);

    std::unique_ptr<Ui::frmKasseArtikelSuche> m_ui;
    RecordList* m_articles;
    QStandardItemModel m_groups;
    TypedSearch* m_search;
};
