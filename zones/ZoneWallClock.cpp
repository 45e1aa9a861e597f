// Instant -> wall clock: the reading of an instant on a zone's clock, with
// the offset, summer time and abbreviation in force there.
#include "services/internal/CivilDays.h"
#include "time/internal/SysTimeInstant.h"
#include "zones/ZephalTimeZone.h"
#include "zones/internal/ZoneRule.h"
#include "zones/internal/ZoneState.h"

namespace {

// Unix seconds of 0000-01-01 and 9999-12-31 23:59:59 GMT, a day wider each
// way for the zone's offset (under a day); the year is checked after.
constexpr int64_t kFirstSeconds = zpinstant::kFirstMillis / 1000 - zpcivil::kSecondsPerDay;
constexpr int64_t kLastSeconds = zpinstant::kLastMillis / 1000 + zpcivil::kSecondsPerDay;

}  // namespace

bool ZephalTimeZone::wallClockAt(int64_t unixSeconds, int milliseconds, ZephalWallClock& out) const {
  if (milliseconds < 0 || milliseconds > 999) return false;
  if (unixSeconds < kFirstSeconds || unixSeconds > kLastSeconds) return false;
  const zpzone::ZoneState& zone = *m_state;
  const int64_t cycles = zone.isRule ? zpzone::cyclesToInstant(unixSeconds) : 0;
  const zpzone::Stretch at = zone.at(unixSeconds + cycles * zpzone::kCycleSeconds);
  // The offset is the same a whole number of cycles away: the reading is
  // the instant's own, plus the offset.
  const zpcivil::CivilTime c = zpcivil::breakDown(unixSeconds + at.offset);
  if (c.year < 0 || c.year > zpinstant::kLastYear) return false;
  out.fields = ZephalCalendarFields{static_cast<uint16_t>(c.year),   static_cast<uint16_t>(c.month),
                                    static_cast<uint16_t>(c.weekday), static_cast<uint16_t>(c.day),
                                    static_cast<uint16_t>(c.hour),    static_cast<uint16_t>(c.minute),
                                    static_cast<uint16_t>(c.second),  static_cast<uint16_t>(milliseconds)};
  out.gmtOffset = at.offset;
  out.isDst = at.isDst;
  out.abbreviation = at.abbreviation;
  return true;
}

bool ZephalTimeZone::wallClockOf(const ZephalSysTime& t, ZephalWallClock& out) const {
  int64_t unixMillis = 0;
  if (!zpinstant::instantMillis(t, unixMillis)) return false;
  const int64_t seconds = zpcivil::floorDiv(unixMillis, 1000);
  return wallClockAt(seconds, static_cast<int>(unixMillis - seconds * 1000), out);
}
