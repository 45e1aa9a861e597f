#include "time/TimeFunctions.h"

#include <atomic>

#include "services/ZephalObject.h"

namespace {
// Relaxed and without read-modify-write on purpose: a second tzset from a
// thread that raced past the test is harmless, a lock on every conversion is not.
std::atomic<bool> _tzset_called{false};
}  // namespace

void zp_tzset() {
  if (!_tzset_called.load(std::memory_order_relaxed)) {
    tzset();
    _tzset_called.store(true, std::memory_order_relaxed);
  }
}

void zp_localtime_r(const long* t, tm* out) {
  if (t == nullptr || out == nullptr) return;
  zp_tzset();
  const time_t tt = *t;
  localtime_r(&tt, out);
}

time_t zp_mktime(tm* t) {
  zp_tzset();
  return mktime(t);
}

long long zp_mktime64(tm* t) { return zp_mktime(t); }

long gmtUnixToLocalUnix(long t) {
  zp_tzset();
  const time_t tt = t;
  tm local{};
  if (localtime_r(&tt, &local) == nullptr) return t;
  return static_cast<long>(static_cast<long long>(t) + local.tm_gmtoff);
}

long long tm_to_unixTime64(const tm* t) {
  if (t->tm_year <= 69) {
    Psdk::badObjectFound(nullptr);
    return -1;
  }
  // POSIX.1 "Seconds Since the Epoch". From 1970 on every dividend is
  // positive, so C++'s truncating division is the floor the formula means.
  const long long sec = t->tm_sec, min = t->tm_min, hour = t->tm_hour;
  const long long yday = t->tm_yday, year = t->tm_year;
  return sec + 60 * min + 3600 * hour + 86400 * yday + 31536000 * (year - 70) +
         86400 * ((year - 69) / 4) - 86400 * ((year - 1) / 100) + 86400 * ((year + 299) / 400);
}
