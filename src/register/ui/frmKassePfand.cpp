#include "frmKassePfand.h"

#include <register/PfandDialog.h>
#include <ui/TouchKey.h>
#include <ui/Wizard.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace rules = till::PfandDialog;

frmKassePfand::frmKassePfand(QWidget* parent)
    : NumberDialog(u"Pfand..."_s, u"Betrag für ein Stück; mehrere: erst die Anzahl, dann ×."_s,
                   DigitPad::Decimal | DigitPad::Mal, parent)
    , m_anzahl(new NumberEdit(this)) {
    setObjectName(u"frmKassePfand"_s);
    m_anzahl->setObjectName(u"txtAnzahl"_s);
    m_anzahl->setAccessibleName(u"Anzahl"_s);
    m_anzahl->setDecimal(false);
    m_anzahl->setText(rules::Anzahl());
    auto* row = new QHBoxLayout;
    row->addWidget(m_anzahl, 1);
    row->addWidget(new QLabel(u"×"_s, this));
    row->addWidget(input(), 2);
    body()->insertLayout(1, row);

    auto* comesBack = new TouchKey(u"Leergut zurück"_s, this);
    comesBack->setObjectName(u"cmdRetour"_s);
    comesBack->setHint(u"F2"_s);
    comesBack->setFocusPolicy(Qt::NoFocus);
    body()->addWidget(comesBack);
    pad()->key(DigitPad::Enter)->setHint(u"F4"_s);
    pad()->key(DigitPad::Clear)->setHint({});
    connect(comesBack, &TouchKey::clicked, this, [this] { confirm(true); });
    connect(new QShortcut(Qt::Key_F2, this), &QShortcut::activated, this, [this] { confirm(true); });
    connect(new QShortcut(Qt::Key_F4, this), &QShortcut::activated, this, [this] { confirm(false); });

    input()->setFilter(&rules::AcceptKey);
    connect(pad(), &DigitPad::mal, this, [this] { input()->insert(u"*"_s); });
    connect(input(), &QLineEdit::textChanged, this, [this](QString typed) {
        guard()([&] {
            QString anzahl = m_anzahl->text();
            if (!rules::MoveFactor(typed, anzahl)) return;
            m_anzahl->setText(anzahl);
            setText(typed);
        });
    });
    setText(rules::Betrag());
}

void frmKassePfand::ok() { confirm(false); }

void frmKassePfand::confirm(bool comesBack) {
    guard()([&] {
        QString amount = text();
        if (rules::Confirm(amount, m_anzahl->text(), comesBack))
            accept();
        else
            setText(amount);
    });
}

bool frmKassePfand::cancelled() {
    rules::Cancel();
    return true;
}
