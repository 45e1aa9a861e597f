// Week numbers of a date and dates of week numbers: ISO 8601 weeks (%G %g
// %V), weeks from the first Sunday (%U) and from the first Monday (%W), as
// the C library's strftime counts them (internal).
//
//   isoWeekOf(2024, 66, 4)        == {2024, 10}   (2024-03-07, a Thursday)
//   daysFromIsoWeek(2024, 10, 4)  == 19789        (the same day)
#pragma once

#include <cstdint>

#include "services/internal/CivilDays.h"

namespace zpcivil {

// Days from the Monday that starts the ISO year holding day `yday` (any
// int, counted from 1 January) of a year, the day being weekday `wday`
// (0 = Sunday .. 6): negative when that Monday comes later in the year. The
// ISO year's first week is the one holding its first Thursday.
constexpr int isoWeekDays(int yday, int wday) {
  // 371 = 53 * 7 keeps the left operand of % positive for yday >= -366.
  return yday - (yday - wday + 4 + 371) % 7 + 3;
}

struct IsoWeek {
  int64_t year;  // the ISO year, the calendar year or the one next to it
  int week;      // [1, 53]
};

// The ISO year and week of day `yday` (0 = 1 January) of `year`, a `wday`.
constexpr IsoWeek isoWeekOf(int64_t year, int yday, int wday) {
  int days = isoWeekDays(yday, wday);
  if (days < 0) {
    --year;  // the week belongs to the year before
    days = isoWeekDays(yday + 365 + isLeapYear(year), wday);
  } else {
    const int next = isoWeekDays(yday - 365 - isLeapYear(year), wday);
    if (next >= 0) {
      ++year;  // the week belongs to the year after
      days = next;
    }
  }
  return IsoWeek{year, days / 7 + 1};
}

// %U: weeks from the year's first Sunday (days before it are week 0); %W
// the same from the first Monday. [0, 53] for days of the year.
constexpr int sundayWeekOf(int yday, int wday) { return (yday - wday + 7) / 7; }
constexpr int mondayWeekOf(int yday, int wday) { return (yday - (wday + 6) % 7 + 7) / 7; }

// Unix days of the Monday of ISO week 1 of `isoYear`: the week of 4 January.
constexpr int64_t isoYearStart(int64_t isoYear) {
  const int64_t jan4 = daysFromCivil(isoYear, 1, 4);
  return jan4 - (weekdayFromDays(jan4) + 6) % 7;
}

// Unix days of weekday `wday` (0 = Sunday .. 6) of ISO week `week`.
constexpr int64_t daysFromIsoWeek(int64_t isoYear, int week, int wday) {
  return isoYearStart(isoYear) + int64_t{week - 1} * 7 + (wday + 6) % 7;
}

// Day of the year (0 = 1 January, possibly outside the year) of weekday
// `wday` in week `week` of `year`, weeks counted from the first Sunday
// (mondayFirst false, %U) or the first Monday (%W).
constexpr int64_t yearDayFromWeek(int64_t year, int week, int wday, bool mondayFirst) {
  const int jan1 = weekdayFromDays(daysFromCivil(year, 1, 1));
  const int first = mondayFirst ? (8 - jan1) % 7 : (7 - jan1) % 7;  // [0, 6]: week 1's first day
  const int offset = mondayFirst ? (wday + 6) % 7 : wday;            // [0, 6] within the week
  return first + int64_t{week - 1} * 7 + offset;
}

static_assert(isoWeekOf(2024, 66, 4).year == 2024 && isoWeekOf(2024, 66, 4).week == 10,
              "2024-03-07 is in ISO week 10");
static_assert(isoWeekOf(2021, 0, 5).year == 2020 && isoWeekOf(2021, 0, 5).week == 53,
              "2021-01-01, a Friday, closes ISO 2020's week 53");
static_assert(isoWeekOf(2024, 364, 2).year == 2025 && isoWeekOf(2024, 364, 2).week == 1,
              "2024-12-30, a Monday, opens ISO 2025");
static_assert(daysFromIsoWeek(2024, 10, 4) == 19789 && daysFromIsoWeek(2020, 53, 5) == 18628,
              "ISO weeks back to days");
static_assert(yearDayFromWeek(2024, 9, 4, false) == 66 && yearDayFromWeek(2024, 10, 4, true) == 66,
              "2024-03-07 is in %U week 09 and %W week 10");

}  // namespace zpcivil
