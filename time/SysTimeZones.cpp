// Moving a value between GMT and the process's local zone, the current time,
// and the zone's offset and summer time at a value's time.
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

namespace {

// The zone's offset in force at `instant`, 0 where the C library cannot break
// it down.
long long offsetAt(time_t instant) {
  zp_tzset();
  tm local{};
  localtime_r(&instant, &local);
  return local.tm_gmtoff;
}

}  // namespace

void ZephalSysTime::toGmtSysTime() {
  if (!m_bLocal) return;
  tm image;
  toBrokenDownImage(image, true);
  const long long instant = zp_mktime64(&image);
  tm gmt;
  // A count from 16-bit fields (or mktime's -1) always breaks down.
  zp_gmtime(instant, gmt);
  brokenDownLoad(gmt, false);
}

void ZephalSysTime::toLocalSysTime() {
  if (m_bLocal) return;
  tm image;
  toBrokenDownImage(image, false);
  // The full 64-bit count, not its low 32 bits: instants before 1970 and
  // after 2106 keep their true offset.
  const time_t instant = timegm(&image);
  tm wallClock;
  zp_gmtime(static_cast<long long>(instant) + offsetAt(instant), wallClock);
  brokenDownLoad(wallClock, true);
}

void ZephalSysTime::getCurrentGmt() {
  tm gmt;
  zp_gmtime(static_cast<long long>(time(nullptr)), gmt);
  resetLoad(gmt, false);
}

void ZephalSysTime::getCurrentLocal() {
  const time_t now = time(nullptr);
  zp_tzset();
  tm local;
  localtime_r(&now, &local);
  resetLoad(local, true);
}

int ZephalSysTime::getGmtOffsetInSeconds(int depth) const {
  if (m_bLocal) {
    // The wall-clock reading taken as GMT, minus the instant it names.
    tm asGmt;
    toBrokenDownImage(asGmt, false);
    const long long g = timegm(&asGmt);
    tm asLocal;
    toBrokenDownImage(asLocal, true);
    const long long l = zp_mktime64(&asLocal);
    return static_cast<int>(g - l);
  }
  if (depth >= 2) return 0;
  // Straight from the instant: going through the local reading and mktime,
  // as a local value must, would give either offset of a repeated hour.
  tm image;
  toBrokenDownImage(image, false);
  return static_cast<int>(offsetAt(timegm(&image)));
}

int ZephalSysTime::getCurrentGmtOffsetInSeconds() const { return getGmtOffsetInSeconds(0); }

int ZephalSysTime::getDstDiff() const {
  ZephalSysTime now;
  now.getCurrentLocal();
  return now.getGmtOffsetInSeconds(0) - getGmtOffsetInSeconds(0);
}

int ZephalSysTime::getIsDst() {
  if (m_isDst != -1) return m_isDst;
  if (m_time.wYear <= 1900) Psdk::badObjectFound(nullptr);
  tm image;
  toBrokenDownImage(image, true);
  zp_mktime64(&image);
  // -1 from the C library leaves the cache empty, so the next call asks again.
  m_isDst = image.tm_isdst;
  return m_isDst;
}
