// Pattern layouts: dates written by a layout in GNU date's +FORMAT language,
// and read back by a layout in strptime's, strictly.
//
//   ZephalSysTime t;
//   t.fromUnixTime64(false, 1709802303);                   // 2024-03-07 09:05:03 GMT
//   ZephalWallClock clock;
//   zpWallClockOf(t, clock);
//   StringBuffer out;
//   zpFormatDate("%a %d %b %Y %H:%M:%S %Z", clock, out);   // Thu 07 Mar 2024 09:05:03 GMT
//
//   ZephalTextError error;
//   zpParseDate("2024-03-07 10:05:03 +0100", "%F %T %z", t, error);  // 09:05:03 GMT again
//   zpParseDate("2024-13-07", "%F", t, error);  // false: "month out of range" at byte 5
//
// Both sides work in the C locale: English names, no locale is consulted.
// A layout ends at its first zero byte, as a C string would.
#pragma once

#include <string_view>

#include "time/ZephalText.h"

class StringBuffer;
class ZephalSysTime;

// ---- Layouts by name -------------------------------------------------------------

// 2024-03-07T10:05:03+01:00
inline constexpr std::string_view kZpLayoutRfc3339 = "%Y-%m-%dT%H:%M:%S%:z";
// 2024-03-07T10:05:03.123+01:00
inline constexpr std::string_view kZpLayoutRfc3339Millis = "%Y-%m-%dT%H:%M:%S.%3N%:z";
// Thu, 07 Mar 2024 09:05:03 GMT (of a GMT value's clock)
inline constexpr std::string_view kZpLayoutRfc1123 = "%a, %d %b %Y %H:%M:%S %Z";
// Thu Mar  7 10:05:03 CET 2024, as date writes without a format
inline constexpr std::string_view kZpLayoutDate = "%a %b %e %H:%M:%S %Z %Y";

// ---- Writing ------------------------------------------------------------------------

// Appends `clock` written by `layout` to `out`, as GNU date's +FORMAT writes
// it: strftime's conversions with the flags - _ 0 ^ # + and any width
// (saturating at INT_MAX, as date's does), %N (the milliseconds as
// nanoseconds), %q, %s (the instant: fields minus the offset), %:z %::z
// %:::z, four-digit %Y and %F. An unknown conversion is copied as date
// copies it. Fields outside their ranges are written as given; a month or
// weekday that has no name is written '?'. False only when `out` cannot
// grow; it then holds what was written before.
bool zpFormatDate(std::string_view layout, const ZephalWallClock& clock, StringBuffer& out);

// The wall clock of a value: a GMT value as GMT (offset 0, "GMT", no summer
// time); a local value as the C library's zone reads it, through mktime on a
// copy (its offset, abbreviation and summer time; a reading that a clock
// change skips is moved as mktime moves it). The weekday is computed;
// milliseconds are kept.
void zpWallClockOf(const ZephalSysTime& value, ZephalWallClock& clock);

// The wall clock of the value's instant in the C library's zone, as date
// writes it: a GMT value through localtime_r, so each half of a repeated
// hour keeps its own offset; a local value as zpWallClockOf reads it.
void zpLocalWallClockOf(const ZephalSysTime& value, ZephalWallClock& clock);

// ---- Reading -------------------------------------------------------------------------

// Reads `text` by `layout`, the whole text, strictly; services/DatePatternReader.cpp
// lists the conversions. The text ends at its first zero byte, so a zero byte
// inside it leaves text unread. A stated zone (%z, %Z, %s) stores the GMT
// reading of the instant; no zone stores the fields as written with
// m_bFromUnknownTimezone set. Either way m_bLocal is false, m_isDst -1,
// the weekday computed and the milliseconds kept; m_bFlagA and m_bFlagB
// stay. A refusal returns false with the value untouched and the reason and
// its byte in `error` ("month out of range" at byte 5); `error` is written
// only then.
bool zpParseDate(std::string_view text, std::string_view layout, ZephalSysTime& value,
                 ZephalTextError& error);
