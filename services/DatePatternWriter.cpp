// zpFormatDate: GNU date's +FORMAT on a wall clock, in the C locale.
//
//   %Y-%m-%d %H:%M:%S        2024-03-07 10:05:03
//   %a %b %e %T %Z %Y        Thu Mar  7 10:05:03 CET 2024
//   %F %T.%3N %:z            2024-03-07 10:05:03.123 +01:00
//   %-d/%-m %_H %^b %#Z      7/3 10 MAR cet
//   %10A|%-10A|%010d         '  Thursday|Thursday|0000000007'
//   %s %N %q %G-W%V-%u %j    1709802303 123000000 1 2024-W10-4 067
//
// GNU date formats most conversions itself and hands some to strftime
// (DatePatternLibc.cpp), whose widths differ; which is which, and what a
// modifier does to each, follows what date 9.1 writes, row for row, in
// tests/data/pattern_writes.tsv. An unknown conversion, or a known one with
// a modifier it does not take, is copied as written, padded to its width.
#include <cstring>

#include "services/StringBuffer.h"
#include "services/internal/PatternClock.h"
#include "services/internal/PatternSink.h"
#include "services/internal/PatternDirective.h"
#include "services/internal/PutDigits.h"
#include "services/zpDatePattern.h"

namespace {

using zppattern::Case;
using zppattern::Sink;
using zppattern::Directive;

// The conversions that take each modifier without being copied as written.
bool takesModifier(char modifier, char conversion) {
  if (modifier == 0) return true;
  const char* const taking =
      modifier == 'E' ? "cCnpPqrRstTuxXyYzZ" : "bBCdegGhHIjklmMnNpPqrRsStTuUVwWyzZ";
  return std::strchr(taking, conversion) != nullptr;
}

// Where date hands the conversion to strftime as "%<modifier><conversion>"
// and pads what comes back as text. O forms of numbers go there only while
// the number is not negative: the one that can be, %OG of year 0, is date's own.
bool writtenByLibc(const Directive& s, const ZephalWallClock& c) {
  switch (s.conversion) {
    case 'c': case 'x': case 'X': case 'r': return true;
    case 'C': case 'y': return s.modifier != 0;
    case 'Y': return s.modifier == 'E';
    case 'G': return s.modifier == 'O' && zppattern::isoWeekOf(c.fields).year >= 0;
    case 'd': case 'e': case 'g': case 'H': case 'I': case 'j': case 'k': case 'l': case 'm':
    case 'M': case 'S': case 'u': case 'U': case 'V': case 'w': case 'W': case 'q':
      return s.modifier == 'O';
    default: return false;
  }
}

Case letterCase(const Directive& s) {
  const char conv = s.conversion;
  if (conv == 'P' || (s.swapCase && (conv == 'p' || conv == 'Z'))) return Case::kLower;
  const bool names = conv == 'a' || conv == 'A' || conv == 'b' || conv == 'B' || conv == 'h';
  return s.upper || (s.swapCase && names) ? Case::kUpper : Case::kAsIs;
}

void putText(Sink& out, const Directive& s, std::string_view text) {
  zppattern::putText(out, s.pad, s.width, text.data(), text.size(), letterCase(s));
}

// A conversion copied as written, '^' upper-casing it; date reads '#' on
// %b and %h before it finds their modifier wrong, and on nothing else.
void putAsWritten(Sink& out, const Directive& s, const char* end) {
  const bool upper = s.upper || (s.swapCase && (s.conversion == 'b' || s.conversion == 'h'));
  zppattern::putText(out, s.pad, s.width, s.start, static_cast<size_t>(end - s.start),
                     upper ? Case::kUpper : Case::kAsIs);
}

// A field as date writes its numbers: `digits` wide by default.
void putField(Sink& out, const Directive& s, int digits, int64_t value, char defaultPad = 0) {
  if (s.pad == 0 && s.width < 0 && defaultPad == 0 && value >= 0 && value <= UINT32_MAX) {
    out.putDigits(static_cast<uint32_t>(value), static_cast<unsigned>(digits));  // most fields
    return;
  }
  const bool negative = value < 0;
  const uint64_t magnitude =
      negative ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  zppattern::putNumber(out, s.pad != 0 ? s.pad : defaultPad, s.width, digits, magnitude,
                       negative, false);
}

// %N: the nanoseconds of the milliseconds. A width below 9 keeps the leading
// digits; trailing zeros become the pad, which the flag '-' drops and '_'
// makes spaces. date itself reads "%-N" as "%9N" (the clock's resolution).
void putNanoseconds(Sink& out, const Directive& s, const char* end, unsigned millis) {
  const bool resolution = end - s.start == 3 && s.start[1] == '-';
  const char pad = resolution || s.pad == 0 ? '0' : s.pad;
  const int width = resolution || s.width <= 0 ? 9 : s.width;
  uint32_t n = millis % 1000 * 1000000u;
  int digits = 9;
  while (width < digits || (digits > 1 && n % 10 == 0)) {
    --digits;
    n /= 10;
  }
  char text[9];
  for (int i = digits; i > 0; --i, n /= 10) text[i - 1] = static_cast<char>('0' + n % 10);
  out.put(text, static_cast<size_t>(digits));
  zppattern::putText(out, pad, width - digits, "", 0, Case::kAsIs);
}

// %z, %:z (+hh:mm), %::z (+hh:mm:ss), %:::z (as few fields as say it).
// (O forms of a positive offset go to strftime.)
// A zero offset of a zone whose abbreviation starts with '-' (tzdata's
// "-00", no zone known) is written -0000.
void putOffset(Sink& out, const Directive& s, const ZephalWallClock& c) {
  const int64_t off = c.gmtOffset;
  const bool negative = off < 0 || (off == 0 && c.abbreviation[0] == '-');
  if (s.modifier == 'O' && !negative) {
    // date hands strftime "%Oz", or "%O:" for the colon forms, which it
    // copies as unknown.
    char text[zppattern::kLibcTextRoom];
    const size_t n = s.colons == 0 ? zppattern::libcText('z', c, text) : 3;
    if (s.colons != 0) std::memcpy(text, "%O:", 3);
    zppattern::putText(out, s.pad, s.width, text, n, s.upper ? Case::kUpper : Case::kAsIs);
    return;
  }
  const uint64_t m = static_cast<uint64_t>(off < 0 ? -off : off);
  const uint64_t hh = m / 3600, mm = m / 60 % 60, ss = m % 60;
  int colons = s.colons;
  if (colons == 3) colons = ss != 0 ? 2 : mm != 0 ? 1 : 0;
  if (s.colons == 3 && colons == 0) {
    zppattern::putNumber(out, s.pad, s.width, 3, hh, negative, true);
  } else if (colons == 0) {
    zppattern::putNumber(out, s.pad, s.width, 5, hh * 100 + mm, negative, true);
  } else if (colons == 1) {
    zppattern::putNumber(out, s.pad, s.width, 6, hh * 100 + mm, negative, true, 04);
  } else {
    zppattern::putNumber(out, s.pad, s.width, 9, hh * 10000 + mm * 100 + ss, negative, true, 024);
  }
}

// %F: with no flag and no width, a four-digit year and a '+' for one past
// 9999; with either, the year takes the flag and the width less "-mm-dd",
// and no padding at all when that is less than nothing ("%_F" of year 5 is
// "5-03-07").
void putIsoDate(Sink& out, const Directive& s, const ZephalCalendarFields& f) {
  const bool plain = s.pad == 0 && s.width < 0;
  const int yearWidth = plain ? -1 : s.width > 6 ? s.width - 6 : 0;
  zppattern::putYearish(out, s, plain ? '+' : 0, yearWidth, 4, f.wYear);
  char text[16];
  char* p = text;
  *p++ = '-';
  p = zp_detail::putDigits(p, f.wMonth, 2);
  *p++ = '-';
  p = zp_detail::putDigits(p, f.wDay, 2);
  out.put(text, static_cast<size_t>(p - text));
}

// %D, %R, %T: a short layout of their own, padded whole; %D hands its flag
// to the year. The pieces fit in 40 bytes whatever the fields hold.
void putCompound(Sink& out, const Directive& s, const ZephalCalendarFields& f) {
  char text[40];
  char* p = text;
  const unsigned fields[3] = {s.conversion == 'D' ? f.wMonth : f.wHour,
                              s.conversion == 'D' ? f.wDay : f.wMinute, f.wSecond};
  const char separator = s.conversion == 'D' ? '/' : ':';
  const int n = s.conversion == 'R' ? 2 : 3;
  for (int i = 0; i < n; ++i) {
    if (i > 0) *p++ = separator;
    if (i == 2 && s.conversion == 'D') {
      // %y with %D's flag as its own when it has none, as date hands it on.
      const unsigned yy = f.wYear % 100u;
      const char pad = s.pad != 0 ? s.pad : '0';
      if (pad == '-' || yy >= 10) {
        p = zp_detail::putDigits(p, yy, 1);
      } else {
        *p++ = pad == '_' ? ' ' : '0';
        *p++ = static_cast<char>('0' + yy);
      }
    } else {
      p = zp_detail::putDigits(p, fields[i], 2);
    }
  }
  zppattern::putText(out, s.pad, s.width, text, static_cast<size_t>(p - text), Case::kAsIs);
}

// Writes one conversion and returns where the layout goes on: `end`, but
// for a '%' with flags or a width between, which date copies up to that
// last '%' and then reads the '%' as the start of the next conversion
// ("%5%d" is "   %5" and the day).
const char* putConversion(Sink& out, const Directive& s, const char* end, const ZephalWallClock& c) {
  const ZephalCalendarFields& f = c.fields;
  if (s.conversion == '%' && s.start + 2 != end) {
    putAsWritten(out, s, end - 1);
    return end - 1;
  }
  if (!takesModifier(s.modifier, s.conversion)) {
    putAsWritten(out, s, end);
    return end;
  }
  if (writtenByLibc(s, c)) {
    char text[zppattern::kLibcTextRoom];
    const size_t n = zppattern::libcText(s.conversion, c, text);
    zppattern::putText(out, s.pad, s.width, text, n, s.upper ? Case::kUpper : Case::kAsIs);
    return end;
  }
  switch (s.conversion) {
    case 'a': putText(out, s, zppattern::weekdayName(f, false)); return end;
    case 'A': putText(out, s, zppattern::weekdayName(f, true)); return end;
    case 'b': case 'h': putText(out, s, zppattern::monthName(f, false)); return end;
    case 'B': putText(out, s, zppattern::monthName(f, true)); return end;
    case 'p': case 'P': putText(out, s, f.wHour > 11 ? "PM" : "AM"); return end;
    case 'Z': putText(out, s, c.abbreviation); return end;
    case 'Y':
      if (s.pad == 0 && s.width < 0) {
        out.putDigits(f.wYear, 4);  // what putYearish writes without a flag or width
        return end;
      }
      zppattern::putYearish(out, s, 0, s.width, 4, f.wYear);
      return end;
    case 'C': zppattern::putYearish(out, s, 0, s.width, 2, f.wYear / 100); return end;
    case 'y': zppattern::putYearish(out, s, 0, s.width, 2, f.wYear % 100); return end;
    case 'G':
      zppattern::putYearish(out, s, 0, s.width, 4, zppattern::isoWeekOf(f).year);
      return end;
    case 'g': {
      const int64_t year = zppattern::isoWeekOf(f).year;  // -1 for the first days of year 0
      zppattern::putYearish(out, s, 0, s.width, 2, (year < 0 ? -year : year) % 100);
      return end;
    }
    case 'd': putField(out, s, 2, f.wDay); return end;
    case 'e': putField(out, s, 2, f.wDay, '_'); return end;
    case 'H': putField(out, s, 2, f.wHour); return end;
    case 'k': putField(out, s, 2, f.wHour, '_'); return end;
    case 'I': putField(out, s, 2, zppattern::hour12Of(f)); return end;
    case 'l': putField(out, s, 2, zppattern::hour12Of(f), '_'); return end;
    case 'm': putField(out, s, 2, f.wMonth); return end;
    case 'M': putField(out, s, 2, f.wMinute); return end;
    case 'S': putField(out, s, 2, f.wSecond); return end;
    case 'j': putField(out, s, 3, zppattern::yearDayOf(f) + 1); return end;
    case 'u': putField(out, s, 1, (f.wDayOfWeek + 6) % 7 + 1); return end;
    case 'w': putField(out, s, 1, f.wDayOfWeek); return end;
    case 'U':
      putField(out, s, 2, zpcivil::sundayWeekOf(zppattern::yearDayOf(f), f.wDayOfWeek));
      return end;
    case 'W':
      putField(out, s, 2, zpcivil::mondayWeekOf(zppattern::yearDayOf(f), f.wDayOfWeek));
      return end;
    case 'V': putField(out, s, 2, zppattern::isoWeekOf(f).week); return end;
    case 'q': putField(out, s, 1, f.wMonth == 0 ? 0 : ((f.wMonth - 1) * 11 >> 5) + 1); return end;
    case 's': putField(out, s, 1, zppattern::unixSecondsOf(c)); return end;
    case 'N': putNanoseconds(out, s, end, f.wMilliseconds); return end;
    case 'z':
      if (s.colons > 3) break;
      putOffset(out, s, c);
      return end;
    case 'F': putIsoDate(out, s, f); return end;
    case 'D': case 'R': case 'T': putCompound(out, s, f); return end;
    case 'n': putText(out, s, "\n"); return end;
    case 't': putText(out, s, "\t"); return end;
    case '%': out.put("%", 1); return end;
    default: break;
  }
  putAsWritten(out, s, end);
  return end;
}

}  // namespace

bool zpFormatDate(std::string_view layout, const ZephalWallClock& clock, StringBuffer& out) {
  const char* p = layout.data();
  const char* const end = p + layout.size();
  Sink sink(out);
  while (p < end) {
    if (*p != '%') {
      if (*p == '\0') break;  // the layout ends at a zero byte, as a C string
      sink.put(*p++);         // literal runs are a byte or two between conversions
      continue;
    }
    Directive s;
    if (end - p >= 2 && zppattern::isPlainConversion(p[1])) {
      s.start = p;
      s.conversion = p[1];
      p = putConversion(sink, s, p + 2, clock);
    } else {
      p = putConversion(sink, s, zppattern::readDirective(p, end, s), clock);
    }
  }
  return sink.finish();
}
