#include <support/ScriptedForms.h>
#include <text/RuntimeError.h>
#include <ui/PictureField.h>
#include <ui/TouchKey.h>
#include <ui/Wizard.h>
#include <ui/Work.h>

#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A wizard as they all are; its pages stand without a layout, as they come from a designer.
class frmAssistent : public WizardForm {
    Q_OBJECT

  public:
    explicit frmAssistent(int panes) {
        resize(600, 400);
        for (int i = 0; i < panes; ++i) {
            auto* pane = new WizardPane(this);
            pane->setObjectName(u"wizPane%1"_s.arg(i));
            pane->setShowHeader(i > 0);
            (new QVBoxLayout(pane))->addWidget(new QLineEdit(pane));
        }
        other->setObjectName(u"wizardry"_s);
        auto* bar = new WizardCtl(this);
        bar->setObjectName(u"mainWizard"_s);
        setUpWizard();
    }
    QWidget* other = new QWidget(this);
    std::function<void()> job;
    bool mayGo = true;
    QList<int> shown;
    WizardCtl& bar() { return wizard(); }
    QString keys() {
        QString on;
        for (const auto* name : {u"cmdBack", u"cmdNext", u"cmdFinish", u"cmdCancel"})
            on += control<TouchKey>(*this, QString::fromUtf16(name)).isEnabled() ? u'1' : u'0';
        return on;
    }
    QString visible() {
        QString on;
        for (int i = 0; i < wizard().panes(); ++i)
            on += control<WizardPane>(*this, u"wizPane%1"_s.arg(i)).isVisible() ? u'1' : u'0';
        return on;
    }

  protected:
    bool mayLeave(int) override { return mayGo; }
    void entered(int pane) override { shown << pane; }
    void finish() override {
        if (job) job();
        wizard().Finished();
    }
};

