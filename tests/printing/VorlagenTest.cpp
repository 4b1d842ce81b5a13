#include <printing/RechnungsVorlagen.h>
#include <session/Globals.h>
#include <support/ScriptedDialogs.h>
#include <support/TempShop.h>
#include <text/CodePage.h>

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class Vorlagen : public testing::Test {
  protected:
    [[nodiscard]] QByteArray bytes(const QString& name) const {
        QFile file(shop.folder() + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "missing";
    }
    QString createAs(const QString& name) {
        dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, name,
                            u"Vorlage erstellen..."_s);
        return vorlagen::Create();
    }
    void expectRefusal(const QString& text) {
        dialogs.expectMsgBox(text, MsgIcon::Critical, MsgAnswer::OK, u"Aktion nicht möglich..."_s);
    }
    TempShop shop;
    ScriptedDialogs dialogs;
};

TEST_F(Vorlagen, AreMadeWithTheUsualTextAndListed) {
    EXPECT_EQ(createAs(u" Überweisung "_s), u"Überweisung.rvl"_s);
    EXPECT_EQ(createAs(u"Abbuchung.RVL"_s), u"Abbuchung.rvl"_s);
    EXPECT_EQ(createAs(u"Zahlung bar"_s), u"Zahlung bar.rvl"_s);
    EXPECT_THAT(vorlagen::Names(),
                ElementsAre(u"Abbuchung.rvl"_s, u"Überweisung.rvl"_s, u"Zahlung bar.rvl"_s));
    EXPECT_EQ(
        bytes(u"Überweisung.rvl"_s),
        ToWindows1252(u"Bitte überweisen Sie den Betrag in Höhe von [SUMME] bis zum DateAdd[10] auf das "
                      "nachfolgende Konto:\r\n"_s));

    // Names differ by more than case, as on a share that tells no difference.
    dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, u"überweisung"_s);
    expectRefusal(u"Es konnte keine Datei mit dem Namen überweisung'.rvl' erstellt werden, da diese bereits "
                  "vorhanden ist. Benennen Sie diese um und wiederholen Sie den Vorgang."_s);
    EXPECT_EQ(vorlagen::Create(), u""_s);
}

TEST_F(Vorlagen, ImpossibleNamesAreTold) {
    EXPECT_EQ(createAs(u"  "_s), u""_s);
    EXPECT_EQ(createAs(u".rvl"_s), u""_s);
    dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, {});
    EXPECT_EQ(vorlagen::Create(), u""_s);
    for (const QString& name : {u"../fremd"_s, u"a\\b"_s, u"C:x"_s, u"was?"_s, u"*"_s, u"Ende."_s, u".."_s,
                                u"Zeile\nzwei"_s, QString(101, u'x')}) {
        dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, name);
        expectRefusal(u"Aus \""_s + name + u"...*"_s);
        EXPECT_EQ(vorlagen::Create(), u""_s) << qPrintable(name);
    }
    EXPECT_TRUE(vorlagen::Names().isEmpty());
}

TEST_F(Vorlagen, TextsComeBackAsTheyWereWritten) {
    for (const QString& text :
         {u"Grüße, 5 €\nzweite Zeile"_s, u"Łódź"_s, u"Ã¤ sieht aus wie UTF-8"_s, QString()}) {
        ASSERT_TRUE(vorlagen::Save(u"a.rvl"_s, text));
        EXPECT_EQ(vorlagen::Read(u"a.rvl"_s), text);
    }
    EXPECT_THROW((void)vorlagen::Read(u"b.rvl"_s), RuntimeError);
}

TEST_F(Vorlagen, AFolderThatCannotBeWrittenIsTold) {
    ASSERT_TRUE(vorlagen::Save(u"a.rvl"_s, u"alt"_s));
    gDBPath = shop.folder() + u"gibt-es-nicht/"_s;
    expectRefusal(u"Die Datei \""_s + QDir::toNativeSeparators(gDBPath) + u"a.rvl\" kann nicht...*"_s);
    EXPECT_FALSE(vorlagen::Save(u"a.rvl"_s, u"neu"_s));
    dialogs.expectInput(u"Geben Sie einen eindeutigen Namen für die Vorlage ein."_s, u"neu"_s);
    expectRefusal(u"Die Datei \"...*"_s);
    EXPECT_EQ(vorlagen::Create(), u""_s);
    gDBPath = shop.folder();
    EXPECT_EQ(vorlagen::Read(u"a.rvl"_s), u"alt"_s);
}

} // namespace
