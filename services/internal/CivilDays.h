// Calendar arithmetic shared by the module and its date parser (internal header).
//
// Proleptic Gregorian day counts in the manner of Howard Hinnant's
// days_from_civil / civil_from_days: integer arithmetic only, no tables, no
// C library, any year an int64_t can hold without the era product
// overflowing (|year| < 2^50 or so; callers stay far inside that).
//
//   zpcivil::daysFromCivil(1970, 1, 1)  == 0
//   zpcivil::daysFromCivil(2024, 3, 7)  == 19789
//   zpcivil::weekdayFromDays(19789)     == 4   (Thursday)
#pragma once

#include <cstdint>

namespace zpcivil {

constexpr int64_t kSecondsPerDay = 86400;

// Two-digit years, as every reader of the module takes them: 00-49 are
// 2000-2049, 50-99 are 1950-1999.
constexpr int kTwoDigitYearPivot = 50;
constexpr int yearFromTwoDigits(int yy) { return yy + (yy < kTwoDigitYearPivot ? 2000 : 1900); }

// Division rounding toward minus infinity; b > 0 and a > INT64_MIN + b.
constexpr int64_t floorDiv(int64_t a, int64_t b) { return (a >= 0 ? a : a - (b - 1)) / b; }

// Without branches (& and | rather than && and ||), as daysInMonth below:
// readers check every date's day against its month, and the branches of a
// random month are mispredicted once a date or so. For a multiple of 4,
// 100 | y is 25 | y and 400 | y is then 16 | y: one division, not three.
constexpr bool isLeapYear(int64_t y) { return ((y & 3) == 0) & ((y % 25 != 0) | ((y & 15) == 0)); }

// m in [1, 12]. Outside February the lengths alternate 31/30 and the
// alternation flips at August; (m + m/8) & 1 is 1 for the 31-day months.
// February, which that makes 30, gives back 2, or 1 in a leap year.
constexpr int daysInMonth(int64_t y, int m) {
  return 30 + ((m + (m >> 3)) & 1) - (m == 2) * (2 - isLeapYear(y));
}

// Days from 1970-01-01 to y-m-d; m in [1, 12], d in [1, 31] (a day past the
// month's end just counts on into the next month).
constexpr int64_t daysFromCivil(int64_t y, int m, int d) {
  y -= m <= 2;                                                    // years start in March
  const int64_t era = (y >= 0 ? y : y - 399) / 400;               // floor(y / 400)
  const int64_t yoe = y - era * 400;                              // [0, 399]
  const int64_t mp = m > 2 ? m - 3 : m + 9;                       // [0, 11], March = 0
  const int64_t doy = (153 * mp + 2) / 5 + d - 1;                 // [0, 365]
  const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;      // [0, 146096]
  return era * 146097 + doe - 719468;  // 719468: days from 0000-03-01 to 1970-01-01
}

// daysFromCivil for the years 0 to 9999 that readers read, in 32-bit
// unsigned arithmetic: moved on by 400 years (146097 days), no year before
// it is negative, so no era needs splitting off and no division needs a
// sign. A quarter of the instructions a date-time text costs to settle.
constexpr int32_t daysFromReadDate(int y, int m, int d) {
  const uint32_t years = static_cast<uint32_t>(y) + 400 - (m <= 2);  // [399, 10399]
  const uint32_t mp = static_cast<uint32_t>(m > 2 ? m - 3 : m + 9);  // [0, 11], March = 0
  const uint32_t days = years * 365 + years / 4 - years / 100 + years / 400 + (153 * mp + 2) / 5 +
                        static_cast<uint32_t>(d) - 1;
  return static_cast<int32_t>(days) - (719468 + 146097);
}

static_assert(daysFromReadDate(0, 1, 1) == daysFromCivil(0, 1, 1) &&
                  daysFromReadDate(0, 3, 1) == daysFromCivil(0, 3, 1) &&
                  daysFromReadDate(2024, 3, 7) == 19789 &&
                  daysFromReadDate(9999, 12, 31) == daysFromCivil(9999, 12, 31),
              "the same days as daysFromCivil over the years read");

struct CivilDate {
  int64_t year;
  int month;  // [1, 12]
  int day;    // [1, 31]
};

constexpr CivilDate civilFromDays(int64_t z) {
  z += 719468;                                                    // days from 0000-03-01
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;         // floor(z / 146097)
  const int64_t doe = z - era * 146097;                           // [0, 146096]
  const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;  // [0, 399]
  const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);    // [0, 365]
  const int64_t mp = (5 * doy + 2) / 153;                         // [0, 11]
  const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);   // [1, 31]
  const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);      // [1, 12]
  return CivilDate{yoe + era * 400 + (m <= 2), m, d};
}

