// OLE Automation dates against their definition, with timegm and gmtime_r
// as the calendar: fromOleDate, toOleDate (both zones), addDays and the date
// parser's VariantToTm. The process runs in a zone with summer time.
//
// The definition: whole days since 1899-12-30 00:00:00, the time of day as
// the fraction, which counts forward from the day's midnight on either side
// of the epoch (-1.25 is 1899-12-29 06:00), read to the nearest second, from
// 0100-01-01 00:00:00 to 9999-12-31 23:59:59.
#include <time.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace {

using zpfuzz::fail;
using zpfuzz::fieldsOf;
using zpfuzz::unixOf;

constexpr long long kDay = 86400;

const long long kEpoch = unixOf(1899, 12, 30);
const long long kFirst = unixOf(100, 1, 1);
const long long kLast = unixOf(9999, 12, 31, 23, 59, 59);

std::string text(double d) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.17g", d);
  return buf;
}

// The date of a Unix instant: exactly what the definition gives for it.
double oleOf(long long unix) {
  const long long s = unix - kEpoch;
  const long long day = (s >= 0 ? s : s - (kDay - 1)) / kDay;  // floor
  const double fraction = static_cast<double>(s - day * kDay) / kDay;
  return day >= 0 ? static_cast<double>(day) + fraction : static_cast<double>(day) - fraction;
}

// The instants a date may round to: one, or two where the fraction lies
// within a hair of half a second (the product's rounding may fall either
// way there). None for NaN, infinities and dates far out of range.
int instantsOf(double date, long long out[2]) {
  if (!(std::fabs(date) < 1e7)) return 0;
  const double whole = std::trunc(date);
  const long double secs = static_cast<long double>(std::fabs(date - whole)) * kDay;
  const long long below = static_cast<long long>(std::floor(secs));
  const long double above = secs - below;  // [0, 1)
  const long long base = kEpoch + static_cast<long long>(whole) * kDay + below;
  if (above < 0.5L - 1e-9L) return out[0] = base, 1;
  if (above > 0.5L + 1e-9L) return out[0] = base + 1, 1;
  out[0] = base;
  out[1] = base + 1;
  return 2;
}

bool inRange(long long unix) { return unix >= kFirst && unix <= kLast; }

// The record after a load of `unix` into `before` (its carried flags stay),
// marked as asked.
ZephalSysTime loaded(const ZephalSysTime& before, long long unix, bool bLocal) {
  ZephalSysTime t = zpfuzz::expectedLoad(unix, bLocal);
  t.m_bFlagA = before.m_bFlagA;
  t.m_bFlagB = before.m_bFlagB;
  t.m_bFromUnknownTimezone = before.m_bFromUnknownTimezone;
  return t;
}

// fromOleDate takes a date whose instant is in range and loads gmtime_r's
// fields of it; it refuses anything else and leaves the record alone.
void checkFromOle(double date, bool bLocal) {
  ZephalSysTime t;
  zpfuzz::mark(t);
  const ZephalSysTime before = t;
  const bool took = t.fromOleDate(bLocal, date);
  long long cand[2];
  const int n = instantsOf(date, cand);
  bool matched = false, anyIn = false, anyOut = n == 0;
  for (int i = 0; i < n; ++i) {
    anyIn = anyIn || inRange(cand[i]);
    anyOut = anyOut || !inRange(cand[i]);
    matched = matched || (inRange(cand[i]) && zpfuzz::sameRecord(t, loaded(before, cand[i], bLocal)));
  }
  if (took ? !matched : (!anyOut || !zpfuzz::sameRecord(t, before))) {
    fail(took ? "fromOleDate differs from the definition" : "fromOleDate refused a date in range",
         text(date) + " -> " + fieldsOf(t));
  }
  if (!anyIn && took) fail("fromOleDate took a date out of range", text(date));

  tm out{};
  if (_zpDateParser::VariantToTm(date, out)) {
    const time_t c = unixOf(out.tm_year + 1900LL, out.tm_mon + 1LL, out.tm_mday);
    tm g;
    gmtime_r(&c, &g);
    if (out.tm_yday != g.tm_yday || out.tm_wday != g.tm_wday) {
      fail("VariantToTm's day of the year or week differs from gmtime_r", text(date));
    }
  }
}

