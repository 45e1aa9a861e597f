// ZephalSysTime: a calendar date-time, read either as local wall-clock time of
// the process's time zone or as GMT.
//
// The value is a plain Gregorian reading (year down to millisecond), a flag
// that says which clock it follows, three flags that travel with it unread,
// and a cached daylight-saving indicator. Zone knowledge comes from the C
// library; the value moves between clocks only through toGmtSysTime and
// toLocalSysTime.
//
//   ZephalSysTime t;
//   t.fromUnixTime64(false, 1709802303);  // 2024-03-07 09:05:03 GMT
//   t.toLocalSysTime();                   // the same instant, local fields
//   long long s = t.toUnixTime_gmt64();   // 1709802303 again
//
// Fields are public: the library's other modules and its date parser read
// and write them directly. No operation checks their ranges unless it says so.
#pragma once

#include <time.h>

#include <cstddef>
#include <cstdint>

#include "services/ZephalObject.h"

class LogBase;
class StringBuffer;
class XString;
class ZephalFileTime;

// The eight calendar fields in the order and widths of Windows' SYSTEMTIME.
struct ZephalCalendarFields {
  uint16_t wYear;          // Gregorian year as written (2024)
  uint16_t wMonth;         // 1 = January .. 12
  uint16_t wDayOfWeek;     // 0 = Sunday .. 6; as fresh as the last step that wrote it
  uint16_t wDay;           // 1 .. 31
  uint16_t wHour;          // 0 .. 23
  uint16_t wMinute;        // 0 .. 59
  uint16_t wSecond;        // 0 .. 59
  uint16_t wMilliseconds;  // 0 .. 999
};

// SYSTEMTIME as this library declares it: the eight calendar fields, then a
// daylight-saving indicator (-1 unknown, 0 standard time, >0 summer time).
struct _SYSTEMTIME {
  uint16_t wYear;
  uint16_t wMonth;
  uint16_t wDayOfWeek;
  uint16_t wDay;
  uint16_t wHour;
  uint16_t wMinute;
  uint16_t wSecond;
  uint16_t wMilliseconds;
  int32_t nIsDst;
};

class ZephalSysTime : public ZephalObject {
 public:
  ZephalCalendarFields m_time{};
  bool m_bLocal = false;                // fields are local wall-clock time; false: GMT
  bool m_bFlagA = true;                 // carried flag, never interpreted here
  bool m_bFlagB = true;                 // carried flag, never interpreted here
  bool m_bFromUnknownTimezone = false;  // carried flag: the source stated no zone
  int32_t m_isDst = -1;                 // getIsDst's cache: -1 unknown, 0 no, >0 yes

  // ---- Record -------------------------------------------------------------

  ZephalSysTime() = default;
  ~ZephalSysTime() override = default;

  // Back to the state right after construction: fields 0, GMT, flags
  // (true, true, false), m_isDst -1.
  void clear();

  // Copies fields, m_bLocal, the carried flags and m_isDst; nothing of the base.
  void copyFrom(const ZephalSysTime& src);

  // Exchange with SYSTEMTIME: the eight fields and m_isDst <-> nIsDst.
  // fromSYSTEMTIME keeps the carried flags and validates nothing.
  void toSYSTEMTIME(_SYSTEMTIME& st) const;
  void fromSYSTEMTIME(const _SYSTEMTIME& st, bool bLocal);

  // Fills `t` with the fields read as local wall-clock time (whatever m_bLocal
  // says) and normalises it with mktime, so tm_wday, tm_yday, tm_isdst,
  // tm_gmtoff and tm_zone are the C library's. Returns mktime's count.
  long long toTmStruct(tm& t) const;

  // Loads the fields from `t` (low 16 bits of each), milliseconds 0,
  // m_isDst -1 (tm_isdst is not taken over); the carried flags stay.
  void fromTmStruct(bool bLocal, const tm& t);

  // Days (28..31) of month wMonth in year wYear. Repairs the month first:
  // 0 becomes 1 and 13 or more becomes 12, written back into wMonth.
  int numDaysThisMonth();

  // One second later by calendar carries, without the C library. A field
  // already past its limit just goes up (second 60 becomes 61); wDayOfWeek,
  // milliseconds, flags and m_isDst are left alone.
  void addOneSecond();

  // ---- Meeting the C library's tm -------------------------------------------
  // Every step that hands the record to the C library, or loads it back, uses
  // these three, so the rules live in one place.

