#include "frmKasseLangText.h"

#include "ui_frmKasseLangText.h"

#include <session/gAngaben.h>

#include <QShortcut>

frmKasseLangText::frmKasseLangText(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseLangText>()) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtLangText);
    m_ui->txtLangText->setPlainText(gLangTextAngabe.Text);
    m_ui->txtLangText->moveCursor(QTextCursor::End);
    for (const auto enter : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(QKeySequence(Qt::CTRL | enter), this), &QShortcut::activated, m_ui->cmdOK,
                &TouchKey::click);
}

frmKasseLangText::~frmKasseLangText() = default;

void frmKasseLangText::ok() {
    gLangTextAngabe = {m_ui->txtLangText->toPlainText().trimmed(), 1};
    accept();
}

bool frmKasseLangText::cancelled() {
    gLangTextAngabe.Ergebnis = 0;
    return true;
}
