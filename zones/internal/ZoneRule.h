// A TZ rule string read into its parts, when in a year its changes fall,
// and the zone image cctz is handed for it (internal header).
//
//   CET-1CEST,M3.5.0,M10.5.0/3   "CET" 1 h east of GMT; "CEST" 2 h east from
//                                the last Sunday of March, 02:00 CET, to the
//                                last Sunday of October, 03:00 CEST
//   <+0530>-5:30                 "+0530" 5 h 30 min east, no summer time
//
// cctz reads no rule string on its own, only the rule at the end of a zone
// file (RFC 8536), which it applies after the file's last change. So a rule
// becomes a minimal zone file: its two changes of 1970, then the rule (see
// ZoneRuleImage.cpp); cctz extends them 400 years and repeats those.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "time/ZephalText.h"

namespace zpzone {

// A day of the year and a local time of day on it.
struct RuleDay {
  enum Kind : uint8_t {
    kMonthWeek,  // Mm.w.d: weekday d (0 = Sunday) of week w (1..5, 5 the last) of month m
    kJulian,     // Jn: day 1..365, 29 February never counted
    kZeroBased,  // n: day 0..365, 29 February counted
  };
  Kind kind = kMonthWeek;
  int day = 0;  // Jn and n
  int month = 0, week = 0, weekday = 0;
  int32_t time = 7200;  // seconds from the day's local midnight, -167 h .. 167 h
};

struct ZoneRule {
  std::string_view stdName;  // without <> quotes; views into the text read
  std::string_view dstName;  // empty: no summer time
  int32_t stdOffset = 0;     // seconds east of GMT
  int32_t dstOffset = 0;
  RuleDay start;             // summer time starts, the time read on standard time
  RuleDay end;               // and ends, the time read on summer time
  size_t standardEnd = 0;    // bytes the standard name and offset took; 0 until read
};

// Reads a whole TZ rule from a zero-terminated text. False, with the reason
// and its byte in `error`, for anything else; rule.standardEnd then says
// whether the text got as far as looking like a rule.
bool readRule(const char* text, ZoneRule& rule, ZephalTextError& error);

// Unix seconds at which `day` falls in `year`, its time of day read on a
// clock `offset` seconds east of GMT.
int64_t instantOf(const RuleDay& day, int64_t year, int32_t offset);

// A rule's zone repeats every 400 years: 146097 days, a whole number of weeks.
constexpr int64_t kCycleYears = 400;
constexpr int64_t kCycleSeconds = 146097LL * 86400;

// The image holds the changes of 1970 and cctz extends them forward only, so
// instants before 1971 and readings before 1972 are moved on by whole cycles
// first, and the answers moved back.
constexpr int kImageYear = 1970;
constexpr int64_t kFirstPlainInstant = 31536000;  // 1971-01-01 00:00:00 GMT
constexpr int kFirstPlainYear = 1972;

constexpr int64_t cyclesToInstant(int64_t instant) {
  return instant >= kFirstPlainInstant ? 0 : (kFirstPlainInstant - instant + kCycleSeconds - 1) / kCycleSeconds;
}
constexpr int64_t cyclesToYear(int64_t year) {
  return year >= kFirstPlainYear ? 0 : (kFirstPlainYear - year + kCycleYears - 1) / kCycleYears;
}

// The zone file of a rule read from `text` (RFC 8536, version 2): types,
// abbreviations, the 1970 changes and the rule text as its footer.
std::string ruleImage(const ZoneRule& rule, std::string_view text);

// The name under which cctz loads (and keeps) the zone of a rule text, and
// whether cctz's zone source is still the one that reads such names.
std::string ruleZoneKey(std::string_view text);
bool ruleSourceInstalled();

}  // namespace zpzone
