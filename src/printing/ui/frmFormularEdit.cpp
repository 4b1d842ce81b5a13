#include "ui_frmFormularEdit.h"

#include <devices/Printers.h>
#include <page/VSPrinter.h>
#include <printing/Sample.h>
#include <printing/ui/frmFormularEdit.h>
#include <session/Handle.h>
#include <session/MsgBox.h>
#include <templates/TemplateCheck.h>
#include <templates/Units.h>
#include <text/RuntimeError.h>
#include <ui/Pointer.h>
#include <ui/Theme.h>

#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QShortcut>

#include <chrono>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A document takes a few milliseconds; several keystrokes within this time share one.
constexpr auto renderDelay = 30ms;

constexpr double widestRoll = 100, rollZoom = 1.4; // mm

} // namespace

frmFormularEdit::frmFormularEdit(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmFormularEdit>()) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowState(Qt::WindowMaximized);
    for (TouchKey* key : findChildren<TouchKey*>(QString(), Qt::FindDirectChildrenOnly))
        key->setFixedHeight(Theme::Current().keyHeight * 5 / 4);
    m_ui->lblFault->hide();
    m_ui->splitMain->setStretchFactor(0, 2);
    m_ui->splitMain->setStretchFactor(1, 3);
    m_ui->mainProperty->setFontNames(QFontDatabase::families());
    bindKeys();

    m_render.setSingleShot(true);
    m_render.setInterval(renderDelay);
    connect(&m_render, &QTimer::timeout, this, &frmFormularEdit::renderPreview);
    connect(&m_document, &TemplateDocument::changed, this, [this] {
        if (!m_render.isActive()) m_render.start();
        showState();
    });
    connect(&m_document, &TemplateDocument::saved, this, &frmFormularEdit::showState);
}

frmFormularEdit::~frmFormularEdit() = default;

void frmFormularEdit::bindKeys() {
    const auto bind = [this](TouchKey* key, const QList<QKeySequence>& shortcuts, std::function<void()> act) {
        connect(key, &TouchKey::clicked, this, [act = std::move(act)] { Handle("frmFormularEdit", act); });
        for (const QKeySequence& shortcut : shortcuts)
            connect(new QShortcut(shortcut, this), &QShortcut::activated, key, &TouchKey::click);
    };
    bind(m_ui->cmdSave, {QKeySequence(u"Ctrl+S"_s)}, [this] { save(); });
    bind(m_ui->cmdSaveAs, {QKeySequence(u"Ctrl+Shift+S"_s)}, [this] { saveAs(); });
    bind(m_ui->cmdUndo, {QKeySequence(u"Ctrl+Z"_s)}, [this] { m_document.undo(); });
    bind(m_ui->cmdRedo, {QKeySequence(u"Ctrl+Y"_s), QKeySequence(u"Ctrl+Shift+Z"_s)},
         [this] { m_document.redo(); });
    bind(m_ui->cmdRevert, {QKeySequence(u"F5"_s)}, [this] { m_document.revert(); });
    bind(m_ui->cmdDefault, {QKeySequence(u"F8"_s)}, [this] { restoreShipped(); });
    bind(m_ui->cmdTestPrint, {QKeySequence(u"Ctrl+P"_s)}, [this] { testPrint(); });
    bind(m_ui->cmdClose, {}, [this] { reject(); });
}

bool frmFormularEdit::Open(const QString& path, const QString& printer) {
    const QString refusal = u"Die Druckvorlage konnte nicht geöffnet werden."_s;
    switch (m_document.open(path)) {
    case TemplateDocument::Opened::Yes:
        break;
    case TemplateDocument::Opened::NotLoaded:
        MsgBox(refusal, MsgIcon::Critical);
        return false;
    case TemplateDocument::Opened::NoTemplate:
        MsgBox(refusal + u"\n\nIn \"%1\" fehlen die Schlüssel, die einen Beleg beschreiben, zum Beispiel "
                         "\"tabelle_gpreis_width\"."_s.arg(QFileInfo(path).fileName()),
               MsgIcon::Critical);
        return false;
    }
    m_printer = printer;
    m_ui->mainProperty->setDocument(m_document);
    // From here on; opening is no change that the selection should follow.
    connect(&m_document, &TemplateDocument::changed, this, &frmFormularEdit::showChange,
            Qt::UniqueConnection);
    m_ui->mainProperty->setFocus();
    m_render.stop();
    renderPreview();
    showState();
    // A roll as wide as the preview would show little but its head.
    if (paperSize(m_document.list()).width() < widestRoll) m_ui->mainPreview->setZoom(rollZoom);
    m_ui->mainPreview->showPage(0);
    return true;
}

