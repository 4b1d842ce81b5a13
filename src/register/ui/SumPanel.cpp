#include "SumPanel.h"

#include "ui_frmKasse.h"

#include <register/Basket.h>
#include <register/SalePanel.h>
#include <ui/Theme.h>

using namespace Qt::StringLiterals;

void SumPanel::showCount(const QString& text) { m_ui.lblZaehler->setText(text); }

void SumPanel::showStock(const till::StockLabel& label) {
    m_ui.lblBestand->setText(label.text);
    m_ui.lblBestand->setVisible(label.visible);
    SetRole(*m_ui.lblBestand, label.warning ? u"warning strong"_s : u"muted"_s);
}

void SumPanel::show(const till::SalePanel& panel) {
    m_ui.lblUnbekannt->setText(panel.Unknown());
    const bool unknown = !panel.Unknown().isEmpty();
    m_ui.lblUnbekannt->setVisible(unknown);
    m_ui.lblZaehler->setVisible(!unknown);

    m_ui.lblGeparkt->setText(panel.Parked().isEmpty() ? QString() : panel.Parked() + u"  F7"_s);
    const auto& last = panel.Last();
    m_ui.pnlLetzter->setVisible(last.has_value());
    m_ui.sumLine->setVisible(last.has_value());
    if (!last) return;
    m_ui.lblLetzter->setText(last->title());
    m_ui.lblBeleg->setText(last->number());
    m_ui.lblRueckgeldText->setText(last->caption());
    m_ui.lblRueckgeld->setText(last->amount());
    m_ui.lblGegeben->setText(last->detail());
    for (QWidget* news : {static_cast<QWidget*>(m_ui.lblRueckgeldText),
                          static_cast<QWidget*>(m_ui.lblRueckgeld), static_cast<QWidget*>(m_ui.lblGegeben)})
        news->setVisible(panel.ShowsChange());
    // The money goes over the counter now, while the receipt is still to be printed.
    if (panel.ShowsChange()) m_ui.pnlSumme->repaint();
}
