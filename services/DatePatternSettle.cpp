// The pattern reader's last step: the fields read become one date, one time
// of day and one zone, or a refusal that names the field at fault.
//
//   the date     %Y (or %C and %y, or %y: 00-49 are 20xx) with, in this order
//                of preference: month and day (day 1 without one); the day of
//                the year; a %U or %W week and a weekday; nothing more: 1
//                January. Or an ISO week (%G, or %g: 00-49 are 20xx) and a
//                weekday, where no month or day of the year is read. No year:
//                refused.
//   checks       every other date field read must say what the date says:
//                the weekday, %j, the weeks, the ISO year, the quarter
//   the time     %H, or %I with %p (a 12-hour hour alone is refused); %M, %S
//                and the fraction; midnight where the layout names none
//   the zone     %z; else %Z (a name with several offsets refused); none:
//                the fields as written, zone unknown
//   %s           the instant itself: only a fraction and a zone beside it
#include <initializer_list>

#include "services/internal/CivilDays.h"
#include "services/internal/DateZoneNames.h"
#include "services/internal/ParsedReading.h"
#include "services/internal/PatternReading.h"
#include "services/internal/WeekDates.h"

namespace zppattern {
namespace {

bool has(const PatternReading& r, Field f) { return (r.present >> f & 1u) != 0; }

bool refuse(PatternReading& r, const char* at, const char* why) {
  fail(r, at != nullptr ? at : r.begin, why);
  return false;
}

// The calendar year the fields name; false when they name none.
bool yearOf(const PatternReading& r, int& year) {
  const int* v = r.value;
  if (has(r, kYear)) {
    year = v[kYear];
  } else if (has(r, kYearOfCentury)) {
    year = has(r, kCentury) ? v[kCentury] * 100 + v[kYearOfCentury]
                            : zpcivil::yearFromTwoDigits(v[kYearOfCentury]);
  } else if (has(r, kCentury)) {
    year = v[kCentury] * 100;
  } else {
    return false;
  }
  return true;
}

// The weekday read (%a %A %w, or %u), 0 = Sunday; -1 for none.
int weekdayOf(const PatternReading& r) {
  if (has(r, kWeekday)) return r.value[kWeekday];
  return has(r, kIsoWeekday) ? r.value[kIsoWeekday] % 7 : -1;
}

constexpr uint32_t bit(Field f) { return 1u << f; }
constexpr uint32_t kDateFields = (1u << (kQuarter + 1)) - 1;  // kYear .. kQuarter

// The date of an ISO week and weekday (%G or %g, %V, a weekday).
bool fromIsoWeek(PatternReading& r, int weekday, zpcivil::CivilDate& date) {
  const int* v = r.value;
  if (!has(r, kIsoYear) && !has(r, kIsoYearOfCentury)) {
    return refuse(r, r.at[kIsoWeek], "ISO week without an ISO year");
  }
  if (weekday < 0) return refuse(r, r.at[kIsoWeek], "week number without a weekday");
  // %C is the calendar year's century, which the ISO year leaves for a few
  // days at a century's edge: beside %g it is only checked.
  const int isoYear =
      has(r, kIsoYear) ? v[kIsoYear] : zpcivil::yearFromTwoDigits(v[kIsoYearOfCentury]);
  const int64_t days = zpcivil::daysFromIsoWeek(isoYear, v[kIsoWeek], weekday);
  if (v[kIsoWeek] == 53 && zpcivil::isoYearStart(isoYear + 1) <= days) {
    return refuse(r, r.at[kIsoWeek], "ISO week out of range for the year");
  }
  date = zpcivil::civilFromDays(days);
  return true;
}

// The date in `year` of the month and day, the day of the year, a %U or %W
// week and weekday, or 1 January, whichever the fields name first.
bool inYear(PatternReading& r, int year, int weekday, zpcivil::CivilDate& date,
            uint32_t& decided) {
  const int* v = r.value;
  if (has(r, kMonth) && (has(r, kDay) || !has(r, kYearDay))) {
    const int day = has(r, kDay) ? v[kDay] : 1;
    if (day > zpcivil::daysInMonth(year, v[kMonth])) {
      return refuse(r, r.at[kDay], "day out of range for the month");
    }
    date = zpcivil::CivilDate{year, v[kMonth], day};
    decided |= bit(kMonth) | bit(kDay);
    return true;
  }
  if (!has(r, kYearDay) && !has(r, kSundayWeek) && !has(r, kMondayWeek)) {
    if (has(r, kDay)) return refuse(r, r.at[kDay], "day without a month in the layout");
    date = zpcivil::CivilDate{year, 1, 1};
    return true;
  }
  const int64_t january1 = zpcivil::daysFromCivil(year, 1, 1);
  int64_t days = january1;
  if (has(r, kYearDay)) {
    if (v[kYearDay] > 365 + zpcivil::isLeapYear(year)) {
      return refuse(r, r.at[kYearDay], "day of the year out of range for the year");
    }
    days = january1 + v[kYearDay] - 1;
    decided |= bit(kYearDay);
  } else if (has(r, kSundayWeek) || has(r, kMondayWeek)) {
    const bool monday = !has(r, kSundayWeek);
    const Field week = monday ? kMondayWeek : kSundayWeek;
    if (weekday < 0) return refuse(r, r.at[week], "week number without a weekday");
    const int64_t yday = zpcivil::yearDayFromWeek(year, v[week], weekday, monday);
    if (yday < 0 || yday > 364 + zpcivil::isLeapYear(year)) {
      return refuse(r, r.at[week], "week number out of range for the year");
    }
    days = january1 + yday;
  }
  date = zpcivil::civilFromDays(days);
  return true;
}

// The one date the fields name; `decided` gets the fields it was made of,
// which need no check against it.
bool dateOf(PatternReading& r, zpcivil::CivilDate& date, uint32_t& decided) {
  decided = 0;
  const int weekday = weekdayOf(r);
  const bool calendar = has(r, kMonth) || has(r, kYearDay) || !has(r, kIsoWeek);
  if (!calendar) return fromIsoWeek(r, weekday, date);
  int year = 0;
  if (!yearOf(r, year)) return refuse(r, r.begin, "layout names no year");
  // The year's own fields; %C beside %Y, or %y beside it, are checked.
  decided = has(r, kYear)             ? bit(kYear)
            : has(r, kYearOfCentury) ? bit(kYearOfCentury) | bit(kCentury)
                                     : bit(kCentury);
  return inYear(r, year, weekday, date, decided);
}

// Every date field read says what the date says.
bool checkDate(PatternReading& r, const zpcivil::CivilDate& d, uint32_t decided) {
  if ((r.present & ~decided & kDateFields) == 0) return true;
  const int64_t days = zpcivil::daysFromCivil(d.year, d.month, d.day);
  const int year = static_cast<int>(d.year);
  const int yday = static_cast<int>(days - zpcivil::daysFromCivil(year, 1, 1));
  const int wday = zpcivil::weekdayFromDays(days);
  const zpcivil::IsoWeek iso = zpcivil::isoWeekOf(year, yday, wday);
  const int isoYear = static_cast<int>(iso.year);
  const int derived[kFieldCount] = {
      year,          year / 100,    year % 100,  isoYear,
      (isoYear % 100 + 100) % 100,  d.month,     d.day, yday + 1,
      iso.week,      zpcivil::sundayWeekOf(yday, wday), zpcivil::mondayWeekOf(yday, wday),
      wday,          wday == 0 ? 7 : wday,       (d.month - 1) / 3 + 1};
  for (int f = kYear; f <= kQuarter; ++f) {
    if (has(r, Field(f)) && r.value[f] != derived[f]) {
      return refuse(r, r.at[f], kFieldFacts[f].mismatch);
    }
  }
  return true;
}

bool hourOf(PatternReading& r, int& hour) {
  const int* v = r.value;
  if (has(r, kHour)) {
    hour = v[kHour];
    if (has(r, kHour12) && v[kHour12] % 12 != hour % 12) {
      return refuse(r, r.at[kHour12], kFieldFacts[kHour12].mismatch);
    }
    if (has(r, kPm) && v[kPm] != (hour >= 12)) {
      return refuse(r, r.at[kPm], kFieldFacts[kPm].mismatch);
    }
  } else if (has(r, kHour12)) {
    if (!has(r, kPm)) return refuse(r, r.at[kHour12], "12-hour hour without AM or PM");
    hour = v[kHour12] % 12 + 12 * v[kPm];
  } else if (has(r, kPm)) {
    return refuse(r, r.at[kPm], "AM or PM without an hour");
  } else {
    hour = 0;
  }
  return true;
}

// A GMT reading of the %s instant; only the fraction and a zone may stand
// beside it, and the zone changes nothing.
bool settleUnix(PatternReading& r, zpread::Reading& out) {
  for (int f = 0; f < kFieldCount; ++f) {
    if (has(r, Field(f))) return refuse(r, r.at[f], "date field beside Unix seconds");
  }
  const zpcivil::CivilTime t = zpcivil::breakDown(r.unixSeconds);
  out.f = zpcivil::DateTimeFields{static_cast<int>(t.year), t.month, t.day, t.hour, t.minute,
                                  t.second, r.millis};
  out.zoneKnown = true;
  return true;
}

}  // namespace

bool settleReading(PatternReading& r, ZephalSysTime& value) {
  zpread::Reading out;
  out.yearAt = r.begin;
  out.dayAt = r.begin;
  if (r.unixAt != nullptr) {
    if (!settleUnix(r, out)) return false;
  } else {
    zpcivil::CivilDate d;
    uint32_t decided;
    int hour;
    if (!dateOf(r, d, decided) || !checkDate(r, d, decided) || !hourOf(r, hour)) return false;
    out.f = zpcivil::DateTimeFields{static_cast<int>(d.year), d.month, d.day, hour,
                                    has(r, kMinute) ? r.value[kMinute] : 0,
                                    has(r, kSecond) ? r.value[kSecond] : 0, r.millis};
    for (Field f : {kYear, kYearOfCentury, kCentury, kIsoYear, kIsoYearOfCentury}) {
      if (has(r, f)) {
        out.yearAt = r.at[f];
        break;
      }
    }
    if (r.offsetAt != nullptr) {
      out.zoneKnown = r.offsetKnown;
      out.offset = r.offset;
    } else if (r.nameAt != nullptr) {
      if (r.nameOffset == zpread::kAmbiguousZone) {
        return refuse(r, r.nameAt, "zone name with several offsets");
      }
      out.zoneKnown = true;
      out.offset = r.nameOffset;
    }
  }
  if (!zpread::settle(out, value)) return refuse(r, out.at, out.why);
  return true;
}

}  // namespace zppattern
