// ZephalFileTime against the arithmetic that defines its counts: FILETIME
// words (setFileTime, fromFILETIME, toFILETIME and the two halves), .NET
// ticks, the 32-bit local shift, the comparisons and the breakdown into a
// record. The epochs come from timegm, not from the module's constants.
#include <time.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

namespace {

using zpfuzz::fail;

__extension__ typedef __int128 Wide;  // holds every sum and product here exactly

constexpr Wide kPerSecond = 10000000;  // 100-ns intervals

// Seconds from a date's midnight to 1970-01-01, by timegm.
Wide secondsBefore1970(int year) {
  tm t{};
  t.tm_year = year - 1900;
  t.tm_mday = 1;
  return -static_cast<Wide>(timegm(&t));
}

const Wide kFileTimeEpoch = secondsBefore1970(1601) * kPerSecond;
const Wide kTicksEpoch = secondsBefore1970(1) * kPerSecond;

// A value modulo 2^64, as the two's-complement int64_t the module keeps.
Wide wrap64(Wide v) { return static_cast<int64_t>(static_cast<uint64_t>(v)); }
bool fits64(Wide v) { return v >= INT64_MIN && v <= INT64_MAX; }

std::string num(Wide v) { return std::to_string(static_cast<long long>(v)); }

ZephalFileTime seconds(long long t, bool a, bool b, bool unknown) {
  ZephalFileTime ft;
  ft.fromUnixTime64(t, 0);
  ft.m_bFlagA = a;
  ft.m_bFlagB = b;
  ft.m_bFromUnknownTimezone = unknown;
  return ft;
}

// Intervals since the epoch of a count: t * 10^7 + epoch, modulo 2^64.
// Reading back: (intervals - epoch) modulo 2^64 as a signed count, divided
// truncating toward zero. Where nothing wrapped, reading gives t back.
void checkCounts(long long t, uint32_t high, uint32_t low, uint64_t garbage) {
  const ZephalFileTime ft = seconds(t, true, true, false);
  const Wide scaled = static_cast<Wide>(t) * kPerSecond;  // nothing wraps while it fits 64 bits
  const Wide count = scaled + kFileTimeEpoch;
  const uint64_t words = static_cast<uint64_t>(count);
  _FILETIME raw{~0UL, ~0UL};
  ft.toFILETIME(raw);
  if (raw.dwLowDateTime != (words & 0xFFFFFFFF) || raw.dwHighDateTime != (words >> 32) ||
      ft.getLowDateTime() != raw.dwLowDateTime || ft.getHighDateTime() != raw.dwHighDateTime) {
    fail("FILETIME words differ from t * 10^7 + the 1601 epoch", num(t));
  }
  ZephalFileTime back;
  back.fromFILETIME(raw);
  if (count >= 0 && fits64(scaled) && back.m_unixTime != t) {
    fail("FILETIME round trip", num(t) + " -> " + num(back.m_unixTime));
  }

  const Wide ticks = scaled + kTicksEpoch;
  if (ft.getDateTimeTicks() != wrap64(ticks)) fail("ticks differ from t * 10^7 + the 0001 epoch", num(t));
  back.fromDateTimeTicks(ft.getDateTimeTicks());
  if (fits64(scaled) && fits64(ticks) && back.m_unixTime != t) fail("ticks round trip", num(t) + " -> " + num(back.m_unixTime));

  // Arbitrary words, the upper halves of the record's words unread.
  const Wide stated = (static_cast<Wide>(high) << 32) | low;
  ZephalFileTime read;
  read.setFileTime(high, low);
  if (read.m_unixTime != wrap64(stated - kFileTimeEpoch) / kPerSecond) {
    fail("setFileTime differs from the definition", num(high) + ":" + num(low) + " -> " + num(read.m_unixTime));
  }
  ZephalFileTime same;
  same.fromFILETIME(_FILETIME{low | (garbage << 32), high | (garbage & 0xFFFFFFFF00000000UL)});
  if (same.m_unixTime != read.m_unixTime) fail("fromFILETIME read an upper half", num(high) + ":" + num(low));
  ZephalFileTime fromTicks;
  fromTicks.fromDateTimeTicks(static_cast<long long>(garbage));
  if (fromTicks.m_unixTime != wrap64(static_cast<Wide>(static_cast<int64_t>(garbage)) - kTicksEpoch) / kPerSecond) {
    fail("fromDateTimeTicks differs from the definition", num(static_cast<int64_t>(garbage)));
  }
}

// toLocalFileTime_careful: the count modulo 2^32, plus localtime_r's offset
// at that instant, modulo 2^32.
void checkLocalShift(long long t) {
  ZephalFileTime ft = seconds(t, true, true, false);
  const time_t reduced = static_cast<time_t>(static_cast<uint32_t>(t));
  tm local{};
  localtime_r(&reduced, &local);
  ft.toLocalFileTime_careful();
  const long long want = static_cast<uint32_t>(static_cast<long long>(reduced) + local.tm_gmtoff);
  if (ft.m_unixTime != want) fail("toLocalFileTime_careful", num(t) + " -> " + num(ft.m_unixTime));
  if (seconds(t, true, true, false).toUnixTime32() != static_cast<uint32_t>(t)) fail("toUnixTime32", num(t));
}

int sign(Wide v) { return v < 0 ? -1 : (v > 0 ? 1 : 0); }

// Exact compares the signed counts, NearestSec their low 32 bits unsigned.
void checkCompare(long long a, long long b) {
  const ZephalFileTime x = seconds(a, true, true, false), y = seconds(b, true, true, false);
  if (ZephalFileTime::compareFileTimeExact(x, y) != sign(static_cast<Wide>(a) - b) ||
      ZephalFileTime::compareFileTimeNearestSec(x, y) !=
          sign(static_cast<Wide>(static_cast<uint32_t>(a)) - static_cast<uint32_t>(b))) {
    fail("comparison", num(a) + " vs " + num(b));
  }
}

// The breakdown is gmtime_r's, marked as asked (even where there is none),
// with the file time's carried flags.
void checkBreakdown(long long t, bool a, bool b, bool unknown) {
  const ZephalFileTime ft = seconds(t, a, b, unknown);
  for (const bool local : {false, true}) {
    ZephalSysTime st;
    zpfuzz::mark(st);
    local ? ft.toSystemTime_local(st) : ft.toSystemTime_gmt(st);
    ZephalSysTime want = zpfuzz::expectedLoad(t, local);
    want.m_bLocal = local;
    want.m_bFlagA = a;
    want.m_bFlagB = b;
    want.m_bFromUnknownTimezone = unknown;
    if (!zpfuzz::sameRecord(st, want)) {
      fail("breakdown differs from gmtime_r", num(t) + " -> " + zpfuzz::fieldsOf(st));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zpfuzz::Numbers in(data, size);
  const long long t = in.i64();
  const uint32_t high = in.u32(), low = in.u32();
  checkCounts(t, high, low, in.u64());
  checkLocalShift(t);
  checkCompare(t, in.i64());
  checkBreakdown(t, in.flag(), in.flag(), in.flag());
  return 0;
}
