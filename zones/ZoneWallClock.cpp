// Instant -> wall clock: the reading of an instant on a zone's clock, with
// the offset, summer time and abbreviation in force there.
#include "services/internal/CivilDays.h"
#include "time/internal/SysTimeInstant.h"
#include "zones/internal/ZoneAccess.h"
#include "zones/internal/ZoneRule.h"

namespace {

// Unix seconds of 0000-01-01 and 9999-12-31 23:59:59 GMT, a day wider each
// way for the zone's offset (under a day); the year is checked after.
constexpr int64_t kFirstSeconds = zpinstant::kFirstMillis / 1000 - zpcivil::kSecondsPerDay;
constexpr int64_t kLastSeconds = zpinstant::kLastMillis / 1000 + zpcivil::kSecondsPerDay;

}  // namespace

bool ZephalTimeZone::wallClockAt(int64_t unixSeconds, int milliseconds, ZephalWallClock& out) const {
  if (milliseconds < 0 || milliseconds > 999) return false;
  if (unixSeconds < kFirstSeconds || unixSeconds > kLastSeconds) return false;
  const int64_t cycles = m_isRule ? zpzone::cyclesToInstant(unixSeconds) : 0;
  const cctz::time_zone::absolute_lookup at = ZoneAccess::cctzZone(*this).lookup(
      cctz::time_point<cctz::seconds>(cctz::seconds(unixSeconds + cycles * zpzone::kCycleSeconds)));
  const int64_t year = at.cs.year() - cycles * zpzone::kCycleYears;
  if (year < 0 || year > zpinstant::kLastYear) return false;
  const int64_t localDays = zpcivil::floorDiv(unixSeconds + at.offset, zpcivil::kSecondsPerDay);
  out.fields = ZephalCalendarFields{static_cast<uint16_t>(year),
                                    static_cast<uint16_t>(at.cs.month()),
                                    static_cast<uint16_t>(zpcivil::weekdayFromDays(localDays)),
                                    static_cast<uint16_t>(at.cs.day()),
                                    static_cast<uint16_t>(at.cs.hour()),
                                    static_cast<uint16_t>(at.cs.minute()),
                                    static_cast<uint16_t>(at.cs.second()),
                                    static_cast<uint16_t>(milliseconds)};
  out.gmtOffset = at.offset;
  out.isDst = at.is_dst;
  out.abbreviation = at.abbr;
  return true;
}

bool ZephalTimeZone::wallClockOf(const ZephalSysTime& t, ZephalWallClock& out) const {
  int64_t unixMillis = 0;
  if (!zpinstant::instantMillis(t, unixMillis)) return false;
  const int64_t seconds = zpcivil::floorDiv(unixMillis, 1000);
  return wallClockAt(seconds, static_cast<int>(unixMillis - seconds * 1000), out);
}
