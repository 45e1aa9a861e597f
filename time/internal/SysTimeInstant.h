// A record and the instant it names, to the millisecond, over the years 0 to
// 9999 (internal: the chrono conversions and the named zones share them).
//
//   int64_t ms;
//   zpinstant::instantMillis(t, ms);       // 2024-03-07 09:05:03.250 GMT -> 1709802303250
//   zpinstant::loadGmtMillis(ms, other);  // and back, wDayOfWeek set
#pragma once

#include <cstdint>

#include "services/internal/CivilDays.h"
#include "time/ZephalSysTime.h"

namespace zpinstant {

constexpr int64_t kFirstMillis = -62167219200000;  // 0000-01-01 00:00:00.000 GMT
constexpr int64_t kLastMillis = 253402300799999;   // 9999-12-31 23:59:59.999 GMT
constexpr int kLastYear = 9999;

// Whether the fields name a reading: year 0..9999, month 1..12, a day of
// that month, hour 0..23, minute 0..59, second 0..60 (a leap second, the
// next minute's 00 as timegm and mktime read it), milliseconds 0..999.
inline bool isReading(const ZephalCalendarFields& f) {
  return f.wYear <= kLastYear && f.wMonth >= 1 && f.wMonth <= 12 && f.wDay >= 1 &&
         f.wDay <= zpcivil::daysInMonth(f.wYear, f.wMonth) && f.wHour <= 23 && f.wMinute <= 59 &&
         f.wSecond <= 60 && f.wMilliseconds <= 999;
}

// Unix seconds of a GMT reading the fields name (isReading holds).
inline int64_t gmtSeconds(const ZephalCalendarFields& f) {
  return zpcivil::daysFromReadDate(f.wYear, f.wMonth, f.wDay) * zpcivil::kSecondsPerDay +
         f.wHour * 3600 + f.wMinute * 60 + f.wSecond;
}

// The instant a value names, in Unix milliseconds: a GMT value by calendar
// arithmetic, a local value on the process's clock (mktime on a copy; the
// C library picks the instant of a skipped or repeated reading). False for
// fields that name no reading.
inline bool instantMillis(const ZephalSysTime& t, int64_t& unixMillis) {
  const ZephalCalendarFields& f = t.m_time;
  if (!isReading(f)) return false;
  const int64_t seconds = t.m_bLocal ? t.toUnixTime_gmt64() : gmtSeconds(f);
  unixMillis = seconds * 1000 + f.wMilliseconds;
  return true;
}

// Sets `out` to the GMT reading of an instant: fields, wDayOfWeek and
// milliseconds, the rest as clear leaves it. False, and `out` unchanged,
// outside 0000-01-01 .. 9999-12-31.
inline bool loadGmtMillis(int64_t unixMillis, ZephalSysTime& out) {
  if (unixMillis < kFirstMillis || unixMillis > kLastMillis) return false;
  const int64_t seconds = zpcivil::floorDiv(unixMillis, 1000);
  const zpcivil::CivilTime c = zpcivil::breakDown(seconds);
  out.clear();
  out.m_time = ZephalCalendarFields{static_cast<uint16_t>(c.year),   static_cast<uint16_t>(c.month),
                                    static_cast<uint16_t>(c.weekday), static_cast<uint16_t>(c.day),
                                    static_cast<uint16_t>(c.hour),    static_cast<uint16_t>(c.minute),
                                    static_cast<uint16_t>(c.second),
                                    static_cast<uint16_t>(unixMillis - seconds * 1000)};
  return true;
}

}  // namespace zpinstant
