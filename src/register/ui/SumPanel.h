#pragma once

namespace Ui {
class frmKasse;
}
namespace till {
class SalePanel;
struct StockLabel;
} // namespace till
class QString;

/// The panel beside the list: total, count of the lines, stock of the selected article, a code that nobody
/// knows, and what the last sale gave back.
class SumPanel {
  public:
    explicit SumPanel(Ui::frmKasse& ui)
        : m_ui(ui) {}
    void showCount(const QString& text);
    void showStock(const till::StockLabel& label);
    void show(const till::SalePanel& panel);

  private:
    Ui::frmKasse& m_ui;
};
