// parseRFC822Date and generateDateRFC822: the date texts of mail and HTTP,
// plus the ISO 8601 shapes that the free-form loader hands on to this parser.
//
// Forms read (tests/data/rfc822_accept.tsv starts from this list):
//
//   Thu, 07 Mar 2024 09:05:03 GMT          RFC 5322 / RFC 1123, HTTP's preferred form
//   07 Mar 2024 09:05:03 +0000             day name left out
//   Thu, 7 Mar 2024 9:05 -0500             one-digit day and hour, no seconds
//   Thu, 07 Mar 24 09:05:03 EST            two-digit year: 00-49 are 2000-2049, 50-99 1950-1999
//   Thu, 07 Mar 124 09:05:03 GMT           three-digit year: plus 1900
//   thursday, 07 march 2024 09:05:03 pdt   full names, any letter case
//   Thu, 07 Mar 2024 09:05:03 -0000        zone unknown (RFC 5322 3.3)
//   Thu, 07 Mar 2024 09:05:03 A            military letter: zone unknown, Z is GMT
//   Thu, 07 Mar 2024 09:05:03 +0200 (GMT+02:00)
//                                          comments, nested, wherever white space may go
//   Thu,\r\n 07 Mar 2024  09:05:03\tGMT     runs of white space, folded lines
//   Fri, 21 Nov 1997 09(comment):   55  :  06 -0600
//                                          and around the colons (RFC 5322 A.6.3)
//   Sat, 31 Dec 2016 23:59:60 +0000        leap second, stored as read
//   Thursday, 07-Mar-24 09:05:03 GMT       RFC 850
//   Thu, 07-Mar-2024 09:05:03 GMT          the same with a four-digit year (cookies)
//   Thu Mar  7 09:05:03 2024               asctime (zone unknown)
//   Thu Mar  7 09:05:03 UTC 2024           date(1)
//   Thu Mar 07 2024 09:05:03 GMT+0100 (Central European Standard Time)
//                                          JavaScript's Date.toString
//   2024-03-07 09:05:03                    ISO 8601 (zone unknown)
//   2024-03-07T09:05:03+05:30              ISO 8601 with an offset: +05:30, +0530, +05, Z
//   2024-03-07t09:05:03.123456Z            lower-case t, a fraction ('.' or ','), kept
//                                          to the millisecond, truncated
//   20240307T090503Z                       ISO 8601 basic form (what getIso8601Timestamp
//                                          writes); also 20240307t0905+0100
//
// Decisions where the RFCs leave room:
//   - a day name that disagrees with the date is accepted and ignored (as
//     RFC 5322 readers commonly do); wDayOfWeek is always computed;
//   - anything but white space and comments after a complete date is refused;
//   - zone names other than UT, UTC, GMT, Z, EST, EDT, CST, CDT, MST, MDT,
//     PST, PDT and the military letters are refused rather than guessed;
//   - a date needs a time: "07 Mar 2024" alone is refused;
//   - numeric offsets go up to 23:59; the GMT reading must fall in years 0-9999.
#include <cstdint>

#include "services/CivilDays.h"
#include "services/ParsedReading.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "services/zpStdio.h"
#include "time/ZephalSysTime.h"

namespace {

using zpcivil::DateTimeFields;

// Everything read so far. A step that fails returns null and sets `why`.
struct Reading {
  DateTimeFields f;
  int offset;      // minutes east of GMT, when zoneKnown
  bool zoneKnown;  // false: no zone, -0000 or a military letter
  const char* why;
};

inline bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }
inline bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
// 0..25 for an ASCII letter of either case; 26 or more for any other byte
// (bytes 128-255 included: folding keeps the top bit).
inline unsigned letterIndex(char c) { return static_cast<unsigned char>((c | 0x20) - 'a'); }
inline bool isLetter(char c) { return letterIndex(c) < 26; }

inline const char* failWith(Reading& r, const char* why) {
  r.why = why;
  return nullptr;
}

// Names are matched as one number: five bits per letter (a = 1 .. z = 26),
// first letter highest, so a switch over the packed keys replaces string
// compares. Twelve letters fit in 60 bits; no name we know is longer.
constexpr uint64_t nameKey(const char* s) {
  uint64_t k = 0;
  for (; *s; ++s) k = k << 5 | static_cast<uint64_t>((*s | 0x20) - 'a' + 1);
  return k;
}