TEST(WizardTest, GoesThroughItsPagesAndBackByKeyboard) {
    ScriptedForms dialogs;
    frmAssistent form(3);
    EXPECT_EQ(3, form.bar().panes());
    showForm(form);
    EXPECT_EQ(u"0101"_s, form.keys());
    EXPECT_EQ(u"100"_s, form.visible());
    form.mayGo = false;
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ(0, form.bar().paneNumber()) << "it never moves by itself";
    form.mayGo = true;
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ(u"1101"_s, form.keys());
    EXPECT_EQ(u"010"_s, form.visible());
    clickOn(form, u"cmdNext"_s);
    EXPECT_EQ(u"1011"_s, form.keys());
    clickOn(form, u"cmdBack"_s);
    EXPECT_EQ(u"1101"_s, form.keys());
    clickOn(form, u"cmdBack"_s);
    EXPECT_EQ(u"0101"_s, form.keys());
    EXPECT_TRUE(form.other->isVisible()) << "controls of another name are nobody's pages";
    QTest::keyClick(&form, Qt::Key_W, Qt::AltModifier);
    ASSERT_TRUE(waitFor([&] { return form.bar().paneNumber() == 1; }));
    pressKey(form, Qt::Key_Return);
    form.job = [&] { EXPECT_EQ(u"0000"_s, form.keys()); };
    pressKey(form, Qt::Key_Return);
    EXPECT_EQ(u"0001"_s, form.keys());
    EXPECT_EQ(u"&Schließen"_s, control<TouchKey>(form, u"cmdCancel"_s).text());
    EXPECT_EQ((QList<int>{0, 1, 2, 1, 0, 1, 2}), form.shown);
    pressKey(form, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
}

TEST(WizardTest, KeysFollowProgressAndFailure) {
    ScriptedForms dialogs;
    frmAssistent form(2);
    showForm(form);
    clickOn(form, u"cmdNext"_s);
    EXPECT_EQ(u"1011"_s, form.keys());
    form.bar().InProgress(true);
    EXPECT_EQ(u"0000"_s, form.keys());
    form.bar().InProgress(false);
    EXPECT_EQ(u"1011"_s, form.keys());
    clickOn(form, u"cmdBack"_s);
    EXPECT_EQ(u"0101"_s, form.keys()) << "the first page of two is also the one before the last";
    clickOn(form, u"cmdNext"_s);
    form.job = [] { throw RuntimeError(70, u"Zugriff verweigert"_s); };
    dialogs.expectError(70);
    clickOn(form, u"cmdFinish"_s);
    EXPECT_EQ(u"0001"_s, form.keys()) << "nothing is left but to cancel";
    pressKey(form, Qt::Key_Escape);
    EXPECT_EQ(QDialog::Rejected, form.result());

    frmAssistent single(1);
    showForm(single);
    EXPECT_EQ(u"0101"_s, single.keys());
    clickOn(single, u"cmdNext"_s);
    EXPECT_EQ(1, single.bar().paneNumber()) << "no bound is tested";
    EXPECT_EQ(nullptr, single.bar().pane());
}

TEST(WizardTest, PagesAndBarFillTheFormAndKeepClearOfTheHeader) {
    frmAssistent form(2);
    showForm(form);
    form.resize(800, 500);
    QCoreApplication::processEvents();
    auto& pane = control<WizardPane>(form, u"wizPane0"_s);
    EXPECT_EQ(800, pane.width());
    EXPECT_EQ(500, pane.height() + form.bar().height());
    clickOn(form, u"cmdNext"_s);
    auto& page = control<WizardPane>(form, u"wizPane1"_s);
    EXPECT_EQ(u"Seitentitel"_s, page.headerTitle());
    EXPECT_EQ(u"Beschreibung der Seite"_s, page.headerDescription());
    EXPECT_EQ(1, page.paneNumber());
    EXPECT_GE(page.findChild<QLineEdit*>()->y(), control<QWidget>(page, u"picHeader"_s).height());
    page.setHeaderDescription(
        u"Ein Satz, der so lang ist, dass er in diesem Fenster mehr als eine Zeile braucht. "_s.repeated(3));
    QCoreApplication::processEvents();
    EXPECT_GE(page.findChild<QLineEdit*>()->y(), control<QWidget>(page, u"picHeader"_s).height());
}

TEST(WorkTest, TellsHowLongItWillTake) {
    EXPECT_EQ(QString(), TimeLeft(10, 100, 1s));
    EXPECT_EQ(QString(), TimeLeft(0, 100, 10s));
    EXPECT_EQ(QString(), TimeLeft(10, 0, 10s));
    EXPECT_EQ(u"noch etwa 30 Sekunden"_s, TimeLeft(10, 40, 10s));
    EXPECT_EQ(u"noch etwa 3 Minuten"_s, TimeLeft(10, 200, 10s));
    EXPECT_EQ(u"noch etwa eine Minute"_s, TimeLeft(10, 80, 10s));
    EXPECT_EQ(u"noch etwa 2 Stunden"_s, TimeLeft(10, 7210, 10s));
    EXPECT_EQ(u"gleich fertig"_s, TimeLeft(99, 100, 10s));
}

TEST(WorkTest, CanBeStoppedAndLetsNothingElseBegin) {
    ScriptedForms dialogs;
    QWidget form;
    auto* column = new QVBoxLayout(&form);
    auto* bar = new WorkBar(&form);
    auto* box = new QLineEdit(&form);
    box->setObjectName(u"txtBox"_s);
    column->addWidget(bar);
    column->addWidget(box);
    showForm(form);
    const auto run = [&](const std::function<void()>& meanwhile) {
        Work work(*bar, u"Es läuft..."_s, 1'000'000);
        EXPECT_TRUE(Work::isRunning());
        EXPECT_TRUE(control<QProgressBar>(form, u"prgWork"_s).isVisible());
        QTimer::singleShot(0, &form, meanwhile);
        for (int i = 0; i < 1'000'000; ++i) {
            if (!work.advance()) return false;
            if (i % 1000 == 0) QTest::qSleep(1);
        }
        work.finish(u"Fertig."_s);
        return true;
    };
    box->setFocus();
    EXPECT_FALSE(run([&] {
        typeText(form, u"4711"_s);
        QTest::mouseClick(box, Qt::LeftButton);
        form.close();
    })) << "closing the window stops the work first";
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(QString(), box->text()) << "a scan enters nothing";
    EXPECT_EQ(u"Abgebrochen"_s, control<QLabel>(form, u"lblWork"_s).text());
    EXPECT_FALSE(run([&] { clickOn(form, u"cmdStopWork"_s); }));
    EXPECT_FALSE(run([&] { pressKey(form, Qt::Key_Escape); }));
    EXPECT_TRUE(run([] {}));
    EXPECT_FALSE(Work::isRunning());
    EXPECT_EQ(u"Fertig."_s, control<QLabel>(form, u"lblWork"_s).text());
    EXPECT_FALSE(control<QProgressBar>(form, u"prgWork"_s).isVisible());
    typeText(form, u"1"_s);
    EXPECT_EQ(u"1"_s, box->text());
}

class PictureFieldTest : public testing::Test {
  protected:
    PictureFieldTest() {
        m_field.setCaption(u"Kein Bild"_s);
        QImage(1600, 400, QImage::Format_RGB32).save(m_source);
        QFile none(m_nonsense);
        std::ignore = none.open(QIODevice::WriteOnly);
        none.write("BM und sonst nichts");
    }
    static QString refusal(const QString& file) {
        return u"Die Datei \"%1\" enthält kein Bild, das gelesen werden kann."_s.arg(file);
    }
    void choose(const QString& file) {
        m_dialogs.expectFile(u"Grafik aus Datei einfügen"_s, file);
        if (file == m_nonsense) m_dialogs.expectMsgBox(refusal(file));
        EXPECT_EQ(file != m_nonsense, m_field.choose());
    }
    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(u"persimg_1.bmp"_s), m_source = m_folder.filePath(u"quelle.png"_s),
            m_nonsense = m_folder.filePath(u"unsinn.bmp"_s);
    ScriptedForms m_dialogs;
    PictureField m_field;
};

TEST_F(PictureFieldTest, WritesReplacesAndDeletesTheFile) {
    m_field.load(m_file);
    EXPECT_EQ(u"Kein Bild"_s, m_field.text());
    m_field.store();
    EXPECT_FALSE(QFile::exists(m_file)) << "nothing was changed";
    choose(m_nonsense);
    EXPECT_FALSE(m_field.isChanged());
    choose(m_source);
    EXPECT_TRUE(m_field.isChanged());
    m_field.store();
    EXPECT_FALSE(m_field.isChanged());
    EXPECT_EQ(QSize(800, 200), QImage(m_file, "bmp").size()) << "as large as the shop keeps pictures";
    m_field.load(m_file);
    EXPECT_TRUE(m_field.hasPicture());
    m_field.clear();
    EXPECT_EQ(u"Kein Bild"_s, m_field.text());
    EXPECT_TRUE(QFile::exists(m_file)) << "as long as nobody stores it";
    m_field.store();
    EXPECT_FALSE(QFile::exists(m_file));
    choose(m_source);
    m_field.storeAs(m_folder.filePath(u"persimg_2.bmp"_s));
    EXPECT_TRUE(QFile::exists(m_folder.filePath(u"persimg_2.bmp"_s)));
    choose(m_source);
    EXPECT_THROW(m_field.storeAs(m_folder.filePath(u"gibtsnicht/x.bmp"_s)), RuntimeError);
    EXPECT_TRUE(m_field.isChanged());
}

TEST_F(PictureFieldTest, TellsABrokenFileAndTakesADroppedOne) {
    m_field.load(m_nonsense);
    EXPECT_EQ(u"Das Bild ist beschädigt"_s, m_field.text());
    EXPECT_FALSE(m_field.hasPicture());
    m_field.store();
    EXPECT_TRUE(QFile::exists(m_nonsense)) << "what nobody changed stays";
    int dropped = 0;
    QObject::connect(&m_field, &PictureField::dropped, &m_field, [&] { ++dropped; });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(m_source)});
    const auto drop = [&] {
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&m_field, &enter);
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&m_field, &event);
    };
    drop();
    EXPECT_EQ(1, dropped);
    EXPECT_TRUE(m_field.hasPicture());
    m_dialogs.expectMsgBox(refusal(m_nonsense));
    data.setUrls({QUrl::fromLocalFile(m_nonsense)});
    drop();
    EXPECT_EQ(1, dropped);
}

} // namespace

#include "WizardTest.moc"
