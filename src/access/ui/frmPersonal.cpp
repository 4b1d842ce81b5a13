#include "frmPersonalDetail.h"
#include "frmPersonalExport.h"
#include "ui_frmPersonal.h"

#include <access/Personal.h>
#include <access/ui/frmPersonal.h>
#include <session/Bilder.h>
#include <session/Globals.h>
#include <session/Keys.h>
#include <store/Database.h>
#include <store/SqlText.h>
#include <ui/Help.h>
#include <ui/RecordList.h>
#include <ui/RowsModel.h>
#include <ui/ShowModal.h>
#include <ui/Theme.h>

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const std::pair<const char16_t*, bool Rechte::*> rights[] = {
    {u"Artikel verwalten", &Rechte::R_Artikel},       {u"Kunden verwalten", &Rechte::R_Kunden},
    {u"Mitarbeiter verwalten", &Rechte::R_Personal},  {u"Berichte", &Rechte::R_Berichte},
    {u"Rabatt und freie Preise", &Rechte::R_Rabatt},  {u"Konfiguration", &Rechte::R_Setup},
    {u"Kasse abrechnen", &Rechte::R_KassenAbschluss}, {u"Warenrücknahme", &Rechte::R_RechnungEdit},
    {u"Programm beenden", &Rechte::R_SystemExit},
};

/// A person; crossed out who may not log in.
QIcon personIcon(bool blocked) {
    const Theme& t = Theme::Current();
    QPixmap drawn(40, 40);
    drawn.fill(Qt::transparent);
    QPainter p(&drawn);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(blocked ? t.muted : t.title);
    p.drawEllipse(13, 4, 14, 14);
    p.setClipRect(0, 20, 40, 16);
    p.drawEllipse(6, 20, 28, 30);
    if (blocked) {
        p.setClipping(false);
        p.setPen(QPen(t.warning, 4, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(6, 34, 34, 6);
    }
    return drawn;
}

} // namespace

frmPersonal::frmPersonal(QWidget* parent)
    : AreaForm(parent)
    , m_ui(std::make_unique<Ui::frmPersonal>())
    , m_list(new RecordList(
          {u"ID"_s, u"ID"_s},
          {{u"Mitarbeiter"_s, u"Name"_s, u"Mustermann-Schmidt, Alexandra"_s, Qt::AlignLeft,
            [](const Recordset& rs) { return rs.Text(u"Name") + u", "_s + rs.Text(u"Vorname"); }},
           {u"Straße"_s, u"Strasse"_s, u"Am langen Feldweg 12"_s},
           {u"PLZ"_s, u"PLZ"_s, u"00000"_s},
           {u"Ort"_s, u"Ort"_s, u"Musterhausen am See"_s}},
          this))
    , m_details(new RowsModel(
          {{{}, Qt::AlignLeft, [this](int row) { return m_facts[size_t(row)].first; }},
           {{}, Qt::AlignLeft, [this](int row) { return m_facts[size_t(row)].second; }}},
          [this] { return int(m_facts.size()); }, this))
    , m_personal(guard().open(u"Personal"_s)) {
    m_ui->setupUi(this);
    const Theme& t = Theme::Current();
    m_ui->sspBild->setCaption(u"Kein Mitarbeiterbild verfügbar"_s);
    m_ui->sspBild->setFixedHeight(t.keyHeight * 4);
    m_ui->pnlPerson->setMinimumWidth(t.keyHeight * 5);
    m_ui->splMain->setStretchFactor(0, 1);
    m_ui->splMain->setStretchFactor(1, 0);
    m_ui->splMain->setSizes({t.keyHeight * 17, t.keyHeight * 7});
    m_ui->lblHits->setMinimumWidth(t.keyHeight * 2);
    m_ui->lvwDetail->setModel(m_details);
    m_ui->lvwDetail->horizontalHeader()->hide();
    m_ui->lvwDetail->horizontalHeader()->setStretchLastSection(true);
    m_ui->lvwDetail->setFocusPolicy(Qt::NoFocus);
    m_ui->lvwDetail->setSelectionMode(QAbstractItemView::NoSelection);

    static const QIcon active = personIcon(false), blocked = personIcon(true);
    m_list->setIcon(
        [this](const Recordset& rs) { return !m_searched && rs.Flag(u"Gesperrt") ? blocked : active; });
    m_list->setMuted([this](const Recordset& rs) { return !m_searched && rs.Flag(u"Gesperrt"); });
    m_ui->lvwResult->setModel(m_list);
    m_ui->lvwResult->remember(u"frmPersonal/lvwResult"_s);
    m_ui->lvwResult->takeArrowsFrom(*m_ui->txtSearchText);
    addCommands();

    connect(m_ui->lvwResult, &ListView::currentKeyChanged, this,
            [this](const QString& key) { guard()([&] { showPerson(key); }); });
    connect(m_ui->lvwResult, &ListView::chosen, this, [this] { commands().trigger(u"FileOpen"_s); });
    connect(m_ui->txtSearchText, &QLineEdit::returnPressed, m_ui->cmdSearch, &TouchKey::click);
    connect(m_ui->cmdSearch, &TouchKey::clicked, this, [this] { guard()([this] { search(); }); });
    connect(m_ui->txtSearchText, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty() && m_searched) guard()([this] { LoadPersonal(); });
    });
    connect(m_ui->sspBild, &PictureField::dropped, this,
            [this] { guard()([this] { m_ui->sspBild->store(); }); });
    guard()([this] { LoadPersonal(); });
    m_ui->lvwResult->setFocus();
}

