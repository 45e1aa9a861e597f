// What the user hands in, a date text or a number with its option, read into
// a checked instant. Texts are read by the module's strict reader
// (zpReadDate), numbers by the module's conversions; the tool adds its range
// checks (InputChecks.h) and the strict reading of counts (CountArgs.h).
//
//   Instant in;
//   std::string why;
//   loadText("240307090503Z", 13, false, in, why);  // true: 2024-03-07 09:05:03 GMT
//   loadText("999999999999Z", 13, false, in, why);
//   // false: "not a UTCTime: month out of range at byte 2"
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "time/ZephalSysTime.h"
#include "time/ZephalText.h"

namespace zpdate {

// A loaded value and the readings every writer needs.
struct Instant {
  ZephalSysTime value;      // as read: GMT, or local wall-clock time
  ZephalSysTime gmt;        // its GMT reading, milliseconds included
  bool readInZone = false;  // a text without zone, read on --from-zone's clock
};

// Its Unix seconds, rounded down; worked out when a form asks, as most do not.
long long unixSeconds(const Instant& in);

// What the user says of the texts: the order of numeric dates, layouts to
// try first (--input-format; views into the command line), and whether a
// text that states no zone is local wall-clock time.
struct TextReading {
  ZephalDateOrder order = ZephalDateOrder::kUnknown;
  std::vector<std::string_view> layouts;
  bool assumeLocal = false;
};

// Loads a date text of `size` bytes, which may hold any bytes.
bool loadText(const char* text, size_t size, const TextReading& how, Instant& out,
              std::string& why);

// The numeric inputs, each named by its option.
enum class Numeric { kUnix, kUnixMs, kFileTime, kTicks, kDos, kOle, kNow };

// Loads a numeric input from its option's values (two for kDos, none for
// kNow). Counts of UTC seconds ignore `assumeLocal`; it reads an OLE date as
// local time. DOS words are always local time.
bool loadNumeric(Numeric kind, const char* const* values, bool assumeLocal, Instant& out,
                 std::string& why);

}  // namespace zpdate
