// The pattern reader's steps: each reads the text of one conversion.
//
//   numbers     2024  03  3  " 7" (%e)  067 (%j)  02024 (%5Y)
//   names       Mar  march  MARCH  Thu  Thursday  thursday
//   AM/PM       AM  pm  a.m.  P.M.
//   fractions   123  123456789  1 (.1 is 100 ms)   %3N: exactly 3 digits
//   offsets     Z  z  +01  +0100  +01:00  -05:30  +01:00:00  -0000 (zone unknown)
//   zone names  GMT  UTC  UT  Z  CET  EST  PDT  +0530 (tzdata's numeric names)
//   seconds     1709802303  -86400  0
#include <climits>
#include <string_view>

#include "services/internal/CivilDays.h"
#include "services/internal/DateNames.h"
#include "services/internal/DateZoneNames.h"
#include "services/internal/PatternReading.h"
#include "services/internal/TextBytes.h"

namespace zppattern {
namespace {

using zpread::isDigit;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool isLetter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

bool startsWithFolded(const char* p, const char* end, std::string_view name) {
  if (static_cast<size_t>(end - p) < name.size()) return false;
  for (size_t i = 0; i < name.size(); ++i) {
    if (lower(p[i]) != lower(name[i])) return false;
  }
  return true;
}

// Two digits at p, when both are there.
bool twoDigitsAt(const char* p, const char* end, int& value) {
  if (end - p < 2 || !isDigit(p[0]) || !isDigit(p[1])) return false;
  value = zpread::twoDigits(p);
  return true;
}

// +hh, +hhmm, +hh:mm or +hh:mm:ss (seconds 00), the sign at p: minutes east.
const char* readSignedOffset(PatternReading& r, const char* p, int& minutes) {
  const char* const end = r.end;
  const char* const start = p;
  if (p == end || (*p != '+' && *p != '-')) return fail(r, p, "expected a zone offset");
  int hours = 0, mins = 0, secs = 0;
  if (!twoDigitsAt(++p, end, hours)) return fail(r, start, "expected a zone offset");
  p += 2;
  if (p < end && *p == ':') {
    if (!twoDigitsAt(p + 1, end, mins)) return fail(r, p + 1, "expected the minutes of the offset");
    p += 3;
    if (p < end && *p == ':') {
      if (!twoDigitsAt(p + 1, end, secs)) {
        return fail(r, p + 1, "expected the seconds of the offset");
      }
      p += 3;
    }
  } else if (twoDigitsAt(p, end, mins)) {
    p += 2;
  }
  if (hours > 23 || mins > 59 || secs > 59) return fail(r, start, "zone offset out of range");
  if (secs != 0) return fail(r, start, "zone offset not in whole minutes");
  minutes = (*start == '-' ? -1 : 1) * (hours * 60 + mins);
  return p;
}

}  // namespace

const char* readName(PatternReading& r, const char* p, Field field) {
  const bool months = field == kMonth;
  const std::string_view* const names = months ? zpnames::kMonths : zpnames::kWeekdays;
  const int count = months ? 12 : 7;
  for (int i = 0; i < count; ++i) {
    size_t length = 0;
    if (startsWithFolded(p, r.end, names[i])) {
      length = names[i].size();
    } else if (startsWithFolded(p, r.end, names[i].substr(0, zpnames::kAbbreviation))) {
      length = zpnames::kAbbreviation;
    }
    if (length != 0) return store(r, field, months ? i + 1 : i, p) ? p + length : nullptr;
  }
  return fail(r, p, months ? "expected a month name" : "expected a weekday name");
}

const char* readAmPm(PatternReading& r, const char* p) {
  const char* const end = r.end;
  const char half = p < end ? lower(*p) : '\0';
  if (half != 'a' && half != 'p') return fail(r, p, kFieldFacts[kPm].expected);
  const char* q = p + 1;
  const bool dotted = q < end && *q == '.';
  q += dotted;
  if (q == end || lower(*q) != 'm') return fail(r, p, kFieldFacts[kPm].expected);
  ++q;
  if (dotted) {
    if (q == end || *q != '.') return fail(r, q, "expected '.' after a.m or p.m");
    ++q;
  }
  return store(r, kPm, half == 'p', p) ? q : nullptr;
}

const char* readFraction(PatternReading& r, const char* p, const Directive& s, int maxDigits) {
  const char* const start = p;
  const int64_t exact = s.width > 0 ? s.width : 0;
  const int64_t most = exact > 0 ? exact : maxDigits;
  int ms = 0;
  for (; p < r.end && isDigit(*p) && p - start < most; ++p) {
    if (p - start < 3) ms = ms * 10 + (*p - '0');
  }
  const int64_t n = p - start;
  if (n == 0 || (exact > 0 && n != exact)) return fail(r, start, "expected a fraction of a second");
  for (int64_t i = n; i < 3; ++i) ms *= 10;
  r.millis = ms;
  return p;
}

const char* readOffset(PatternReading& r, const char* p) {
  const char* const start = p;
  if (p < r.end && (*p == 'Z' || *p == 'z')) {
    r.offsetAt = start, r.offset = 0, r.offsetKnown = true;
    return p + 1;
  }
  int minutes;
  p = readSignedOffset(r, p, minutes);
  if (p == nullptr) return nullptr;
  r.offsetAt = start;
  r.offset = minutes;
  // -0000 states that no offset is known, as RFC 3339 and RFC 5322 say.
  r.offsetKnown = minutes != 0 || *start == '+';
  return p;
}

const char* readZoneName(PatternReading& r, const char* p) {
  const char* const start = p;
  int minutes;
  if (p < r.end && (*p == '+' || *p == '-')) {
    // tzdata names zones it has no abbreviation for by their offset: +05, +0530.
    p = readSignedOffset(r, p, minutes);
  } else {
    while (p < r.end && isLetter(*p)) ++p;
    const size_t length = static_cast<size_t>(p - start);
    if (length == 0) return fail(r, start, "expected a zone name");
    minutes = length == 1 && lower(*start) == 'z' ? 0 : zpread::zoneNameOffset(start, length);
    if (minutes == zpread::kUnknownZone) return fail(r, start, "unknown zone name");
  }
  if (p == nullptr) return nullptr;
  r.nameAt = start;
  r.nameOffset = minutes;
  return p;
}

const char* readUnixSeconds(PatternReading& r, const char* p) {
  const char* const start = p;
  const bool negative = p < r.end && *p == '-';
  p += negative;
  const char* const digits = p;
  int64_t value = 0;
  for (; p < r.end && isDigit(*p); ++p) {
    if (p - digits == 12) return fail(r, start, "Unix seconds outside years 0-9999");
    value = value * 10 + (*p - '0');
  }
  if (p == digits) return fail(r, start, "expected Unix seconds");
  if (negative) value = -value;
  // 0000-01-01 00:00:00 and 9999-12-31 23:59:59 GMT.
  constexpr int64_t kFirst = zpcivil::daysFromCivil(0, 1, 1) * zpcivil::kSecondsPerDay;
  constexpr int64_t kLast = zpcivil::daysFromCivil(10000, 1, 1) * zpcivil::kSecondsPerDay - 1;
  if (value < kFirst || value > kLast) return fail(r, start, "Unix seconds outside years 0-9999");
  r.unixAt = start;
  r.unixSeconds = value;
  return p;
}

}  // namespace zppattern
