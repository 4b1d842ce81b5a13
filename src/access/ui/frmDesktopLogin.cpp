#include "ui_frmDesktopLogin.h"

#include <access/Login.h>
#include <access/ui/frmDesktopLogin.h>
#include <session/gUser.h>
#include <store/Recordset.h>
#include <ui/DigitPad.h>
#include <ui/RecordList.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>

#include <QHeaderView>

using namespace Qt::StringLiterals;

frmDesktopLogin::frmDesktopLogin(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmDesktopLogin>())
    , m_users(new RecordList(
          {u"ID"_s, u"ID"_s},
          {{u"Benutzer"_s, u"Vorname"_s, u"Alexandra Mustermann"_s, Qt::AlignLeft,
            [](const Recordset& rs) { return rs.Text(u"Vorname") + u' ' + rs.Text(u"Name"); }},
           {u"Status"_s, u"Gesperrt"_s, u"gesperrt"_s, Qt::AlignRight,
            [](const Recordset& rs) { return rs.Flag(u"Gesperrt") ? u"gesperrt"_s : QString(); }}},
          this)) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtPIN);
    const int edge = Theme::Current().keyHeight;
    setMinimumSize(edge * 14, edge * 10);
    m_ui->txtPIN->setProperty("role", u"large"_s);
    m_ui->pad->setKeys(DigitPad::Clear);
    m_ui->pad->setTarget(m_ui->txtPIN);
    m_ui->pad->setMinimumHeight(4 * edge + 3 * 6);
    m_ui->lvwUsers->setFocusPolicy(Qt::NoFocus);
    m_users->setMuted([](const Recordset& rs) { return rs.Flag(u"Gesperrt"); });
    m_ui->lvwUsers->setModel(m_users);
    m_ui->lvwUsers->horizontalHeader()->hide();
    m_ui->lvwUsers->takeArrowsFrom(*m_ui->txtPIN);
    for (TouchKey* key : {m_ui->cmdLogin, m_ui->cmdCancel})
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setKeys(m_ui->cmdLogin, m_ui->cmdCancel);
    if (gLoginPflicht) setWindowFlag(Qt::WindowCloseButtonHint, false);
    m_ui->cmdCancel->setEnabled(!gLoginPflicht);
    m_ui->lblPflicht->setProperty("role", u"muted"_s);
    m_ui->lblPflicht->setVisible(gLoginPflicht);
    gKassenUser.Result = 0;
    guard()([this] { LoadUsers(); });
}

frmDesktopLogin::~frmDesktopLogin() { m_ui->lvwUsers->setModel(nullptr); }

void frmDesktopLogin::LoadUsers() {
    m_users->open(u"SELECT * FROM Personal"_s);
    if (!m_ui->lvwUsers->selectKey(u"ID"_s + QString::number(gKassenUser.ID)))
        m_ui->lvwUsers->setCurrentIndex({});
}

void frmDesktopLogin::ok() {
    const QString key = m_ui->lvwUsers->currentKey();
    if (key.isEmpty()) return;
    switch (KassenAnmelden(key, m_ui->txtPIN->text())) {
    case LoginResult::Done:
        accept();
        return;
    case LoginResult::NotFound:
        LoadUsers();
        return;
    case LoginResult::Blocked:
    case LoginResult::WrongPin:
        m_ui->txtPIN->clear();
        return;
    }
}

bool frmDesktopLogin::cancelled() {
    if (gLoginPflicht) return false;
    gKassenUser.Result = 0;
    return true;
}
