#include "KasseLayout.h"

#include "ui_frmKasse.h"

#include <register/Basket.h>
#include <ui/AmountLabel.h>
#include <ui/Theme.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using till::Basket;

namespace {

// Shares in the width of the form.
constexpr double numPadShare = 0.272, sumShare = 0.224, pictureShare = 0.168;
/// Below this width of the form the list takes what the other panels can spare.
constexpr int narrowBelow = 1200;
/// Below this one the picture gives way to the names.
constexpr int smallPictureBelow = 1340;
/// From this height on the list has room for a long sale.
constexpr int tallFrom = 1000;
/// No code of 13 digits is wider.
const QString code = u"2008888888888"_s;
constexpr int padding = 9, narrowPadding = 6; ///< of the cells
constexpr int rowsOfShortScreen = 8, rowsOfTallScreen = 14;

} // namespace

void KasseLayout::setUp() {
    BasketList* list = m_ui.lvwBestellung;
    list->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    list->horizontalHeader()->setSectionResizeMode(Basket::Artikelname, QHeaderView::Stretch);
    list->setMinimumHeight(Theme::Current().normal * 2 * 7);
    m_ui.sumLine->setBackgroundRole(QPalette::Mid);

    // What is told now and then keeps its place, so that nothing else moves.
    for (QWidget* now : {static_cast<QWidget*>(m_ui.lblBestand), static_cast<QWidget*>(m_ui.pnlLetzter),
                         static_cast<QWidget*>(m_ui.lblRueckgeldText),
                         static_cast<QWidget*>(m_ui.lblRueckgeld), static_cast<QWidget*>(m_ui.lblGegeben)}) {
        QSizePolicy policy = now->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        now->setSizePolicy(policy);
    }
    // The sign of the currency stands on the line of the total.
    const Theme& theme = Theme::Current();
    const QFontMetrics total(theme.font(Theme::Size::Total, QFont::Bold)),
        sign(theme.font(Theme::Size::Large, QFont::DemiBold));
    m_ui.lblRueckgeld->setMaximumHeight(total.height());
    m_ui.lblWaehrung->setContentsMargins(0, 0, 0, total.descent() - sign.descent());
    for (QWidget* oneOfTwo : {m_ui.lblZaehler, m_ui.lblUnbekannt})
        oneOfTwo->setFixedHeight(theme.normal + 12);
    // The picture keeps its size, however long the name beneath it is.
    const QFontMetrics name(theme.font(Theme::Size::Normal, QFont::DemiBold));
    m_ui.lblBildName->setFixedHeight(2 * name.lineSpacing());
    m_ui.lblBildPreis->setFixedHeight(name.lineSpacing());
    FitLetters(*m_ui.txtInput);
    FitLetters(*m_ui.txtMal);
}

void KasseLayout::fit(const QSize& form) {
    const Theme& theme = Theme::Current();
    const bool narrow = form.width() < narrowBelow;
    const auto share = [&](double part) { return static_cast<int>(form.width() * part); };

    // A scanned code stands in the entry box as a whole, beside a multiplier.
    const int codeWidth =
        QFontMetrics(theme.font(Theme::Size::Large, QFont::DemiBold)).horizontalAdvance(code);
    const int least = codeWidth + theme.keyHeight * 2;
    const int side = std::max(least, share(numPadShare));
    m_ui.sspNumPad_BG->setFixedWidth(side);
    m_ui.txtInput->setMinimumWidth(codeWidth + theme.normal * 2);

    const int sum = std::max(theme.keyHeight * 15 / 4, share(sumShare));
    const int picture = form.width() < smallPictureBelow ? theme.keyHeight * 9 / 4 : share(pictureShare);
    m_ui.pnlSumme->setFixedWidth(sum);
    m_ui.sspBild_BG->setFixedWidth(picture);
    m_ui.lvwBestellung->setRoom(form.height() >= tallFrom ? rowsOfTallScreen : rowsOfShortScreen,
                                narrow ? narrowPadding : padding, narrow);
    fitColumns(narrow);
}

QList<QRect> KasseLayout::inSight() const {
    const auto place = [](const QWidget* widget) {
        return QRect(widget->mapToGlobal(QPoint()), widget->size());
    };
    return {place(m_ui.pnlSumme), m_ui.lvwBestellung->lastLines(), place(m_ui.sspBestellung_BG)};
}

void KasseLayout::fitColumns(bool narrow) {
    const QFontMetrics plain(Theme::Current().font(narrow ? Theme::Size::Small : Theme::Size::Normal)),
        last(BasketPainter::lastFont());
    const int around = 2 * (narrow ? narrowPadding : padding) + (narrow ? 0 : 4);
    // The widest text each column shows without smaller letters; the name gets the rest.
    const auto set = [&](Basket::Column column, const QFontMetrics& letters, const QString& widest) {
        m_ui.lvwBestellung->setColumnWidth(column, letters.horizontalAdvance(widest) + around);
    };
    set(Basket::ArtikelNr, plain, code + u' ');
    set(Basket::Anz, last, narrow ? u"999"_s : u"-999"_s);
    set(Basket::Menge, plain, narrow ? u"100 Stück"_s : u"1000 Stück"_s);
    set(Basket::EPreis, last, narrow ? u"999,99"_s : u"-999,99"_s);
    set(Basket::GPreis, last, narrow ? u"-999,99"_s : u"-9999,99"_s);
}
