#include "EntryKeyboard.h"
#include "KasseBetragDialog.h"
#include "KasseLayout.h"
#include "KasseNumberDialogs.h"
#include "KassenFunktionen.h"
#include "KassenMenus.h"
#include "SumPanel.h"
#include "frmKasseArtikelInfo.h"
#include "frmKasseArtikelLieferanten.h"
#include "frmKasseArtikelSuche.h"
#include "frmKasseBonHistorie.h"
#include "frmKasseFreierArtikel.h"
#include "frmKasseKundenSuche.h"
#include "frmKasseLangText.h"
#include "frmKassePapiere.h"
#include "frmKassePfand.h"
#include "frmKasseReklamation.h"
#include "frmKasseSNAngabe.h"
#include "frmKasseTotal.h"
#include "frmRechnungFromLieferschein.h"
#include "ui_frmKasse.h"

#include <printing/ui/frmKassePrintDlg.h>
#include <printing/ui/frmRechnungsVorlage.h>
#include <register/Documents.h>
#include <register/Returns.h>
#include <register/gMaschine.h>
#include <register/ui/frmKasse.h>
#include <session/CSystem.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/gUser.h>
#include <store/Database.h>
#include <ui/Commands.h>
#include <ui/DialogPlace.h>
#include <ui/Notice.h>
#include <ui/Pointer.h>
#include <ui/ScanGuard.h>
#include <ui/ShowModal.h>
#include <ui/Sound.h>
#include <ui/WorkQueue.h>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>

#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// In ms: a window manager that is there has then given the window its place on a changed screen.
constexpr int patienceWithManager = 500;

template <typename Form>
void modal(frmKasse& kasse) {
    Form dialog(&kasse);
    ShowModal(dialog);
}

} // namespace

frmKasse::frmKasse(std::function<void()> showDesktopLogin, QWidget* parent)
    : QWidget(parent)
    , m_showDesktopLogin(std::move(showDesktopLogin))
    , m_ui(std::make_unique<Ui::frmKasse>())
    , m_till(*this)
    , m_queue(std::make_unique<WorkQueue>())
    , m_clock(this) {
    m_ui->setupUi(this);
    m_layout = std::make_unique<KasseLayout>(*m_ui);
    m_sum = std::make_unique<SumPanel>(*m_ui);
    new DialogPlace(this, [this] { return m_layout->inSight(); });
    m_commands = new Commands(
        *this, [this](const auto& act) { m_queue->run(act); }, gKassenUser);
    AddKassenFunktionen(*m_commands, m_till);
    m_commands->add({.key = u"cmdExit"_s, .act = [this] { unload(); }});
    m_menus = new KassenMenus(*this, *m_commands, m_till);
    const bool f8IsPrice = gSystem->ReadProfileString(u"SERVICE"_s, u"F8Preis"_s, KonfigIni()) == u"1"_s;
    if (f8IsPrice) m_ui->cmdPfand->setHint({});
    m_keyboard = new EntryKeyboard(this, m_ui->txtInput, *m_queue, m_till,
                                   FunctionKeys(f8IsPrice, gEnabledSWShortCut));
    connectBasket();
    connectEntry();
    connectKeys();
    connectFunctions();
    m_layout->setUp();

    m_queue->run([this] { m_till.Load(); });
    m_menus->setKarten(m_till.Karten());
    TakeScans(*this, ScanEnd::Enter);
    showTitle(m_till.Title());
    m_ui->lblVersion->setText(u"DB Jet "_s + gDB->Version());
    m_ui->lblMaschine->setText(u"Kasse: "_s + gMaschine);
    m_ui->lblUser->setText(m_till.UserDisplay());
    m_ui->lblWaehrung->setText(gWaehrungsSymbol);
    m_ui->lblGesamt->setText(m_till.basket().Gesamt());
    m_sum->showCount(m_till.basket().Zaehler());
    m_sum->showStock(m_till.basket().Bestand());
    m_sum->show(m_till.panel());
    refreshKeys();

    m_clock.setObjectName(u"clockTimer"_s);
    connect(&m_clock, &QTimer::timeout, this, &frmKasse::showClock);
    m_clock.start(1000);
    showClock();
}

