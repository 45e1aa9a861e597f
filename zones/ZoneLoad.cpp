// Loading a zone: a name of the system's tzdata first, as TZ reads one, then
// a TZ rule; and the refusals, which never leave UTC in a zone's place
// (cctz's load_time_zone sets UTC when it fails).
#include <cctz/time_zone.h>

#include <string>

#include "zones/ZephalTimeZone.h"
#include "zones/internal/ZoneRule.h"
#include "zones/internal/ZoneState.h"

namespace {

bool refuse(ZephalTextError& error, const char* reason, size_t byte) {
  error.reason = reason;
  error.byte = byte;
  return false;
}

bool isNameByte(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' ||
         c == '_' || c == '+' || c == '-';
}

// Where a ".." component of a path starts, or npos.
size_t climbAt(std::string_view name) {
  for (size_t at = name.find(".."); at != std::string_view::npos; at = name.find("..", at + 1)) {
    if ((at == 0 || name[at - 1] == '/') && (at + 2 == name.size() || name[at + 2] == '/')) return at;
  }
  return std::string_view::npos;
}

// A name relative to the tzdata folder: components of letters, digits and
// . _ + - between single '/', none of them "." or "..".
bool isZoneFileName(std::string_view name) {
  size_t start = 0;
  for (size_t i = 0; i <= name.size(); ++i) {
    if (i < name.size() && isNameByte(name[i])) continue;
    if (i < name.size() && name[i] != '/') return false;
    const std::string_view part = name.substr(start, i - start);
    if (part.empty() || part == "." || part == "..") return false;
    start = i + 1;
  }
  return true;
}

}  // namespace

ZephalTimeZone::ZephalTimeZone() : m_state(zpzone::utcState()) {}

bool ZephalTimeZone::load(std::string_view text, ZephalTextError& error) {
  if (text.empty()) return refuse(error, "empty zone name", 0);
  const size_t zero = text.find('\0');
  if (zero != std::string_view::npos) return refuse(error, "zero byte in the zone name", zero);
  // Names only reach zone files, whoever wrote them (an iCalendar TZID).
  if (text.front() == '/') return refuse(error, "zone names are relative to the tzdata folder", 0);
  const size_t climb = climbAt(text);
  if (climb != std::string_view::npos) return refuse(error, "'..' in the zone name", climb);
  const std::string copy(text);  // zero-terminated, for cctz and the rule reader
  cctz::time_zone zone;
  if (isZoneFileName(text) && cctz::load_time_zone(copy, &zone)) {
    m_state = zpzone::stateOf(copy, zone, false);
    m_name = copy;
    return true;
  }
  zpzone::ZoneRule rule;
  ZephalTextError ruleError;
  if (!zpzone::readRule(copy.c_str(), rule, ruleError)) {
    // A name that failed before it had a standard offset meant no rule.
    if (isZoneFileName(text) && rule.standardEnd == 0) return refuse(error, "unknown zone name", 0);
    error = ruleError;
    return false;
  }
  if (!zpzone::ruleSourceInstalled()) {
    return refuse(error, "TZ rules need zephal::zones' zone source, which the program replaced", 0);
  }
  const std::string key = zpzone::ruleZoneKey(text);
  if (!cctz::load_time_zone(key, &zone)) return refuse(error, "cctz cannot hold this rule", 0);
  m_state = zpzone::stateOf(key, zone, true);
  m_name = copy;
  return true;
}