// Reads a run of letters into its key; `len` gets the run's length (0 when
// the byte at p is no letter). Null for a run of more than 12 letters.
inline const char* readWord(const char* p, uint64_t& key, int& len, Reading& r) {
  uint64_t k = 0;
  int n = 0;
  for (unsigned i; (i = letterIndex(*p)) < 26; ++p) {
    if (++n > 12) return failWith(r, "word too long");
    k = k << 5 | (i + 1);
  }
  key = k;
  len = n;
  return p;
}

inline bool isDayName(uint64_t key) {
  switch (key) {
    case nameKey("mon"): case nameKey("monday"):
    case nameKey("tue"): case nameKey("tuesday"):
    case nameKey("wed"): case nameKey("wednesday"):
    case nameKey("thu"): case nameKey("thursday"):
    case nameKey("fri"): case nameKey("friday"):
    case nameKey("sat"): case nameKey("saturday"):
    case nameKey("sun"): case nameKey("sunday"):
      return true;
    default:
      return false;
  }
}

// 1..12, or 0 for no month name.
inline int monthFromKey(uint64_t key) {
  switch (key) {
    case nameKey("jan"): case nameKey("january"): return 1;
    case nameKey("feb"): case nameKey("february"): return 2;
    case nameKey("mar"): case nameKey("march"): return 3;
    case nameKey("apr"): case nameKey("april"): return 4;
    case nameKey("may"): return 5;
    case nameKey("jun"): case nameKey("june"): return 6;
    case nameKey("jul"): case nameKey("july"): return 7;
    case nameKey("aug"): case nameKey("august"): return 8;
    case nameKey("sep"): case nameKey("september"): return 9;
    case nameKey("oct"): case nameKey("october"): return 10;
    case nameKey("nov"): case nameKey("november"): return 11;
    case nameKey("dec"): case nameKey("december"): return 12;
    default: return 0;
  }
}

// Skips a comment whose '(' is at p. Comments nest and a backslash quotes the
// next byte (RFC 5322 3.2.2); any other byte, 128-255 included, is content.
// Out of line: most dates carry no comment, and the white-space loops that
// call this stay small.
__attribute__((cold, noinline)) const char* skipComment(const char* p, Reading& r) {
  int depth = 0;
  for (;;) {
    const char c = *p;
    if (c == '\0') return failWith(r, "unterminated comment");
    ++p;
    if (c == '(') {
      ++depth;
    } else if (c == ')') {
      if (--depth == 0) return p;
    } else if (c == '\\') {
      if (*p == '\0') return failWith(r, "unterminated comment");
      ++p;
    }
  }
}

// White space (CR and LF included, so folded lines need no handling of their own) and
// comments, in any number.
inline const char* skipCfws(const char* p, Reading& r) {
  for (;;) {
    if (isSpace(*p)) {
      ++p;
    } else if (*p == '(') {
      p = skipComment(p, r);
      if (!p) return nullptr;
    } else {
      return p;
    }
  }
}

// Like skipCfws, but at least one byte must go: fields written as digits
// next to digits would otherwise run together.
inline const char* needCfws(const char* p, Reading& r, const char* why) {
  const char* q = skipCfws(p, r);
  if (q == p) return failWith(r, why);
  return q;
}

// A run of digits: `width` gets its length, `value` its value. Null when the
// run is empty or longer than maxWidth (so 202409 is never a year and an hour).
inline const char* readDigits(const char* p, int maxWidth, int& value, int& width, Reading& r,
                              const char* why) {
  int v = 0;
  int n = 0;
  for (; isDigit(*p); ++p) {
    if (++n > maxWidth) return failWith(r, why);
    v = v * 10 + (*p - '0');
  }
  if (n == 0) return failWith(r, why);
  value = v;
  width = n;
  return p;
}

// Exactly two digits, in [0, maxValue].
inline const char* readTwo(const char* p, int maxValue, int& out, Reading& r, const char* why,
                           const char* rangeWhy) {
  int w;
  p = readDigits(p, 2, out, w, r, why);
  if (!p) return nullptr;
  if (w != 2) return failWith(r, why);
  if (out > maxValue) return failWith(r, rangeWhy);
  return p;
}

