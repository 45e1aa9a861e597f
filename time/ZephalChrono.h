// The module's values and std::chrono: a ZephalSysTime as a
// system_clock::time_point to the millisecond, a ZephalFileTime as whole
// seconds on the system clock.
//
//   ZephalSysTime t;
//   zpFromTimePoint(std::chrono::system_clock::now(), t);  // the GMT reading, milliseconds kept
//   std::chrono::system_clock::time_point tp;
//   zpToTimePoint(t, tp);                                  // the same instant, to the millisecond
//
// Free functions in a header of their own, so that the value types' headers
// stay free of <chrono>; named as zpReadDate is, after what they make.
#pragma once

#include <chrono>
#include <ratio>

#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

// Whole seconds since 1970-01-01 00:00:00 GMT on the system clock.
using ZephalSysSeconds = std::chrono::time_point<std::chrono::system_clock, std::chrono::seconds>;

static_assert(std::ratio_less_equal<std::chrono::system_clock::period, std::milli>::value,
              "the system clock counts milliseconds or finer");

// ---- ZephalSysTime <-> system_clock::time_point ------------------------------------
// Ranges differ: a ZephalSysTime here holds the years 0 to 9999, a
// system_clock::time_point with libstdc++ counts 64-bit nanoseconds,
// 1677-09-21 00:12:43.146 to 2262-04-11 23:47:16.854 GMT to the millisecond
// (libc++'s microseconds hold every year). Outside the overlap both give
// false; a ZephalFileTime (toFileTime_gmt) holds any instant in seconds.

// The instant the value names, milliseconds kept: a GMT value's fields, or
// a local value taken on the process's clock (mktime on a copy; the value is
// unchanged). False, and `out` unchanged, for fields that name no reading
// (month 13, 31 April, hour 24, a year past 9999; second 60 is the next
// minute's 00) or an instant `out` cannot hold.
bool zpToTimePoint(const ZephalSysTime& t, std::chrono::system_clock::time_point& out);

// Sets `out` to the GMT reading of `tp`: fields with wDayOfWeek and
// milliseconds (rounded down: 1 ns before 1970 is 1969-12-31 23:59:59.999),
// m_isDst -1, carried flags at their defaults. False, and `out` unchanged,
// outside the years 0 to 9999.
bool zpFromTimePoint(std::chrono::system_clock::time_point tp, ZephalSysTime& out);

// ---- ZephalFileTime <-> whole seconds ----------------------------------------------
// Both count signed 64-bit seconds since 1970, so every value converts
// exactly either way. A ZephalFileTime holding local seconds gives the
// instant its local reading would name in GMT: the caller knows which it holds.

ZephalSysSeconds zpToTimePoint(const ZephalFileTime& ft);

// Sets m_unixTime; the carried flags stay, as fromUnixTime64 leaves them.
void zpFromTimePoint(ZephalSysSeconds tp, ZephalFileTime& out);
