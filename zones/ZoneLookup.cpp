// Wall clock -> instant: which kind a reading is in a zone (unique, skipped,
// repeated) and its instants, as cctz's civil_lookup gives them.
#include "time/internal/SysTimeInstant.h"
#include "zones/ZephalTimeZone.h"
#include "zones/internal/ZoneRule.h"
#include "zones/internal/ZoneState.h"

namespace {

ZephalLookupKind kindOf(cctz::time_zone::civil_lookup::civil_kind kind) {
  switch (kind) {
    case cctz::time_zone::civil_lookup::SKIPPED:
      return ZephalLookupKind::kSkipped;
    case cctz::time_zone::civil_lookup::REPEATED:
      return ZephalLookupKind::kRepeated;
    default:
      return ZephalLookupKind::kUnique;
  }
}

int64_t secondsOf(const cctz::time_point<cctz::seconds>& t) { return t.time_since_epoch().count(); }

}  // namespace

bool ZephalTimeZone::lookup(const ZephalCalendarFields& wall, ZephalZoneLookup& out) const {
  if (!zpinstant::isReading(wall)) return false;
  const int64_t cycles = m_state->isRule ? zpzone::cyclesToYear(wall.wYear) : 0;
  const cctz::civil_second reading(wall.wYear + cycles * zpzone::kCycleYears, wall.wMonth, wall.wDay,
                                   wall.wHour, wall.wMinute, wall.wSecond);
  const cctz::time_zone::civil_lookup at = m_state->zone.lookup(reading);
  const int64_t back = cycles * zpzone::kCycleSeconds;
  out.kind = kindOf(at.kind);
  out.pre = secondsOf(at.pre) - back;
  out.trans = secondsOf(at.trans) - back;
  out.post = secondsOf(at.post) - back;
  return true;
}

bool ZephalTimeZone::toGmtSysTime(const ZephalCalendarFields& wall, ZephalSysTime& out,
                                  ZephalLookupKind* kind) const {
  ZephalZoneLookup at;
  if (!lookup(wall, at)) return false;
  const int64_t millis = wall.wMilliseconds;  // read before `out`, which may hold `wall`, changes
  if (!zpinstant::loadGmtMillis(at.instant() * 1000 + millis, out)) return false;
  if (kind != nullptr) *kind = at.kind;
  return true;
}
