#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmKassePrintDlg;
}

/// Asks how a receipt goes on paper: gPrintMode is 0 (none), 1 (receipt) or 2 (form) when it closes. The
/// caller keeps the mode before and puts it back. A changed number of copies counts at once and stays in
/// konfig.ini.
class frmKassePrintDlg : public QDialog {
    Q_OBJECT

  public:
    explicit frmKassePrintDlg(QWidget* parent = nullptr);
    ~frmKassePrintDlg() override;
    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    bool handlePress(int key);
    bool handleRelease(int key);
    /// Mode 1 or 2 when `printer` names one, else 0 and a message; closes.
    void choose(int mode, const QString& printer);
    void setKopies(int copies);

    std::unique_ptr<Ui::frmKassePrintDlg> m_ui;
};
