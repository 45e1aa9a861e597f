// Reads a TZ rule string: POSIX's, with RFC 8536's times of day past 24 h
// and before midnight, as zone files end with them.
//
//   UTC0                              a standard-time name, then its hours west of GMT
//   <+0530>-5:30                      a quoted name (letters, digits, '+', '-'); hh[:mm[:ss]]
//   EST5EDT,M3.2.0,M11.1.0            summer time an hour ahead; changes at 02:00
//   EST5EDT4,M3.2.0/2,M11.1.0/2:00:00 summer time's own offset; a time of day after '/'
//   CET-1CEST,M3.5.0,M10.5.0/3        Mm.w.d: weekday d (0 Sunday) of week w (5 the last) of month m
//   IST-2IDT,M3.4.4/26,M10.5.0        a time of day past 24 h, up to 167 h
//   <-02>2<-01>,M3.5.0/-1,M10.5.0/0   a time of day before the day's midnight, down to -167 h
//   EST5EDT4,0/0,J365/25              n: day 0..365, 29 February counted; Jn: 1..365, never counted
//   AEST-10AEDT,M10.1.0,M4.1.0/3      summer time across the new year
//
// Refused: a summer-time name without the days it starts and ends (glibc
// then borrows the US rules of a posixrules file), an offset of 24 hours or
// more, a name shorter than three characters or longer than 16, and
// anything after the rule.
#include "services/internal/DateCursor.h"
#include "zones/internal/ZoneRule.h"

