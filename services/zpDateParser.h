// _zpDateParser: the library's date parser. Reads and writes RFC 822 dates,
// reads RFC 3339 (Atom) dates, converts OLE Automation dates, and names the
// day of the week of any Gregorian date. All members are static.
//
//   ZephalSysTime t;
//   LogNull log;
//   _zpDateParser::parseRFC822Date("Thu, 07 Mar 2024 10:05:03 +0100", t, log);
//   // t: 2024-03-07 09:05:03 GMT
//
// A parser that fails leaves the value as it was and says why in the log.
#pragma once

#include <time.h>

class LogBase;
class StringBuffer;
class ZephalSysTime;

class _zpDateParser {
 public:
  // ---- RFC 822 and friends ----------------------------------------------------

  // Reads the date texts of mail and HTTP: RFC 5322 (day name optional, 2- to
  // 4-digit years, optional seconds, numeric zones, zone names, military
  // letters, comments, folding white space, second 60), RFC 850, asctime,
  // and what common software writes (date(1), Go, Java, JavaScript, git,
  // Python, PostgreSQL, access logs, ISO 8601, Unix seconds with a fraction);
  // the reader files list every form by example.
  // A stated zone stores the GMT reading of the instant; no zone, "-0000" or a
  // military letter stores the fields as read with m_bFromUnknownTimezone
  // true. Either way m_bLocal is false, m_isDst -1 and wDayOfWeek computed;
  // m_bFlagA and m_bFlagB stay. A refusal returns false and writes one log
  // record with the reason and its byte ("expected ':' after the hour at byte 17").
  static bool parseRFC822Date(const char* text, ZephalSysTime& value, LogBase& log);

  // Appends "Thu, 07 Mar 2024 09:05:03 GMT" for a GMT value, and the local
  // reading with the zone's offset at that instant ("... 10:05:03 +0100") for
  // a local one. The day name is computed from the date. Returns the append's
  // result.
  static bool generateDateRFC822(ZephalSysTime& value, StringBuffer& out);

  // ---- Atom (RFC 3339) ----------------------------------------------------------

  // Reads YYYY-MM-DD(T|t)hh:mm:ss[.frac](Z|z|+hh:mm|+hhmm|+hh), stored as GMT
  // with the fraction truncated to milliseconds. `extra`, when not null,
  // receives the stated offset in minutes east of GMT. False for anything
  // else, with the value unchanged; the second form also writes the refusal's
  // log record, as parseRFC822Date does.
  static bool AtomDateToSysTime(const StringBuffer& text, ZephalSysTime& value, int* extra);
  static bool AtomDateToSysTime(const StringBuffer& text, ZephalSysTime& value, int* extra,
                                LogBase& log);

  // ---- Calendar -----------------------------------------------------------------

  // 0 = Sunday .. 6 for any Gregorian year (proleptic, year 0 and negative years
  // included). Months outside 1..12 and days outside the month carry over:
  // month 13 is January of the next year, day 0 the last day of the month before.
  static int DayOfWeek(int year, int month, int day);

  // ---- OLE Automation dates ---------------------------------------------------------
  // Days since 1899-12-30 00:00:00; the fraction is the time of day and counts
  // forward from midnight even before 1899-12-30 (-1.25 is 1899-12-29 06:00).
  // Valid from 0100-01-01 00:00:00 to 9999-12-31 23:59:59, to the nearest second.

  // Writes the date of the six fields into `date`. False, with `date` unchanged,
  // for fields that name no date in the range.
  static bool TmToVariant(unsigned short year, unsigned short month, unsigned short day,
                          unsigned short hour, unsigned short minute, unsigned short second,
                          double& date);

  // Breaks the date down into `out` as gmtime_r would (tm_year .. tm_yday,
  // tm_isdst 0, zone GMT), rounding to the nearest second. False for NaN,
  // infinities and dates outside the range, with `out` unchanged.
  static bool VariantToTm(double date, tm& out);

  // The date of the value's calendar fields (to the second, whatever its zone
  // flag), or NaN when they name no date in the range.
  static double SystemTimeToVariant(const ZephalSysTime& value);

  // Sets the value's calendar fields and wDayOfWeek to the date, wMilliseconds
  // to 0; flags and m_isDst are left alone. False, with the value unchanged,
  // when VariantToTm refuses the date.
  static bool VariantToSystemTime(double& date, ZephalSysTime& value);
};
