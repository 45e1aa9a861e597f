// The date readers' cursor: small steps that each read one element of a
// date text (digits, names, white space and comments, offsets, a time of
// day) and return where they stopped, or null after noting why and where.
// Internal to the date parser; the RFC 822 reader and the RFC 3339 reader
// are both built from these steps.
//
// Texts end at a zero byte. No step reads past it: each tests the byte it is
// about to read, and a zero byte is neither a digit, a letter, white space
// nor any separator a step looks for.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/internal/CivilDays.h"
#include "services/internal/TextBytes.h"  // isDigit

class LogBase;

namespace zpread {

// Everything read so far. A step that fails returns null and sets `why` and
// `at`; the last failure is the one reported.
struct Reading {
  zpcivil::DateTimeFields f{};
  int offset = 0;                  // minutes east of GMT, when zoneKnown
  bool zoneKnown = false;          // false: no zone, -0000, a military letter, ++0100
  const char* offsetEnd = nullptr; // just past the last complete offset (+hhmm, +hh:mm)
  const char* why = nullptr;
  const char* at = nullptr;        // the byte the failure was found at
  const char* dayAt = nullptr;     // the day field, checked against its month last
  const char* yearAt = nullptr;    // the year field, checked after the move to GMT
};

inline const char* failAt(Reading& r, const char* at, const char* why) {
  r.why = why;
  r.at = at;
  return nullptr;
}

// ---- Bytes ----------------------------------------------------------------------

inline bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
// 0..25 for an ASCII letter of either case; 26 or more for any other byte
// (bytes 128-255 included: folding keeps the top bit).
inline unsigned letterIndex(char c) { return static_cast<unsigned char>((c | 0x20) - 'a'); }
inline bool isLetter(char c) { return letterIndex(c) < 26; }

// ---- Names ----------------------------------------------------------------------

// Names are matched as one number: five bits per letter (a = 1 .. z = 26),
// first letter highest, so a switch over the packed keys replaces string
// compares. Twelve letters fit in 60 bits; no name we know is longer.
constexpr uint64_t nameKey(const char* s) {
  uint64_t k = 0;
  for (; *s; ++s) k = k << 5 | static_cast<uint64_t>((*s | 0x20) - 'a' + 1);
  return k;
}

// A run of letters as its key; `len` gets the run's length (0 when the byte
// at p is no letter). Null for a run of more than 12 letters.
inline const char* readWord(const char* p, uint64_t& key, int& len, Reading& r) {
  const char* const start = p;
  uint64_t k = 0;
  for (unsigned i; (i = letterIndex(*p)) < 26; ++p) {
    if (p - start == 12) return failAt(r, start, "word too long");
    k = k << 5 | (i + 1);
  }
  key = k;
  len = static_cast<int>(p - start);
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

inline const char* readMonthName(const char* p, Reading& r) {
  uint64_t key;
  int len;
  const char* q = readWord(p, key, len, r);
  if (!q) return nullptr;
  r.f.month = monthFromKey(key);
  if (r.f.month == 0) return failAt(r, p, len ? "unknown month name" : "expected a month name");
  return q;
}

// ---- White space and comments -----------------------------------------------------

// Skips a comment whose '(' is at p (DateCursor.cpp). Out of line: most dates
// carry no comment, and the loops that call this stay small.
const char* skipComment(const char* p, Reading& r);

// White space (CR and LF included, so folded lines need no handling of their
// own) and comments, in any number. Null only at an unterminated comment.
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
  if (q == p) return failAt(r, p, why);
  return q;
}

// ---- Digits -----------------------------------------------------------------------

// A run of digits: `width` gets its length, `value` its value. Null when the
// run is empty or longer than maxWidth (at most 9), so 202409 is never a
// year and an hour.
inline const char* readDigits(const char* p, int maxWidth, int& value, int& width, Reading& r,
                              const char* why) {
  const char* const start = p;
  int v = 0;
  for (; isDigit(*p); ++p) {
    if (p - start == maxWidth) return failAt(r, start, why);
    v = v * 10 + (*p - '0');
  }
  if (p == start) return failAt(r, start, why);
  value = v;
  width = static_cast<int>(p - start);
  return p;
}

// Exactly `width` digits, in [minValue, maxValue].
inline const char* readFixed(const char* p, int width, int minValue, int maxValue, int& out,
                             Reading& r, const char* why, const char* rangeWhy) {
  int w;
  const char* q = readDigits(p, width, out, w, r, why);
  if (!q) return nullptr;
  if (w != width) return failAt(r, p, why);
  if (out < minValue || out > maxValue) return failAt(r, p, rangeWhy);
  return q;
}

// One or two digits, in [0, maxValue].
inline const char* readOneOrTwo(const char* p, int maxValue, int& out, Reading& r,
                                const char* why, const char* rangeWhy) {
  int w;
  const char* q = readDigits(p, 2, out, w, r, why);
  if (!q) return nullptr;
  if (out > maxValue) return failAt(r, p, rangeWhy);
  return q;
}

// An optional fraction of a second after the seconds, '.' (or ',' when
// `comma`) and any number of digits, truncated to milliseconds.
inline const char* readFraction(const char* p, Reading& r, bool comma = true) {
  if ((*p != '.' && (*p != ',' || !comma)) || !isDigit(p[1])) return p;
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

// ---- Offsets and zones ------------------------------------------------------------

inline bool isSign(char c) { return c == '+' || c == '-'; }

// White space, then two digits alone: after "+05" they may be its minutes
// ("+05 30"), so the offset names no single instant.
inline bool minutesApart(const char* p) {
  const char* q = p;
  while (isSpace(*q)) ++q;
  return q != p && isDigit(q[0]) && isDigit(q[1]) && !isDigit(q[2]);
}

// +hhmm, +hh:mm or +hh (either sign), the sign at p, up to 23:59. -0000
// (and -00:00, -00) states that the local offset is unknown. The first two
// are complete: `offsetEnd` marks where they end.
inline const char* readOffset(const char* p, Reading& r) {
  const char* const sign = p;
  int hh, mm = 0, w;
  p = readDigits(p + 1, 4, hh, w, r, "bad zone offset");
  if (!p) return nullptr;
  if (w == 4) {
    mm = hh % 100;
    hh /= 100;
    r.offsetEnd = p;
  } else if (w != 2) {
    return failAt(r, sign, "bad zone offset");
  } else if (*p == ':') {
    p = readFixed(p + 1, 2, 0, 59, mm, r, "bad zone offset", "zone offset out of range");
    if (!p) return nullptr;
    r.offsetEnd = p;
  } else if (minutesApart(p)) {
    return failAt(r, sign, "zone offset split by white space");
  }
  if (hh > 23 || mm > 59) return failAt(r, sign, "zone offset out of range");
  const bool west = *sign == '-';
  r.offset = (west ? -1 : 1) * (hh * 60 + mm);
  r.zoneKnown = r.offset != 0 || !west;
  return p;
}

// A zone, p just after the time or the year (DateCursor.cpp): nothing; or
// a numeric offset, a zone name or a military letter, ended by white space,
// a comment, a '[' or the end of the text. Whatever comes after that end is
// not read: it never changes the instant.
//
// In mail and HTTP dates white space or a comment must come before the
// zone, as RFC 5322 puts FWS there; a complete numeric offset ends the
// zone whatever follows it ("+0000-0800"), and a doubled sign ("++0100")
// leaves the zone unknown.
const char* readMailZone(const char* p, Reading& r);
// In ISO 8601 texts the zone may touch the time ("09:05:03+01:00").
const char* readIsoZone(const char* p, Reading& r);

// ---- Times of day -------------------------------------------------------------------

enum class TimeStyle {
  kMail,     // 9:5[:3]: one or two digits, white space and comments around ':'
  kIso,      // 09:05[:03]: two digits, nothing around ':'
  kRfc3339,  // 09:05:03: two digits, seconds required
};

// After a time field: where the ':' that starts the next one is, with the
// white space and comments that RFC 5322's obsolete syntax allows before
// it in mail; p itself when no ':' follows, null at an unterminated comment.
inline const char* findColon(const char* p, Reading& r, TimeStyle style) {
  if (*p == ':' || style != TimeStyle::kMail) return p;
  const char* q = skipCfws(p, r);
  if (!q) return nullptr;
  return *q == ':' ? q : p;
}

inline const char* afterColon(const char* p, Reading& r, TimeStyle style) {
  return style == TimeStyle::kMail ? skipCfws(p + 1, r) : p + 1;
}

inline const char* readTimeField(const char* p, int maxValue, int& out, Reading& r,
                                 TimeStyle style, const char* why, const char* rangeWhy) {
  return style == TimeStyle::kMail ? readOneOrTwo(p, maxValue, out, r, why, rangeWhy)
                                   : readFixed(p, 2, 0, maxValue, out, r, why, rangeWhy);
}

// hh:mm[:ss[(.|,)fraction]]; second 60 is kept as read.
inline const char* readTime(const char* p, Reading& r, TimeStyle style) {
  p = readTimeField(p, 23, r.f.hour, r, style, "bad hour", "hour out of range");
  if (!p) return nullptr;
  const char* q = findColon(p, r, style);
  if (!q) return nullptr;
  if (*q != ':') return failAt(r, q, "expected ':' after the hour");
  p = afterColon(q, r, style);
  if (!p) return nullptr;
  p = readTimeField(p, 59, r.f.minute, r, style, "bad minute", "minute out of range");
  if (!p) return nullptr;
  r.f.second = 0;
  r.f.millis = 0;
  q = findColon(p, r, style);
  if (!q) return nullptr;
  if (*q != ':') {
    return style == TimeStyle::kRfc3339 ? failAt(r, q, "expected ':' after the minute") : p;
  }
  p = afterColon(q, r, style);
  if (!p) return nullptr;
  const char* const second = p;
  p = readTimeField(p, 60, r.f.second, r, style, "bad second", "second out of range");
  if (!p) return nullptr;
  // A fraction only after two digits: "0.1" could as well be a slip for "01".
  return p - second == 2 ? readFraction(p, r, style != TimeStyle::kRfc3339) : p;
}

// "2024-03-07T09:05:03" by position, T or t between date and time: most
// RFC 3339 texts. Null, with nothing reported, for anything else (a byte out
// of place, a field out of range), which the step-by-step reader then takes
// and explains; so this changes how fast, never what, is read. The && chain
// stops at the first byte that does not match, so a terminating zero ends it.
inline const char* readFixedIsoDateTime(const char* p, Reading& r) {
  if (!(isDigit(p[0]) && isDigit(p[1]) && isDigit(p[2]) && isDigit(p[3]) && p[4] == '-' &&
        isDigit(p[5]) && isDigit(p[6]) && p[7] == '-' && isDigit(p[8]) && isDigit(p[9]) &&
        (p[10] == 'T' || p[10] == 't') && isDigit(p[11]) && isDigit(p[12]) && p[13] == ':' &&
        isDigit(p[14]) && isDigit(p[15]) && p[16] == ':' && isDigit(p[17]) && isDigit(p[18]))) {
    return nullptr;
  }
  const auto two = [](const char* q) { return (q[0] - '0') * 10 + (q[1] - '0'); };
  const int month = two(p + 5), hour = two(p + 11), minute = two(p + 14), second = two(p + 17);
  if (month < 1 || month > 12 || hour > 23 || minute > 59 || second > 60) return nullptr;
  r.f.year = two(p) * 100 + two(p + 2);
  r.f.month = month;
  r.f.day = two(p + 8);
  r.f.hour = hour;
  r.f.minute = minute;
  r.f.second = second;
  r.f.millis = 0;
  r.yearAt = p;
  r.dayAt = p + 8;
  return p + 19;
}

// ---- Shapes in other files ------------------------------------------------------------

// Year-first shapes (ISO 8601, slashes, Unix seconds with a fraction), p at
// the first digit of the text (DateParserIso.cpp).
const char* readYearFirst(const char* p, Reading& r);

// RFC 3339 exactly, p at the year; no byte after the zone is read
// (DateParserIso.cpp).
const char* readRfc3339(const char* p, Reading& r);

// RFC 3339's zone, p just after the time: Z, z, +hh:mm, +hhmm or +hh
// (DateParserIso.cpp).
const char* readRfc3339Zone(const char* p, Reading& r);

// ---- Results ----------------------------------------------------------------------

// Writes the one log record of a refusal: a context named `reader` holding
// "error" (the reason and its byte, "expected ':' after the hour at byte 17")
// and "text". Returns false, for the readers to return.
bool refuse(LogBase& log, const char* reader, const char* why, size_t byte, const char* text);

}  // namespace zpread
