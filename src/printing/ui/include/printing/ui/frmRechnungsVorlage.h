#pragma once

#include <ui/Form.h>

#include <memory>

class QStringListModel;
namespace Ui {
class frmRechnungsVorlage;
}

/// The choice of an invoice's closing text from the ".rvl" files of the shop: gVorlagenAuswahl. A text can be
/// changed for this one document, or saved for all that follow.
class frmRechnungsVorlage : public FormDialog {
    Q_OBJECT

  public:
    explicit frmRechnungsVorlage(QWidget* parent = nullptr);
    ~frmRechnungsVorlage() override;

  protected:
    void ok() override;
    bool cancelled() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    /// Reads the folder and selects `name`, else the first file.
    void loadFiles(const QString& name);
    [[nodiscard]] QString selectedFile() const;
    void showFile();
    void useDefault();
    void save();
    void create();

    QStringListModel* m_files;
    std::unique_ptr<Ui::frmRechnungsVorlage> m_ui;
};
