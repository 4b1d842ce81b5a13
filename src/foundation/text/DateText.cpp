#include "DateText.h"

namespace {

char16_t* put(char16_t* out, int value, int digits) {
    for (int i = digits - 1; i >= 0; --i) {
        out[i] = static_cast<char16_t>(u'0' + value % 10);
        value /= 10;
    }
    return out + digits;
}

} // namespace

QString generalDate(DateTime date) {
    const QDate day = date.date();
    if (!day.isValid()) return {};
    const QTime time = date.time();
    const bool midnight = time.msecsSinceStartOfDay() == 0;
    const bool pureTime = day == QDate(1899, 12, 30);
    char16_t buffer[24];
    char16_t* out = buffer;
    if (!pureTime) {
        out = put(out, day.day(), 2);
        *out++ = u'.';
        out = put(out, day.month(), 2);
        *out++ = u'.';
        out = put(out, day.year(), 4);
        if (!midnight) *out++ = u' ';
    }
    if (pureTime || !midnight) {
        out = put(out, time.hour(), 2);
        *out++ = u':';
        out = put(out, time.minute(), 2);
        *out++ = u':';
        out = put(out, time.second(), 2);
    }
    return QString(reinterpret_cast<const QChar*>(buffer), out - buffer);
}