frmPersonal::~frmPersonal() { m_ui->lvwResult->setModel(nullptr); }

void frmPersonal::addCommands() {
    const auto any = [this] { return id() != 0; };
    commands().add(
        {u"FileNew"_s, u"Neu"_s, u"Legt einen Mitarbeiter an"_s, u"F4"_s, [this] { EditPersonal(true); }});
    commands().add({u"FileOpen"_s,
                    u"Öffnen"_s,
                    u"Ändert den ausgewählten Mitarbeiter"_s,
                    {},
                    [this] { EditPersonal(false); },
                    any,
                    nullptr,
                    u"Enter"_s});
    commands().add({u"EditDelete"_s, u"Löschen"_s, u"Löscht den ausgewählten Mitarbeiter"_s, u"Del"_s,
                    [this] { DeletePersonal(); }, any});
    commands().add({u"FileEMail"_s, u"E-Mail"_s, u"Schreibt dem ausgewählten Mitarbeiter"_s, u"Ctrl+M"_s,
                    [this] { SendEMail(); }, [this] { return !m_email.isEmpty(); }});
    commands().add({u"EditAddGrafik"_s, u"Bild einfügen"_s, u"Wählt ein Bild für den Mitarbeiter aus"_s,
                    u"Ctrl+B"_s, [this] { AddGrafik(); }, any});
    commands().add({u"EditDeleteGrafik"_s,
                    u"Bild löschen"_s,
                    u"Löscht das Bild des Mitarbeiters"_s,
                    {},
                    [this] { DeleteGrafik(); },
                    [this] { return m_ui->sspBild->hasPicture(); }});
    commands().add({u"FileExport"_s, u"Exportieren"_s, u"Schreibt alle Mitarbeiter in eine Datei"_s,
                    u"Ctrl+E"_s, [this] { exportPersonal(); }});
    commands().add({u"EditRefresh"_s, u"Aktualisieren"_s, u"Liest alle Mitarbeiter neu"_s, u"F5"_s,
                    [this] { LoadPersonal(); }});
    commands().add({u"EditGoTo"_s, u"In der Liste zeigen"_s,
                    u"Zeigt den Treffer zwischen allen Mitarbeitern"_s, u"Ctrl+G"_s, [this] { goTo(); },
                    [this, any] { return m_searched && any(); }});
    commands().add({u"EditSearch"_s, u"Suchen"_s, u"Springt in das Suchfeld"_s, u"F3"_s,
                    [this] { m_ui->txtSearchText->setFocus(); }});
    commands().add({u"FileExit"_s,
                    u"Schließen"_s,
                    u"Schließt die Mitarbeiter"_s,
                    {},
                    [this] { close(); },
                    {},
                    nullptr,
                    u"Esc"_s});
    commands().popUp(*m_ui->lvwResult, u"popResult"_s,
                     {u"FileOpen"_s, u"FileNew"_s, {}, u"EditGoTo"_s, {}, u"EditDelete"_s});
    commands().popUp(*m_ui->lvwDetail, u"popKontakt"_s, {u"FileOpen"_s, u"FileEMail"_s});
    commands().popUp(*m_ui->sspBild, u"popGrafik"_s, {u"EditAddGrafik"_s, u"EditDeleteGrafik"_s});
    setUpArea(
        {{u"&Datei"_s, {u"FileNew"_s, u"FileOpen"_s, {}, u"FileEMail"_s, u"FileExport"_s, {}, u"FileExit"_s}},
         {u"&Bearbeiten"_s,
          {u"EditDelete"_s,
           {},
           u"EditAddGrafik"_s,
           u"EditDeleteGrafik"_s,
           {},
           u"EditSearch"_s,
           u"EditGoTo"_s,
           u"EditRefresh"_s}}},
        {u"FileNew"_s,
         u"FileOpen"_s,
         u"EditDelete"_s,
         {},
         u"FileEMail"_s,
         u"EditAddGrafik"_s,
         {},
         u"FileExport"_s,
         u"EditRefresh"_s,
         {},
         u"FileExit"_s});
}

int frmPersonal::id() const {
    const QString key = m_ui->lvwResult->currentKey();
    return key.isEmpty() ? 0 : GetKeyID(key, 2);
}

void frmPersonal::LoadPersonal() {
    const PersonalQuery all = AllPersonal();
    m_searched = false;
    m_list->open(all.select, all.order);
    m_ui->txtSearchText->clear();
    showHits();
}

