#include <session/Globals.h>
#include <ui/ScanRecogniser.h>

#include <QStringList>

#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Kind = ScanRecogniser::Kind;
using Fate = ScanRecogniser::Fate;

/// Plays keys and notes what a dialog would get: what was typed, and each scan as "<code>".
class Line {
  public:
    explicit Line(const ScanFigures& figures = {}) { scans.setFigures(figures); }

    /// `gap` milliseconds after the key before; '\r' is Enter, '^' Shift, '~' a function key.
    void key(QChar c, qint64 gap) {
        m_now += gap;
        if (scans.pause(m_now)) letGo();
        const Kind kind = c == u'\r'  ? Kind::Close
                          : c == u'^' ? Kind::Silent
                          : c == u'~' ? Kind::Other
                                      : Kind::Character;
        const auto verdict = scans.press(kind, c, m_now);
        if (verdict.before) letGo();
        switch (verdict.fate) {
        case Fate::Typed:
            arrived += c;
            break;
        case Fate::Waits:
            held += c;
            break;
        case Fate::Scan:
            held.clear();
            arrived += u'<' + scans.code() + u'>';
            break;
        case Fate::Rest:
            break;
        }
    }
    void keys(const QString& text, qint64 gap) {
        for (const QChar c : text)
            key(c, gap);
    }
    /// Everything that arrives in the end.
    QString end() {
        if (scans.pause(m_now + 1000)) letGo();
        EXPECT_EQ(u""_s, held);
        return arrived;
    }
    void window() { scans.windowChanged(m_now); }

    ScanRecogniser scans;
    QString arrived, held;

  private:
    void letGo() { arrived += std::exchange(held, {}); }
    qint64 m_now = 0;
};

QString played(const QString& text, qint64 gap, const ScanFigures& figures = {}) {
    Line line(figures);
    line.keys(text, gap);
    return line.end();
}

} // namespace

TEST(ScanRecogniser, ABurstThatIsClosedIsAScan) {
    for (const qint64 gap : {0, 1, 5, 20, 35})
        EXPECT_EQ(u"<2005000000171>"_s, played(u"2005000000171\r"_s, gap)) << gap;
    EXPECT_EQ(u"2005000000171\r"_s, played(u"2005000000171\r"_s, 36)) << "slower than any scanner";
    EXPECT_EQ(u"^<AB12C9>"_s, played(u"^A^B12^C9\r"_s, 5)) << "Shift belongs to the letters";
    EXPECT_EQ(u"12345\r"_s, played(u"12345\r"_s, 5)) << "one character short";
    EXPECT_EQ(u"1234567"_s, played(u"1234567"_s, 5)) << "nothing closes it";
    EXPECT_EQ(u"123456~\r"_s, played(u"123456~\r"_s, 5)) << "no scanner sends a function key";
    EXPECT_EQ(u"<123456><654321>"_s, played(u"123456\r654321\r"_s, 5)) << "one behind the other";

    Line late; // some scanners pause before Enter
    late.keys(u"123456"_s, 5);
    late.key(u'\r', 100);
    EXPECT_EQ(u"<123456>"_s, late.end());
    Line tooLate;
    tooLate.keys(u"123456"_s, 5);
    tooLate.key(u'\r', 106);
    EXPECT_EQ(u"123456\r"_s, tooLate.end());

    Line behind; // typed, then scanned
    behind.keys(u"5,"_s, 120);
    behind.key(u'2', 50);
    behind.keys(u"00500000\r"_s, 5);
    EXPECT_EQ(u"5,<200500000>"_s, behind.end());
}

TEST(ScanRecogniser, FiguresAreSettings) {
    EXPECT_EQ(u"<1234>"_s, played(u"1234\r"_s, 60, {4, 60, {}, {}}));
    EXPECT_EQ(u"12345678\r"_s, played(u"12345678\r"_s, 1, {0, 35, {}, {}})) << "switched off";
    gScannerZeichen = 8;
    gScannerAbstand = 50;
    gScannerPraefix = u"#2"_s;
    gScannerSuffix = u"~"_s;
    const ScanFigures figures = ScanFigures::FromSettings();
    EXPECT_EQ(8, figures.characters);
    EXPECT_EQ(50, figures.gap);
    EXPECT_EQ(QChar(2), figures.prefix);
    EXPECT_EQ(QChar(u'~'), figures.suffix);
    for (const QString& none : {u""_s, u"ab"_s, u"#"_s + u"x"_s, u"#70000"_s}) {
        gScannerPraefix = none;
        EXPECT_TRUE(ScanFigures::FromSettings().prefix.isNull()) << qPrintable(none);
    }
    ResetSession();
}

