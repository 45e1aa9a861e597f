// What the pattern writer's conversions read off a wall clock: names, the
// day of the year, week numbers, the 12-hour clock, the instant (internal).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "services/internal/CivilDays.h"
#include "services/internal/DateNames.h"
#include "services/internal/WeekDates.h"
#include "time/ZephalText.h"

namespace zppattern {

// A month outside 1-12 counts as the nearest one, so that the counts below
// stay defined; its own number is still written as given.
inline int64_t daysOf(const ZephalCalendarFields& f) {
  const int month = f.wMonth < 1 ? 1 : f.wMonth > 12 ? 12 : f.wMonth;
  return zpcivil::daysFromCivil(f.wYear, month, f.wDay);
}

inline int yearDayOf(const ZephalCalendarFields& f) {  // 0 = 1 January
  return static_cast<int>(daysOf(f) - zpcivil::daysFromCivil(f.wYear, 1, 1));
}

inline unsigned hour12Of(const ZephalCalendarFields& f) {
  return f.wHour % 12 == 0 ? 12u : f.wHour % 12u;
}

inline zpcivil::IsoWeek isoWeekOf(const ZephalCalendarFields& f) {
  return zpcivil::isoWeekOf(f.wYear, yearDayOf(f), f.wDayOfWeek);
}

// Seconds since 1970 of the instant: the fields less the offset.
inline int64_t unixSecondsOf(const ZephalWallClock& c) {
  const ZephalCalendarFields& f = c.fields;
  return daysOf(f) * zpcivil::kSecondsPerDay + f.wHour * 3600 + f.wMinute * 60 + f.wSecond -
         c.gmtOffset;
}

// "?" where the field names no month or weekday, as glibc writes it.
inline std::string_view monthName(const ZephalCalendarFields& f, bool full) {
  if (f.wMonth < 1 || f.wMonth > 12) return "?";
  const std::string_view name = zpnames::kMonths[f.wMonth - 1];
  return full ? name : name.substr(0, zpnames::kAbbreviation);
}

inline std::string_view weekdayName(const ZephalCalendarFields& f, bool full) {
  if (f.wDayOfWeek > 6) return "?";
  const std::string_view name = zpnames::kWeekdays[f.wDayOfWeek];
  return full ? name : name.substr(0, zpnames::kAbbreviation);
}

constexpr size_t kLibcTextRoom = 64;

// What glibc's strftime writes for "%<conversion>" alone in the C locale,
// written into `text` (kLibcTextRoom bytes); its length. GNU date hands
// these conversions to strftime without their flags (DatePatternLibc.cpp).
size_t libcText(char conversion, const ZephalWallClock& c, char* text);

}  // namespace zppattern
