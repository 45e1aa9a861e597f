// The pattern reader's state and steps (internal): what zpParseDate has read
// so far, field by field with the byte each was read at, and the steps that
// read one conversion's text each (DatePatternSteps.cpp) and settle the
// fields into a value (DatePatternSettle.cpp).
//
// The text is [begin, end), its size; no step reads a byte at or past `end`.
// A zero byte in it is a byte no step takes, so reading stops there.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>

#include "services/internal/PatternDirective.h"
#include "services/internal/TextBytes.h"

class ZephalSysTime;

namespace zppattern {

// The fields a layout can name; each is stored as read and checked against
// the others when the reading settles.
enum Field : uint8_t {
  kYear,                // %Y, [0, 9999]
  kCentury,             // %C
  kYearOfCentury,       // %y
  kIsoYear,             // %G
  kIsoYearOfCentury,    // %g
  kMonth,               // %m %b %B %h
  kDay,                 // %d %e
  kYearDay,             // %j, [1, 366]
  kIsoWeek,             // %V, [1, 53]
  kSundayWeek,          // %U, [0, 53]
  kMondayWeek,          // %W, [0, 53]
  kWeekday,             // %a %A %w, 0 = Sunday
  kIsoWeekday,          // %u, 1 = Monday .. 7 = Sunday
  kQuarter,             // %q
  kHour,                // %H %k
  kHour12,              // %I %l, [1, 12]
  kPm,                  // %p, 0 = AM
  kMinute,              // %M
  kSecond,              // %S, [0, 60]
  kFieldCount
};

// What is said of each field: its range, and the reasons of a refusal.
struct FieldFacts {
  int low, high;
  const char* expected;  // no digits or name where the field should be
  const char* range;     // read, but outside [low, high]
  const char* mismatch;  // in range, but not what the other fields say
};

inline constexpr FieldFacts kFieldFacts[kFieldCount] = {
    {0, 9999, "expected a four-digit year", "year out of range", "year does not match the date"},
    {0, 99, "expected a century", "century out of range", "century does not match the date"},
    {0, 99, "expected a two-digit year", "two-digit year out of range",
     "two-digit year does not match the date"},
    {0, 9999, "expected a four-digit ISO year", "ISO year out of range",
     "ISO year does not match the date"},
    {0, 99, "expected a two-digit ISO year", "two-digit ISO year out of range",
     "two-digit ISO year does not match the date"},
    {1, 12, "expected a month", "month out of range", "month does not match the date"},
    {1, 31, "expected a day", "day out of range", "day does not match the date"},
    {1, 366, "expected a day of the year", "day of the year out of range",
     "day of the year does not match the date"},
    {1, 53, "expected an ISO week", "ISO week out of range", "ISO week does not match the date"},
    {0, 53, "expected a week number", "week number out of range",
     "week number (%U) does not match the date"},
    {0, 53, "expected a week number", "week number out of range",
     "week number (%W) does not match the date"},
    {0, 6, "expected a weekday", "weekday out of range", "weekday does not match the date"},
    {1, 7, "expected a weekday", "weekday out of range", "weekday does not match the date"},
    {1, 4, "expected a quarter", "quarter out of range", "quarter does not match the date"},
    {0, 23, "expected an hour", "hour out of range", "hour read twice, differently"},
    {1, 12, "expected an hour", "hour out of range (12-hour clock)",
     "12-hour hour does not match the hour"},
    {0, 1, "expected AM or PM", "AM or PM out of range", "AM/PM does not match the hour"},
    {0, 59, "expected minutes", "minute out of range", "minute read twice, differently"},
    {0, 60, "expected seconds", "second out of range", "second read twice, differently"},
};

struct PatternReading {
  const char* begin = nullptr;
  const char* end = nullptr;
  // Field f was read when bit f of `present` is set; then value[f] holds it
  // and at[f] says where. Neither array is cleared: a reading costs tens of
  // nanoseconds, and clearing them would be a fifth of it.
  uint32_t present = 0;
  int value[kFieldCount];
  const char* at[kFieldCount];
  int millis = 0;                    // %N %f, truncated to milliseconds
  // %z: minutes east of GMT; -0000 states that the offset is unknown.
  const char* offsetAt = nullptr;
  int offset = 0;
  bool offsetKnown = false;
  // %Z: minutes east of GMT, or zpread::kAmbiguousZone.
  const char* nameAt = nullptr;
  int nameOffset = 0;
  // %s
  const char* unixAt = nullptr;
  int64_t unixSeconds = 0;
  // The refusal: a fixed reason and where it was found.
  const char* why = nullptr;
  const char* whyAt = nullptr;
};

inline const char* fail(PatternReading& r, const char* at, const char* why) {
  r.why = why;
  r.whyAt = at;
  return nullptr;
}

// ---- Steps (DatePatternSteps.cpp) ------------------------------------------------
// Each reads the text of one conversion at p and returns where it stopped,
// or null after fail().

// Stores a field read at `at`: false, after fail(), when it is out of its
// range or was read before with another value.
inline bool store(PatternReading& r, Field field, int value, const char* at) {
  const FieldFacts& facts = kFieldFacts[field];
  if (value < facts.low || value > facts.high) return fail(r, at, facts.range) != nullptr;
  if ((r.present >> field & 1u) != 0 && r.value[field] != value) {
    return fail(r, at, facts.mismatch) != nullptr;
  }
  r.value[field] = value;
  r.at[field] = at;
  r.present |= 1u << field;
  return true;
}

// How the writer pads a number: `width` digits by default (the layout's
// width when larger); spaces before the digits (%e %k %l, the flag '_'), or
// all of the width in digits (%Y %G, unless a flag drops their padding).
struct NumberShape {
  int width;
  bool spaces = false;
  bool fullWidth = false;
};

// A number for `field` as the conversion `s` of that shape writes it.
// Inline: it is most of what a layout of numbers costs.
inline const char* readNumber(PatternReading& r, const char* p, Field field, const Directive& s,
                              NumberShape shape) {
  const char* const start = p;
  const int64_t room = s.width > shape.width ? s.width : shape.width;
  const bool spaces = shape.spaces || s.pad == '_';
  // Two digits where two may stand: the usual field, read at once.
  if (room == 2 && r.end - p >= 2 && zpread::isDigit(p[0]) && zpread::isDigit(p[1])) {
    return store(r, field, zpread::twoDigits(p), p) ? p + 2 : nullptr;
  }
  if (spaces) {
    while (p < r.end && *p == ' ' && p - start < room - 1) ++p;
  }
  const char* const digits = p;
  int64_t value = 0;
  for (; p < r.end && zpread::isDigit(*p) && p - start < room; ++p) {
    if (value <= INT_MAX / 10) value = value * 10 + (*p - '0');
  }
  const int64_t minDigits = shape.fullWidth && !spaces && s.pad != '-' ? shape.width : 1;
  if (p - digits < minDigits) return fail(r, start, kFieldFacts[field].expected);
  return store(r, field, static_cast<int>(value > INT_MAX ? INT_MAX : value), digits) ? p : nullptr;
}

// A month (field kMonth) or weekday (kWeekday) name, full or abbreviated,
// in any letter case.
const char* readName(PatternReading& r, const char* p, Field field);

// AM, PM, a.m. or p.m., in any letter case.
const char* readAmPm(PatternReading& r, const char* p);

// A fraction of a second: exactly the layout's width in digits, or 1 to
// `maxDigits`; kept to the millisecond, truncated.
const char* readFraction(PatternReading& r, const char* p, const Directive& s, int maxDigits);

// %z: Z, +hh, +hhmm, +hh:mm or +hh:mm:ss (seconds 00), either sign.
const char* readOffset(PatternReading& r, const char* p);

// %Z: a zone name of the module's table (GMT, UTC, UT, Z and the RFC 5322
// US names included), or a numeric abbreviation as tzdata writes them (+05).
const char* readZoneName(PatternReading& r, const char* p);

// %s: seconds since 1970, a '-' before them allowed.
const char* readUnixSeconds(PatternReading& r, const char* p);

// ---- The fast path (DatePatternDigits.cpp) ------------------------------------------

// Reads a layout of full-width %Y %m %d %H %M %S, %z and literal bytes as
// zpParseDate would; false, with the value untouched, for any other layout
// or any text it does not take whole.
bool readDigitLayout(const char* text, const char* end, const char* l, const char* lend,
                     ZephalSysTime& value);

// ---- Settling (DatePatternSettle.cpp) ------------------------------------------------

// The fields read, checked against each other and stored into `value`;
// false, with the value untouched and the reason in `r`, otherwise.
bool settleReading(PatternReading& r, ZephalSysTime& value);

}  // namespace zppattern