frmKasse::~frmKasse() {
    // The keyboard listens to the whole application and refers to what is about to go.
    delete m_keyboard;
    m_ui->lvwBestellung->setModel(nullptr);
}

void frmKasse::Open() {
    if (gOnlyKassenModus) setWindowFlag(Qt::FramelessWindowHint);
    // Where no window manager enlarges a window, it has its size from here, also when the screen changes it.
    fillScreen();
    if (const QScreen* display = screen()) {
        connect(display, &QScreen::availableGeometryChanged, this,
                [this] { QTimer::singleShot(patienceWithManager, this, &frmKasse::fillScreen); });
    }
    gOnlyKassenModus ? showFullScreen() : showMaximized();
}

void frmKasse::fillScreen() {
    const QScreen* display = screen();
    if (display == nullptr) return;
    const QRect whole = gOnlyKassenModus ? display->geometry() : display->availableGeometry();
    if (frameGeometry() != whole) setGeometry(whole);
}

void frmKasse::LoadBestellungen() {
    m_queue->run([this] { m_till.LoadBestellungen(); });
}

void frmKasse::connectEntry() {
    connect(&m_till, &till::Register::InputChanged, m_ui->txtInput, [this](const QString& text) {
        if (m_ui->txtInput->text() != text) m_ui->txtInput->setText(text);
    });
    connect(&m_till, &till::Register::InputLeft, m_ui->txtInput, &QLineEdit::selectAll);
    connect(&m_till, &till::Register::MalChanged, m_ui->txtMal, &QLineEdit::setText);
    connect(m_ui->txtInput, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text != m_till.Input()) m_queue->run([this, text] { m_till.SetInput(text); });
    });

    const auto press = [this](TouchKey* key, auto handler) {
        connect(key, &TouchKey::clicked, this, [this, handler] { m_queue->run(handler); });
    };
    // What is selected gives way to what the keypad writes, as to what the keyboard does.
    const auto write = [this, press](TouchKey* key, auto handler) {
        press(key, [this, handler] {
            const QLineEdit& box = *m_ui->txtInput;
            if (box.hasSelectedText())
                m_till.SetInput(box.text().remove(box.selectionStart(), box.selectedText().size()));
            handler();
        });
    };
    for (int i = 0; i <= 9; ++i)
        write(findChild<TouchKey*>(u"cmdNumber%1"_s.arg(i)), [this, i] { m_till.cmdNumber_Click(i); });
    write(m_ui->cmdDecimal, [this] { m_till.cmdDecimal_Click(); });
    press(m_ui->cmdMal, [this] { m_till.cmdMal_Click(); });
    write(m_ui->cmdMinus, [this] { m_till.cmdMinus_Click(); });
    press(m_ui->cmdPlus, [this] { m_till.cmdPlus_Click(); });
    press(m_ui->cmdEnter, [this] { m_till.cmdEnter_Click(); });
    press(m_ui->cmdClear, [this] { m_till.cmdClear_Click(); });
    connect(m_keyboard, &EntryKeyboard::function, m_commands, &Commands::trigger);
}

void frmKasse::connectKeys() {
    for (int i = 0; i < till::ArticleKeys::Groups; ++i) {
        auto* key = findChild<TouchKey*>(u"cmdGruppe%1"_s.arg(i));
        m_keyboard->addGroupKey(key);
        connect(key, &TouchKey::clicked, this, [this, i] {
            m_queue->run([this, i] { m_till.cmdGruppe_Click(i); });
            refreshKeys();
        });
    }
    for (int i = 0; i < till::ArticleKeys::Keys; ++i) {
        connect(findChild<TouchKey*>(u"cmdArtikel%1"_s.arg(i)), &TouchKey::clicked, this,
                [this, i] { m_queue->run([this, i] { m_till.cmdArtikel_Click(i); }); });
    }
    connect(&m_till, &till::Register::KeysChanged, this, &frmKasse::refreshKeys);
}

