// Unix time in 32 and 64 bits, and moving a value by seconds.
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

void ZephalSysTime::fromUnixTime(bool bLocal, unsigned int t) {
  fromUnixTime64(bLocal, static_cast<long long>(t));  // zero-extended
}

void ZephalSysTime::fromUnixTime64(bool bLocal, long long t) {
  const time_t count = static_cast<time_t>(t);
  tm gmt;
  if (gmtime_r(&count, &gmt) == nullptr) {
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
