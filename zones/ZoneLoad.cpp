// Loading a zone: a name of the system's tzdata first, as TZ reads one, then
// a TZ rule; and the refusals, which never leave UTC in a zone's place
// (cctz's load_time_zone sets UTC when it fails).
#include <cctz/time_zone.h>

#include <string>

#include "services/internal/DateCursor.h"
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
  return zpread::isLetter(c) || zpread::isDigit(c) || c == '.' || c == '_' || c == '+' || c == '-';
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

// Why no zone has this text, or null: an empty text, one with a zero byte,
// and paths that could reach other files than zone files, whoever wrote
// them (an iCalendar TZID). `byte` gets where.
const char* refusedOutright(std::string_view text, size_t& byte) {
  byte = 0;
  if (text.empty()) return "empty zone name";
  if ((byte = text.find('\0')) != std::string_view::npos) return "zero byte in the zone name";
  if ((byte = climbAt(text)) != std::string_view::npos) return "'..' in the zone name";
  byte = 0;
  return text.front() == '/' ? "zone names are relative to the tzdata folder" : nullptr;
}

// The zone of a TZ rule, or null with the reason. A text shaped as a name
// that is not even a rule's standard time is an unknown name.
const zpzone::ZoneState* ruleZone(const std::string& text, bool nameShaped, ZephalTextError& error) {
  zpzone::ZoneRule rule;
  ZephalTextError ruleError;
  if (!zpzone::readRule(text.c_str(), rule, ruleError)) {
    if (nameShaped && rule.standardEnd == 0) {
      refuse(error, "unknown zone name", 0);
    } else {
      error = ruleError;
    }
    return nullptr;
  }
  if (!zpzone::ruleSourceInstalled()) {
    refuse(error, "TZ rules need zephal::zones' zone source, which the program replaced", 0);
    return nullptr;
  }
  const std::string key = zpzone::ruleZoneKey(text);
  cctz::time_zone zone;
  if (!cctz::load_time_zone(key, &zone)) {
    refuse(error, "cctz cannot hold this rule", 0);
    return nullptr;
  }
  return zpzone::stateOf(key, zone, true);
}

}  // namespace

ZephalTimeZone::ZephalTimeZone() : m_state(zpzone::utcState()) {}

bool ZephalTimeZone::load(std::string_view text, ZephalTextError& error) {
  size_t byte = 0;
  if (const char* reason = refusedOutright(text, byte)) return refuse(error, reason, byte);
  const std::string copy(text);  // zero-terminated, for cctz and the rule reader
  const bool nameShaped = isZoneFileName(text);
  cctz::time_zone zone;
  const zpzone::ZoneState* state = nullptr;
  if (nameShaped && cctz::load_time_zone(copy, &zone)) {
    state = zpzone::stateOf(copy, zone, false);
  } else {
    state = ruleZone(copy, nameShaped, error);
  }
  if (state == nullptr) return false;
  m_state = state;
  m_name = copy;
  return true;
}
