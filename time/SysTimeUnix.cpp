// Unix time in 32 and 64 bits, and moving a value by seconds.
#include "services/internal/CivilDays.h"
#include "services/internal/FastPaths.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

// The arithmetic needs no call into the C library and none of its locking
// (BM_PathCivilBreakdown: 36 ns instead of 40 ns a Unix-seconds text).
bool zp_gmtime(long long count, tm& out) {
  constexpr long long kReach = 1LL << 40;
  if (count < -kReach || count > kReach || !zp_fast::on(zp_fast::kCivilBreakdown)) {
    const time_t t = static_cast<time_t>(count);
    return gmtime_r(&t, &out) != nullptr;
  }
  const long long days = zpcivil::floorDiv(count, 86400);
  const int daySeconds = static_cast<int>(count - days * 86400);  // [0, 86399]
  const zpcivil::CivilDate date = zpcivil::civilFromDays(days);
  out = tm{};
  out.tm_year = static_cast<int>(date.year - 1900);
  out.tm_mon = date.month - 1;
  out.tm_mday = date.day;
  out.tm_hour = daySeconds / 3600;
  out.tm_min = daySeconds / 60 % 60;
  out.tm_sec = daySeconds % 60;
  out.tm_wday = zpcivil::weekdayFromDays(days);
  out.tm_yday = static_cast<int>(days - zpcivil::daysFromCivil(date.year, 1, 1));
  out.tm_zone = "GMT";
  return true;
}

void ZephalSysTime::fromUnixTime(bool bLocal, unsigned int t) {
  fromUnixTime64(bLocal, static_cast<long long>(t));  // zero-extended
}

void ZephalSysTime::fromUnixTime64(bool bLocal, long long t) {
  tm gmt;
  if (!zp_gmtime(t, gmt)) {
    // Beyond the years a tm holds: the value stays as clear leaves it.
    clear();
    return;
  }
  resetLoad(gmt, bLocal);
}

unsigned int ZephalSysTime::toUnixTime_gmt() const {
  return static_cast<unsigned int>(static_cast<unsigned long long>(toUnixTime_gmt64()));
}

long long ZephalSysTime::toUnixTime_gmt64() const {
  tm image;
  toBrokenDownImage(image, m_bLocal);
  return m_bLocal ? zp_mktime64(&image) : static_cast<long long>(timegm(&image));
}

bool ZephalSysTime::addSeconds(int n) {
  if (n == 0) return true;
  unsigned int t = toUnixTime_gmt();
  if (n > 0) {
    t += static_cast<unsigned int>(n);  // wraps past 2106-02-07 06:28:15
  } else {
    const unsigned int back = 0u - static_cast<unsigned int>(n);  // 2147483648 for INT_MIN
    t = t > back ? t - back : 0;
  }
  fromUnixTime(false, t);
  return true;
}

bool ZephalSysTime::addSeconds64(long long n) {
  if (n == 0) return true;
  // Unsigned, so a sum past the 64-bit range wraps instead of being undefined.
  const unsigned long long t =
      static_cast<unsigned long long>(toUnixTime_gmt64()) + static_cast<unsigned long long>(n);
  fromUnixTime64(false, static_cast<long long>(t));
  return true;
}
