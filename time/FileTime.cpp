// ZephalFileTime: whole Unix seconds, and the 100-ns interval counts of
// FILETIME and .NET ticks.
//
// The counts are formed and taken apart in uint64_t so that a value far
// enough from 1970 wraps modulo 2^64 instead of overflowing a signed type.
// Reading back divides a signed difference, which truncates toward zero:
// a count 1 interval before 1970 is 0 seconds, not -1.
#include <time.h>

#include "time/TimeFunctions.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

namespace {

using zp_filetime::intervalsSince;
using zp_filetime::kFileTimeEpoch;
using zp_filetime::kIntervalsPerSecond;
using zp_filetime::kTicksEpoch;

int64_t secondsFrom(uint64_t epoch, uint64_t intervals) {
  // The difference is a two's-complement pattern; C++ division truncates.
  return static_cast<int64_t>(intervals - epoch) / kIntervalsPerSecond;
}

uint32_t low32(uint64_t v) { return static_cast<uint32_t>(v); }
uint32_t high32(uint64_t v) { return static_cast<uint32_t>(v >> 32); }

}  // namespace

// ---- Value -------------------------------------------------------------------

void ZephalFileTime::clear() { *this = ZephalFileTime(); }

void ZephalFileTime::copyFrom(const ZephalFileTime& other) { *this = other; }

void ZephalFileTime::getCurrentGmt() { m_unixTime = time(nullptr); }

void ZephalFileTime::getCurrentLocal() {
  getCurrentGmt();
  toLocalFileTime_careful();
}

void ZephalFileTime::toLocalFileTime_careful() {
  // Both the instant and the shifted result live in 32 bits: reduce first,
  // then let the sum wrap (0 in a zone west of Greenwich lands near 2106).
  const uint32_t t = low32(static_cast<uint64_t>(m_unixTime));
  m_unixTime = low32(static_cast<uint64_t>(gmtUnixToLocalUnix(static_cast<long>(t))));
}

// ---- Unix time -------------------------------------------------------------------

unsigned int ZephalFileTime::toUnixTime32() const {
  return low32(static_cast<uint64_t>(m_unixTime));
}

void ZephalFileTime::fromUnixTime32(unsigned int t, unsigned int) { m_unixTime = t; }

void ZephalFileTime::fromUnixTime64(long long t, long long) { m_unixTime = t; }

// ---- FILETIME and .NET ticks ---------------------------------------------------

void ZephalFileTime::toFILETIME(_FILETIME& ft) const {
  const uint64_t count = intervalsSince(kFileTimeEpoch, m_unixTime);
  ft.dwLowDateTime = low32(count);
  ft.dwHighDateTime = high32(count);
}

void ZephalFileTime::fromFILETIME(const _FILETIME& ft) {
  setFileTime(low32(ft.dwHighDateTime), low32(ft.dwLowDateTime));
}

void ZephalFileTime::setFileTime(unsigned int high, unsigned int low) {
  const uint64_t count = (static_cast<uint64_t>(high) << 32) | low;
  m_unixTime = secondsFrom(kFileTimeEpoch, count);
}

unsigned int ZephalFileTime::getLowDateTime() const {
  return low32(intervalsSince(kFileTimeEpoch, m_unixTime));
}

unsigned int ZephalFileTime::getHighDateTime() const {
  return high32(intervalsSince(kFileTimeEpoch, m_unixTime));
}

void ZephalFileTime::fromDateTimeTicks(long long ticks) {
  m_unixTime = secondsFrom(kTicksEpoch, static_cast<uint64_t>(ticks));
}

// ---- Comparison ----------------------------------------------------------------

namespace {
template <typename T>
long long threeWay(T a, T b) {
  return a < b ? -1 : (a > b ? 1 : 0);
}
}  // namespace

long long ZephalFileTime::compareFileTimeExact(const ZephalFileTime& a, const ZephalFileTime& b) {
  return threeWay(a.m_unixTime, b.m_unixTime);
}

long long ZephalFileTime::compareFileTimeNearestSec(const ZephalFileTime& a,
                                                    const ZephalFileTime& b) {
  return threeWay(a.toUnixTime32(), b.toUnixTime32());
}

// ---- Calendar ------------------------------------------------------------------

namespace {

// The reset load of the UTC breakdown, marked as asked, then the carried
// flags of `ft` in place of the defaults.
void breakDownInto(const ZephalFileTime& ft, bool bLocal, ZephalSysTime& st) {
  tm gmt;
  if (zp_gmtime(ft.m_unixTime, gmt)) {
    st.resetLoad(gmt, bLocal);
  } else {
    // Seconds beyond the years a tm holds: the calendar fields stay as clear
    // leaves them; the value is still marked and flagged like any other.
    st.clear();
    st.m_bLocal = bLocal;
  }
  st.m_bFlagA = ft.m_bFlagA;
  st.m_bFlagB = ft.m_bFlagB;
  st.m_bFromUnknownTimezone = ft.m_bFromUnknownTimezone;
}

}  // namespace

void ZephalFileTime::toSystemTime_gmt(ZephalSysTime& st) const { breakDownInto(*this, false, st); }

void ZephalFileTime::toSystemTime_local(ZephalSysTime& st) const { breakDownInto(*this, true, st); }

void ZephalFileTime::logFileTimeAsGmt(const char* tag, LogBase& log) const {
  ZephalSysTime gmt;
  toSystemTime_gmt(gmt);
  gmt.logSysTime(tag, log);
}

void ZephalSysTime::toFileTime_gmt(ZephalFileTime& ft) const {
  ft.m_unixTime = toUnixTime_gmt64();
  ft.m_bFlagA = m_bFlagA;
  ft.m_bFlagB = m_bFlagB;
  ft.m_bFromUnknownTimezone = m_bFromUnknownTimezone;
}