// Two, three or four digits, read as RFC 5322's obsolete syntax says.
inline const char* readYear(const char* p, Reading& r) {
  int v, w;
  p = readDigits(p, 4, v, w, r, "year must have 2 to 4 digits");
  if (!p) return nullptr;
  if (w == 1) return failWith(r, "year must have 2 to 4 digits");
  if (w == 2) v += v < 50 ? 2000 : 1900;
  if (w == 3) v += 1900;
  r.f.year = v;
  return p;
}

// An optional fraction of a second after the seconds, '.' or ',' and any
// number of digits, truncated to milliseconds.
inline const char* readFraction(const char* p, Reading& r) {
  if ((*p != '.' && *p != ',') || !isDigit(p[1])) return p;
  ++p;
  int ms = 0;
  int n = 0;
  for (; isDigit(*p); ++p, ++n) {
    if (n < 3) ms = ms * 10 + (*p - '0');
  }
  for (; n < 3; ++n) ms *= 10;
  r.f.millis = ms;
  return p;
}

// After a time field: the ':' that starts the next one, with the white space
// and comments that RFC 5322's obsolete syntax allows around it (not in ISO
// texts). Null at an unterminated comment; otherwise where the ':' is, or p
// itself when no ':' follows.
inline const char* findColon(const char* p, Reading& r, bool iso) {
  if (*p == ':' || iso) return p;
  const char* q = skipCfws(p, r);
  if (!q) return nullptr;
  return *q == ':' ? q : p;
}

inline const char* afterColon(const char* p, Reading& r, bool iso) {
  return iso ? p + 1 : skipCfws(p + 1, r);
}

// hh:mm[:ss][(.|,)fraction]. The hour may have one digit unless `iso`.
inline const char* readTime(const char* p, Reading& r, bool iso) {
  int w;
  p = readDigits(p, 2, r.f.hour, w, r, "bad hour");
  if (!p) return nullptr;
  if (iso && w != 2) return failWith(r, "bad hour");
  if (r.f.hour > 23) return failWith(r, "hour out of range");
  p = findColon(p, r, iso);
  if (!p) return nullptr;
  if (*p != ':') return failWith(r, "expected ':' after the hour");
  p = afterColon(p, r, iso);
  if (!p) return nullptr;
  p = readTwo(p, 59, r.f.minute, r, "bad minute", "minute out of range");
  if (!p) return nullptr;
  r.f.second = 0;
  r.f.millis = 0;
  p = findColon(p, r, iso);
  if (!p) return nullptr;
  if (*p != ':') return p;
  p = afterColon(p, r, iso);
  if (!p) return nullptr;
  p = readTwo(p, 60, r.f.second, r, "bad second", "second out of range");
  if (!p) return nullptr;
  return readFraction(p, r);
}

// +hhmm, +hh:mm or +hh (either sign), the sign at p. -0000 states no zone.
inline const char* readOffset(const char* p, Reading& r) {
  const int sign = *p == '-' ? -1 : 1;
  int hh, mm = 0, w;
  p = readDigits(p + 1, 4, hh, w, r, "bad zone offset");
  if (!p) return nullptr;
  if (w == 4) {
    mm = hh % 100;
    hh /= 100;
  } else if (w != 2) {
    return failWith(r, "bad zone offset");
  } else if (*p == ':') {
    p = readTwo(p + 1, 99, mm, r, "bad zone offset", "bad zone offset");
    if (!p) return nullptr;
  }
  if (hh > 23 || mm > 59) return failWith(r, "zone offset out of range");
  r.offset = sign * (hh * 60 + mm);
  r.zoneKnown = r.offset != 0 || sign > 0;
  return p;
}

