#include "Fuzz.h"

#include <text/CodePage.h>
#include <text/Convert.h>
#include <text/Dates.h>
#include <text/Format.h>
#include <text/Strings.h>

#include <cmath>

namespace {

void numbers(const QString& text) {
    const Value value(text);
    const int error = fuzz::errorOf([&] { return CDbl(value); });
    fuzz::require(IsNumeric(value) == (error == 0));
    fuzz::require(error == 0 || error == 13 || error == 6);
    for (const int other :
         {fuzz::errorOf([&] { return CLng(value); }), fuzz::errorOf([&] { return CInt(value); }),
          fuzz::errorOf([&] { return CByte(value); }), fuzz::errorOf([&] { return CCur(value); }),
          fuzz::errorOf([&] { return value.toInteger(); })})
        fuzz::require(error == 13 ? other == 13 : other == 0 || other == 6);
    fuzz::require(std::isfinite(Val(text)));
    if (error != 0) return;
    const double number = CDbl(value);
    const QString plain = NumberText(number);
    fuzz::require(IsNumeric(QStringView(plain)) || std::abs(number) > 1e308);
    if (std::abs(number) < 1e300) fuzz::require(NumberText(CDbl(plain)) == plain);
    static_cast<void>(RoundHalfEven(number, 2));
    static_cast<void>(Str(value));
}

void dates(const QString& text, const QString& interval) {
    const Value value(text);
    const int error = fuzz::errorOf([&] { return CDate(value); });
    fuzz::require(error == 0 || error == 13);
    fuzz::require(IsDate(value) == (error == 0));
    if (error != 0) return;
    const DateTime date = CDate(value);
    fuzz::require(CDate(Format(date, u"yyyy-mm-dd hh:nn:ss")) == date);
    fuzz::require(CDate(Format(date, u"dd.mm.yyyy hh:nn:ss")) == date);
    fuzz::errorOf([&] { return vb::DateAdd(interval, Val(text), date); });
    fuzz::errorOf([&] { return vb::DateDiff(interval, date, DateTime{Val(interval)}); });
    fuzz::errorOf([&] { return vb::DatePart(interval, date, 0, 0); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::Lines lines(data, size);
    numbers(lines[0]);
    dates(lines[0], lines[1]);
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    fuzz::require(ToWindows1252(FromWindows1252(bytes)) == bytes);
    static_cast<void>(FromFileBytes(bytes));
    const int count = lines[1].left(4).toInt();
    fuzz::errorOf([&] { return vb::Replace(lines[0], lines[1], lines[2], 1, -1, count); });
    fuzz::errorOf([&] { return vb::Mid(lines[0], count, count); });
    fuzz::errorOf([&] { return vb::InStr(count, lines[0], lines[2]); });
    const int place = vb::InStrRev(lines[0], lines[2]);
    fuzz::require(place >= 0 && place <= lines[0].size());
    return 0;
}
