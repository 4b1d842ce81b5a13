#include "KasseLayout.h"

#include "ui_frmKasse.h"

#include <register/Basket.h>
#include <ui/Theme.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using till::Basket;

namespace {

/// The share of the keypad and the picture in the width of the form.
constexpr double SideShare = 0.272;
/// From this height on the function keys have a title.
constexpr int TitleFromHeight = 900;
/// Below this width the columns of the list get no more than they need.
constexpr int NarrowBelow = 800;

} // namespace

void KasseLayout::setUp() {
    const Theme& theme = Theme::Current();
    BasketList* list = m_ui.lvwBestellung;
    list->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    list->horizontalHeader()->setSectionResizeMode(Basket::Artikelname, QHeaderView::Stretch);
    list->setMinimumHeight(theme.keyHeight * 2);
    m_ui.sumBar->setBackgroundRole(QPalette::Base);
    m_ui.sumLine->setBackgroundRole(QPalette::Dark);

    // The total stays where it is while there is no stock to tell.
    QSizePolicy stock = m_ui.lblBestand->sizePolicy();
    stock.setRetainSizeWhenHidden(true);
    m_ui.lblBestand->setSizePolicy(stock);

    m_ui.mainLayout->setSpacing(theme.gap);
    m_ui.sspFunction_BG->layout()->setContentsMargins(theme.gap, theme.gap, theme.gap, theme.gap);
    m_ui.sspFunction_BG->setFixedHeight(theme.keyHeight * 4 / 3 + 2 * theme.gap);
}

void KasseLayout::fit(const QSize& form) {
    const Theme& theme = Theme::Current();
    const int least = 5 * theme.keyHeight + 20;
    const int side = std::max(least, static_cast<int>(form.width() * SideShare));
    m_ui.sspNumPad_BG->setFixedWidth(side);
    m_ui.sspBild_BG->setFixedWidth(side);

    const bool titled = form.height() >= TitleFromHeight;
    m_ui.sspFunction_BG->setTitle(titled ? u"Funktionen"_s : QString());
    const int bar = m_ui.sspFunction_BG->contentsMargins().top();
    m_ui.sspFunction_BG->setFixedHeight(theme.keyHeight * 4 / 3 + 2 * theme.gap + bar);
    fitColumns(form.width() - side);
}

void KasseLayout::alignLetters(QLabel& label) {
    const bool blank = label.text().startsWith(u' ');
    label.setMargin(blank ? -label.fontMetrics().horizontalAdvance(u' ') : 0);
}

void KasseLayout::fitColumns(int width) {
    const QFontMetrics metrics(Theme::Current().font());
    const bool narrow = width < NarrowBelow;
    const int padding = narrow ? 26 : 38;
    // The widest text each column is meant to show whole; the name gets the rest.
    const std::pair<int, QString> widest[] = {{Basket::ArtikelNr, u"2001040000128"_s},
                                              {Basket::Anz, narrow ? u"999"_s : u"-9999"_s},
                                              {Basket::Menge, narrow ? u"100 Stück"_s : u"1000 Stück"_s},
                                              {Basket::EPreis, narrow ? u"999,99"_s : u"-9999,99"_s},
                                              {Basket::GPreis, narrow ? u"-999,99"_s : u"-99999,99"_s}};
    for (const auto& [column, text] : widest)
        m_ui.lvwBestellung->setColumnWidth(column, metrics.horizontalAdvance(text) + padding);
}
