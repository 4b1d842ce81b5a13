#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <support/ScriptedForms.h>
#include <support/TempShop.h>
#include <ui/ListView.h>
#include <ui/RecordList.h>
#include <ui/UserSettings.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Watches whether a list keeps the rules of models.
struct Tester : QAbstractItemModelTester {
    explicit Tester(RecordList& list)
        : QAbstractItemModelTester(&list, FailureReportingMode::Fatal) {
        setUseFetchMore(false); // it would fetch in the middle of a reset
    }
};

class RecordListTest : public testing::Test {
  protected:
    /// People "Name0001" to "Name<count>", whose towns run the other way round.
    void people(int count) {
        gDB->BeginTrans();
        for (int i = 1; i <= count; ++i) {
            gDB->Execute(
                u"INSERT INTO Personal (Name, Vorname, Ort, Gesperrt) VALUES ('Name%1', 'V', 'Ort%2', %3)"_s
                    .arg(i, 4, 10, QChar(u'0'))
                    .arg(count - i, 4, 10, QChar(u'0'))
                    .arg(i % 10 == 0 ? -1 : 0));
        }
        gDB->CommitTrans();
    }
    static std::vector<ListColumn> columns() {
        return {{u"Name"_s, u"Name"_s, u"Mustermann"_s},
                {u"Ort"_s, u"Ort"_s, u"Ort"_s, Qt::AlignRight,
                 [](const Recordset& rs) { return u"in "_s + rs.Text(u"Ort"); }}};
    }
    static void open(RecordList& list) {
        list.open(u"SELECT ID, Name, Ort, Gesperrt FROM Personal"_s, u"Name ASC"_s);
    }
    static QString cell(const RecordList& list, int row, int column = 0) {
        return list.index(row, column).data().toString();
    }

    TempShop m_shop;
    ScriptedForms m_dialogs;
};

TEST_F(RecordListTest, ReadsAsFarAsOneLooksAndTheRestWhenNothingElseIsToDo) {
    people(1000);
    RecordList list({u"ID"_s, u"ID"_s}, columns());
    Tester tester(list);
    open(list);
    EXPECT_FALSE(list.isComplete());
    EXPECT_LT(list.rowCount(), 1000);
    EXPECT_EQ(u"Name0001"_s, cell(list, 0));
    EXPECT_EQ(u"in Ort0999"_s, cell(list, 0, 1));
    EXPECT_EQ(u"ID1"_s, list.key(0));
    EXPECT_EQ(u"Ort0999"_s, list.record(0).Text(u"Ort"));
    EXPECT_TRUE(list.canFetchMore({}));
    list.fetchMore({});
    EXPECT_EQ(u"Name0900"_s, cell(list, 899));
    ASSERT_TRUE(waitFor([&] { return list.isComplete(); }));
    EXPECT_EQ(1000, list.rowCount());
    EXPECT_EQ(u"Name1000"_s, cell(list, 999));
    EXPECT_FALSE(list.canFetchMore({}));
    EXPECT_EQ(QString(), list.key(1000));
    EXPECT_EQ(QString(), list.key(-1));
}

TEST_F(RecordListTest, FindsARowByItsKeyBeforeAndAfterItWasRead) {
    people(1000);
    RecordList list({u"ID"_s, u"ID"_s}, columns());
    Tester tester(list);
    open(list);
    EXPECT_EQ(899, list.rowOf(u"ID900"_s)) << "not read yet";
    EXPECT_GE(list.rowCount(), 900);
    EXPECT_EQ(u"Name0900"_s, cell(list, 899));
    EXPECT_EQ(0, list.rowOf(u"ID1"_s));
    for (const QString& none : {u"ID0"_s, u"ID1001"_s, u"ID"_s, u"5"_s, u"SUMME"_s, QString()})
        EXPECT_EQ(-1, list.rowOf(none)) << none.toStdString();
    list.sort(1, Qt::AscendingOrder);
    EXPECT_EQ(u"Name1000"_s, cell(list, 0)) << "sorted by the store";
    EXPECT_EQ(999, list.rowOf(u"ID1"_s));
    list.sort(-1);
    EXPECT_EQ(u"Name0001"_s, cell(list, 0));

    RecordList byName({{}, u"Name"_s}, columns());
    gDB->Execute(u"INSERT INTO Personal (Name) VALUES ('O''Hara')"_s);
    byName.open(u"SELECT ID, Name, Ort FROM Personal"_s, u"Name ASC"_s);
    EXPECT_EQ(1000, byName.rowOf(u"O'Hara"_s)) << "a key is a value, whatever stands in it";
}