// A numeric offset, a zone name, or a military letter.
inline const char* readZone(const char* p, Reading& r) {
  if (*p == '+' || *p == '-') return readOffset(p, r);
  uint64_t key;
  int len;
  p = readWord(p, key, len, r);
  if (!p) return nullptr;
  r.zoneKnown = true;
  switch (key) {
    case nameKey("gmt"): case nameKey("ut"): case nameKey("utc"):
      r.offset = 0;
      // JavaScript writes GMT+0100: the offset from GMT follows the name.
      if (*p == '+' || *p == '-') return readOffset(p, r);
      return p;
    case nameKey("z"): r.offset = 0; return p;
    case nameKey("est"): r.offset = -5 * 60; return p;
    case nameKey("edt"): r.offset = -4 * 60; return p;
    case nameKey("cst"): r.offset = -6 * 60; return p;
    case nameKey("cdt"): r.offset = -5 * 60; return p;
    case nameKey("mst"): r.offset = -7 * 60; return p;
    case nameKey("mdt"): r.offset = -6 * 60; return p;
    case nameKey("pst"): r.offset = -8 * 60; return p;
    case nameKey("pdt"): r.offset = -7 * 60; return p;
    case nameKey("j"): break;  // J names no military zone
    default:
      // RFC 822 got the signs of the military letters backwards, so
      // RFC 5322 4.3 says to read them as -0000.
      if (len == 1) {
        r.zoneKnown = false;
        r.offset = 0;
        return p;
      }
  }
  return failWith(r, len == 0 ? "unexpected character" : "unknown zone name");
}

// The end of a date: only white space and comments may follow.
inline const char* readEnd(const char* p, Reading& r) {
  p = skipCfws(p, r);
  if (!p) return nullptr;
  return *p == '\0' ? p : failWith(r, "text after the date");
}

// What may follow the time: nothing, or a zone; then the end.
inline const char* readZoneAndEnd(const char* p, Reading& r) {
  p = skipCfws(p, r);
  if (!p) return nullptr;
  if (*p == '\0') return p;
  p = readZone(p, r);
  return p ? readEnd(p, r) : nullptr;
}

inline const char* readMonthName(const char* p, Reading& r) {
  uint64_t key;
  int len;
  p = readWord(p, key, len, r);
  if (!p) return nullptr;
  r.f.month = monthFromKey(key);
  if (r.f.month == 0) return failWith(r, "unknown month name");
  return p;
}

// ISO 8601 after its four-digit year (read) and the '-' at p.
inline const char* readIsoRest(const char* p, Reading& r) {
  p = readTwo(p + 1, 12, r.f.month, r, "bad month", "month out of range");
  if (!p) return nullptr;
  if (r.f.month == 0) return failWith(r, "month out of range");
  if (*p != '-') return failWith(r, "expected '-' after the month");
  p = readTwo(p + 1, 31, r.f.day, r, "bad day", "day out of range");
  if (!p) return nullptr;
  if (*p == 'T' || *p == 't') {
    ++p;
  } else {
    p = needCfws(p, r, "expected T or a space after the date");
    if (!p) return nullptr;
  }
  p = readTime(p, r, true);
  if (!p) return nullptr;
  return readZoneAndEnd(p, r);
}

// ISO 8601's basic form, the eight date digits read as `ymd` and p at the
// T: hhmm[ss][fraction], then a zone as in the extended form.
inline const char* readIsoBasicRest(const char* p, int ymd, Reading& r) {
  r.f.year = ymd / 10000;
  r.f.month = ymd / 100 % 100;
  r.f.day = ymd % 100;
  if (r.f.month < 1 || r.f.month > 12) return failWith(r, "month out of range");
  int hms, w;
  p = readDigits(p + 1, 6, hms, w, r, "bad time");
  if (!p) return nullptr;
  if (w == 4) {
    hms *= 100;
  } else if (w != 6) {
    return failWith(r, "bad time");
  }
  r.f.hour = hms / 10000;
  r.f.minute = hms / 100 % 100;
  r.f.second = hms % 100;
  r.f.millis = 0;
  if (r.f.hour > 23) return failWith(r, "hour out of range");
  if (r.f.minute > 59) return failWith(r, "minute out of range");
  if (r.f.second > 60) return failWith(r, "second out of range");
  if (w == 6) p = readFraction(p, r);
  return readZoneAndEnd(p, r);
}

// day month year time [zone], the day at p; '-' may join day, month and
// year (RFC 850), and then it joins both.
inline const char* readDayFirst(const char* p, int day, Reading& r) {
  r.f.day = day;
  const bool dashes = *p == '-';
  p = dashes ? p + 1 : needCfws(p, r, "expected a space after the day");
  if (!p) return nullptr;
  p = readMonthName(p, r);
  if (!p) return nullptr;
  if (dashes) {
    if (*p != '-') return failWith(r, "expected '-' after the month");
    ++p;
  } else {
    p = needCfws(p, r, "expected a space after the month");
    if (!p) return nullptr;
  }
  p = readYear(p, r);
  if (!p) return nullptr;
  p = needCfws(p, r, "expected a space after the year");
  if (!p) return nullptr;
  p = readTime(p, r, false);
  if (!p) return nullptr;
  return readZoneAndEnd(p, r);
}

