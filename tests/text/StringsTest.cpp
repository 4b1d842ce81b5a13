#include "Printers.h"

#include <text/Strings.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Strings, CutsPieces) {
    EXPECT_EQ(vb::Left(u"Kasse", 3), u"Kas"_s);
    EXPECT_EQ(vb::Left(u"Kasse", 99), u"Kasse"_s);
    EXPECT_EQ(vb::Right(u"Kasse", 2), u"se"_s);
    EXPECT_EQ(vb::Right(u"Kasse", 0), QString());
    EXPECT_EQ(vb::Mid(u"Kasse", 2, 3), u"ass"_s);
    EXPECT_EQ(vb::Mid(u"Kasse", 4), u"se"_s);
    EXPECT_EQ(vb::Mid(u"Kasse", 6), QString());
    EXPECT_EQ(vb::Mid(u"Kasse", 2147483647, 2147483647), QString());
    EXPECT_EQ(vb::Trim(u"  \tein Wort  "), u"\tein Wort"_s);
    EXPECT_EQ(vb::LTrim(u"   "), QString());
    EXPECT_EQ(vb::RTrim(u" x "), u" x"_s);
    EXPECT_EQ(vb::StrReverse(u"Regal"), u"lageR"_s);
    EXPECT_EQ(vb::Len(u"Maß"), 3);
}

TEST(Strings, Searches) {
    EXPECT_EQ(vb::InStr(1, u"Öl und öl", u"ÖL"), 1);
    EXPECT_EQ(vb::InStr(2, u"Öl und öl", u"ÖL"), 8);
    EXPECT_EQ(vb::InStr(1, u"Öl und öl", u"öl", 0), 8);
    EXPECT_EQ(vb::InStr(1, u"abc", u""), 1);
    EXPECT_EQ(vb::InStr(4, u"abc", u""), 0);
    EXPECT_EQ(vb::InStr(1, u"", u"a"), 0);
    EXPECT_EQ(vb::InStr(3, u"aaa", u"aa"), 0);
    EXPECT_EQ(vb::InStrRev(u"a.b.c", u"."), 4);
    EXPECT_EQ(vb::InStrRev(u"a.b.c", u".", 3), 2);
    EXPECT_EQ(vb::InStrRev(u"abAB", u"ab", -1, 0), 1);
    EXPECT_EQ(vb::InStrRev(u"abAB", u"ab"), 3);
    EXPECT_EQ(vb::InStrRev(u"abc", u"a", 9), 0);
    EXPECT_EQ(vb::InStrRev(u"abc", u""), 3);
}

TEST(Strings, Replaces) {
    EXPECT_EQ(vb::Replace(u"1,2,3", u",", u"."), u"1.2.3"_s);
    EXPECT_EQ(vb::Replace(u"1,2,3", u",", u".", 3), u"2.3"_s);
    EXPECT_EQ(vb::Replace(u"1,2,3", u",", u".", 1, 1), u"1.2,3"_s);
    EXPECT_EQ(vb::Replace(u"EI und ei", u"Ei", u"Huhn"), u"Huhn und Huhn"_s);
    EXPECT_EQ(vb::Replace(u"EI und ei", u"ei", u"Huhn", 1, -1, 0), u"EI und Huhn"_s);
    EXPECT_EQ(vb::Replace(u"aaa", u"aa", u"a"), u"aa"_s);
    EXPECT_EQ(vb::Replace(u"abc", u"", u"x"), u"abc"_s);
    EXPECT_EQ(vb::Replace(u"abc", u"b", u"", 9), QString());
}

TEST(Strings, Compares) {
    EXPECT_EQ(vb::StrComp(u"apfel", u"APFEL"), 0);
    EXPECT_EQ(vb::StrComp(u"apfel", u"APFEL", 0), 1);
    EXPECT_EQ(vb::StrComp(u"Äpfel", u"Birne", 1), -1);
    EXPECT_EQ(vb::StrComp(u"Äpfel", u"Birne", 0), 1);
    EXPECT_EQ(vb::StrComp(u"b", u"a", 2), 1);
}

TEST(Strings, ChangesCase) {
    EXPECT_EQ(vb::UCase(u"süße Äpfel"), u"SÜßE ÄPFEL"_s);
    EXPECT_EQ(vb::LCase(u"ÉCLAIR"), u"éclair"_s);
    EXPECT_EQ(vb::StrConv(u"hans-peter MÜLLER 3.klasse", 3), u"Hans-peter Müller 3.Klasse"_s);
    EXPECT_EQ(vb::StrConv(u"ab", 1), u"AB"_s);
    EXPECT_EQ(vb::StrConv(u"AB", 2), u"ab"_s);
}

TEST(Strings, CodesAndRepeats) {
    EXPECT_EQ(vb::Asc(u"€uro"), 128);
    EXPECT_EQ(vb::Asc(u"字"), '?');
    EXPECT_EQ(vb::AscW(u"€"), 0x20ac);
    EXPECT_EQ(vb::Chr(228), u"ä"_s);
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(vb::Asc(vb::Chr(code)), code);
    EXPECT_EQ(vb::ChrW(-1), QString(QChar(0xffff)));
    EXPECT_EQ(vb::Space(2), u"  "_s);
    EXPECT_EQ(vb::String(3, u"-="), u"---"_s);
    EXPECT_EQ(vb::String(2, 256 + 65), u"AA"_s);
    EXPECT_EQ(vb::Hex(255.5), u"100"_s);
    EXPECT_EQ(vb::Hex(-1), u"FFFFFFFF"_s);
    EXPECT_EQ(vb::Oct(u"64"), u"100"_s);
}

TEST(Strings, RefusesImpossibleArguments) {
    EXPECT_EQ(errorOf([] { return vb::Left(u"x", -1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Right(u"x", -1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Mid(u"x", 0); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Mid(u"x", 1, -1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::InStr(0, u"x", u"x"); }), 5);
    EXPECT_EQ(errorOf([] { return vb::InStr(1, u"x", u"x", 3); }), 5);
    EXPECT_EQ(errorOf([] { return vb::InStrRev(u"x", u"x", 0); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Replace(u"x", u"x", u"y", 0); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Replace(u"x", u"x", u"y", 1, -2); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Asc(u""); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Chr(256); }), 5);
    EXPECT_EQ(errorOf([] { return vb::String(1, u""); }), 5);
    EXPECT_EQ(errorOf([] { return vb::StrConv(u"x", 64); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Space(-1); }), 5);
    EXPECT_EQ(errorOf([] { return vb::Space(2147483647); }), 14);
    EXPECT_EQ(errorOf([] { return vb::Replace(QString(10000, u'x'), u"x", QString(10000, u'y')); }), 14);
}