TEST_F(RecordListTest, ShowsWhatWasChangedAddedAndDeleted) {
    people(20);
    RecordList list({u"ID"_s, u"ID"_s}, columns());
    Tester tester(list);
    open(list);
    EXPECT_EQ(u"in Ort0015"_s, cell(list, 4, 1));
    gDB->Execute(u"UPDATE Personal SET Ort='Neustadt' WHERE ID=5"_s);
    EXPECT_EQ(u"in Ort0015"_s, cell(list, 4, 1)) << "a list does not change under the eyes";
    EXPECT_TRUE(list.refresh(u"ID5"_s));
    EXPECT_EQ(u"in Neustadt"_s, cell(list, 4, 1));

    m_shop.person(u"A"_s, u"Aaron"_s, u"1"_s);
    EXPECT_TRUE(list.refresh(u"ID21"_s));
    EXPECT_EQ(u"Aaron"_s, cell(list, 20)) << "behind the last, until the list is read again";
    list.reload();
    EXPECT_EQ(u"Aaron"_s, cell(list, 0));

    gDB->Execute(u"DELETE FROM Personal WHERE ID=21"_s);
    EXPECT_FALSE(list.refresh(u"ID21"_s));
    RecordList fresh({u"ID"_s, u"ID"_s}, columns());
    open(fresh);
    gDB->Execute(u"DELETE FROM Personal WHERE ID=2"_s);
    EXPECT_EQ(u"(gelöscht)"_s, cell(fresh, 1)) << "gone before it was painted";
    EXPECT_EQ(u"Name0003"_s, cell(fresh, 2));
}

TEST_F(RecordListTest, RowsBesideTheRecordsHaveKeysOfTheirOwn) {
    people(3);
    RecordList list({u"ID"_s, u"ID"_s}, columns());
    Tester tester(list);
    list.setLeading({{u"ID0"_s, {u"Standardkunde"_s, u"-"_s}}});
    list.setClosing({{u"SUMME"_s, {u"3"_s}}});
    EXPECT_EQ(0, list.rowCount());
    open(list);
    ASSERT_EQ(5, list.rowCount());
    EXPECT_EQ(u"Standardkunde"_s, cell(list, 0));
    EXPECT_EQ(u"Name0001"_s, cell(list, 1));
    EXPECT_EQ(u"3"_s, cell(list, 4));
    EXPECT_EQ(QString(), cell(list, 4, 1));
    EXPECT_EQ(0, list.rowOf(u"ID0"_s));
    EXPECT_EQ(2, list.rowOf(u"ID2"_s));
    EXPECT_EQ(4, list.rowOf(u"SUMME"_s));
    EXPECT_THROW(std::ignore = list.record(0), RuntimeError);
    EXPECT_THROW(std::ignore = list.record(4), RuntimeError);
    list.clear();
    EXPECT_EQ(0, list.rowCount());
    EXPECT_EQ(-1, list.rowOf(u"ID2"_s));
}