void frmKasse::connectFunctions() {
    QList<TouchKey*> keys = m_ui->sspFunction_BG->findChildren<TouchKey*>();
    keys << m_ui->cmdSearch;
    for (TouchKey* key : keys) {
        key->setVisible(m_commands->action(key->objectName()) != nullptr);
        connect(key, &TouchKey::clicked, this, [this, key] { m_commands->trigger(key->objectName()); });
    }
    connect(&m_till, &till::Register::TitleChanged, this, &frmKasse::showTitle);
    connect(&m_till, &till::Register::UserChanged, m_ui->lblUser, &QLabel::setText);
}

void frmKasse::connectBasket() {
    till::Basket& basket = m_till.basket();
    BasketList* list = m_ui->lvwBestellung;
    list->setModel(&basket);
    connect(list, &BasketList::tapped, this, [this](int row) {
        // The row itself is meant, wherever it stands by the time its turn comes.
        const QPersistentModelIndex where(m_till.basket().index(row, 0));
        m_queue->run([this, where] {
            if (where.isValid()) m_till.lvwBestellung_ItemClick(where.row());
        });
    });
    connect(&basket, &till::Basket::SelectedChanged, list, &BasketList::showRow);
    connect(&basket, &till::Basket::GesamtChanged, m_ui->lblGesamt, &QLabel::setText);
    connect(&basket, &till::Basket::ZaehlerChanged, this,
            [this](const auto& text) { m_sum->showCount(text); });
    connect(&basket, &till::Basket::Repeated, list, &BasketList::flash);
    connect(&basket, &till::Basket::BestandChanged, this,
            [this](const auto& label) { m_sum->showStock(label); });
    connect(&m_till.panel(), &till::SalePanel::Changed, this, [this] { m_sum->show(m_till.panel()); });
    connect(&basket, &till::Basket::BildChanged, this, [this](const till::ArticlePicture& picture) {
        m_ui->sspArtBild->showPicture(picture.file, picture.caption);
        m_ui->lblBildName->setText(picture.name);
        m_ui->lblBildPreis->setText(picture.basePrice);
    });
}

void frmKasse::refreshKeys() {
    const till::ArticleKeys& keys = m_till.keys();
    const auto shown = [](QString caption) { return caption.replace(u'&', u"&&"_s); };
    for (int i = 0; i < till::ArticleKeys::Groups; ++i) {
        auto* key = findChild<TouchKey*>(u"cmdGruppe%1"_s.arg(i));
        key->setText(shown(keys.group(i)));
        key->setChecked(i == keys.pressed());
    }
    for (int i = 0; i < till::ArticleKeys::Keys; ++i) {
        auto* key = findChild<TouchKey*>(u"cmdArtikel%1"_s.arg(i));
        key->setText(shown(keys.key(i).caption));
        key->setTag(keys.key(i).artikelNummer);
        key->setEnabled(!key->text().isEmpty() || !key->tag().isEmpty());
    }
    m_ui->sspArtikel_BG->setTitle(keys.title());
}

void frmKasse::showTitle(const QString& title) {
    QString shown = title;
    m_ui->sspBestellung_BG->setTitle(shown.replace(u"&&"_s, u"&"_s));
    // The title may begin with a blank; its letters stand in line with those of the list all the same.
    QLabel& label = *m_ui->sspBestellung_BG->titleLabel();
    label.setMargin(shown.startsWith(u' ') ? -label.fontMetrics().horizontalAdvance(u' ') : 0);
}

void frmKasse::showClock() { m_ui->lblUhr->setText(Now().toString(u"dd.MM.yyyy hh:mm"_s)); }

void frmKasse::unload() {
    if (m_till.QueryUnload() == till::Register::Unload::Stay) return;
    m_unloaded = true;
    m_queue->close();
    if (!m_inCloseEvent) close();
    emit Unloaded();
}

void frmKasse::closeEvent(QCloseEvent* event) {
    if (!m_unloaded) {
        const QScopedValueRollback inCloseEvent(m_inCloseEvent, true);
        m_queue->run([this] { unload(); });
    }
    event->setAccepted(m_unloaded);
}

