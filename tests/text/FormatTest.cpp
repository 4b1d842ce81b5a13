#include "Printers.h"

#include <text/Convert.h>
#include <text/Format.h>

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

Value date(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
    return DateTime::fromParts(y, m, d, h, mi, s);
}
Value money(qint64 scaled) { return Currency::fromScaled(scaled); }

struct Row {
    Value value;
    QStringView format;
    QStringView result;
};

void check(std::initializer_list<Row> rows) {
    for (const Row& row : rows)
        EXPECT_EQ(Format(row.value, row.format), row.result.toString())
            << (row.value.isNull() ? "Null" : shown(row.value.toText())) << " as " << shown(row.format);
}

} // namespace

TEST(Format, PlacesOfNumbers) {
    check({
        {3.5, u"0", u"4"},
        {2.5, u"0", u"3"},
        {-2.5, u"0", u"-3"},
        {7, u"000", u"007"},
        {1234, u"0", u"1234"},
        {0.5, u"#", u"1"},
        {0.4, u"#", u""},
        {0.4, u"#.#", u",4"},
        {6, u"0.##", u"6,"},
        {6.1, u"0.0#", u"6,1"},
        {6.125, u"0.0#", u"6,13"},
        {6, u"0.0##0", u"6,0000"},
        {12.3456, u"###0.00", u"12,35"},
        {money(123456), u"###0.00", u"12,35"},
        {money(-5), u"###0.00", u"0,00"},
        {money(50), u"###0.00", u"0,01"},
        {25, u"#0#", u"25"},
        {5, u"#0#", u"05"},
        {4711, u"0.0.0", u"4711,0.0"},
        {0.07, u".00", u",07"},
        {81, u".00", u"81,00"},
        {999.995, u"0.00", u"1000,00"},
        {true, u"0", u"-1"},
    });
}

TEST(Format, GroupsAndScales) {
    check({
        {1234567.891, u"##,##0.00", u"1.234.567,89"},
        {999, u"#,##0", u"999"},
        {1000, u"#,##0", u"1.000"},
        {7, u"0,000", u"0.007"},
        {money(12345678900), u"#,##0.00", u"1.234.567,89"},
        {money(9223372036854775807), u"#,##0.0000", u"922.337.203.685.477,5807"},
        {qint64{9223372036854775807}, u"#,##0", u"9.223.372.036.854.775.807"},
        {7654321, u"0,", u"7654"},
        {7654321, u"#,##0,", u"7.654"},
        {7654321, u"0,,.00", u"7,65"},
        {1500, u"0.0,", u"1500,0"},
        {0.256, u"0%", u"26%"},
        {-0.256, u"0.0%", u"-25,6%"},
        {money(1900), u"0 %", u"19 %"},
        {0.5, u"0%%", u"5000%%"},
    });
}

TEST(Format, ExponentsOfNumbers) {
    check({
        {12345, u"0.00E+00", u"1,23E+04"},
        {0.00012345, u"0.00E+00", u"1,23E-04"},
        {12345, u"0.0e-0", u"1,2e4"},
        {0.05, u"0.0E-000", u"5,0E-002"},
        {9.99, u"0.0E+0", u"1,0E+1"},
        {0, u"0.0E+00", u"0,0E+00"},
        {-1500, u"##0.0E+0", u"-150,0E+1"},
        {7, u"0 E", u"7 E"},
        {7, u"0E", u"7E"},
    });
}

TEST(Format, SectionsOfNumbers) {
    check({
        {5, u"0.0;(0.0);\"nichts\"", u"5,0"},
        {-5, u"0.0;(0.0);\"nichts\"", u"(5,0)"},
        {0, u"0.0;(0.0);\"nichts\"", u"nichts"},
        {Value(), u"0;-0;0;\"leer\"", u"leer"},
        {Value(), u"0.00", u""},
        {-5, u"0.0;;\"nichts\"", u"-5,0"},
        {0, u"0;-0", u"0"},
        {12.5, u";(0)", u"12,5"},
        {-7, u"\"fest\"", u"-fest"},
        {7, u"0;1;2;3;4", u"7"},
        {money(-5), u"0.00 €", u"0,00 €"},
    });
}

