// Unix counts and the record's calendar exchange against the C library:
// fromUnixTime, fromUnixTime64, addSeconds, addSeconds64, gmtUnixToLocalUnix,
// tm_to_unixTime64, fromTmStruct, fromSYSTEMTIME and DayOfWeek. The process
// runs in a zone with summer time, so the local forms meet clock changes.
#include <errno.h>
#include <time.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/ZephalObject.h"
#include "services/zpDateParser.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

namespace {

using zpfuzz::fail;
using zpfuzz::fieldsOf;
using zpfuzz::low16;

std::string num(long long v) { return std::to_string(v); }

// Years the 16-bit field holds exactly; only there can a count come back.
bool yearFits(const tm& t) { return t.tm_year + 1900LL >= 0 && t.tm_year + 1900LL <= 65535; }

// fromUnixTime64 and fromUnixTime hold the reset load of gmtime_r's
// breakdown, and a GMT load counts back (timegm) to the same count.
void checkLoad(long long count, bool bLocal) {
  ZephalSysTime t;
  zpfuzz::mark(t);
  t.fromUnixTime64(bLocal, count);
  const ZephalSysTime want = zpfuzz::expectedLoad(count, bLocal);
  if (!zpfuzz::sameRecord(t, want)) {
    fail("fromUnixTime64 differs from gmtime_r", num(count) + " -> " + fieldsOf(t) + ", want " +
                                                     fieldsOf(want));
  }
  if (count >= 0 && count <= UINT_MAX) {
    ZephalSysTime narrow;
    narrow.fromUnixTime(bLocal, static_cast<unsigned int>(count));
    if (!zpfuzz::sameRecord(narrow, want)) fail("fromUnixTime differs from gmtime_r", num(count));
  }
  const time_t c = static_cast<time_t>(count);
  tm g;
  if (!bLocal && gmtime_r(&c, &g) != nullptr && yearFits(g) && t.toUnixTime_gmt64() != count) {
    fail("a GMT load does not count back", num(count) + " -> " + num(t.toUnixTime_gmt64()));
  }
}

bool sameWallClock(const tm& a, const tm& b) {
  return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday &&
         a.tm_hour == b.tm_hour && a.tm_min == b.tm_min && a.tm_sec == b.tm_sec;
}

// gmtUnixToLocalUnix adds localtime_r's tm_gmtoff; those local seconds,
// loaded as local, read what localtime_r reads, and count back through mktime
// to an instant with that wall-clock reading: the count itself or, in the
// hour a clock change repeats, its twin.
void checkLocal(long long count) {
  const time_t c = static_cast<time_t>(count);
  tm local;
  if (localtime_r(&c, &local) == nullptr) {
    if (gmtUnixToLocalUnix(static_cast<long>(count)) != count) {
      fail("gmtUnixToLocalUnix moved a count the C library cannot break down", num(count));
    }
    return;
  }
  const long long shifted = gmtUnixToLocalUnix(static_cast<long>(count));
  if (shifted != count + local.tm_gmtoff) {
    fail("gmtUnixToLocalUnix differs from localtime_r's offset", num(count) + " -> " + num(shifted));
  }
  ZephalSysTime t;
  t.fromUnixTime64(true, shifted);
  const ZephalCalendarFields& f = t.m_time;
  if (f.wYear != low16(local.tm_year, 1900) || f.wMonth != low16(local.tm_mon, 1) ||
      f.wDay != local.tm_mday || f.wHour != local.tm_hour || f.wMinute != local.tm_min ||
      f.wSecond != local.tm_sec || f.wDayOfWeek != local.tm_wday || !t.m_bLocal) {
    fail("local seconds do not read as localtime_r", num(count) + " -> " + fieldsOf(t));
  }
  if (!yearFits(local)) return;
  const time_t back = static_cast<time_t>(t.toUnixTime_gmt64());
  tm again;
  if (back != c && (localtime_r(&back, &again) == nullptr || !sameWallClock(again, local))) {
    fail("a local load counts back to another wall clock", num(count) + " -> " + num(back));
  }
}

// addSeconds64 and addSeconds from any fields: the count before the move is
// timegm's (GMT) or mktime's (local) of the fields as they stand; the result
// is the GMT load of that count moved by n. The 64-bit sum wraps modulo
// 2^64; the 32-bit move works on the count modulo 2^32, stops at 0 going
// back and wraps going forward. A move by 0 changes nothing.
void checkAddSeconds(const ZephalCalendarFields& f, bool local, long long n64, int n32) {
  ZephalSysTime start;
  zpfuzz::mark(start);
  start.m_time = f;
  start.m_bLocal = local;
  tm image = zpfuzz::imageOf(f, local);
  const long long before = local ? mktime(&image) : timegm(&image);

  ZephalSysTime wide;
  wide.copyFrom(start);
  wide.addSeconds64(n64);
  const unsigned long long sum =
      static_cast<unsigned long long>(before) + static_cast<unsigned long long>(n64);
  const ZephalSysTime want64 =
      n64 == 0 ? start : zpfuzz::expectedLoad(static_cast<long long>(sum), false);
  if (!zpfuzz::sameRecord(wide, want64)) {
    fail("addSeconds64 differs from timegm/gmtime_r",
         fieldsOf(start) + " + " + num(n64) + " -> " + fieldsOf(wide) + ", want " + fieldsOf(want64));
  }

  ZephalSysTime narrow;
  narrow.copyFrom(start);
  narrow.addSeconds(n32);
  long long moved = static_cast<long long>(static_cast<uint32_t>(before)) + n32;  // (-2^31, 2^33)
  if (moved < 0) moved = 0;
  if (moved > UINT_MAX) moved -= 1LL << 32;
  const ZephalSysTime want32 = n32 == 0 ? start : zpfuzz::expectedLoad(moved, false);
  if (!zpfuzz::sameRecord(narrow, want32)) {
    fail("addSeconds differs from the 32-bit count",
         fieldsOf(start) + " + " + num(n32) + " -> " + fieldsOf(narrow) + ", want " + fieldsOf(want32));
  }
}

// tm_to_unixTime64 reads tm_yday as the day of the year and ignores tm_mon
// and tm_mday: timegm of January, day tm_yday + 1, agrees for every year
// from 1970 on; before, -1 and one report.
void checkFormula(const tm& in) {
  const unsigned long reports = Psdk::badObjectCount();
  const long long got = tm_to_unixTime64(&in);
  if (in.tm_year <= 69) {
    if (got != -1 || Psdk::badObjectCount() != reports + 1) {
      fail("tm_to_unixTime64 took a year before 1970", num(in.tm_year));
    }
    return;
  }
  if (in.tm_yday == INT_MAX) return;  // no tm_mday for it
  tm jan = in;
  jan.tm_mon = 0;
  jan.tm_mday = in.tm_yday + 1;
  errno = 0;
  const long long want = timegm(&jan);
  if (want == -1 && errno != 0) return;  // beyond what timegm counts
  if (got != want) {
    fail("tm_to_unixTime64 differs from timegm",
         "year " + num(in.tm_year) + " yday " + num(in.tm_yday) + " " + num(in.tm_hour) + ":" +
             num(in.tm_min) + ":" + num(in.tm_sec) + " -> " + num(got) + ", want " + num(want));
  }
}

// fromTmStruct keeps the low 16 bits of each sum, zeroes the milliseconds,
// forgets tm_isdst and leaves the carried flags; fromSYSTEMTIME and
// toSYSTEMTIME exchange all nine fields unchanged.
void checkRecordExchange(const tm& in, const _SYSTEMTIME& st, bool bLocal) {
  ZephalSysTime t;
  zpfuzz::mark(t);
  t.fromTmStruct(bLocal, in);
  ZephalSysTime want;
  zpfuzz::mark(want);
  want.m_time = ZephalCalendarFields{low16(in.tm_year, 1900), low16(in.tm_mon, 1),
                                     low16(in.tm_wday),       low16(in.tm_mday),
                                     low16(in.tm_hour),       low16(in.tm_min),
                                     low16(in.tm_sec),        0};
  want.m_bLocal = bLocal;
  want.m_isDst = -1;
  if (!zpfuzz::sameRecord(t, want)) fail("fromTmStruct", fieldsOf(t) + ", want " + fieldsOf(want));

  t.fromSYSTEMTIME(st, bLocal);
  _SYSTEMTIME back;
  std::memset(&back, 0xA5, sizeof back);
  t.toSYSTEMTIME(back);
  if (std::memcmp(&back, &st, sizeof st) != 0 || t.m_bLocal != bLocal || t.m_bFlagA ||
      !t.m_bFromUnknownTimezone) {
    fail("SYSTEMTIME exchange changed a field", fieldsOf(t));
  }
}

// DayOfWeek carries months into years and days across months as timegm
// does, for any int; its tm_wday is the answer wherever timegm counts.
void checkDayOfWeek(int year, int month, int day) {
  if (year < INT_MIN + 1900 || month == INT_MIN) return;  // no tm for them
  tm t{};
  t.tm_year = year - 1900;
  t.tm_mon = month - 1;
  t.tm_mday = day;
  errno = 0;
  if (timegm(&t) == -1 && errno != 0) return;
  const int got = _zpDateParser::DayOfWeek(year, month, day);
  if (got != t.tm_wday) {
    fail("DayOfWeek differs from timegm", num(year) + "-" + num(month) + "-" + num(day) + " -> " +
                                              num(got) + ", want " + num(t.tm_wday));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zpfuzz::Numbers in(data, size);
  const long long count = in.i64();
  const bool bLocal = in.flag();
  checkLoad(count, bLocal);
  checkLocal(count);

  checkAddSeconds(in.fields(), in.flag(), in.i64(), in.i32());

  tm t{};
  t.tm_year = in.i32();
  t.tm_mon = in.i32();
  t.tm_mday = in.i32();
  t.tm_hour = in.i32();
  t.tm_min = in.i32();
  t.tm_sec = in.i32();
  t.tm_wday = in.i32();
  t.tm_yday = in.i32();
  t.tm_isdst = in.i32();
  checkFormula(t);
  _SYSTEMTIME st;
  std::memcpy(&st, &t, sizeof st);  // 20 bytes of the same input, any pattern
  checkRecordExchange(t, st, bLocal);
  checkDayOfWeek(t.tm_year, t.tm_mon, t.tm_mday);
  return 0;
}
