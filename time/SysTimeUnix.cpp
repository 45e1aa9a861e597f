// Unix time in 32 and 64 bits, and moving a value by seconds.
#include "services/internal/CivilDays.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

// By arithmetic rather than gmtime_r, which takes glibc's zone lock on
// every call: threads converting at once would queue on it.
bool zp_gmtime(long long count, tm& out) {
  constexpr long long kReach = 1LL << 40;
  if (count < -kReach || count > kReach) {
    const time_t t = static_cast<time_t>(count);
    return gmtime_r(&t, &out) != nullptr;
  }
  const zpcivil::CivilTime c = zpcivil::breakDown(count);
  out = tm{};
  out.tm_year = static_cast<int>(c.year - 1900);
  out.tm_mon = c.month - 1;
  out.tm_mday = c.day;
  out.tm_hour = c.hour;
  out.tm_min = c.minute;
  out.tm_sec = c.second;
  out.tm_wday = c.weekday;
  out.tm_yday = c.yearDay;
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
