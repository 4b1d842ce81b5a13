#pragma once

#include <QStringView>

#include <array>

namespace german {

inline constexpr std::array<QStringView, 12> months = {u"Januar",    u"Februar", u"März",     u"April",
                                                       u"Mai",       u"Juni",    u"Juli",     u"August",
                                                       u"September", u"Oktober", u"November", u"Dezember"};
inline constexpr std::array<QStringView, 12> shortMonths = {u"Jan", u"Feb", u"Mrz", u"Apr", u"Mai", u"Jun",
                                                            u"Jul", u"Aug", u"Sep", u"Okt", u"Nov", u"Dez"};
/// From Sunday, as Visual Basic counts.
inline constexpr std::array<QStringView, 7> weekdays = {u"Sonntag",    u"Montag",  u"Dienstag", u"Mittwoch",
                                                        u"Donnerstag", u"Freitag", u"Samstag"};
inline constexpr std::array<QStringView, 7> shortWeekdays = {u"So", u"Mo", u"Di", u"Mi", u"Do", u"Fr", u"Sa"};

} // namespace german