// Month first, the month read and p just after its name: asctime
// (month day time year), date(1) (month day time zone year) and JavaScript
// (month day year time zone).
inline const char* readMonthFirst(const char* p, Reading& r) {
  int w;
  p = needCfws(p, r, "expected a space after the month");
  if (!p) return nullptr;
  p = readDigits(p, 2, r.f.day, w, r, "bad day");
  if (!p) return nullptr;
  p = needCfws(p, r, "expected a space after the day");
  if (!p) return nullptr;
  const char* q = p;
  while (isDigit(*q)) ++q;
  if (*q != ':') {
    p = readYear(p, r);
    if (!p) return nullptr;
    p = needCfws(p, r, "expected a space after the year");
    if (!p) return nullptr;
    p = readTime(p, r, false);
    if (!p) return nullptr;
    return readZoneAndEnd(p, r);
  }
  p = readTime(p, r, false);
  if (!p) return nullptr;
  p = needCfws(p, r, "expected a space after the time");
  if (!p) return nullptr;
  if (!isDigit(*p)) {
    p = readZone(p, r);
    if (!p) return nullptr;
    p = needCfws(p, r, "expected a space after the zone");
    if (!p) return nullptr;
    p = readYear(p, r);
    return p ? readEnd(p, r) : nullptr;
  }
  p = readYear(p, r);
  if (!p) return nullptr;
  return readZoneAndEnd(p, r);
}

// "Thu, 07 Mar 2024 09:05:03 " by position: most mail and all HTTP dates.
// Null, with nothing reported, for anything else (a byte out of place, a
// name or field out of range), which the general reader then takes; so this
// changes how fast, never what, is read. The && chain stops at the first
// byte that does not match, so a terminating zero ends it.
inline const char* readFixedRfc1123(const char* p, Reading& r) {
  if (!(isLetter(p[0]) && isLetter(p[1]) && isLetter(p[2]) && p[3] == ',' && p[4] == ' ' &&
        isDigit(p[5]) && isDigit(p[6]) && p[7] == ' ' && isLetter(p[8]) && isLetter(p[9]) &&
        isLetter(p[10]) && p[11] == ' ' && isDigit(p[12]) && isDigit(p[13]) && isDigit(p[14]) &&
        isDigit(p[15]) && p[16] == ' ' && isDigit(p[17]) && isDigit(p[18]) && p[19] == ':' &&
        isDigit(p[20]) && isDigit(p[21]) && p[22] == ':' && isDigit(p[23]) && isDigit(p[24]) &&
        p[25] == ' ')) {
    return nullptr;
  }
  const auto key3 = [](const char* q) {
    return static_cast<uint64_t>(letterIndex(q[0]) + 1) << 10 |
           static_cast<uint64_t>(letterIndex(q[1]) + 1) << 5 | (letterIndex(q[2]) + 1);
  };
  const auto two = [](const char* q) { return (q[0] - '0') * 10 + (q[1] - '0'); };
  const int month = monthFromKey(key3(p + 8));
  const int hour = two(p + 17), minute = two(p + 20), second = two(p + 23);
  if (!isDayName(key3(p)) || month == 0 || hour > 23 || minute > 59 || second > 60) return nullptr;
  r.f.day = two(p + 5);
  r.f.month = month;
  r.f.year = two(p + 12) * 100 + two(p + 14);
  r.f.hour = hour;
  r.f.minute = minute;
  r.f.second = second;
  r.f.millis = 0;
  return p + 25;
}

