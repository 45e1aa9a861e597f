#include <cstdio>
#include <cstring>

#include "time/ZephalSysTime.h"
#include "zones/ZephalTimeZone.h"

int main() {
  ZephalTimeZone newYork;
  ZephalTextError error;
  if (!newYork.load("America/New_York", error)) {
    std::printf("%s at byte %zu\n", error.reason, error.byte);
    return 1;
  }
  ZephalWallClock wall;
  newYork.wallClockAt(1709802303, 0, wall);  // 2024-03-07 09:05:03 GMT
  std::printf("%04u-%02u-%02u %02u:%02u:%02u %s, %+d s\n", wall.fields.wYear, wall.fields.wMonth,
              wall.fields.wDay, wall.fields.wHour, wall.fields.wMinute, wall.fields.wSecond,
              wall.abbreviation, wall.gmtOffset);  // 2024-03-07 04:05:03 EST, -18000 s

  // 02:30 on 10 March 2024 never happened in New York (02:00 became 03:00).
  const ZephalCalendarFields reading{2024, 3, 0, 10, 2, 30, 0, 0};  // weekday not read
  ZephalZoneLookup at;
  newYork.lookup(reading, at);  // kSkipped; pre 07:30 GMT, trans 07:00, post 06:30
  ZephalSysTime gmt;
  newYork.toGmtSysTime(reading, gmt);  // the default pick, pre: 07:30 GMT

  // A TZ rule needs no zone file.
  ZephalTimeZone india;
  india.load("<+0530>-5:30", error);
  india.wallClockOf(gmt, wall);  // 13:00 +0530
  std::printf("%02u:%02u %s\n", wall.fields.wHour, wall.fields.wMinute, wall.abbreviation);

  const bool ok = at.kind == ZephalLookupKind::kSkipped && at.instant() == 1710055800 &&
                  gmt.m_time.wHour == 7 && gmt.m_time.wMinute == 30 && wall.fields.wHour == 13 &&
                  std::strcmp(wall.abbreviation, "+0530") == 0;
  return ok ? 0 : 1;
}
