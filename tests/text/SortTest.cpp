#include "Printers.h"

#include <text/Sort.h>

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

int sign(int n) { return n < 0 ? -1 : n > 0 ? 1 : 0; }

/// Both forms must agree.
int compare(QStringView a, QStringView b) {
    const QByteArray x = a.toUtf8(), y = b.toUtf8();
    const int result = sign(CompareText(a, b));
    EXPECT_EQ(sign(CompareUtf8(x.constData(), x.size(), y.constData(), y.size())), result)
        << x.toStdString() << " : " << y.toStdString();
    return result;
}

QString randomText(std::mt19937& random) {
    constexpr char32_t letters[] = U"aAbBsSzZßẞäÄöüéÉøæÆ019 -_@€ªлЛ字\U0001F600";
    QString text;
    for (auto n = random() % 6; n > 0; --n)
        text += QString::fromUcs4(letters + random() % (std::size(letters) - 1), 1);
    return text;
}

} // namespace

TEST(Sort, OrdersAsGermansDo) {
    const QStringView order[] = {
        u"",      u" ",           u"_x",     u"-1",       u"@@1",    u"~",       u"€5",  u"0",
        u"10",    u"9",           u"a",      u"ä",        u"Äa",     u"ab",      u"æon", u"apfel",
        u"Äpfel", u"Apfelkuchen", u"Bach",   u"Muller",   u"Müller", u"Mullern", u"Mus", u"Muß",
        u"Mut",   u"Strasse",     u"Straße", u"Strassen", u"z",      u"л",       u"字"};
    for (size_t i = 0; i < std::size(order); ++i)
        for (size_t j = 0; j < std::size(order); ++j)
            EXPECT_EQ(compare(order[i], order[j]), sign(static_cast<int>(i) - static_cast<int>(j)))
                << shown(order[i]) << " : " << shown(order[j]);
}

TEST(Sort, CaseDoesNotCount) {
    for (const auto& [a, b] : {std::pair(u"MÜLLER", u"müller"), std::pair(u"²", u"2"),
                               std::pair(u"GROẞ", u"groß"), std::pair(u"Ж", u"ж"), std::pair(u"É", u"é"),
                               // Another spelling of the mark, and characters that nobody sees.
                               std::pair(u"Mu\u0308ller", u"Müller"), std::pair(u"ab\u0001", u"AB")})
        EXPECT_EQ(compare(a, b), 0) << shown(a);
}

TEST(Sort, IsAnOrder) {
    std::mt19937 random(1);
    for (int i = 0; i < 30000; ++i) {
        const QString a = randomText(random), b = randomText(random), c = randomText(random);
        const int ab = compare(a, b), bc = compare(b, c), ac = compare(a, c);
        ASSERT_EQ(compare(b, a), -ab) << shown(a) << " : " << shown(b);
        if (ab <= 0 && bc <= 0) {
            ASSERT_LE(ac, 0) << shown(a) << " : " << shown(b) << " : " << shown(c);
        }
        if (ab == 0) {
            ASSERT_EQ(ac, bc) << shown(a) << " : " << shown(b) << " : " << shown(c);
        }
    }
}

TEST(Sort, RangeOfAPrefixHoldsEveryMatch) {
    std::mt19937 random(2);
    int matches = 0;
    for (int i = 0; i < 60000; ++i) {
        QString prefix = randomText(random).left(2);
        prefix.remove(u'[');
        if (!prefix.isEmpty() && prefix.back().isHighSurrogate()) prefix.chop(1);
        // Half of the texts are made to match in another case.
        const QString text = i % 2 ? randomText(random) : prefix.toUpper() + randomText(random);
        if (!LikeText(text, prefix + u'*')) continue;
        ++matches;
        const QStringView start = SortablePrefix(prefix);
        ASSERT_GE(CompareText(text, start), 0) << shown(prefix) << " : " << shown(text);
        ASSERT_LE(CompareText(text, PrefixEnd(start)), 0) << shown(prefix) << " : " << shown(text);
    }
    EXPECT_GT(matches, 20000);
}

// The short way for plain characters must not show.
TEST(Sort, PlainCharactersAgreeWithTheLibrary) {
    const auto byLibrary = [](QStringView a, QStringView b) {
        // A mark at the end that both carry makes every comparison a full one.
        return sign(CompareText(QString(a.toString() + u'\u0301'), QString(b.toString() + u'\u0301')));
    };
    for (char16_t a = 0; a < 128; ++a)
        for (char16_t b = 0; b < 128; ++b)
            ASSERT_EQ(compare({&a, 1}, {&b, 1}), byLibrary({&a, 1}, {&b, 1})) << int(a) << ' ' << int(b);
    EXPECT_EQ(compare(u"a", u"A\u0308"), -1);
    EXPECT_EQ(compare(u"ab", u"a\u0308a"), 1);
    EXPECT_EQ(compare(u"l\u00b7z", u"lz"), compare(u"\u0140z", u"lz"));
}

