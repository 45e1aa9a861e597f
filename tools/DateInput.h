// What the user hands in, a date text or a number with its option, read into
// a checked instant. Texts go through ZephalSysTime::loadAnyFormat; the tool
// refuses, with a reason, what the loader would read to a wrong or impossible
// value: counts too large for the loader's 32-bit seconds, a JSON date whose
// count is no number, ASN.1 fields that are no digits, a zero byte, fields
// that name no date, local times a clock change skips, and any instant
// outside the years 0001 to 9999.
//
//   Instant in;
//   std::string why;
//   StringBuffer scratch;
//   loadText("240307090503Z", 13, false, scratch, in, why);  // true: 2024-03-07 09:05:03 GMT
//   loadText("999999999999Z", 13, false, scratch, in, why);  // false: "impossible date: month 99"
#pragma once

#include <cstddef>
#include <string>

#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

namespace zpdate {

// A loaded value and the readings every writer needs.
struct Instant {
  ZephalSysTime value;  // as read: GMT, or local wall-clock time
  ZephalSysTime gmt;    // its GMT reading
  unsigned millis;      // 0 .. 999, kept apart: the module's zone steps drop them
};

// Its Unix seconds, rounded down; worked out when a form asks, as most do not.
long long unixSeconds(const Instant& in);

// Unix seconds of 0001-01-01T00:00:00Z and 9999-12-31T23:59:59Z.
constexpr long long kFirstSecond = -62135596800;
constexpr long long kLastSecond = 253402300799;

// The bytes of a text that decide how it is checked, which a caller that
// searched a whole block for them at once already knows; by default, any.
struct MayHold {
  bool zero = true;   // '\0'
  bool paren = true;  // '(', as every JSON date has
};

// Loads a date text of `size` bytes, which may hold any bytes. With
// `assumeLocal` a text that states no zone is read as local wall-clock time.
// `scratch` is reused from call to call.
bool loadText(const char* text, size_t size, bool assumeLocal, StringBuffer& scratch, Instant& out,
              std::string& why, MayHold may = {});

// The numeric inputs, each named by its option.
enum class Numeric { kUnix, kUnixMs, kFileTime, kTicks, kDos, kOle, kNow };

// Loads a numeric input from its option's values (two for kDos, none for
// kNow). Counts of UTC seconds ignore `assumeLocal`; it reads an OLE date as
// local time. DOS words are always local time.
bool loadNumeric(Numeric kind, const char* const* values, bool assumeLocal, Instant& out,
                 std::string& why);

}  // namespace zpdate
