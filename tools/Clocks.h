// The clocks zpdate reads and writes local time on: the process's zone (TZ)
// unless --zone names another for the outputs, and GMT unless --from-zone
// names a zone for texts that state none. Zones are loaded once, before any
// thread starts, and only read after.
//
//   std::string why;
//   if (!useOutputZone("Asia/Kolkata", why)) ...   // why: "unknown zone 'Asia/Kolkata': ..."
//   ZephalWallClock clock;
//   localClock(in, clock, why);                     // 2024-03-07 14:35:03 +05:30 IST
#pragma once

#include <string>

#include "time/ZephalText.h"
#include "tools/DateInput.h"

namespace zpdate {

// Loads the zone --zone or --from-zone names; false, with the message, for
// one that names no zone (or when zpdate was built without named zones).
bool useOutputZone(const char* nameOrRule, std::string& why);
bool useInputZone(const char* nameOrRule, std::string& why);

// The instant's wall clock on the output clock; false outside the years
// 0001 to 9999 there.
bool localClock(const Instant& in, ZephalWallClock& clock, std::string& why);

// The input zone's name when --from-zone named one, else null.
const char* inputZoneName();

// Moves a reading that states no zone from the input zone's wall clock to
// GMT; a reading the zone's clock skips is refused, a repeated one takes
// its first instant.
bool fromInputZone(ZephalSysTime& value, std::string& why);

}  // namespace zpdate
