#include <session/Globals.h>
#include <session/MsgBox.h>
#include <store/Database.h>
#include <ui/Help.h>
#include <ui/Theme.h>
#include <ui/TouchKey.h>
#include <ui/Wizard.h>

#include <QCoreApplication>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// The guide as it is delivered, built into the program.
class frmHilfe : public QWidget {
  public:
    frmHilfe() {
        setObjectName(u"frmHilfe"_s);
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowTitle(u"Hilfe"_s);
        auto* text = new QTextBrowser(this);
        text->setObjectName(u"txtHilfe"_s);
        text->setOpenExternalLinks(true);
        text->document()->setDocumentMargin(24);
        text->setSource(QUrl(u"qrc:/hilfe/bedienung.md"_s), QTextDocument::MarkdownResource);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins({});
        column->addWidget(text);
        const int edge = Theme::Current().keyHeight;
        resize(edge * 16, edge * 12);
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            close();
        else
            QWidget::keyPressEvent(event);
    }
};

} // namespace

bool OpenWithSystem(const QUrl& url) {
    if (QDesktopServices::openUrl(url)) return true;
    MsgBox(url.scheme() == u"mailto"_s ? u"Auf diesem Rechner ist kein Programm für E-Mails eingerichtet."_s
                                       : u"\"%1\" kann nicht geöffnet werden."_s.arg(url.toDisplayString()));
    return false;
}

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(u"Info"_s);
    auto* head = new WizardPane(this);
    head->setObjectName(u"wizPane"_s);
    head->setHeaderTitle(u"Merivane"_s);
    head->setHeaderDescription(u"Kasse und Büro für kleine Läden"_s);
    auto* facts = new QLabel(this);
    facts->setObjectName(u"lblInfo"_s);
    facts->setTextInteractionFlags(Qt::TextSelectableByMouse);
    facts->setText(u"Version %1\nDatenbank: Jet %2\nQt %3"_s.arg(QCoreApplication::applicationVersion(),
                                                                 gDB ? gDB->Version() : u"nicht geöffnet"_s,
                                                                 QString::fromLatin1(qVersion())));
    auto* ok = new TouchKey(u"OK"_s, this);
    ok->setObjectName(u"cmdOK"_s);
    ok->setAccent(true);
    ok->setHint(u"Enter"_s);
    connect(ok, &TouchKey::clicked, this, &QDialog::accept);
    const Theme& t = Theme::Current();
    auto* body = new QVBoxLayout;
    body->setContentsMargins(t.gap * 3, t.gap * 2, t.gap * 3, t.gap * 2);
    body->setSpacing(t.gap * 2);
    body->addWidget(facts);
    body->addWidget(ok, 0, Qt::AlignRight);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->addWidget(head);
    column->addLayout(body);
    setMinimumWidth(t.keyHeight * 8);
    ok->setFocus();
}

void ShowHelp() {
    static QPointer<QWidget> open;
    if (open.isNull()) open = new frmHilfe;
    open->show();
    open->raise();
    open->activateWindow();
}
