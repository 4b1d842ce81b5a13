#include "frmKasseTotal.h"

#include "ui_frmKasseTotal.h"

#include <session/Globals.h>
#include <ui/AmountLabel.h>
#include <ui/Theme.h>

using namespace Qt::StringLiterals;

frmKasseTotal::frmKasseTotal(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseTotal>())
    , m_timer(this) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtGegeben);
    setKeys(m_ui->cmdBar, m_ui->cmdCancel);
    const int edge = Theme::Current().keyHeight;
    m_ui->pad->setKeys(DigitPad::Decimal);
    m_ui->pad->setMinimumSize(edge * 4, edge * 9 / 2);
    m_ui->amounts->setMinimumWidth(edge * 5);
    m_ui->cmdBar->setMinimumWidth(edge * 2);
    m_ui->pad->setTarget(m_ui->txtGegeben);
    m_ui->cmdAHVerkauf->setVisible(gAHVerkaufAktiv);
    m_ui->cmdCancel->setVisible(till::TotalDialog::MayCancel());
    if (!till::TotalDialog::MayCancel()) {
        m_ui->wizPane->setHeaderDescription(
            u"Geben Sie den erhaltenen Betrag ein. Enter bucht den Verkauf."_s);
    }
    m_ui->txtGegeben->setFilter(&till::TotalDialog::AcceptKey);

    m_ui->txtSumme->setText(m_total.Summe());
    connect(m_ui->txtGegeben, &QLineEdit::textChanged, this, [this](const QString& text) {
        guard()([&] {
            m_total.SetGegeben(text);
            showBack();
        });
    });
    showBack();
    showGegeben();
    for (QLineEdit* amount : {m_ui->txtSumme, static_cast<QLineEdit*>(m_ui->txtGegeben), m_ui->txtBack})
        FitLetters(*amount);

    const std::pair<TouchKey*, int> notes[] = {{m_ui->cmdNote5, 5},
                                               {m_ui->cmdNote10, 10},
                                               {m_ui->cmdNote20, 20},
                                               {m_ui->cmdNote50, 50},
                                               {m_ui->cmdNote100, 100}};
    for (const auto& [key, euros] : notes) {
        key->setMinimumWidth(edge * 7 / 4);
        connect(key, &TouchKey::clicked, this, [this, euros = euros] {
            m_total.AddNote(euros);
            showGegeben();
        });
    }
    connect(m_ui->cmdPassend, &TouchKey::clicked, this, [this] {
        m_total.Passend();
        showGegeben();
    });

    connect(m_ui->cmdClear, &TouchKey::clicked, this, [this] {
        m_total.Clear();
        showGegeben();
    });
    connect(m_ui->cmdAHVerkauf, &TouchKey::clicked, this,
            [this] { guard()([this] { pay(m_total.AHVerkauf()); }); });

    m_timer.setObjectName(u"mainTimer"_s);
    m_timer.setInterval(5000);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, m_ui->cmdBar, &TouchKey::click);
    if (gEnabledAutoClose) m_timer.start();
}

frmKasseTotal::~frmKasseTotal() = default;

void frmKasseTotal::ok() { pay(m_total.Bar()); }

bool frmKasseTotal::cancelled() { return m_total.Escape(); }

void frmKasseTotal::pay(bool paid) {
    if (paid)
        accept();
    else
        showGegeben();
}

void frmKasseTotal::showBack() {
    m_ui->txtBack->setText(m_total.Back());
    m_ui->lblBack->setText(m_total.BackCaption());
    SetRole(*m_ui->lblBack, m_total.IsShort() ? u"warning strong"_s : u"muted"_s);
}

void frmKasseTotal::showGegeben() {
    m_ui->txtGegeben->setText(m_total.Gegeben());
    m_ui->txtGegeben->selectAll();
    m_ui->txtGegeben->setFocus();
}

void frmKasseTotal::showEvent(QShowEvent* event) {
    FormDialog::showEvent(event);
    showGegeben();
}
