// The texts GNU date leaves to the C library's strftime, as glibc writes
// them in the C locale: %c %x %X %r, the E forms of %C %y %Y, and the O
// forms of the numbers. glibc's widths differ from date's own: %Y, %G and
// %C take no padding (year 5 is "5", not "0005"), %e %k %l pad with spaces.
#include <cstring>

#include "services/internal/PatternClock.h"
#include "services/internal/PutDigits.h"

namespace zppattern {
namespace {

// The value with at least `digits` digits, padded by `pad` ('0' or ' ').
char* putPadded(char* p, uint32_t value, unsigned digits, char pad) {
  if (pad == '0') return zp_detail::putDigits(p, value, digits);
  char text[12];
  const size_t n = static_cast<size_t>(zp_detail::putDigits(text, value, 1) - text);
  for (size_t i = n; i < digits; ++i) *p++ = pad;
  std::memcpy(p, text, n);
  return p + n;
}

char* putName(char* p, std::string_view name) {
  std::memcpy(p, name.data(), name.size());
  return p + name.size();
}

// Two digits, ':', two digits, and so on for `n` fields.
char* putColonFields(char* p, const unsigned* fields, int n) {
  for (int i = 0; i < n; ++i) {
    if (i > 0) *p++ = ':';
    p = zp_detail::putDigits(p, fields[i], 2);
  }
  return p;
}

}  // namespace

size_t libcText(char conversion, const ZephalWallClock& c, char* text) {
  const ZephalCalendarFields& f = c.fields;
  const unsigned clock[3] = {f.wHour, f.wMinute, f.wSecond};
  const unsigned clock12[3] = {hour12Of(f), f.wMinute, f.wSecond};
  const unsigned slashDate[3] = {f.wMonth, f.wDay, f.wYear % 100u};
  char* p = text;
  switch (conversion) {
    case 'c':  // %a %b %e %H:%M:%S %Y
      p = putName(p, weekdayName(f, false));
      *p++ = ' ';
      p = putName(p, monthName(f, false));
      *p++ = ' ';
      p = putPadded(p, f.wDay, 2, ' ');
      *p++ = ' ';
      p = putColonFields(p, clock, 3);
      *p++ = ' ';
      p = putPadded(p, f.wYear, 1, '0');
      break;
    case 'x':  // %m/%d/%y
      for (int i = 0; i < 3; ++i) {
        if (i > 0) *p++ = '/';
        p = zp_detail::putDigits(p, slashDate[i], 2);
      }
      break;
    case 'X': p = putColonFields(p, clock, 3); break;
    case 'r':  // %I:%M:%S %p
      p = putColonFields(p, clock12, 3);
      p = putName(p, f.wHour > 11 ? " PM" : " AM");
      break;
    case 'n': *p++ = '\n'; break;
    case 't': *p++ = '\t'; break;
    case 'Y': p = putPadded(p, f.wYear, 1, '0'); break;
    case 'C': p = putPadded(p, f.wYear / 100u, 1, '0'); break;
    case 'G': p = putPadded(p, static_cast<uint32_t>(isoWeekOf(f).year), 1, '0'); break;
    case 'y': p = putPadded(p, f.wYear % 100u, 2, '0'); break;
    case 'g':
      p = putPadded(p, static_cast<uint32_t>((isoWeekOf(f).year % 100 + 100) % 100), 2, '0');
      break;
    case 'q': p = putName(p, "%Oq"); break;  // unknown to glibc, which copies it
    case 'd': p = putPadded(p, f.wDay, 2, '0'); break;
    case 'e': p = putPadded(p, f.wDay, 2, ' '); break;
    case 'H': p = putPadded(p, f.wHour, 2, '0'); break;
    case 'k': p = putPadded(p, f.wHour, 2, ' '); break;
    case 'I': p = putPadded(p, hour12Of(f), 2, '0'); break;
    case 'l': p = putPadded(p, hour12Of(f), 2, ' '); break;
    case 'j': p = putPadded(p, static_cast<uint32_t>(yearDayOf(f) + 1), 3, '0'); break;
    case 'm': p = putPadded(p, f.wMonth, 2, '0'); break;
    case 'M': p = putPadded(p, f.wMinute, 2, '0'); break;
    case 'S': p = putPadded(p, f.wSecond, 2, '0'); break;
    case 'u': p = putPadded(p, (f.wDayOfWeek + 6u) % 7 + 1, 1, '0'); break;
    case 'w': p = putPadded(p, f.wDayOfWeek, 1, '0'); break;
    case 'U':
      p = putPadded(p, static_cast<uint32_t>(zpcivil::sundayWeekOf(yearDayOf(f), f.wDayOfWeek)), 2,
                    '0');
      break;
    case 'W':
      p = putPadded(p, static_cast<uint32_t>(zpcivil::mondayWeekOf(yearDayOf(f), f.wDayOfWeek)), 2,
                    '0');
      break;
    case 'V': p = putPadded(p, static_cast<uint32_t>(isoWeekOf(f).week), 2, '0'); break;
    case 'z': {  // +hhmm, seconds dropped
      const int64_t off = c.gmtOffset;
      const uint32_t minutes = static_cast<uint32_t>(off < 0 ? -off : off) / 60;
      *p++ = off < 0 ? '-' : '+';
      p = putPadded(p, minutes / 60 * 100 + minutes % 60, 4, '0');
      break;
    }
    default: break;
  }
  return static_cast<size_t>(p - text);
}

}  // namespace zppattern