void frmKasse::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_layout->fit(size());
}

void frmKasse::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    FocusInput();
    // Questions about an interrupted booking come when the cashier can see the lines.
    if (!std::exchange(m_resumed, true))
        QTimer::singleShot(0, this, [this] {
            m_queue->run([this] { m_till.ResumeBooking(); });
            activateWindow(); // a box may have come while the form before was still the active one
        });
}

bool frmKasse::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) FocusInput();
    return QWidget::event(event);
}

void frmKasse::Show(till::Dialog which) {
    using till::Dialog;
    static const std::map<Dialog, void (*)(frmKasse&)> table{
        {Dialog::PreisAngabe, modal<frmKassePreisAngabe>},
        {Dialog::Rabatt, modal<frmKasseRabatt>},
        {Dialog::VolumenAngabe, modal<frmKasseVolumenAngabe>},
        {Dialog::SNAngabe, modal<frmKasseSNAngabe>},
        {Dialog::Pfand, modal<frmKassePfand>},
        {Dialog::Gutschrift, modal<frmKasseGutschrift>},
        {Dialog::LangText, modal<frmKasseLangText>},
        {Dialog::FreierPreis, modal<frmKasseFreierPreis>},
        {Dialog::FreierArtikel, modal<frmKasseFreierArtikel>},
        {Dialog::ArtikelSuche, modal<frmKasseArtikelSuche>},
        {Dialog::ArtikelLieferanten, modal<frmKasseArtikelLieferanten>},
        {Dialog::KasseTotal, modal<frmKasseTotal>},
        {Dialog::Gutschein, modal<frmKasseGutschein>},
        {Dialog::PrintDlg, modal<frmKassePrintDlg>},
        {Dialog::RechnungsVorlage, modal<frmRechnungsVorlage>},
        {Dialog::KundenSuche, modal<frmKasseKundenSuche>},
        {Dialog::KassenBuchung, modal<frmKasseEinlage>},
        {Dialog::Reklamation,
         [](frmKasse& kasse) {
             frmKasseReklamation dialog(kasse.m_till.returns().NewDialog(), &kasse);
             ShowModal(dialog);
         }},
        {Dialog::DesktopLogin,
         [](frmKasse& kasse) {
             if (kasse.m_showDesktopLogin) kasse.m_showDesktopLogin();
         }},
        {Dialog::BonHistorie,
         [](frmKasse& kasse) {
             frmKasseBonHistorie dialog(kasse.m_till.receipts(), &kasse);
             ShowModal(dialog);
         }},
        {Dialog::ArtikelInfo, modal<frmKasseArtikelInfo>},
        {Dialog::Angebote,
         [](frmKasse& kasse) {
             frmKasseAngebote dialog(kasse.m_till.documents().history(till::Papier::Angebot), &kasse);
             ShowModal(dialog);
         }},
        {Dialog::Lieferungen,
         [](frmKasse& kasse) {
             frmKasseLieferung dialog(kasse.m_till.documents().history(till::Papier::Lieferung), &kasse);
             ShowModal(dialog);
         }},
        {Dialog::RechnungFromLieferschein,
         [](frmKasse& kasse) {
             frmRechnungFromLieferschein dialog(kasse.m_till.documents().collectiveInvoice(), &kasse);
             ShowModal(dialog);
         }},
        {Dialog::KartenMenu, [](frmKasse& kasse) { kasse.m_menus->showKarte(kasse.m_ui->cmdKarte); }},
    };
    table.at(which)(*this);
}

void frmKasse::UnknownArticleSound() { SoundUnknownArticle(); }
void frmKasse::Hint(const QString& text) { ShowNotice(*this, text); }
void frmKasse::MovePointerAway() { ::MovePointerAway(); }
void frmKasse::Yield() { QCoreApplication::processEvents(); }
void frmKasse::FocusInput() { m_ui->txtInput->setFocus(Qt::OtherFocusReason); }
void frmKasse::FocusGruppe() { m_ui->cmdGruppe0->setFocus(Qt::OtherFocusReason); }
