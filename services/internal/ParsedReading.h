// The last steps of the date readers: fields already read, narrowed into a
// value. Internal to the module and its date parser.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/internal/CivilDays.h"
#include "services/internal/DateCursor.h"
#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

namespace zpcivil {

// The six calendar fields as read, stored as given (low 16 bits each); the
// day of the week and milliseconds are left to the caller.
inline void narrowInto(ZephalCalendarFields& t, int64_t year, int64_t month, int64_t day,
                       int64_t hour, int64_t minute, int64_t second) {
  t.wYear = static_cast<uint16_t>(year);
  t.wMonth = static_cast<uint16_t>(month);
  t.wDay = static_cast<uint16_t>(day);
  t.wHour = static_cast<uint16_t>(hour);
  t.wMinute = static_cast<uint16_t>(minute);
  t.wSecond = static_cast<uint16_t>(second);
}

}  // namespace zpcivil

namespace zpread {

// Checks the day against its month, moves the reading to GMT and stores it:
// m_bLocal false, m_isDst -1, the weekday computed, the unknown-zone flag
// set when no zone was stated; m_bFlagA and m_bFlagB stay. False, with the
// value untouched and the reason in `r`, for a day past the month's end or
// a GMT reading outside years 0-9999.
inline bool settle(Reading& r, ZephalSysTime& value) {
  zpcivil::DateTimeFields& f = r.f;
  if (f.day < 1 || f.day > zpcivil::daysInMonth(f.year, f.month)) {
    failAt(r, r.dayAt, "day out of range for the month");
    return false;
  }
  const int64_t days = zpcivil::shiftToGmt(f, r.zoneKnown ? r.offset : 0);
  if (f.year < 0 || f.year > 9999) {
    failAt(r, r.yearAt, "GMT reading outside years 0-9999");
    return false;
  }
  ZephalCalendarFields& t = value.m_time;
  zpcivil::narrowInto(t, f.year, f.month, f.day, f.hour, f.minute, f.second);
  t.wDayOfWeek = static_cast<uint16_t>(zpcivil::weekdayFromDays(days));
  t.wMilliseconds = static_cast<uint16_t>(f.millis);
  value.m_bLocal = false;
  value.m_bFromUnknownTimezone = !r.zoneKnown;
  value.m_isDst = -1;
  return true;
}

// The two readers of the date parser, with the refusal left in `r` rather
// than logged: parseRFC822Date's (a zero-terminated text) and
// AtomDateToSysTime's (`size` bytes, a zero among them refused).
bool readMailText(const char* text, ZephalSysTime& value, Reading& r);
bool readAtomText(const char* text, size_t size, ZephalSysTime& value, Reading& r);

// An HTTP date, "Thu, 07 Mar 2024 09:05:03 GMT" and nothing else, read as
// parseRFC822Date would read it; false, with nothing reported and the value
// untouched, for any other text (DateParserFixed.cpp).
bool loadHttpDateByPosition(const char* text, size_t size, ZephalSysTime& value);

// An RFC 3339 text read whole by position, as AtomDateToSysTime would read
// it; false, with nothing reported and the value untouched, for any other
// (DateParserFixed.cpp).
bool loadRfc3339ByPosition(const char* text, size_t size, ZephalSysTime& value);

}  // namespace zpread