// The instant the fields name if they are a real date in range (second 60
// counting as the next second), else false.
bool instantOf(const ZephalCalendarFields& f, long long& unix) {
  unix = unixOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond);
  const long long day = unixOf(f.wYear, f.wMonth, f.wDay);
  tm g;
  const time_t d = static_cast<time_t>(day);
  gmtime_r(&d, &g);
  return f.wYear >= 100 && f.wYear <= 9999 && f.wMonth >= 1 && f.wMonth <= 12 &&
         g.tm_mday == f.wDay && f.wHour <= 23 && f.wMinute <= 59 && f.wSecond <= 60 && inRange(unix);
}

// toOleDate(false) of a GMT record: the definition's date of its instant, or
// 0.0 for fields that name none; a date comes back to the same instant.
// toOleDate(true) first takes localtime_r's reading of the instant.
// addDays adds n to the definition's date and loads the sum's instant, if
// the fields name a date and the sum is in range; otherwise the fields stay.
void checkToOle(const ZephalCalendarFields& f, int n) {
  ZephalSysTime t;
  zpfuzz::mark(t);
  t.m_bLocal = false;
  t.m_time = f;
  long long unix;
  const bool real = instantOf(f, unix);

  ZephalSysTime moved = t;
  moved.addDays(n);
  ZephalSysTime unchanged = t;
  unchanged.m_isDst = -1;
  long long cand[2];
  const int count = real ? instantsOf(oleOf(unix) + n, cand) : 0;
  bool ok = count == 0 && zpfuzz::sameRecord(moved, unchanged);
  for (int i = 0; i < count; ++i) {
    if (inRange(cand[i])) ok = ok || zpfuzz::sameRecord(moved, loaded(t, cand[i], false));
    if (!inRange(cand[i])) ok = ok || zpfuzz::sameRecord(moved, unchanged);
  }
  if (!ok) {
    fail("addDays differs from the definition",
         fieldsOf(t) + " + " + std::to_string(n) + " -> " + fieldsOf(moved));
  }

  ZephalSysTime gmt = t;
  const double date = gmt.toOleDate(false);
  if (date != (real ? oleOf(unix) : 0.0)) {
    fail("toOleDate differs from the definition", fieldsOf(t) + " -> " + text(date));
  }
  ZephalSysTime back;
  if (real && (!back.fromOleDate(false, date) || back.toUnixTime_gmt64() != unix)) {
    fail("toOleDate's date does not come back", fieldsOf(t) + " -> " + text(date));
  }

  if (!real) return;
  const time_t instant = static_cast<time_t>(unix);
  tm local;
  localtime_r(&instant, &local);
  const long long wall = unix + local.tm_gmtoff;
  ZephalSysTime asLocal = t;
  const double localDate = asLocal.toOleDate(true);
  if (localDate != (inRange(wall) ? oleOf(wall) : 0.0) || !asLocal.m_bLocal) {
    fail("toOleDate(true) differs from localtime_r's reading", fieldsOf(t) + " -> " + text(localDate));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zpfuzz::Numbers in(data, size);
  const double date = in.real();
  checkFromOle(date, in.flag());
  // The same bits as a day count and a time of day: dates in range, often.
  const uint64_t bits = in.u64();
  checkFromOle(static_cast<double>(static_cast<int64_t>(bits % 3615900) - 657434) +
                   static_cast<double>(bits >> 40) / (1ULL << 24),
               false);

  const ZephalCalendarFields f = in.fields();
  const int n = in.i32();
  checkToOle(f, n);
  const ZephalCalendarFields real{static_cast<uint16_t>(100 + f.wYear % 9900), static_cast<uint16_t>(f.wMonth % 12 + 1),
                                  0, static_cast<uint16_t>(f.wDay % 31 + 1), static_cast<uint16_t>(f.wHour % 24),
                                  static_cast<uint16_t>(f.wMinute % 60), static_cast<uint16_t>(f.wSecond % 61), 0};
  checkToOle(real, n % 4000000);
  return 0;
}
