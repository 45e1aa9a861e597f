// ZephalTimeZone: any time zone by name, read from the system's tzdata, or
// by a TZ rule string, for programs that work in several zones at once.
// Part of the optional component zephal::zones (on cctz); zephal::time and
// its local clock, the C library's, do not depend on it.
//
//   ZephalTimeZone ny;
//   ZephalTextError error;
//   if (!ny.load("America/New_York", error)) { /* error.reason: "unknown zone name" */ }
//   ZephalWallClock wall;
//   ny.wallClockAt(1709802303, 0, wall);  // 2024-03-07 04:05:03 EST, -18000 s
//   ZephalZoneLookup at;
//   ny.lookup({2024, 3, 0, 10, 2, 30, 0, 0}, at);  // kSkipped: 02:30 never happened
//
// Load once, convert many: a conversion allocates nothing, a copy shares the
// loaded zone, and a zone object is read by any number of threads at once.
// Nothing here reads or changes TZ, or calls tzset.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "time/ZephalSysTime.h"
#include "time/ZephalText.h"

namespace zpzone {
struct ZoneState;  // zones/internal/ZoneState.h
}  // namespace zpzone

// What a wall-clock reading is in a zone, as cctz's civil_lookup says it.
enum class ZephalLookupKind : uint8_t {
  kUnique,    // one instant: pre == trans == post
  kSkipped,   // the clock jumped over it (02:30 on a spring-forward night): pre >= trans > post
  kRepeated,  // the clock passed it twice (01:30 on a fall-back night): pre < trans <= post
};

// The instants of a wall-clock reading, in Unix seconds (the reading's
// milliseconds are not part of them).
//   pre    the reading on the offset in force before the change: a skipped
//          reading moved on by the jump (02:30 -> 03:30), a repeated one the
//          first time (01:30 on summer time)
//   trans  the first instant of the new offset
//   post   the reading on the offset after the change: a skipped reading
//          moved back (02:30 -> 01:30), a repeated one the second time
// The default pick is pre, as RFC 5545 reads a time with a TZID and Python's
// zoneinfo reads fold=0; post is the other instant.
struct ZephalZoneLookup {
  ZephalLookupKind kind = ZephalLookupKind::kUnique;
  int64_t pre = 0;
  int64_t trans = 0;
  int64_t post = 0;

  int64_t instant() const { return pre; }  // the default pick
};

class ZephalTimeZone {
 public:
  // UTC (abbreviation "UTC"), until a load succeeds.
  ZephalTimeZone();

  // ---- Loading ------------------------------------------------------------------

  // A zone as TZ names one: a name of the system's tzdata ("America/New_York",
  // "UTC", "EST5EDT"; under /usr/share/zoneinfo, or TZDIR, which cctz reads),
  // else a TZ rule ("CET-1CEST,M3.5.0,M10.5.0/3", "<+0530>-5:30"); a name
  // with a zone file wins, as it does for TZ. Names are relative to the
  // tzdata folder: no leading '/' and no "..". A rule with summer time must
  // say when it starts and ends. False, with the reason and byte, and the
  // zone unchanged, for anything else: an unknown name is never taken as UTC.
  // Each zone loaded stays loaded for the life of the process (about 50 KB).
  bool load(std::string_view nameOrRule, ZephalTextError& error);

  // The text the zone was loaded from; "UTC" before any load.
  const std::string& name() const { return m_name; }

  // ---- Instant -> wall clock --------------------------------------------------------
  // The reading of an instant on this zone's clock, with wDayOfWeek and
  // wMilliseconds, the offset (seconds east of GMT), whether the zone's data
  // calls it summer time, and the abbreviation ("EST", "+0530"), valid as
  // long as this object lives. False, and `out` unchanged, for milliseconds
  // outside 0..999 or a reading outside the years 0 to 9999.

  bool wallClockAt(int64_t unixSeconds, int milliseconds, ZephalWallClock& out) const;

  // The same for the instant a value names: a GMT value's fields, or a local
  // value taken on the process's clock (mktime on a copy). False also for
  // fields that name no reading (month 13, 31 April, hour 24).
  bool wallClockOf(const ZephalSysTime& t, ZephalWallClock& out) const;

  // ---- Wall clock -> instant ---------------------------------------------------------
  // Fields: year 0 to 9999, month, day within it, hour 0..23, minute 0..59,
  // second 0..60 (60 is the next minute's 00, as mktime reads it),
  // milliseconds 0..999; wDayOfWeek is not read. Other fields give false and
  // leave `out` unchanged.

  // Which kind the reading is and its instants; see ZephalZoneLookup.
  bool lookup(const ZephalCalendarFields& wall, ZephalZoneLookup& out) const;

  // Sets `out` to the GMT reading of the default pick (pre), milliseconds
  // kept, wDayOfWeek set, m_isDst -1, carried flags at their defaults; the
  // kind goes to *kind when given. False, and `out` unchanged, also when
  // that GMT reading falls outside the years 0 to 9999.
  bool toGmtSysTime(const ZephalCalendarFields& wall, ZephalSysTime& out,
                    ZephalLookupKind* kind = nullptr) const;

 private:
  const zpzone::ZoneState* m_state;  // shared by copies, kept for the life of the process
  std::string m_name = "UTC";
};