// 0 = Sunday .. 6; 1970-01-01 was a Thursday (4).
constexpr int weekdayFromDays(int64_t z) {
  const int64_t r = (z + 4) % 7;  // (-7, 7)
  return static_cast<int>(r < 0 ? r + 7 : r);
}

static_assert(isLeapYear(2000) && !isLeapYear(1900) && isLeapYear(-4) && !isLeapYear(-100) &&
                  isLeapYear(-400) && isLeapYear(2024) && !isLeapYear(2023),
              "the Gregorian rule, before year 0 too");
static_assert(daysFromCivil(2024, 3, 7) == 19789 && weekdayFromDays(19789) == 4,
              "2024-03-07, a Thursday, is Unix day 19789");
static_assert(civilFromDays(-719528).year == 0 && civilFromDays(-1).day == 31,
              "0000-01-01 is day -719528; 1969-12-31 is day -1");

// The span the readers store: 0000-01-01 00:00:00 to 9999-12-31 23:59:59.
constexpr int64_t kFirstReadSecond = daysFromCivil(0, 1, 1) * kSecondsPerDay;
constexpr int64_t kLastReadSecond = (daysFromCivil(9999, 12, 31) + 1) * kSecondsPerDay - 1;
static_assert(kLastReadSecond == 253402300799, "9999-12-31 23:59:59");

// A count of seconds since 1970 broken down into UTC fields, as gmtime_r
// breaks it down, for any count whose year an int64_t holds.
struct CivilTime {
  int64_t year;
  int month;    // [1, 12]
  int day;      // [1, 31]
  int hour, minute, second;
  int weekday;  // 0 = Sunday .. 6
  int yearDay;  // 0 = 1 January .. 365
};

namespace detail {

// Any count, through civilFromDays.
constexpr CivilTime breakDownAnyYear(int64_t seconds) {
  const int64_t days = floorDiv(seconds, kSecondsPerDay);
  const int daySecond = static_cast<int>(seconds - days * kSecondsPerDay);  // [0, 86399]
  const CivilDate d = civilFromDays(days);
  return CivilTime{d.year,           d.month,         d.day,
                   daySecond / 3600, daySecond / 60 % 60, daySecond % 60,
                   weekdayFromDays(days),
                   static_cast<int>(days - daysFromCivil(d.year, 1, 1))};
}

// Days from -1600-03-01, four 400-year eras before 0000-03-01, to 1970:
// counted from there no day of the years people write is negative.
constexpr int64_t kShiftDays = 719468 + 4 * 146097;
constexpr int64_t kFirstFastSecond = -kShiftDays * kSecondsPerDay;
// 4 * days + 3 must fit 32 bits: some 2.9 million years on.
constexpr int64_t kLastFastSecond = kFirstFastSecond + (int64_t{1} << 30) * kSecondsPerDay - 1;

}  // namespace detail

