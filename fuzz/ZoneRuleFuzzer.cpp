// ZephalTimeZone::load on any text: a zone name or a TZ rule. A refusal
// names a reason and a byte within the text; a rule the reader takes, cctz
// takes too; and a loaded zone agrees with itself across the years 1 to
// 9999: each instant's wall clock is the instant moved by the offset given
// with it, that offset is one of the rule's (with its name and summer-time
// flag), and looking the reading up again finds the instant.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/FuzzSupport.h"
#include "services/internal/CivilDays.h"
#include "zones/ZephalTimeZone.h"
#include "zones/internal/ZoneRule.h"

namespace {

// cctz keeps every zone it loads; so do we. A few thousand rule zones (some
// 50 KB each) are enough for one run's memory.
constexpr int kMostLoadedRules = 2000;

std::string quotedText(std::string_view text) { return zpfuzz::quoted(text.data(), text.size()); }

// The instant and its reading agree; the offset is the rule's.
void checkInstant(const ZephalTimeZone& zone, const zpzone::ZoneRule& rule, std::string_view text,
                  int64_t utc) {
  ZephalWallClock wall;
  if (!zone.wallClockAt(utc, 0, wall)) {
    if (utc >= -62135596800 + 86400 && utc < 253402300799 - 86400) {
      zpfuzz::fail("no wall clock within the years 1 to 9999", quotedText(text) + " at " + std::to_string(utc));
    }
    return;
  }
  const zpcivil::CivilTime c = zpcivil::breakDown(utc + wall.gmtOffset);
  const ZephalCalendarFields& f = wall.fields;
  const bool summer = wall.gmtOffset == rule.dstOffset && std::string_view(wall.abbreviation) == rule.dstName &&
                      wall.isDst;
  const bool standard = wall.gmtOffset == rule.stdOffset &&
                        std::string_view(wall.abbreviation) == rule.stdName && !wall.isDst;
  if (f.wYear != c.year || f.wMonth != c.month || f.wDay != c.day || f.wHour != c.hour ||
      f.wMinute != c.minute || f.wSecond != c.second || f.wDayOfWeek != c.weekday || !(summer || standard)) {
    zpfuzz::fail("a wall clock is not its instant moved by the rule's offset",
                 quotedText(text) + " at " + std::to_string(utc) + ": offset " + std::to_string(wall.gmtOffset) +
                     " " + wall.abbreviation + " dst " + std::to_string(wall.isDst));
  }
  ZephalZoneLookup at;
  if (!zone.lookup(f, at) || (at.pre != utc && at.post != utc) ||
      (at.kind == ZephalLookupKind::kUnique && at.pre != utc)) {
    zpfuzz::fail("a reading looked up again misses its instant",
                 quotedText(text) + " at " + std::to_string(utc) + ": pre " + std::to_string(at.pre) + " post " +
                     std::to_string(at.post));
  }
}

// Instants around the rule's changes in years near and far from 1970.
void checkRule(const ZephalTimeZone& zone, const zpzone::ZoneRule& rule, std::string_view text) {
  for (int64_t year : {1, 1600, 1899, 1969, 1970, 1971, 2024, 2099, 2100, 2371, 9998}) {
    const int64_t jan1 = zpcivil::daysFromCivil(year, 1, 1) * zpcivil::kSecondsPerDay;
    checkInstant(zone, rule, text, jan1);
    if (rule.dstName.empty()) continue;
    for (int64_t change : {zpzone::instantOf(rule.start, year, rule.stdOffset),
                           zpzone::instantOf(rule.end, year, rule.dstOffset)}) {
      for (int64_t delta : {-3601, -1, 0, 1, 3600}) checkInstant(zone, rule, text, change + delta);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // The text in a block of exactly its size: load reads no byte past it.
  std::unique_ptr<char[]> block(new char[size == 0 ? 1 : size]);
  if (size != 0) std::memcpy(block.get(), data, size);
  const std::string_view text(block.get(), size);

  const std::string terminated(text);
  zpzone::ZoneRule rule;
  ZephalTextError ruleError;
  const bool isRule = terminated.size() == std::strlen(terminated.c_str()) &&
                      zpzone::readRule(terminated.c_str(), rule, ruleError);
  static int loadedRules = 0;
  if (isRule && ++loadedRules > kMostLoadedRules) return 0;

  ZephalTimeZone zone;
  ZephalTextError error;
  if (!zone.load(text, error)) {
    if (error.reason == nullptr || error.byte > size) {
      zpfuzz::fail("a refusal without its reason or past the text", quotedText(text));
    }
    // A rule is refused only when cctz cannot hold it, or when a zone file
    // goes by the same name and cctz cannot read it (right/...).
    if (isRule && std::strcmp(error.reason, "cctz cannot hold this rule") != 0 &&
        std::strcmp(error.reason, "unknown zone name") != 0) {
      zpfuzz::fail("the rule reader takes what load refuses", quotedText(text) + ": " + error.reason);
    }
    return 0;
  }
  if (zone.name() != text) zpfuzz::fail("the zone's name is not the text", quotedText(text));
  if (isRule) checkRule(zone, rule, text);
  return 0;
}