TEST(ScanRecogniser, WhatTheScannerPutsAroundACodeIsNoPartOfIt) {
    const ScanFigures around{6, 35, u'$', u'%'};
    EXPECT_EQ(u"<42>"_s, played(u"$42%"_s, 5, around)) << "the prefix makes a short code one, too";
    EXPECT_EQ(u"<42>"_s, played(u"$42\r"_s, 5, around));
    EXPECT_EQ(u"<42><43>"_s, played(u"$42%\r$43%\r"_s, 5, around)) << "Enter behind the suffix";
    EXPECT_EQ(u"<4$2>"_s, played(u"$4$2\r"_s, 5, around)) << "inside the code it is a character";
    EXPECT_EQ(u"<123456>"_s, played(u"123456%"_s, 5, around)) << "another scanner without a prefix";
    EXPECT_EQ(u"$42%\r"_s, played(u"$42%\r"_s, 60, around)) << "typed";
    EXPECT_EQ(u"10%\r"_s, played(u"10%\r"_s, 20, around));
    EXPECT_EQ(u"$\r"_s, played(u"$\r"_s, 5, around)) << "nothing between them";
}

TEST(ScanRecogniser, TheRestOfABurstThatBeganInAnotherWindow) {
    Line line;
    line.window();
    line.keys(u"171\r"_s, 5);
    EXPECT_EQ(u"<171>"_s, line.end());
    Line person;
    person.window();
    person.key(u'1', 40); // nobody reads a question that fast
    person.keys(u"71\r"_s, 5);
    EXPECT_EQ(u"171\r"_s, person.end());
    Line short_;
    short_.window();
    short_.keys(u"20\r"_s, 5);
    EXPECT_EQ(u"20\r"_s, short_.end());
}

// Times between the keys of quick typists in milliseconds, as a log of the keyboard gives them: a cashier on
// the number pad, two on the keyboard at 95 and 120 words a minute, and one who rolls over the keys with all
// fingers. Two keys come within a gap of 35 ms again and again, three now and then, never more.
const std::vector<std::vector<int>> typists{
    {132, 96, 88, 104, 31, 121, 79, 28, 142, 90, 111, 34, 29, 118, 87, 93, 35, 101, 84, 126, 77, 33, 109, 92},
    {88, 61, 102, 24, 73, 95, 57, 110, 19, 66, 81, 30,  27,
     99, 54, 70,  22, 85, 63, 91, 33,  18, 76, 59, 104, 26},
    {62, 48, 79, 15, 33, 71, 40, 22, 58, 66, 12, 31, 84, 45,
     37, 25, 17, 69, 52, 43, 9,  28, 61, 77, 20, 35, 48},
    {21, 18, 24, 95, 17, 23, 34, 88, 11, 29, 140, 26, 19, 31, 76, 14, 22, 90, 30, 33, 25, 110, 16, 27, 71}};

TEST(ScanRecogniser, NothingThatAPersonTypesIsAScan) {
    std::mt19937 chance(20261123);
    const QString signs = u"0123456789,abcdefghij"_s;
    int keys = 0;
    for (int round = 0; round < 4000; ++round) {
        const auto& gaps = typists[chance() % typists.size()];
        size_t at = chance() % gaps.size();
        Line line;
        if (round % 3 == 0) line.window(); // typed ahead of a window
        QString typed;
        const int length = 1 + int(chance() % 20);
        for (int i = 0; i <= length; ++i, ++keys) {
            const QChar c = i == length ? QChar(u'\r') : signs[qsizetype(chance() % size_t(signs.size()))];
            typed += c;
            line.key(c, gaps[at++ % gaps.size()]);
        }
        ASSERT_EQ(typed, line.end()) << "round " << round;
    }
    EXPECT_GT(keys, 30000);
}

TEST(ScanRecogniser, NothingOfAScanGetsThrough) {
    std::mt19937 chance(471147);
    for (int round = 0; round < 4000; ++round) {
        const int length = 6 + int(chance() % 43), slowest = 1 + int(chance() % 35);
        Line line;
        QString typed;
        if (round % 2 == 0) { // a person was typing before
            for (unsigned i = chance() % 4; i > 0; --i) {
                line.key(u'9', 40 + chance() % 300);
                typed += u'9';
            }
        }
        QString code;
        for (int i = 0; i < length; ++i) {
            const QChar c(ushort(0x20 + chance() % 0x5F));
            if (c == u'^' || c == u'~') {
                code += u'x';
            } else {
                code += c;
            }
            line.key(code.back(), i == 0 ? 40 + chance() % 300 : chance() % unsigned(slowest + 1));
        }
        line.key(u'\r', chance() % 36);
        ASSERT_EQ(typed + u'<' + code + u'>', line.end()) << "round " << round;
    }
}
