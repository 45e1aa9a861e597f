// zpWallClockOf, zpLocalWallClockOf: the wall clock a pattern is written from.
#include <time.h>

#include "services/internal/CivilDays.h"
#include "services/zpDatePattern.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

namespace {

// The clock of a broken-down local reading the C library made.
void loadClock(const tm& local, unsigned millis, ZephalWallClock& clock) {
  ZephalSysTime read;
  read.brokenDownLoad(local, true);
  clock.fields = read.m_time;
  clock.fields.wMilliseconds = static_cast<uint16_t>(millis);
  clock.gmtOffset = static_cast<int32_t>(local.tm_gmtoff);
  clock.isDst = local.tm_isdst > 0;
  clock.abbreviation = local.tm_zone != nullptr ? local.tm_zone : "";
}

}  // namespace

void zpWallClockOf(const ZephalSysTime& value, ZephalWallClock& clock) {
  if (!value.m_bLocal) {
    clock.fields = value.m_time;
    if (value.m_time.wMonth >= 1 && value.m_time.wMonth <= 12) {
      clock.fields.wDayOfWeek = static_cast<uint16_t>(zpcivil::weekdayFromDays(
          zpcivil::daysFromCivil(value.m_time.wYear, value.m_time.wMonth, value.m_time.wDay)));
    }
    clock.gmtOffset = 0;
    clock.isDst = false;
    clock.abbreviation = "GMT";
    return;
  }
  // mktime normalises the copy: a skipped reading moves on, as the instant
  // it picks is read back; offset, summer time and abbreviation are its.
  tm image;
  value.toBrokenDownImage(image, true);
  zp_mktime64(&image);
  loadClock(image, value.m_time.wMilliseconds, clock);
}

void zpLocalWallClockOf(const ZephalSysTime& value, ZephalWallClock& clock) {
  if (value.m_bLocal) {
    zpWallClockOf(value, clock);
    return;
  }
  tm image;
  value.toBrokenDownImage(image, false);
  const time_t instant = timegm(&image);
  zp_tzset();
  tm local;
  if (localtime_r(&instant, &local) == nullptr) {
    zpWallClockOf(value, clock);  // no year a tm can hold: the GMT clock
    return;
  }
  loadClock(local, value.m_time.wMilliseconds, clock);
}
