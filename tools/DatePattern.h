// GNU date's +FORMAT: the C library's strftime conversions (flags and widths
// included) on a broken-down clock, with %Y and %F in four-digit years as
// GNU date writes them, plus the conversions strftime lacks:
//
//   %N      nanoseconds of what was read (held to the millisecond); %3N
//           milliseconds, %6N microseconds, wider pads with zeros
//   %:z     +hh:mm   %::z +hh:mm:ss   %:::z as few fields as say it (+05:30, +01)
//
//   appendPattern("%Y-%m-%dT%H:%M:%S,%N%:z", clock, out);  // 2024-03-07T10:05:03,123000000+01:00
#pragma once

#include <time.h>

#include <string>

namespace zpdate {

struct Clock {
  tm fields;        // a breakdown as localtime_r gives it, tm_gmtoff and tm_zone included
  unsigned millis;  // 0 .. 999
};

void appendPattern(const char* pattern, const Clock& clock, std::string& out);

// Appends the offset of tm_gmtoff as +hh:mm (colons 1), +hh:mm:ss (2) or
// the shortest of those and +hh (3).
void appendOffset(long gmtoff, int colons, std::string& out);

}  // namespace zpdate
