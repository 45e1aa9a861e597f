// The loader's whole texts read by position (FixedDates.h): an HTTP date
// and an RFC 3339 text, before the loader's tests and counts. Each gives what
// the reader of its form gives, or false, with nothing reported and the
// value untouched, for any other text.
#include "services/internal/FixedDates.h"
#include "services/internal/ParsedReading.h"
#include "time/ZephalSysTime.h"

namespace zpread {

bool loadHttpDateByPosition(const char* text, size_t size, ZephalSysTime& value) {
  if (size != kHttpSize) return false;
  Reading r;
  return readHttpDate(text, r) && settle(r, value);
}

bool loadRfc3339ByPosition(const char* text, size_t size, ZephalSysTime& value) {
  // The date, the time and at least a Z: most other texts fail here, before
  // the reading is set up.
  if (size < 20 || text[4] != '-') return false;
  Reading r;
  const char* p = readFixedIsoDateTime(text, r);
  if (p) p = readRfc3339Zone(readFraction(p, r, false), r);
  return p == text + size && settle(r, value);
}

}  // namespace zpread