TEST(Sort, PrefixStopsWhereLettersJoin) {
    EXPECT_EQ(SortablePrefix(u"Käse 5%"), u"Käse 5%");
    EXPECT_EQ(SortablePrefix(u"Straße"), u"Stra");
    EXPECT_EQ(SortablePrefix(u"Aй"), u"A");
    EXPECT_EQ(SortablePrefix(u"\U0001F600"), u"");
}

TEST(Sort, StrayBytesStandBehindAll) {
    for (const QByteArray& stray : {QByteArray("ab\xff"), QByteArray("ab\xc3"), QByteArray("ab\xed\xa0\x80"),
                                    QByteArray("ab\xc0\xa0"), QByteArray("ab\xf0\x90\x80")}) {
        EXPECT_GT(CompareUtf8(stray.constData(), stray.size(), "abz", 3), 0) << stray.toHex().toStdString();
        EXPECT_LT(CompareUtf8("ab\xe5\xad\x97", 5, stray.constData(), stray.size()), 0);
        EXPECT_EQ(CompareUtf8(stray.constData(), stray.size(), stray.constData(), stray.size()), 0);
    }
    EXPECT_EQ(CompareUtf8(nullptr, 0, nullptr, 0), 0);
    EXPECT_LT(CompareUtf8(nullptr, 0, "a", 1), 0);
}

TEST(Like, KnowsJetsPatterns) {
    const struct {
        const char16_t* text;
        const char16_t* pattern;
        bool matches;
    } rows[] = {
        {u"Apfelsaft", u"apfel*", true},
        {u"Apfelsaft", u"*SAFT", true},
        {u"Apfelsaft", u"*els*", true},
        {u"Apfelsaft", u"Apfel", false},
        {u"", u"*", true},
        {u"", u"", true},
        {u"", u"?", false},
        {u"a", u"", false},
        {u"abc", u"a?c", true},
        {u"ac", u"a?c", false},
        {u"R2D2", u"R#D#", true},
        {u"RxD2", u"R#D#", false},
        {u"aXbXc", u"a*b*c", true},
        {u"mississippi", u"m*iss*ip*i", true},
        {u"mississippi", u"m*iss*x", false},
        {u"f", u"[a-f]", true},
        {u"g", u"[a-f]", false},
        {u"F", u"[a-f]", true},
        {u"g", u"[!a-f]", true},
        {u"f", u"[!a-f]", false},
        {u"", u"[!a]", false},
        {u"ä", u"[a-z]", true},
        {u"-", u"[a-]", true},
        {u"-", u"[-a]", true},
        {u"b", u"[-a]", false},
        {u"!", u"[!]", true},
        {u"!", u"[a!]", true},
        {u"*", u"[*]", true},
        {u"x", u"[*]", false},
        {u"[x]", u"[[]x]", true},
        {u"?#", u"[?][#]", true},
        {u"5", u"[#]", false},
        {u"ab", u"a[]b", true},
        {u"a]b", u"a]b", true},
        {u"@@Preis", u"@@*", true},
        {u"ä", u"a", false},
        {u"MÜLLER", u"mü*", true},
        {u"Straße", u"strasse", true},
        {u"Strasse", u"*aß*", true},
        {u"Maß", u"mas?", false},
        {u"\U0001F600", u"?", true},
        {u"x\U0001F600y", u"x?y", true},
        {u"zeile\nzwei", u"zeile*zwei", true},
        {u"7", u"[0-35-9]", true},
        {u"4", u"[0-35-9]", false},
        {u"abc", u"*[!c]", false},
        {u"abcabd", u"*ab?", true},
        {u"a%b_c", u"a%b_c", true},
        {u"axb", u"a%b", false},
        {u"aaa", u"**a**", true},
        {u"@@", u"@@@*", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(LikeText(row.text, row.pattern), row.matches)
            << shown(row.text) << " LIKE " << shown(row.pattern);
}

TEST(Like, RefusesBrokenSets) {
    for (const char16_t* pattern : {u"[", u"a[b", u"*[!", u"x[a-", u"[z-a]", u"[a-z]["})
        EXPECT_EQ(errorOf([&] { return LikeText(u"kein Treffer", pattern); }), 93) << shown(pattern);
}

TEST(Like, ManyStarsStayFast) {
    QString pattern;
    for (int i = 0; i < 200; ++i)
        pattern += u"*a"_s;
    EXPECT_FALSE(LikeText(QString(20000, u'a') + u'b', pattern + u"*c"_s));
}
