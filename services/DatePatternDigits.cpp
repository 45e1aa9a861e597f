// The pattern reader's fast path: layouts of full-width numbers and
// literal bytes, read in one pass with no field bookkeeping.
//
//   %Y-%m-%dT%H:%M:%S%z       2024-03-07T10:05:03+0100   (also Z, +01:00)
//   %Y-%m-%d %H:%M:%S         2024-03-07 09:05:03
//   %d/%m/%Y %H:%M            07/03/2024 09:05
//   %Y%m%d%H%M%S              20240307090503
//
// Anything else (a one-digit field, another conversion, a flag, white space
// other than the layout's own byte, a field read twice, a date that does not
// settle) goes to the general reader, which takes the same texts to the
// same values and explains the others.
#include "services/internal/FastPaths.h"
#include "services/internal/ParsedReading.h"
#include "services/internal/PatternReading.h"

namespace zppattern {
namespace {

// Exactly `width` digits at p, in [0, high].
bool fixedDigits(const char* p, const char* end, int width, int high, int& value) {
  if (end - p < width) return false;
  int v = 0;
  for (int i = 0; i < width; ++i) {
    if (!zpread::isDigit(p[i])) return false;
    v = v * 10 + (p[i] - '0');
  }
  value = v;
  return v <= high;
}

// Z, +hhmm or +hh:mm (either sign) at p; the end of it, or null.
const char* offsetAt(const char* p, const char* end, zpread::Reading& out) {
  if (p < end && (*p == 'Z' || *p == 'z')) {
    out.zoneKnown = true;
    return p + 1;
  }
  if (end - p < 5 || (*p != '+' && *p != '-')) return nullptr;
  int hours, minutes;
  if (!fixedDigits(p + 1, end, 2, 23, hours)) return nullptr;
  const char* m = p + 3 + (p[3] == ':' && end - p >= 6);
  if (!fixedDigits(m, end, 2, 59, minutes)) return nullptr;
  const int east = hours * 60 + minutes;
  out.offset = *p == '-' ? -east : east;
  out.zoneKnown = east != 0 || *p == '+';  // -0000: no offset known
  return m + 2;
}

}  // namespace

bool readDigitLayout(const char* text, const char* end, const char* l, const char* lend,
                     ZephalSysTime& value) {
  zpread::Reading out;
  out.f.year = out.f.month = out.f.day = -1;
  const char* p = text;
  out.yearAt = out.dayAt = text;
  uint64_t seen = 0;  // a field read twice is the general reader's to check
  while (l < lend) {
    if (*l != '%') {
      if (*l == '\0' || p == end || *p != *l) return false;
      ++p, ++l;
      continue;
    }
    if (lend - l < 2) return false;
    const uint64_t bit = uint64_t{1} << ((l[1] - 'A') & 63);  // one bit per letter
    if ((seen & bit) != 0) return false;
    seen |= bit;
    int* field;
    int width = 2, high;
    switch (l[1]) {
      case 'Y': field = &out.f.year, width = 4, high = 9999, out.yearAt = p; break;
      case 'm': field = &out.f.month, high = 12; break;
      case 'd': field = &out.f.day, high = 31, out.dayAt = p; break;
      case 'H': field = &out.f.hour, high = 23; break;
      case 'M': field = &out.f.minute, high = 59; break;
      case 'S': field = &out.f.second, high = 60; break;
      case 'z':
        if ((p = offsetAt(p, end, out)) == nullptr) return false;
        l += 2;
        continue;
      default: return false;
    }
    if (!fixedDigits(p, end, width, high, *field)) return false;
    p += width;
    l += 2;
  }
  if (p != end || out.f.month < 1 || out.f.day < 1 || out.f.year < 0) return false;
  return zpread::settle(out, value);
}

}  // namespace zppattern
