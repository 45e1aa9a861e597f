// The values and std::chrono's system clock: plain arithmetic on the count,
// the C library only for a local value's instant.
#include "time/ZephalChrono.h"

#include <cstdint>

#include "time/internal/SysTimeInstant.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::system_clock;

// The whole milliseconds a system_clock::time_point holds; the cast rounds
// toward zero, inward at both ends.
constexpr int64_t kFirstPointMillis = std::chrono::duration_cast<milliseconds>(system_clock::duration::min()).count();
constexpr int64_t kLastPointMillis = std::chrono::duration_cast<milliseconds>(system_clock::duration::max()).count();

static_assert(sizeof(std::chrono::seconds::rep) == sizeof(int64_t), "64-bit seconds, as m_unixTime");

}  // namespace

bool zpToTimePoint(const ZephalSysTime& t, system_clock::time_point& out) {
  int64_t unixMillis = 0;
  if (!zpinstant::instantMillis(t, unixMillis)) return false;
  if (unixMillis < kFirstPointMillis || unixMillis > kLastPointMillis) return false;
  out = system_clock::time_point(std::chrono::duration_cast<system_clock::duration>(milliseconds(unixMillis)));
  return true;
}

bool zpFromTimePoint(system_clock::time_point tp, ZephalSysTime& out) {
  return zpinstant::loadGmtMillis(std::chrono::floor<milliseconds>(tp).time_since_epoch().count(), out);
}

ZephalSysSeconds zpToTimePoint(const ZephalFileTime& ft) {
  return ZephalSysSeconds(std::chrono::seconds(ft.m_unixTime));
}

void zpFromTimePoint(ZephalSysSeconds tp, ZephalFileTime& out) {
  out.fromUnixTime64(tp.time_since_epoch().count(), 0);
}
