#include "ui_frmKasseBestand.h"

#include <session/Globals.h>
#include <text/Format.h>
#include <ui/AmountLabel.h>
#include <ui/Theme.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QRegularExpression>

#include <closing/ui/frmKasseBestand.h>

using namespace Qt::StringLiterals;

namespace {

QString money(Currency amount) {
    return Format(Value(amount), u"##,##0."_s + QString(gDecimalStellen, u'0')) + u' ' + gWaehrungsSymbol;
}

} // namespace

frmKasseBestand::frmKasseBestand(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseBestand>()) {
    m_ui->setupUi(this);
    const int edge = Theme::Current().keyHeight;
    m_ui->pad->setKeys(DigitPad::Clear);
    m_ui->pad->setMinimumSize(edge * 4, edge * 4);
    for (int i = 0; i < KassenZaehlung::Sorten; ++i) {
        m_boxes[size_t(i)] =
            findChild<NumberEdit*>(QString::fromUtf16(KassenZaehlung::Alle()[size_t(i)].box));
        m_boxes[size_t(i)]->setFixedWidth(edge * 3 / 2);
        FitLetters(*m_boxes[size_t(i)]);
        connect(m_boxes[size_t(i)], &QLineEdit::textChanged, this, [this, i] { count(i); });
    }
    const int widest = fontMetrics().horizontalAdvance(money(Currency::fromInteger(9'999'999)));
    for (QLabel* sum : findChildren<QLabel*>(QRegularExpression(u"^sum"_s)))
        sum->setMinimumWidth(widest);
    setUpForm(m_boxes.front());
    // The pad writes into the box that has the focus.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (auto* box = qobject_cast<NumberEdit*>(now); box != nullptr && box->window() == this)
            m_ui->pad->setTarget(box);
    });
    m_ui->pad->setTarget(m_boxes.front());
    showSums();
}

frmKasseBestand::~frmKasseBestand() = default;

void frmKasseBestand::count(int sorte) {
    guard()([&] {
        const QString typed = m_boxes[size_t(sorte)]->text();
        m_count.Set(sorte, typed);
        QString label = m_boxes[size_t(sorte)]->objectName();
        findChild<QLabel*>(label.replace(u"txt"_s, u"sum"_s))
            ->setText(typed.isEmpty() ? QString() : money(m_count.Betrag(sorte)));
        showSums();
    });
}

void frmKasseBestand::showSums() {
    m_ui->lblMuenzen->setText(u"Münzen  "_s + money(m_count.Muenzen()));
    m_ui->lblScheine->setText(u"Scheine  "_s + money(m_count.Scheine()));
    m_ui->txtSumme->setText(money(m_count.Summe()));
}

void frmKasseBestand::ok() {
    m_count.Confirm();
    accept();
}

bool frmKasseBestand::cancelled() {
    KassenZaehlung::Cancel();
    return true;
}

void frmKasseBestand::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // Who counts goes from box to box; only the key says that it is all.
    if (enter && event->modifiers().testFlag(Qt::ControlModifier))
        m_ui->cmdOK->click();
    else if (enter && qobject_cast<NumberEdit*>(focusWidget()))
        focusNextChild();
    else
        FormDialog::keyPressEvent(event);
}