  // The broken-down image: a zeroed tm holding the fields (milliseconds
  // dropped), tm_isdst -1 when it is to be read as local time, 0 as GMT.
  void toBrokenDownImage(tm& t, bool asLocal) const;

  // The broken-down load: what fromTmStruct does.
  void brokenDownLoad(const tm& t, bool bLocal);

  // The reset load: clear, then the broken-down load; the carried flags end
  // at their defaults.
  void resetLoad(const tm& t, bool bLocal);

  // ---- Zones ----------------------------------------------------------------
  // After any of these four, wMilliseconds is 0 and m_isDst -1.

  // Local value -> the GMT reading of its instant (mktime decides a reading
  // that a clock change skips or repeats). A GMT value is left alone.
  void toGmtSysTime();
  // GMT value -> local wall-clock reading. A local value is left alone.
  // Works on the full 64-bit count, so instants before 1970 and after 2106
  // convert too.
  void toLocalSysTime();

  // The current time, in whole seconds, with the carried flags reset.
  void getCurrentGmt();
  void getCurrentLocal();

  // The zone's offset from GMT (seconds east, summer time included) at the
  // value's own time. A GMT value answers the offset in force at the instant
  // it names (localtime_r's), so each half of a repeated hour gets its own;
  // a local value answers its reading taken as GMT minus the instant mktime
  // picks for it. `depth` is 0 for outside callers; a GMT value answers 0
  // once depth reaches 2.
  int getGmtOffsetInSeconds(int depth) const;
  int getCurrentGmtOffsetInSeconds() const;

  // Offset of the current local time minus the offset at the value's time.
  int getDstDiff() const;

  // Whether summer time applies at the fields' wall-clock reading; cached in
  // m_isDst. Reports a year before 1901 to Psdk::badObjectFound and still answers.
  int getIsDst();

  // ---- Unix time --------------------------------------------------------------
  // A count passed with bLocal true counts local seconds (a GMT count plus the
  // zone's offset, as gmtUnixToLocalUnix gives it); the flag only marks the
  // fields, nothing is shifted. Loading resets milliseconds, m_isDst and the
  // carried flags. A count beyond the years a tm holds leaves the value as
  // clear leaves it.

  void fromUnixTime(bool bLocal, unsigned int t);  // 0 .. 2106-02-07 06:28:15
  void fromUnixTime64(bool bLocal, long long t);

  // The value's GMT count (mktime for a local value, timegm for GMT);
  // toUnixTime_gmt keeps the low 32 bits. The value is unchanged.
  unsigned int toUnixTime_gmt() const;
  long long toUnixTime_gmt64() const;

  // Moves the value by n seconds; the result is GMT with milliseconds 0 and
  // the carried flags reset. n == 0 leaves the value untouched. addSeconds
  // works on the 32-bit count: a move before 1970 stops at 1970-01-01
  // 00:00:00, one past 2106-02-07 06:28:15 wraps. Both return true.
  bool addSeconds(int n);
  bool addSeconds64(long long n);

  // ---- Reading texts ----------------------------------------------------------

  // Sets the value from a date text of unknown form, tried in this order:
  //   /Date(1700000000000+0100)/      JSON milliseconds; the suffix moves whole hours
  //   2024-03-07T09:05:03Z            Atom (RFC 3339), when the date parser takes it
  //   20240307090503.123Z             GeneralizedTime with a fraction (dropped)
  //   1700000000                      Unix seconds; bLocal marks them local
  //   240307090503Z                   UTCTime, pivot 50
  //   20240307090503Z                 GeneralizedTime
  //   Thu, 07 Mar 2024 09:05:03 GMT   RFC 822 and whatever else the date parser reads
  // A JSON count may be negative (/Date(-86400000)/ is 1969-12-31) and is not
  // limited to 32 bits. False only when the last form is refused; the value
  // then holds whatever the parsers left in it. The text is not changed.
  bool loadAnyFormat(bool bLocal, StringBuffer& text);

  // Loads UTCTime (240307090503Z, years 00-49 are 20xx) as GMT; m_isDst -1,
  // wDayOfWeek, milliseconds and carried flags untouched. A null text, or one
  // too short to hold the six fields, gives false and changes nothing.
  bool fromAsnUtcDateTime(const char* text, LogBase& log);