TEST(Format, LiteralsOfNumbers) {
    check({
        {7, u"\\#0", u"#7"},
        {7, u"\"Nr. \"000", u"Nr. 007"},
        {7, u"0 \\S\\t", u"7 St"},
        {7, u"\"offen", u"offen"},
        {7, u"0\\", u"7\\"},
        {1234567, u"(000) 00-00", u"(123) 45-67"},
        {7, u"[Red]0", u"7"},
        {7, u"[0]", u"[7]"},
        {7, u"*x0", u"7"},
        {7, u"- ", u"- "},
        {1.5, u"$0.00", u"$1,50"},
    });
}

TEST(Format, NamedNumbers) {
    check({
        {-1234.567, u"Standard", u"-1.234,57"},
        {-1234.567, u"fixed", u"-1234,57"},
        {1234.5, u"Currency", u"1.234,50 €"},
        {.1234, u"Percent", u"12,34%"},
        {12345.678, u"Scientific", u"1,23E+04"},
        {1234.5, u"General Number", u"1234,5"},
        {money(12345), u"General Number", u"1,2345"},
        {-1, u"Yes/No", u"Ja"},
        {0, u"On/Off", u"Aus"},
        {true, u"True/False", u"Wahr"},
        {u"Falsch", u"Yes/No", u"Nein"},
        {u"kein Wert", u"Fixed", u"kein Wert"},
        {u"12,345", u"Fixed", u"12,35"},
        {Value(), u"Standard", u""},
    });
}

TEST(Format, Dates) {
    const Value moment = date(2026, 3, 5, 14, 7, 9);
    check({
        {moment, u"dd.mm.yyyy", u"05.03.2026"},
        {moment, u"d.m.yy", u"5.3.26"},
        {moment, u"mm.dd.yyyy", u"03.05.2026"},
        {moment, u"mm/dd/yyyy", u"03.05.2026"},
        {moment, u"mmmm yyyy", u"März 2026"},
        {moment, u"mmm yy", u"Mrz 26"},
        {moment, u"myy", u"326"},
        {moment, u"ddd dddd", u"Do Donnerstag"},
        {moment, u"ddddd", u"05.03.2026"},
        {moment, u"dddddd", u"Donnerstag, 5. März 2026"},
        {moment, u"hh:mm", u"14:07"},
        {moment, u"hh:mm:ss", u"14:07:09"},
        {moment, u"h\"h\" m\\m", u"14h 7m"},
        {moment, u"hh mm mm", u"14 07 03"},
        {moment, u"hh:ss:mm", u"14:09:03"},
        {moment, u"nn:ss", u"07:09"},
        {moment, u"h:nn AM/PM", u"2:07 PM"},
        {moment, u"hh a/p", u"02 p"},
        {moment, u"hhAMPM", u"02"},
        {date(2026, 3, 5, 0, 30), u"h:nn am/pm", u"12:30 am"},
        {date(2026, 3, 5, 12, 30), u"h:nn am/pm", u"12:30 pm"},
        {moment, u"ttttt", u"14:07:09"},
        {moment, u"c", u"05.03.2026 14:07:09"},
        {date(2026, 3, 5), u"c", u"05.03.2026"},
        {date(1899, 12, 30, 8, 5), u"c", u"08:05:00"},
        {moment, u"w ww q y", u"5 10 1 64"},
        {moment, u"\\d\\a\\y dd", u"day 05"},
        {moment, u"dd;yyyy", u"05"},
        {moment, u"yyyy-mm-dd", u"2026-03-05"},
        {date(987, 6, 5), u"dd.mm.yyyy", u"05.06.0987"},
        {moment, u"Long Date", u"Donnerstag, 5. März 2026"},
        {moment, u"medium date", u"05-Mrz-26"},
        {moment, u"Short Date", u"05.03.2026"},
        {moment, u"Long Time", u"14:07:09"},
        {moment, u"Medium Time", u"02:07 PM"},
        {moment, u"Short Time", u"14:07"},
        {moment, u"General Date", u"05.03.2026 14:07:09"},
        {moment, u"0", u"46087"},
        {date(1899, 12, 30, 12), u"0.00", u"0,50"},
        {46086, u"dd.mm.yyyy", u"05.03.2026"},
        {u"5.3.26", u"yyyy", u"2026"},
        {u"5.3.26", u"Long Date", u"Donnerstag, 5. März 2026"},
        {u"irgendwann", u"dd.mm.yyyy", u"irgendwann"},
        {u"", u"dd.mm.yyyy", u""},
        {Value(), u"dd.mm.yyyy", u""},
        {1e10, u"dd.mm.yyyy", u"10000000000"},
    });
}

