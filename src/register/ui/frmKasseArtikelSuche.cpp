#include "frmKasseArtikelSuche.h"

#include "ui_frmKasseArtikelSuche.h"

#include <register/ArticleSearch.h>
#include <session/Globals.h>
#include <session/gArtikel.h>
#include <session/gUser.h>
#include <store/Recordset.h>
#include <text/Format.h>
#include <ui/Theme.h>
#include <ui/TypedSearch.h>

#include <QScreen>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;
using till::ArticleSearch;

namespace {

std::vector<ListColumn> columns() {
    const auto price = [](QStringView field, const QString& format) {
        return [field, format](const Recordset& rs) { return Format(rs.Money(field), format); };
    };
    ListColumn purchase{gHeron ? u"Gebotspr."_s : u"EKPreis"_s, u"EKPreis"_s, u"999,50"_s, Qt::AlignRight,
                        price(u"EKPreis", gFormatEKPreis)};
    if (!gKassenUser.R_Artikel) purchase.text = [](const Recordset&) { return u"/"_s; };
    return {{u"Nummer"_s, u"Nummer"_s, u"2006000000017"_s},
            {u"Name"_s, u"Name"_s, u"Spaghetti Hartweizen"_s},
            purchase,
            {u"VKPreis"_s, u"VKPreis"_s, u"999,50"_s, Qt::AlignRight, price(u"VKPreis", gFormatPreis)},
            {u"IstBestand"_s, u"IstBestand"_s, u"1.000"_s, Qt::AlignRight}};
}

std::vector<TextCondition> conditions(const QString& text) {
    std::vector<TextCondition> all;
    for (auto& [column, pattern] : ArticleSearch::Patterns(text))
        all.push_back({column, pattern});
    return all;
}

} // namespace

frmKasseArtikelSuche::frmKasseArtikelSuche(QWidget* parent)
    : FormDialog(parent)
    , m_ui(std::make_unique<Ui::frmKasseArtikelSuche>())
    , m_articles(new RecordList({ArticleSearch::KeyPrefix, u"Nummer"_s}, columns(), this)) {
    m_ui->setupUi(this);
    setUpForm(m_ui->txtSuchBegriff);
    const int edge = Theme::Current().keyHeight;
    resize(std::min(edge * 22, screen()->availableGeometry().width() - edge / 4), edge * 12);
    m_ui->lvwArtikel->setModel(m_articles);
    m_ui->lvwArtikel->takeArrowsFrom(*m_ui->txtSuchBegriff);
    m_ui->txtSuchBegriff->setText(gArtikel.Name);
    m_search =
        new TypedSearch({u"Artikel"_s, u"Nummer"_s, ArticleSearch::Columns(), u"Name ASC"_s}, conditions,
                        *m_ui->txtSuchBegriff, *m_ui->lvwArtikel, *m_articles, *m_ui->lblTreffer);
    guard()([this] { fillGroups(); });
    connect(m_ui->cmdSuche, &TouchKey::clicked, m_search, &TypedSearch::start);
    connect(m_ui->lvwArtikel, &ListView::currentKeyChanged, this, &frmKasseArtikelSuche::showArticle);
    connect(m_ui->lvwArtikel, &ListView::chosen, m_ui->cmdOK, &TouchKey::click);
    if (gArtikel.WarenGruppe.isEmpty()) m_search->start();
}

frmKasseArtikelSuche::~frmKasseArtikelSuche() {
    m_ui->lvwArtikel->setModel(nullptr);
    m_ui->tvwGruppe->setModel(nullptr);
}

void frmKasseArtikelSuche::fillGroups() {
    QIcon folder;
    folder.addPixmap(style()->standardIcon(QStyle::SP_DirClosedIcon).pixmap(32), QIcon::Normal, QIcon::Off);
    folder.addPixmap(style()->standardIcon(QStyle::SP_DirOpenIcon).pixmap(32), QIcon::Normal, QIcon::On);
    auto* root = new QStandardItem(folder, u"Alle Warengruppen"_s);
    root->setData(u"ROOT"_s, RecordList::KeyRole);
    root->setSizeHint({0, ViewHabits::rowHeight(true)});
    for (const QString& group : ArticleSearch::Groups()) {
        auto* item = new QStandardItem(folder, group);
        item->setData(group, RecordList::KeyRole);
        item->setSizeHint(root->sizeHint());
        root->appendRow(item);
    }
    m_groups.appendRow(root);
    TreeView& tree = *m_ui->tvwGruppe;
    tree.setModel(&m_groups);
    tree.setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree.setRootIsDecorated(false);
    tree.setIndentation(Theme::Current().keyHeight / 4);
    tree.expandAll();
    connect(&tree, &TreeView::clicked, this, &frmKasseArtikelSuche::showGroup);
    connect(&tree, &TreeView::chosen, this, &frmKasseArtikelSuche::showGroup);
}

void frmKasseArtikelSuche::showGroup(const QModelIndex& group) {
    guard()([&] {
        const bool all = !group.parent().isValid();
        m_search->leave();
        m_articles->open(
            ArticleSearch::InGroup(all ? QString() : group.data(RecordList::KeyRole).toString()));
        m_ui->lvwArtikel->selectRow(0);
        m_ui->txtSuchBegriff->setFocus();
    });
}

void frmKasseArtikelSuche::showArticle(const QString& key) {
    if (m_search->isRunning()) return; // the next hits stand in a moment
    guard()([&] {
        const bool there = !key.isEmpty() && ArticleSearch::Select(key);
        m_ui->sspArtBild->showPicture(there ? gArtikel.Bild : QString(),
                                      there ? u"Kein Artikelbild verfügbar"_s : QString());
        m_ui->lblBestand->setText(there ? ArticleSearch::StockText() : QString());
        m_ui->lblLangText->setText(there ? gArtikel.LangText : QString());
    });
}

void frmKasseArtikelSuche::ok() {
    if (!m_search->confirm()) return;
    const QString key = m_ui->lvwArtikel->currentKey();
    if (key.isEmpty()) return;
    if (ArticleSearch::Choose(key)) return accept();
    m_search->start();
}

bool frmKasseArtikelSuche::cancelled() {
    gArtikel.Ergebnis = 0;
    return true;
}