  // Loads the fields of an X.509 time: GeneralizedTime (20240307090503Z) when
  // bGeneralizedTime, else UTCTime. Computes wDayOfWeek; m_bLocal, m_isDst,
  // milliseconds and carried flags stay, so a local value stays local.
  // Reads nothing past the seconds. A null or too short text gives false and
  // changes nothing; otherwise true.
  bool fromX509(const char* text, bool bGeneralizedTime, LogBase& log);

  // The date parser's RFC 822 reading (see _zpDateParser::parseRFC822Date).
  bool setFromRfc822String(const char* text, LogBase& log);

  // ---- Writing texts ----------------------------------------------------------

  // Appends the ISO 8601 basic UTC timestamp, 20240307T090503Z. A local value
  // is converted on a copy; the value is unchanged.
  void getIso8601Timestamp(StringBuffer& out) const;

  // Appends UTCTime, 240307090503Z (year modulo 100), and returns the append's
  // result. A local value is converted to GMT in place first.
  bool getAsnUtcDateTime(StringBuffer& out);

  // Append the RFC 822 text, "Thu, 07 Mar 2024 09:05:03 GMT" (a local value
  // with its numeric offset instead of GMT).
  bool getRfc822String(StringBuffer& out);
  void getRfc822StringX(XString& out);

  // One log context named `tag`: "gmtDateTime" or "localDateTime" with
  // "3/7/2024 9:05:03" (the fields as they stand), then "fromUnknownTimezone" 1
  // when that flag is set.
  void logSysTime(const char* tag, LogBase& log) const;

  // ---- Legacy formats and day arithmetic -------------------------------------

  // The value's GMT seconds and carried flags into `ft`; the value is unchanged.
  void toFileTime_gmt(ZephalFileTime& ft) const;

  // MS-DOS date and time words (date: bits 0-4 day, 5-8 month, 9-15 year-1980;
  // time: bits 0-4 second/2, 5-10 minute, 11-15 hour). Reading marks the value
  // local with m_bFromUnknownTimezone; a date word with day 0 or month outside
  // 1..12 gives the current GMT time instead. Writing converts the value to
  // local time in place first when bLocal, clamps its year to 1980..2037 in
  // place, and rounds an odd second up. The log pointers are not used.
  void fromDosDateTime(unsigned short dosDate, unsigned short dosTime, LogBase* log);
  // The fields as the words hold them, before fromDosDateTime's repairs
  // (month 0 and hour 31 stay); wDayOfWeek and wMilliseconds 0.
  static ZephalCalendarFields unpackDosDateTime(unsigned short dosDate, unsigned short dosTime);
  void toDosDateTime(bool bLocal, unsigned short& dosDate, unsigned short& dosTime, LogBase* log);

  // OLE Automation dates (days since 1899-12-30, to the second). toOleDate
  // converts the value itself to local time (bLocal) or GMT first. fromOleDate
  // marks the fields local or GMT without shifting them; false, and no change,
  // for a date outside 0100-01-01 .. 9999-12-31 23:59:59 or not a number.
  double toOleDate(bool bLocal);
  bool fromOleDate(bool bLocal, double date);

  // Moves the wall-clock fields by n days through the OLE date (the zone flag
  // stays, so a local value keeps its time of day across a clock change);
  // m_isDst becomes -1. Always true.
  bool addDays(int n);

  // Calendar days from the value's date (its fields as they stand) to today's
  // GMT date: 0 today, 1 yesterday, -1 tomorrow; -9999 out of range.
  int getNumDaysOld() const;

  // Converts both values to GMT in place; true when this one is later by at
  // least a whole second.
  bool isAfter(ZephalSysTime& other);
};

static_assert(sizeof(ZephalCalendarFields) == 16, "eight 16-bit fields");
static_assert(sizeof(_SYSTEMTIME) == 20, "eight 16-bit fields, then nIsDst");
static_assert(offsetof(_SYSTEMTIME, wMilliseconds) == 14, "SYSTEMTIME field order");
static_assert(offsetof(_SYSTEMTIME, nIsDst) == 16, "nIsDst follows the eight fields");
static_assert(offsetof(ZephalCalendarFields, wDayOfWeek) == offsetof(_SYSTEMTIME, wDayOfWeek) &&
                  offsetof(ZephalCalendarFields, wDay) == offsetof(_SYSTEMTIME, wDay) &&
                  offsetof(ZephalCalendarFields, wMilliseconds) ==
                      offsetof(_SYSTEMTIME, wMilliseconds),
              "the record's fields lie where SYSTEMTIME's do, so they copy as one block");