TEST_F(RecordListTest, ACheckBoxWritesAndAFailureIsReportedOnce) {
    people(3);
    RecordList list({u"ID"_s, u"ID"_s}, columns());
    list.setCheck([](const Recordset& rs) { return rs.Flag(u"Gesperrt"); },
                  [](const QString& key, bool on) {
                      gDB->Execute(
                          u"UPDATE Personal SET Gesperrt=%1 WHERE ID=%2"_s.arg(on ? -1 : 0).arg(key.mid(2)));
                  });
    open(list);
    const QModelIndex second = list.index(1, 0);
    EXPECT_EQ(Qt::Unchecked, second.data(Qt::CheckStateRole).toInt());
    EXPECT_TRUE(list.setData(second, Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(Qt::Checked, second.data(Qt::CheckStateRole).toInt());
    EXPECT_TRUE(m_shop.value(u"SELECT Gesperrt FROM Personal WHERE ID=2"_s).toBool());
    EXPECT_FALSE(list.index(1, 1).data(Qt::CheckStateRole).isValid());

    EXPECT_THROW(list.open(u"SELECT Gibtsnicht FROM Personal"_s), RuntimeError);
    EXPECT_EQ(u"Name0001"_s, cell(list, 0)) << "what cannot be opened leaves the list as it was";
    list.reload();
    gDB->Close();
    EXPECT_EQ(QString(), cell(list, 0)) << "painting asks nobody";
    EXPECT_EQ(QString(), cell(list, 1));
    m_dialogs.expectError(3420);
    ASSERT_TRUE(waitFor([&] { return m_dialogs.done(); }));
}

class FileRecordListTest : public RecordListTest {};

TEST_F(FileRecordListTest, AHundredThousandRowsStandAtOnce) {
    gDB->Execute(u"CREATE TABLE Ziffern (N LONG)"_s);
    for (int n = 0; n < 10; ++n)
        gDB->Execute(u"INSERT INTO Ziffern (N) VALUES (%1)"_s.arg(n));
    gDB->Execute(
        u"INSERT INTO Personal (Name) SELECT 'N' & (100000 + a.N + 10 * b.N + 100 * c.N + 1000 * d.N + 10000 * e.N) "
        "FROM Ziffern AS a, Ziffern AS b, Ziffern AS c, Ziffern AS d, Ziffern AS e"_s);
    RecordList list({{}, u"Name"_s}, columns());
    open(list);
    EXPECT_LT(list.rowCount(), 1000) << "no more than one looks at";
    EXPECT_EQ(99'999, list.rowOf(u"N199999"_s));
    EXPECT_EQ(u"N199999"_s, list.key(99'999));
    EXPECT_EQ(u"N150000"_s, cell(list, 50'000));
    list.readAll();
    EXPECT_EQ(100'000, list.rowCount());
    list.sort(0, Qt::DescendingOrder);
    EXPECT_LT(list.rowCount(), 1000);
    EXPECT_EQ(u"N199999"_s, cell(list, 0));
    EXPECT_EQ(99'999, list.rowOf(u"N100000"_s));
}

class ListViewTest : public RecordListTest {
  protected:
    void SetUp() override {
        SetUserSettingsFile(m_settings.filePath(u"fenster.ini"_s));
        people(300);
        m_list = std::make_unique<RecordList>(RecordList::Key{u"ID"_s, u"ID"_s}, columns());
        open(*m_list);
    }
    void TearDown() override { SetUserSettingsFile({}); }
    QTemporaryDir m_settings;
    std::unique_ptr<RecordList> m_list;
};

TEST_F(ListViewTest, KeepsTheSelectedRecordWhenTheListIsReadAgain) {
    ListView view;
    view.setModel(m_list.get());
    view.resize(400, 300);
    showForm(view);
    EXPECT_EQ(u"ID1"_s, view.currentKey());
    QStringList announced;
    QObject::connect(&view, &ListView::currentKeyChanged, &view,
                     [&](const QString& key) { announced << key; });
    ASSERT_TRUE(view.selectKey(u"ID250"_s));
    EXPECT_FALSE(view.selectKey(u"ID999"_s));
    EXPECT_EQ(u"ID250"_s, view.currentKey());
    EXPECT_TRUE(view.viewport()->rect().intersects(view.visualRect(view.currentIndex())));
    m_list->reload();
    EXPECT_EQ(u"ID250"_s, view.currentKey());
    EXPECT_TRUE(view.viewport()->rect().intersects(view.visualRect(view.currentIndex())));
    gDB->Execute(u"DELETE FROM Personal WHERE ID=250"_s);
    m_list->reload();
    EXPECT_EQ(u"ID251"_s, view.currentKey()) << "the one that stands in its place now";
    gDB->Execute(u"DELETE FROM Personal"_s);
    m_list->reload();
    EXPECT_EQ(QString(), view.currentKey());
    EXPECT_EQ((QStringList{u"ID250"_s, u"ID250"_s, u"ID251"_s, QString()}), announced);
}

TEST_F(ListViewTest, IsWorkedByKeysAndRemembersItsColumns) {
    auto window = std::make_unique<QWidget>();
    auto* view = new ListView(window.get());
    auto* box = new QLineEdit(window.get());
    box->move(0, 320);
    view->setGeometry(0, 0, 500, 300);
    view->setModel(m_list.get());
    view->takeArrowsFrom(*box);
    view->remember(u"Test/lvwResult"_s);
    showForm(*window);
    box->setFocus();
    pressKey(*window, Qt::Key_Down);
    pressKey(*window, Qt::Key_Down);
    EXPECT_EQ(u"ID3"_s, view->currentKey());
    QString chosen;
    QObject::connect(view, &ListView::chosen, view, [&](const QString& key) { chosen = key; });
    pressKey(*window, Qt::Key_Return);
    EXPECT_EQ(QString(), chosen) << "Enter belongs to the box";
    view->setFocus();
    pressKey(*window, Qt::Key_Return);
    EXPECT_EQ(u"ID3"_s, chosen);
    view->selectRow(0);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(m_list->index(4, 0)).center());
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(m_list->index(4, 0)).center());
    EXPECT_EQ(u"ID5"_s, chosen);

    QTest::mouseClick(view->horizontalHeader()->viewport(), Qt::LeftButton, {},
                      {view->horizontalHeader()->sectionPosition(1) + 20, 8});
    EXPECT_EQ(u"in Ort0000"_s, cell(*m_list, 0, 1));
    EXPECT_EQ(u"ID5"_s, view->currentKey()) << "sorting keeps the selected record";
    view->setColumnWidth(0, 177);
    window->hide();
    window.reset();

    RecordList again({u"ID"_s, u"ID"_s}, columns());
    open(again);
    ListView next;
    next.setModel(&again);
    next.remember(u"Test/lvwResult"_s);
    EXPECT_EQ(177, next.columnWidth(0));
    EXPECT_EQ(u"in Ort0000"_s, cell(again, 0, 1)) << "sorted as it was left";
    RecordList other({u"ID"_s, u"ID"_s}, {{u"Name"_s, u"Name"_s, u"Mustermann"_s}});
    open(other);
    ListView third;
    third.setModel(&other);
    third.remember(u"Test/lvwResult"_s);
    EXPECT_NE(177, third.columnWidth(0)) << "other columns begin anew";
}

} // namespace