namespace {

using zpread::failAt;
using zpread::isDigit;
using zpread::isLetter;
using zpread::Reading;

constexpr size_t kMaxNameLength = 16;
constexpr int kMaxOffsetHours = 24;
constexpr int kMaxTimeHours = 167;  // RFC 8536: a week less an hour
constexpr int32_t kDefaultSummerShift = 3600;

bool isQuotedNameByte(char c) { return isDigit(c) || isLetter(c) || c == '+' || c == '-'; }

// A zone abbreviation: three or more letters, or three or more letters,
// digits, '+' and '-' between '<' and '>'.
const char* readName(const char* p, std::string_view& name, Reading& r) {
  const bool quoted = *p == '<';
  const char* const start = p + quoted;
  const char* q = start;
  while (quoted ? isQuotedNameByte(*q) : isLetter(*q)) ++q;
  const size_t length = static_cast<size_t>(q - start);
  if (length < 3) {
    return failAt(r, p, quoted ? "zone abbreviation in <> shorter than three characters"
                               : "expected a zone abbreviation of three or more letters");
  }
  if (length > kMaxNameLength) return failAt(r, p, "zone abbreviation longer than 16 characters");
  if (quoted && *q != '>') return failAt(r, q, "expected '>' after the zone abbreviation");
  name = std::string_view(start, length);
  return q + quoted;
}

// [+|-]hh[:mm[:ss]] as signed seconds, the hours 0..maxHours.
const char* readClock(const char* p, int maxHours, int32_t& seconds, Reading& r,
                      const char* hoursWhy, const char* hoursRangeWhy) {
  const int sign = *p == '-' ? -1 : 1;
  p += *p == '-' || *p == '+';
  int hours = 0, minutes = 0, secs = 0, width = 0;
  const char* q = zpread::readDigits(p, maxHours > 99 ? 3 : 2, hours, width, r, hoursWhy);
  if (!q) return nullptr;
  if (hours > maxHours) return failAt(r, p, hoursRangeWhy);
  if (*q == ':') {
    q = zpread::readOneOrTwo(q + 1, 59, minutes, r, "expected minutes after ':'", "minutes past 59");
    if (q && *q == ':') {
      q = zpread::readOneOrTwo(q + 1, 59, secs, r, "expected seconds after ':'", "seconds past 59");
    }
    if (!q) return nullptr;
  }
  seconds = sign * (hours * 3600 + minutes * 60 + secs);
  return q;
}

// An offset as the rule writes it (hours west of GMT), kept as seconds east.
const char* readOffset(const char* p, int32_t& east, Reading& r) {
  int32_t west = 0;
  const char* q = readClock(p, kMaxOffsetHours, west, r, "expected the offset from GMT in hours",
                            "offset hours past 24");
  if (!q) return nullptr;
  if (west <= -86400 || west >= 86400) return failAt(r, p, "offset of 24 hours or more");
  east = -west;
  return q;
}

// One number of 1..maxWidth digits in [minValue, maxValue].
const char* readNumber(const char* p, int maxWidth, int minValue, int maxValue, int& out,
                       Reading& r, const char* why, const char* rangeWhy) {
  int width = 0;
  const char* q = zpread::readDigits(p, maxWidth, out, width, r, why);
  if (q && (out < minValue || out > maxValue)) return failAt(r, p, rangeWhy);
  return q;
}

const char* readMonthWeek(const char* p, zpzone::RuleDay& day, Reading& r) {
  day.kind = zpzone::RuleDay::kMonthWeek;
  p = readNumber(p, 2, 1, 12, day.month, r, "expected a month after 'M'", "month outside 1..12");
  if (!p) return nullptr;
  if (*p != '.') return failAt(r, p, "expected '.' after the month");
  p = readNumber(p + 1, 1, 1, 5, day.week, r, "expected the week of the month", "week outside 1..5");
  if (!p) return nullptr;
  if (*p != '.') return failAt(r, p, "expected '.' after the week");
  return readNumber(p + 1, 1, 0, 6, day.weekday, r, "expected the weekday", "weekday outside 0..6");
}

// Mm.w.d, Jn or n, then an optional /time of day.
const char* readDay(const char* p, zpzone::RuleDay& day, Reading& r) {
  const char* q;
  if (*p == 'M') {
    q = readMonthWeek(p + 1, day, r);
  } else if (*p == 'J') {
    day.kind = zpzone::RuleDay::kJulian;
    q = readNumber(p + 1, 3, 1, 365, day.day, r, "expected a day after 'J'", "day outside 1..365");
  } else {
    day.kind = zpzone::RuleDay::kZeroBased;
    q = readNumber(p, 3, 0, 365, day.day, r, "expected a day: Mm.w.d, Jn or n", "day outside 0..365");
  }
  if (!q || *q != '/') return q;
  return readClock(q + 1, kMaxTimeHours, day.time, r, "expected the time of day in hours",
                   "time of day past 167 hours");
}

// The summer-time part after the standard offset, when there is one.
const char* readSummer(const char* p, zpzone::ZoneRule& rule, Reading& r) {
  if (*p == '\0') return p;
  p = readName(p, rule.dstName, r);
  if (!p) return nullptr;
  rule.dstOffset = rule.stdOffset + kDefaultSummerShift;
  if (isDigit(*p) || *p == '+' || *p == '-') {
    p = readOffset(p, rule.dstOffset, r);
    if (!p) return nullptr;
  }
  if (*p != ',') return failAt(r, p, "expected ',' and the days summer time starts and ends");
  p = readDay(p + 1, rule.start, r);
  if (!p) return nullptr;
  if (*p != ',') return failAt(r, p, "expected ',' and the day summer time ends");
  return readDay(p + 1, rule.end, r);
}

}  // namespace

bool zpzone::readRule(const char* text, ZoneRule& rule, ZephalTextError& error) {
  rule = ZoneRule{};
  Reading r;
  const char* p = readName(text, rule.stdName, r);
  if (p) p = readOffset(p, rule.stdOffset, r);
  if (p) rule.standardEnd = static_cast<size_t>(p - text);
  if (p) p = readSummer(p, rule, r);
  if (p && *p != '\0') p = failAt(r, p, "unexpected text after the rule");
  if (p) return true;
  error.reason = r.why;
  error.byte = static_cast<size_t>(r.at - text);
  return false;
}
