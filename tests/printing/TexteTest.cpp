#include <printing/Texte.h>
#include <session/Globals.h>
#include <text/RuntimeError.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Texte, MacrosOfAClosingText) {
    gWaehrungsSymbol = u"€"_s;
    const QDate day(2026, 3, 15);
    const Currency amount = Currency::fromDouble(1234.5);
    const std::pair<QString, QString> cases[] = {
        {u"Zahlen Sie [SUMME] bis DateAdd[10]!"_s, u"Zahlen Sie 1234,50 € bis 25.03.2026!"_s},
        {u"dateadd[10] und DATEADD[10]"_s, u"25.03.2026 und 25.03.2026"_s},
        {u"DateAdd[10] und DateAdd[20]"_s, u"25.03.2026 und DateAdd[20]"_s},
        {u"DateAdd[zehn] und DateAdd[20]"_s, u"DateAdd[zehn] und DateAdd[20]"_s},
        {u"DateAdd[] DateAdd[10"_s, u"DateAdd[] DateAdd[10"_s},
        {u"DateAdd[-15]"_s, u"28.02.2026"_s},
        {u"DateAdd[ 2,5 ]"_s, u"17.03.2026"_s},
        {u"[Summe] [SUMME] [SUMME]"_s, u"[Summe] 1234,50 € 1234,50 €"_s},
        {u""_s, u""_s},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(ExpandTextMakros(text, day, amount), expected) << qPrintable(text);
    gWaehrungsSymbol.clear();
    EXPECT_EQ(ExpandTextMakros(u"[SUMME]."_s, day, -amount), u"-1234,50 ."_s);
    EXPECT_THROW((void)ExpandTextMakros(u"DateAdd[99999999999]"_s, day, amount), RuntimeError);
    EXPECT_THROW((void)ExpandTextMakros(u"DateAdd[99999999]"_s, day, amount), RuntimeError);
}

TEST(Texte, FootTextsFromFiles) {
    const QTemporaryDir folder;
    gDBPath = folder.path() + QDir::separator();
    const auto put = [&](const QByteArray& content) {
        QFile file(gDBPath + u"Fuss.txt"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    const QDate day(2026, 12, 30);
    EXPECT_EQ(GetFussZeile(u"Fuss.txt"_s, day), u""_s);
    EXPECT_EQ(GetFussZeile(u""_s, day), u""_s);
    put("Gr\xFC\xDF"
        "e\r\nbis DateAdd[3]\r\n[SUMME]");
    EXPECT_EQ(GetFussZeile(u"Fuss.txt"_s, day), u"Grüße\r\nbis 02.01.2027\r\n[SUMME]"_s);
    put("Gr\xC3\xBC\xC3\x9F"
        "e");
    EXPECT_EQ(GetFussZeile(u"Fuss.txt"_s, day), u"Grüße"_s);
    gDBPath.clear();
}
