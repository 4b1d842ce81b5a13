#include <session/Globals.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/ListView.h>
#include <ui/RecordList.h>
#include <ui/TypedSearch.h>

#include <QLabel>
#include <QLineEdit>
#include <QThread>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// A box, a list and a line of text over the articles of a shop.
class TypedSearchTest : public testing::Test {
  protected:
    TypedSearchTest() {
        auto* layout = new QVBoxLayout(&form);
        for (QWidget* part : std::initializer_list<QWidget*>{box, list, told})
            layout->addWidget(part);
        list->setModel(&hits);
        list->takeArrowsFrom(*box);
    }
    ~TypedSearchTest() override { list->setModel(nullptr); }
    void open() {
        search = new TypedSearch(
            {u"Artikel"_s, u"Nummer"_s, {u"Nummer"_s, u"Name"_s, u"LangText"_s}, u"Name ASC"_s},
            [](const QString& typed) -> std::vector<TextCondition> {
                const QString t = sql::spoken(typed);
                return {{0, t + u'*'}, {1, u'*' + t + u'*'}, {2, u'*' + t + u'*'}};
            },
            *box, *list, hits, *told);
        showForm(form);
        box->setFocus();
    }
    bool done() {
        return waitFor([&] { return search->isDone(); });
    }
    QStringList shown() {
        QStringList numbers;
        for (int row = 0; row < hits.rowCount(); ++row)
            numbers << hits.index(row, 0).data().toString();
        return numbers;
    }
    /// What the statement itself finds.
    QStringList statement(const QString& t) {
        const QString w = sql::doubled(t);
        return shop.rows(
            u"SELECT Nummer FROM Artikel WHERE Nummer LIKE '%1*' OR Name LIKE '*%1*' OR LangText LIKE "
            "'*%1*' ORDER BY Name ASC;"_s.arg(w));
    }

    TempShop shop;
    QWidget form;
    QLineEdit* box = new QLineEdit;
    ListView* list = new ListView;
    QLabel* told = new QLabel;
    RecordList hits{{u"ID_"_s, u"Nummer"_s},
                    {{u"Nummer"_s, u"Nummer"_s, u"1234"_s}, {u"Name"_s, u"Name"_s, u"Name"_s}}};
    TypedSearch* search = nullptr;
};

TEST_F(TypedSearchTest, FindsWhatTheStatementFinds) {
    int number = 100;
    for (const QString& name :
         {u"Straße"_s, u"Strasse nach Aßlar"_s, u"Ärmel"_s, u"ÄRMEL lang"_s, u"Apfel 50%"_s, u"O'Neill"_s,
          u"[Kiste]"_s, u"Mass 5"_s, u"Maß 7"_s, u"a*b"_s, u""_s, u"Müsli\nKnusper"_s, u"𝄞 Noten"_s})
        shop.article(QString::number(number++), name, 1,
                     {{u"LangText"_s, number % 2 ? Value() : Value(u"lang "_s + name)}});
    shop.article(u"A'7"_s, u"Mit Hochkomma in der Nummer"_s, 1);
    shop.db().Execute(u"UPDATE Artikel SET Name=Null WHERE Nummer='110'"_s);
    open();
    for (const QString& text :
         {u""_s,    u"s"_s,         u"ss"_s, u"ß"_s,   u"sse"_s,     u"ASS"_s,    u"ä"_s,
          u"11"_s,  u"0"_s,         u"'"_s,  u"''"_s,  u"a'"_s,      u"*"_s,      u"?"_s,
          u"a*b"_s, u"ma[sß]"_s,    u"#"_s,  u"[[]"_s, u"[!a-z]5"_s, u"str?ss"_s, u"sli\nk"_s,
          u"𝄞"_s,   u"nichts da"_s, u"%"_s,  u"_"_s}) {
        box->setText(text);
        search->start();
        ASSERT_TRUE(done()) << text.toStdString();
        EXPECT_EQ(statement(text), shown()) << text.toStdString();
        EXPECT_EQ(hits.rowCount() == 0, told->text() == u"keine Treffer"_s) << text.toStdString();
    }
    box->setText(u"[ab"_s); // while one types a set
    ASSERT_TRUE(waitFor([&] { return told->text().startsWith(u"Die Suche ist nicht möglich"_s); }));
    EXPECT_EQ(0, hits.rowCount());
}

TEST_F(TypedSearchTest, AQuestionThatComesWhenTheTableHasJustBeenReadIsAnswered) {
    for (int i = 0; i < 40; ++i)
        shop.article(QString::number(100 + i), u"Artikel %1"_s.arg(i), 1);
    for (int round = 0; round < 150; ++round) {
        delete search;
        open();
        box->clear();
        search->start();
        // Somewhere around the end of the first reading.
        QThread::usleep(static_cast<unsigned long>(round % 50) * 100);
        box->setText(u"artikel 7"_s);
        ASSERT_TRUE(done()) << round;
        ASSERT_EQ(QStringList{u"107"_s}, shown()) << round;
        box->clear();
    }
}

TEST_F(TypedSearchTest, TheNewestTextWinsAndNothingOlderIsChosen) {
    shop.db().BeginTrans();
    for (int i = 0; i < 3000; ++i)
        shop.db().Execute(
            u"INSERT INTO Artikel (Nummer, Name) VALUES ('%1', 'Artikel %2')"_s.arg(1000 + i).arg(
                i, 4, 10, QChar(u'0')));
    shop.db().CommitTrans();
    open();
    search->start();
    EXPECT_FALSE(search->confirm()) << "Enter before the first hit";
    EXPECT_EQ(u"sucht..."_s, told->text());
    ASSERT_TRUE(done());
    EXPECT_EQ(3000, hits.rowCount());
    EXPECT_EQ(u"ID_1000"_s, list->currentKey());
    pressKey(form, Qt::Key_Down);
    EXPECT_EQ(u"ID_1001"_s, list->currentKey());
    EXPECT_TRUE(search->confirm());

    bool older = false;
    QObject::connect(search, &TypedSearch::stood, &form, [&] { older |= box->text() != u"artikel 0042"_s; });
    typeText(form, u"artikel 0042"_s);
    EXPECT_EQ(u""_s, list->currentKey()) << "the list still stands for the text before";
    EXPECT_FALSE(search->confirm());
    ASSERT_TRUE(done());
    EXPECT_FALSE(older);
    EXPECT_EQ(QStringList{u"1042"_s}, shown());
    EXPECT_EQ(u"1 Treffer"_s, told->text());
    EXPECT_TRUE(search->confirm());

    // Another till writes; the next key finds it, and a hit that is gone says so.
    const auto other = Database::OpenDatabase(shop.storePath());
    other->Execute(u"INSERT INTO Artikel (Nummer, Name) VALUES ('9', 'Artikel 00421')"_s);
    typeText(form, u"1"_s);
    ASSERT_TRUE(done());
    EXPECT_EQ(QStringList{u"9"_s}, shown());
    other->Execute(u"DELETE FROM Artikel WHERE Nummer='9'"_s);
    search->start();
    ASSERT_TRUE(done());
    EXPECT_EQ(u"keine Treffer"_s, told->text());
    box->setText(QString(300, u'x'));
    EXPECT_EQ(100, box->text().size());
    // The form may go while a search runs.
}

} // namespace