// In 32-bit unsigned arithmetic after Neri and Schneider ("Euclidean affine
// functions and their application to calendar algorithms", 2022), each step
// a multiply and a shift, for counts from -1600-03-01 on; civilFromDays
// beyond. Half the time of civilFromDays: a named zone's wall clock of an
// instant takes 10.6 ns instead of 16.9 ns (BM_ZoneWallClockNewYork_Ours).
constexpr CivilTime breakDown(int64_t seconds) {
  if (seconds < detail::kFirstFastSecond || seconds > detail::kLastFastSecond) {
    return detail::breakDownAnyYear(seconds);
  }
  const uint64_t shifted = static_cast<uint64_t>(seconds - detail::kFirstFastSecond);
  const uint32_t n = static_cast<uint32_t>(shifted / kSecondsPerDay);  // days from -1600-03-01
  const uint32_t daySecond = static_cast<uint32_t>(shifted % kSecondsPerDay);
  const uint32_t n1 = 4 * n + 3;
  const uint32_t century = n1 / 146097;
  const uint32_t n2 = n1 % 146097 / 4 * 4 + 3;                        // from the century's day
  const uint64_t p2 = uint64_t{2939745} * n2;
  const uint32_t yearOfCentury = static_cast<uint32_t>(p2 >> 32);      // [0, 99]
  const uint32_t dayOfYear = static_cast<uint32_t>(p2) / 2939745 / 4;  // [0, 365], 1 March = 0
  const uint32_t n3 = 2141 * dayOfYear + 197913;
  const uint32_t month = n3 >> 16;                                     // [3, 14]: January is 13
  const uint32_t january = dayOfYear >= 306;
  const int64_t year = int64_t{100} * century + yearOfCentury + january - 1600;
  return CivilTime{year,
                   static_cast<int>(january ? month - 12 : month),
                   static_cast<int>((n3 & 0xffff) / 2141 + 1),
                   static_cast<int>(daySecond / 3600),
                   static_cast<int>(daySecond / 60 % 60),
                   static_cast<int>(daySecond % 60),
                   static_cast<int>((n + 3) % 7),  // -1600-03-01 was a Wednesday
                   static_cast<int>(january ? dayOfYear - 306 : dayOfYear + 59 + isLeapYear(year))};
}

static_assert(breakDown(-1).year == 1969 && breakDown(-1).second == 59 &&
                  breakDown(-1).yearDay == 364 && breakDown(1709802303).weekday == 4 &&
                  breakDown(1709802303).yearDay == 66 && breakDown(-62167219200).year == 0 &&
                  breakDown(253402300799).yearDay == 364,
              "1969-12-31 23:59:59 closes its year; 2024-03-07 was a Thursday, day 66");

// A date-time as a parser reads it, before it is narrowed into a record.
struct DateTimeFields {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;  // 60 for a leap second, stored as read
  int millis;
};

// The day after and the day before f's date, f's day valid for its month.
// Only the year 0 and 9999 edges can leave [0, 9999]; callers check.
inline void stepDayOn(DateTimeFields& f) {
  if (f.day < daysInMonth(f.year, f.month)) {
    ++f.day;
    return;
  }
  f.day = 1;
  if (++f.month > 12) {
    f.month = 1;
    ++f.year;
  }
}

inline void stepDayBack(DateTimeFields& f) {
  if (f.day > 1) {
    --f.day;
    return;
  }
  if (--f.month < 1) {
    f.month = 12;
    --f.year;
  }
  f.day = daysInMonth(f.year, f.month);
}

// Moves f from a reading at `offsetMinutes` east of GMT to the GMT reading of
// the same instant and returns the GMT date's day count. The offset is whole
// minutes, so seconds (a leap second included) and milliseconds stay as read.
// Expects valid fields, years 0 to 9999 as read, and |offsetMinutes| < 1440,
// so at most one day carries.
inline int64_t shiftToGmt(DateTimeFields& f, int offsetMinutes) {
  int64_t days = daysFromReadDate(f.year, f.month, f.day);
  if (offsetMinutes == 0) return days;
  int mins = f.hour * 60 + f.minute - offsetMinutes;  // [-1439, 2878]
  if (mins < 0) {
    --days;
    mins += 1440;
    stepDayBack(f);
  } else if (mins >= 1440) {
    ++days;
    mins -= 1440;
    stepDayOn(f);
  }
  f.hour = mins / 60;
  f.minute = mins % 60;
  return days;
}

}  // namespace zpcivil