void frmPersonal::search() {
    const QString text = m_ui->txtSearchText->text();
    if (text.trimmed().isEmpty()) return LoadPersonal();
    const PersonalQuery hits = SearchPersonal(text);
    QScopedValueRollback searched(m_searched, true);
    m_list->open(hits.select, hits.order);
    searched.commit();
    showHits();
    commands().update();
}

void frmPersonal::showHits() {
    m_list->readAll();
    const int count = m_list->rowCount();
    m_ui->pnlResult->setTitle(m_searched ? u"Mitarbeiter – Suche"_s : u"Mitarbeiter"_s);
    m_ui->lblHits->setText(m_searched ? (count == 1 ? u"1 Treffer"_s : u"%1 Treffer"_s.arg(count))
                                      : u"%1 Mitarbeiter"_s.arg(count));
    if (count == 0) showPerson({});
}

void frmPersonal::goTo() {
    const QString key = m_ui->lvwResult->currentKey();
    LoadPersonal();
    m_ui->lvwResult->selectKey(key);
    m_ui->lvwResult->setFocus();
}

void frmPersonal::showPerson(const QString& key) {
    m_facts.clear();
    m_email.clear();
    PersonalRecord person;
    if (!key.isEmpty()) {
        const auto rs =
            gDB->OpenRecordset(u"SELECT * FROM Personal WHERE ID="_s + sql::number(GetKeyID(key, 2)) + u';');
        if (!rs->Eof()) load(*rs, PersonalFields(), person);
    }
    const auto fact = [this](const char16_t* name, const QString& value) {
        if (!value.isEmpty()) m_facts.emplace_back(QString::fromUtf16(name), value);
    };
    fact(u"Straße", person.Strasse);
    fact(u"Ort", (person.PLZ + u' ' + person.Ort).trimmed());
    fact(u"Telefon", person.Telefon);
    fact(u"Mobil", person.Mobil);
    fact(u"E-Mail", person.EMail);
    const char16_t* title = u"Rechte";
    for (const auto& [name, right] : rights) {
        if (!(person.*right)) continue;
        m_facts.emplace_back(QString::fromUtf16(title), QString::fromUtf16(name));
        title = u"";
    }
    if (person.ID != 0 && *title != 0) m_facts.emplace_back(u"Rechte"_s, u"keine"_s);
    m_details->refresh();
    m_ui->lvwDetail->setColumnWidth(0, QFontMetrics(Theme::Current().font()).horizontalAdvance(u"Telefon"_s) +
                                           34);
    m_email = person.EMail.trimmed();
    m_ui->lblName->setText((person.Vorname + u' ' + person.Name).trimmed());
    m_ui->lblState->setText(u"Gesperrt: darf sich nicht anmelden"_s);
    m_ui->lblState->setVisible(person.Gesperrt);
    m_ui->sspBild->load(person.ID == 0 ? QString() : BildDatei(Bild::Person, QString::number(person.ID)));
    commands().update();
}

void frmPersonal::EditPersonal(bool IsNew) {
    PersonalRecord person;
    if (!IsNew && !FindPersonal(m_personal, id(), person)) return LoadPersonal();
    frmPersonalDetail dialog(person, this);
    if (ShowModal(dialog) != QDialog::Accepted) return;
    const int written = WritePersonal(m_personal, person);
    if (written == 0) return LoadPersonal();
    dialog.picture().storeAs(BildDatei(Bild::Person, QString::number(written)));
    const QString key = u"ID"_s + QString::number(written);
    // A new person belongs to all, and has a place in their order.
    if (IsNew) LoadPersonal();
    m_list->refresh(key);
    m_ui->lvwResult->selectKey(key);
    tell(u"%1 %2 ist gespeichert."_s.arg(person.Vorname, person.Name));
}

void frmPersonal::DeletePersonal() {
    const QString name = m_ui->lblName->text();
    if (!::DeletePersonal(id())) return;
    LoadPersonal();
    tell(u"%1 ist gelöscht."_s.arg(name));
}

void frmPersonal::AddGrafik() {
    if (m_ui->sspBild->choose()) m_ui->sspBild->store();
}

void frmPersonal::DeleteGrafik() {
    if (!AskYesNo(u"Möchten Sie das Mitarbeiterbild wirklich löschen?"_s, u"Löschen..."_s)) return;
    m_ui->sspBild->clear();
    m_ui->sspBild->store();
}

void frmPersonal::SendEMail() {
    QUrl address;
    address.setScheme(u"mailto"_s);
    address.setPath(m_email);
    OpenWithSystem(address);
}

void frmPersonal::exportPersonal() {
    frmPersonalExport wizard(this);
    ShowModal(wizard);
}

void frmPersonal::keyPressEvent(QKeyEvent* event) {
    // The first Esc takes the search back.
    if (event->key() == Qt::Key_Escape && (m_searched || !m_ui->txtSearchText->text().isEmpty())) {
        guard()([this] { LoadPersonal(); });
        m_ui->lvwResult->setFocus();
        return;
    }
    AreaForm::keyPressEvent(event);
}
