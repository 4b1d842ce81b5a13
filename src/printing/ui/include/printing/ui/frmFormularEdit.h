#pragma once

#include <templates/TemplateDocument.h>

#include <QDialog>
#include <QTimer>

#include <memory>

namespace Ui {
class frmFormularEdit;
}

/// The designer of print templates: the properties on the left, beside them a made-up document as it prints
/// with them. Works without a store.
///
///     frmFormularEdit designer;
///     if (designer.Open(gDBPath + u"Rechnung.pld"_s, gFormularDrucker)) ShowModal(designer);
class frmFormularEdit : public QDialog {
    Q_OBJECT

  public:
    explicit frmFormularEdit(QWidget* parent = nullptr);
    ~frmFormularEdit() override;

    /// Loads the template; `printer` takes the test prints, empty for none. False after telling that the
    /// template cannot be opened.
    bool Open(const QString& path, const QString& printer);
    /// Esc and closing the window: asks before changes are lost.
    void reject() override;

  private:
    void bindKeys();
    void save();
    void saveAs();
    void restoreShipped();
    void testPrint();
    void renderPreview();
    /// Why the document cannot be printed; empty when it can.
    [[nodiscard]] QString whyNot() const;
    void showState();
    /// The selection follows a change that was undone.
    void showChange(const QString& key);

    std::unique_ptr<Ui::frmFormularEdit> m_ui;
    TemplateDocument m_document;
    QTimer m_render;
    QString m_printer;
};