TEST(Format, WeeksFollowTheRules) {
    const Value newYear = date(2027, 1, 1); // a Friday
    EXPECT_EQ(Format(newYear, u"ww", 1, 1), u"1"_s);
    EXPECT_EQ(Format(newYear, u"ww", 2, 2), u"53"_s);
    EXPECT_EQ(Format(newYear, u"ww", 2, 3), u"52"_s);
    EXPECT_EQ(Format(newYear, u"ww", 0, 0), u"53"_s);
    EXPECT_EQ(Format(date(2024, 12, 30), u"ww", 2, 2), u"1"_s);
    EXPECT_EQ(Format(newYear, u"w", 2), u"5"_s);
    EXPECT_EQ(Format(newYear, u"w", 6), u"1"_s);
}

TEST(Format, Texts) {
    check({
        {u"Apfel", u"@@@@@@@", u"  Apfel"},
        {u"Apfel", u"!@@@@@@@", u"Apfel  "},
        {u"Apfel", u"&&&&&&&", u"Apfel"},
        {u"Apfel", u">", u"APFEL"},
        {u"Maß", u">", u"MAß"},
        {u"ÄPFEL", u"<", u"äpfel"},
        {u"Apfel", u"@@-@@", u"Ap-fel"},
        {u"Apfel", u"!@@", u"el"},
        {u"491234", u"(@@) @@@", u"(49) 1234"},
        {u"", u"@@;\"leer\"", u"leer"},
        {Value(), u"@;\"leer\"", u"leer"},
        {Value(), u"@", u""},
        {12.5, u"@@@@@@", u"  12,5"},
        {date(2026, 3, 5), u"@@", u"05.03.2026"},
        {u"x", u"\"<\"@\">\"", u"<x>"},
        {u"nur Text", u"0.00", u"nur Text"},
        {u"1.234,5", u"0.00", u"1234,50"},
    });
}

TEST(Format, WithoutFormat) {
    EXPECT_EQ(Format(1234.5), u"1234,5"_s);
    EXPECT_EQ(Format(true), u"Wahr"_s);
    EXPECT_EQ(Format(date(2026, 3, 5)), u"05.03.2026"_s);
    EXPECT_EQ(Format(Value()), QString());
    EXPECT_EQ(Format(u"wie es ist"), u"wie es ist"_s);
    EXPECT_EQ(Format(HUGE_VAL, u"0.00"), NumberText(HUGE_VAL));
}

TEST(Format, MoneyAndDoubleAgreeOnEveryCent) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 30000; ++i) {
        const qint64 scaled = static_cast<qint64>(random() % 200'000'000'000) - 100'000'000'000;
        const double number = static_cast<double>(scaled) / 10000;
        for (const QStringView format : {u"###0.00", u"#,##0.0", u"0.0000", u"0"})
            ASSERT_EQ(Format(money(scaled), format), Format(number, format)) << scaled << shown(format);
    }
}

TEST(Format, FormattedMoneyReadsBack) {
    std::mt19937_64 random(4);
    for (int i = 0; i < 30000; ++i) {
        const Currency value = Currency::fromScaled(static_cast<qint64>(random()) >> (random() % 60));
        ASSERT_EQ(CCur(Format(value, u"#,##0.0000 €")), value);
        ASSERT_EQ(CCur(Format(value)), value);
    }
}
