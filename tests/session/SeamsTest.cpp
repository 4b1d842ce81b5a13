#include <session/Bilder.h>
#include <session/CSystem.h>
#include <session/Clock.h>
#include <session/Globals.h>
#include <session/Handle.h>
#include <session/Log.h>
#include <session/MsgBox.h>
#include <store/Database.h>
#include <store/Recordset.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

/// Notes every box and answers with the button that Enter would press.
class NotingHost : public DialogHost {
  public:
    NotingHost()
        : m_before(SetDialogHost(this)) {}
    ~NotingHost() override { SetDialogHost(m_before); }
    MsgAnswer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                     MsgAnswer preset) override {
        if (broken) throw std::runtime_error("no screen");
        notes << u"%1|%2|%3|%4"_s.arg(title, QString::number(static_cast<int>(icon)),
                                      QString::number(static_cast<int>(buttons)), text);
        return preset;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString& preset) override {
        return preset;
    }
    std::optional<QString> chooseFile(const FileRequest&) override { return {}; }

    QStringList notes;
    bool broken = false;

  private:
    DialogHost* m_before;
};

TEST(Seams, PicturesLieInTheFolderThatAllTillsShare) {
    const QTemporaryDir folder;
    gDBPath = folder.path() + u'/';
    EXPECT_EQ(gDBPath + u"artimg_4711.bmp"_s, BildDatei(Bild::Artikel, u"4711"_s));
    EXPECT_EQ(gDBPath + u"kundimg_7.bmp"_s, BildDatei(Bild::Kunde, u"7"_s));
    EXPECT_EQ(gDBPath + u"persimg_7.bmp"_s, BildDatei(Bild::Person, u"7"_s));
    EXPECT_TRUE(VorhandenesBild(Bild::Person, u"7"_s).isEmpty());
    QFile picture(BildDatei(Bild::Person, u"7"_s));
    EXPECT_TRUE(picture.open(QIODevice::WriteOnly));
    EXPECT_EQ(picture.fileName(), VorhandenesBild(Bild::Person, u"7"_s));
    gDBPath.clear();
}

} // namespace

TEST(Seams, HandlerGuardReportsAfterTheCleanup) {
    NotingHost host;
    QStringList order;
    const auto cleanup = [&] { order << u"cleanup after %1 boxes"_s.arg(host.notes.size()); };
    EXPECT_TRUE(Handle(
        "frmKasse", [&] { order << u"body"_s; }, cleanup));
    EXPECT_FALSE(Handle(
        "frmKasse", [] { throw RuntimeError(3061, u"Unbekannt"_s); }, cleanup));
    EXPECT_FALSE(Handle(
        "frmKasse", [] { throw RuntimeError(57, u"Gerät"_s, u"Port"_s); }, cleanup));
    EXPECT_FALSE(Handle("frmKasse", [] { throw std::runtime_error("Speicher"); }));
    EXPECT_EQ(order, (QStringList{u"body"_s, u"cleanup after 0 boxes"_s, u"cleanup after 1 boxes"_s}));
    const QString report =
        u"Unerwarteter Fehler...|1|0|Bei der Programmausführung ist im Modul %1 ein unerwarteter Fehler "
        "aufgetreten.\nSollte dieses Problem weiterhin bestehen, wenden Sie sich bitte an Ihren "
        "Fachhändler.\n\n%2"_s;
    EXPECT_EQ(host.notes, (QStringList{report.arg(u"frmKasse"_s, u"3061 - Unbekannt"_s),
                                       report.arg(u"Port"_s, u"57 - Gerät"_s),
                                       report.arg(u"frmKasse"_s, u"51 - Interner Fehler"_s)}));
}

TEST(Seams, ABoxNeedsSomebodyToAnswerButAReportNeverFails) {
    DialogHost* before = SetDialogHost(nullptr);
    EXPECT_THROW(MsgBox(u"?"_s), RuntimeError);
    EXPECT_THROW((void)AskYesNo(u"?"_s), RuntimeError);
    EXPECT_THROW((void)InputBox(u"?"_s, {}), RuntimeError);
    EXPECT_THROW((void)ChooseFile({}), RuntimeError);
    EXPECT_NO_THROW(ShowProgrammFehler(5, u"frmKasse"_s, u"x"_s));
    NotingHost host;
    host.broken = true;
    EXPECT_NO_THROW(ShowProgrammFehler(5, u"frmKasse"_s, u"x"_s));
    host.broken = false;
    EXPECT_TRUE(AskYesNo(u"Weiter?"_s));
    EXPECT_EQ(MsgBox(u"Karte"_s, MsgIcon::None, MsgButtons::OKCancel, u"T"_s, MsgAnswer::Cancel),
              MsgAnswer::Cancel);
    EXPECT_EQ(host.notes, (QStringList{u"Systemmeldung...|2|2|Weiter?"_s, u"T|0|1|Karte"_s}));
    SetDialogHost(before);
}

TEST(Seams, ClockAndMachineNameCanBeReplaced) {
    const QDateTime noon(QDate(2026, 12, 31), QTime(12, 0));
    SetClock([&] { return noon; });
    EXPECT_EQ(Now(), noon);
    EXPECT_EQ(Today(), QDate(2026, 12, 31));
    const auto db = Database::OpenDatabase(u":memory:"_s); // statements know no other one
    EXPECT_EQ(*db->OpenRecordset(u"SELECT Now() AS Jetzt"_s)->Date(u"Jetzt"), DateTime::fromQDateTime(noon));
    SetClock({});
    EXPECT_LT(std::abs(Now().secsTo(QDateTime::currentDateTime())), 5);

    qputenv("MERIVANE_MASCHINE", "KASSE1");
    EXPECT_EQ(CSystem().ComputerName(), u"KASSE1"_s);
    qputenv("MERIVANE_MASCHINE", QByteArray(60, 'k'));
    EXPECT_EQ(CSystem().ComputerName(), QString(50, u'k'));
    qunsetenv("MERIVANE_MASCHINE");
    EXPECT_FALSE(CSystem().ComputerName().isEmpty());
}

TEST(Seams, LogKeepsTheLastMegabytes) {
    const QTemporaryDir folder;
    OpenLog(folder.path() + u"/state"_s);
    qWarning("Tür klemmt");
    ShowProgrammFehler(57, u"frmKasse"_s, u"Gerät\nweg"_s);
    ShowProgrammFehler(51, u"frmKasse"_s, u"std::bad_alloc"_s);
    QFile file(LogFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.contains(u"Tür klemmt\n"_s)) << qPrintable(text);
    EXPECT_TRUE(text.contains(u"frmKasse: 57 - Gerät | weg\n"_s)) << qPrintable(text);
    EXPECT_TRUE(text.contains(u"details: std::bad_alloc\n"_s)) << qPrintable(text);

    const QString line(100 * 1024, u'x');
    for (int i = 0; i < 50; ++i)
        WriteLog(line);
    qint64 sum = 0;
    const QDir state(folder.path() + u"/state"_s);
    for (const QFileInfo& info : state.entryInfoList(QDir::Files))
        sum += info.size();
    EXPECT_EQ(state.entryList(QDir::Files).size(), 3);
    EXPECT_LT(sum, 4 * 1024 * 1024);
    CloseLog();
    EXPECT_EQ(LogFile(), u""_s);
    OpenLog(u"/proc/nowhere"_s); // not writable: left out
    EXPECT_EQ(LogFile(), u""_s);
    WriteLog(u"nobody hears this"_s);
}