void frmFormularEdit::reject() {
    const bool leave =
        !m_document.isModified() ||
        MsgBox(u"Die Druckvorlage wurde geändert und noch nicht gespeichert. Möchten Sie das Fenster "
               "schließen und die Änderungen verwerfen?"_s,
               MsgIcon::Question, MsgButtons::YesNo, u"Druckvorlage..."_s, MsgAnswer::No) == MsgAnswer::Yes;
    if (leave) QDialog::reject();
}

void frmFormularEdit::save() {
    if (m_document.save()) return;
    throw RuntimeError(
        70, u"\"%1\" kann nicht geschrieben werden."_s.arg(QDir::toNativeSeparators(m_document.path())));
}

void frmFormularEdit::saveAs() {
    auto path =
        ChooseFile({u"Druckvorlage speichern..."_s, u"Druckvorlagen|*.pld"_s, m_document.path(), true});
    if (!path) return;
    if (QFileInfo(*path).suffix().isEmpty()) *path += u".pld"_s;
    if (m_document.saveAs(*path)) return;
    throw RuntimeError(70, u"\"%1\" kann nicht geschrieben werden."_s.arg(QDir::toNativeSeparators(*path)));
}

void frmFormularEdit::restoreShipped() {
    if (!m_document.restoreShipped()) MsgBox(u"Zu dieser Datei gibt es keine ausgelieferte Druckvorlage."_s);
}

void frmFormularEdit::testPrint() {
    if (m_printer.isEmpty()) {
        MsgBox(u"Für diese Druckvorlage ist kein Drucker eingerichtet."_s);
        return;
    }
    if (const QString fault = whyNot(); !fault.isEmpty()) {
        MsgBox(fault);
        return;
    }
    const WaitCursor wait;
    VSPrinter printer;
    printer.Device(m_printer);
    RenderSample(printer, m_document.list(), m_document.kind());
    printer.PrintDoc();
    MsgBox(u"Der Probedruck wurde an \"%1\" gegeben."_s.arg(m_printer));
}

QString frmFormularEdit::whyNot() const {
    const bool ownPaper = paperSize(m_document.list()).isEmpty() && !m_printer.isEmpty();
    const QString fault =
        templateFault(m_document.list(), m_document.kind(), ownPaper ? PrinterPaper(m_printer) : QSizeF());
    return fault.isEmpty() ? QString() : u"Mit dieser Druckvorlage kann nicht gedruckt werden. "_s + fault;
}

void frmFormularEdit::renderPreview() {
    QString fault = whyNot();
    try {
        VSPrinter printer;
        RenderSample(printer, m_document.list(), m_document.kind());
        m_ui->mainPreview->setDocument(printer.Document());
    } catch (const RuntimeError& error) {
        // A value on its way to another one; a box at every keystroke would be in the way.
        fault = u"Mit diesen Werten kann nicht gedruckt werden: "_s + error.Description;
    }
    m_ui->lblFault->setText(fault);
    m_ui->lblFault->setVisible(!fault.isEmpty());
}

void frmFormularEdit::showState() {
    const QString name = QFileInfo(m_document.path()).fileName();
    const QString state = m_document.isModified() ? u" – geändert"_s : QString();
    setWindowTitle(name + state + u" – Druckvorlage"_s);
    m_ui->pnlProperties->setTitle(name + state);
    m_ui->cmdSave->setEnabled(m_document.isModified());
    m_ui->cmdRevert->setEnabled(m_document.isModified());
    m_ui->cmdUndo->setEnabled(m_document.canUndo());
    m_ui->cmdRedo->setEnabled(m_document.canRedo());
    m_ui->cmdDefault->setEnabled(m_document.hasShipped());
}

void frmFormularEdit::showChange(const QString& key) {
    if (!key.isEmpty() && key != m_ui->mainProperty->selectedKey()) m_ui->mainProperty->select(key);
}
