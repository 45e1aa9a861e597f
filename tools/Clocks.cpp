#include "tools/Clocks.h"

#include "services/zpDatePattern.h"
#include "tools/InputChecks.h"

#if ZPDATE_NAMED_ZONES
#include "zones/ZephalTimeZone.h"
#endif

namespace zpdate {
namespace {

#if ZPDATE_NAMED_ZONES
ZephalTimeZone g_output, g_input;
bool g_haveOutput = false, g_haveInput = false;

bool load(const char* name, ZephalTimeZone& zone, std::string& why) {
  ZephalTextError error;
  if (zone.load(name, error)) return true;
  why = std::string("unknown zone '") + name + "': " + error.reason + " at byte " +
        std::to_string(error.byte);
  return false;
}
#else
bool noZones(const char* name, std::string& why) {
  why = std::string("cannot read zone '") + name + "': zpdate was built without named zones";
  return false;
}
#endif

}  // namespace

#if ZPDATE_NAMED_ZONES

bool useOutputZone(const char* name, std::string& why) {
  return g_haveOutput = load(name, g_output, why);
}

bool useInputZone(const char* name, std::string& why) {
  return g_haveInput = load(name, g_input, why);
}

const char* inputZoneName() { return g_haveInput ? g_input.name().c_str() : nullptr; }

bool fromInputZone(ZephalSysTime& value, std::string& why) {
  ZephalLookupKind kind;
  ZephalSysTime gmt;
  if (!g_input.toGmtSysTime(value.m_time, gmt, &kind)) return refuse(why, kOutsideYears);
  if (kind == ZephalLookupKind::kSkipped) {
    why = "no such time in " + g_input.name() + " (a clock change skips it)";
    return false;
  }
  value = gmt;
  return true;
}

#else

bool useOutputZone(const char* name, std::string& why) { return noZones(name, why); }
bool useInputZone(const char* name, std::string& why) { return noZones(name, why); }
const char* inputZoneName() { return nullptr; }
bool fromInputZone(ZephalSysTime&, std::string&) { return true; }

#endif

bool localClock(const Instant& in, ZephalWallClock& clock, std::string& why) {
#if ZPDATE_NAMED_ZONES
  if (g_haveOutput) {
    const ZephalCalendarFields& g = in.gmt.m_time;
    if (!g_output.wallClockAt(unixSeconds(in), g.wMilliseconds, clock)) {
      return refuse(why, "outside the years 0001 to 9999 on the local clock");
    }
  } else {
    zpLocalWallClockOf(in.gmt, clock);
  }
#else
  zpLocalWallClockOf(in.gmt, clock);
#endif
  const unsigned year = clock.fields.wYear;
  return (year >= 1 && year <= 9999) ||
         refuse(why, "outside the years 0001 to 9999 on the local clock");
}

}  // namespace zpdate