inline const char* readDate(const char* p, Reading& r) {
  p = skipCfws(p, r);
  if (!p) return nullptr;
  if (const char* q = readFixedRfc1123(p, r)) return readZoneAndEnd(q, r);
  bool dayName = false;
  if (isLetter(*p)) {
    uint64_t key;
    int len;
    const char* q = readWord(p, key, len, r);
    if (!q) return nullptr;
    if (!isDayName(key)) {
      p = readMonthName(p, r);
      return p ? readMonthFirst(p, r) : nullptr;
    }
    // RFC 5322's obsolete syntax lets white space come before the comma too.
    p = skipCfws(q, r);
    if (!p) return nullptr;
    if (*p == ',') {
      p = skipCfws(p + 1, r);
      if (!p) return nullptr;
    } else if (p == q) {
      return failWith(r, "expected ',' after the day name");
    }
    if (isLetter(*p)) {
      p = readMonthName(p, r);
      return p ? readMonthFirst(p, r) : nullptr;
    }
    dayName = true;
  }
  int v, w;
  p = readDigits(p, 8, v, w, r, "expected a date");
  if (!p) return nullptr;
  if (w <= 2) return readDayFirst(p, v, r);
  if (dayName) return failWith(r, "day name before an ISO date");
  if (w == 4 && *p == '-') {
    r.f.year = v;
    return readIsoRest(p, r);
  }
  if (w == 8 && (*p == 'T' || *p == 't')) return readIsoBasicRest(p, v, r);
  return failWith(r, "expected a date");
}

__attribute__((cold, noinline)) bool reject(LogBase& log, const char* why, const char* text) {
  log.EnterContext("parseRFC822Date", 1);
  log.LogDataStr("error", why);
  log.LogDataStr("text", text ? text : "");
  log.LeaveContext();
  return false;
}


}  // namespace

bool _zpDateParser::parseRFC822Date(const char* text, ZephalSysTime& value, LogBase& log) {
  if (!text) return reject(log, "no text", text);
  Reading r;
  r.zoneKnown = false;
  r.offset = 0;
  r.why = nullptr;
  if (!readDate(text, r)) return reject(log, r.why, text);

  DateTimeFields& f = r.f;
  if (f.day < 1 || f.day > zpcivil::daysInMonth(f.year, f.month)) {
    return reject(log, "day out of range for the month", text);
  }
  const int64_t days = zpcivil::shiftToGmt(f, r.zoneKnown ? r.offset : 0);
  if (f.year < 0 || f.year > 9999) return reject(log, "year out of range", text);

  zpcivil::storeGmtReading(f, days, !r.zoneKnown, value);
  return true;
}

bool _zpDateParser::generateDateRFC822(ZephalSysTime& value, StringBuffer& out) {
  static const char kDays[] = "SunMonTueWedThuFriSat";
  static const char kMonths[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
  const ZephalCalendarFields& t = value.m_time;
  // A month outside 1-12 has no name; writing some other month would lie.
  if (t.wMonth < 1 || t.wMonth > 12) return false;

  char buf[48];  // "Thu, 07 Mar 2024 09:05:03 +0100" is 31; wide 16-bit fields add 13
  char* p = buf;
  const char* name = kDays + 3 * DayOfWeek(t.wYear, t.wMonth, t.wDay);
  *p++ = name[0];
  *p++ = name[1];
  *p++ = name[2];
  *p++ = ',';
  *p++ = ' ';
  p = zpPutDigits(p, t.wDay, 2);
  *p++ = ' ';
  name = kMonths + 3 * (t.wMonth - 1);
  *p++ = name[0];
  *p++ = name[1];
  *p++ = name[2];
  *p++ = ' ';
  p = zpPutDigits(p, t.wYear, 4);
  *p++ = ' ';
  p = zpPutDigits(p, t.wHour, 2);
  *p++ = ':';
  p = zpPutDigits(p, t.wMinute, 2);
  *p++ = ':';
  p = zpPutDigits(p, t.wSecond, 2);
  *p++ = ' ';
  if (!value.m_bLocal) {
    *p++ = 'G';
    *p++ = 'M';
    *p++ = 'T';
  } else {
    const int offset = value.getGmtOffsetInSeconds(0);
    // Seconds of an offset (old local mean times) are dropped, not rounded.
    const unsigned mins = static_cast<unsigned>(offset < 0 ? -offset : offset) / 60;
    *p++ = offset < 0 ? '-' : '+';
    p = zpPutDigits(p, mins / 60 % 100, 2);
    p = zpPutDigits(p, mins % 60, 2);
  }
  return out.appendN(buf, static_cast<unsigned>(p - buf));
}
