// AtomDateToSysTime: RFC 3339 date-times, as Atom feeds write them.
//
// Forms read (tests/data/atom_accept.tsv starts from this list):
//
//   2024-03-07T09:05:03Z              GMT (z too)
//   2024-03-07t09:05:03+01:00         offset as +hh:mm; lower-case t
//   2024-03-07T09:05:03-0500          offset as -hhmm
//   2024-03-07T09:05:03+05            offset as +hh
//   2024-03-07T09:05:03.123456789Z    fraction of any length, truncated to the millisecond
//   2016-12-31T23:59:60Z              leap second, stored as read
//   2024-03-07T09:05:03-00:00         GMT reading with the local offset unknown
//                                     (RFC 3339 4.3): m_bFromUnknownTimezone true
//
// Nothing else: no space for the T, no missing seconds, no white space
// before or after, no byte after the zone (an embedded zero included, as
// the buffer's size decides where the text ends). The result is the GMT
// reading of the instant; `extra` receives the stated offset in minutes east.
#include <cstdint>

#include "services/CivilDays.h"
#include "services/ParsedReading.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace {

// The value of two decimal digits at p, or -1.
inline int twoDigits(const char* p) {
  const unsigned a = static_cast<unsigned char>(p[0] - '0');
  const unsigned b = static_cast<unsigned char>(p[1] - '0');
  return a < 10 && b < 10 ? static_cast<int>(a * 10 + b) : -1;
}

// "2024-03-07T09:05:03": the shortest text is this plus a one-byte zone.
constexpr unsigned kFixedPart = 19;

}  // namespace

bool _zpDateParser::AtomDateToSysTime(const StringBuffer& text, ZephalSysTime& value, int* extra) {
  const unsigned size = text.getSize();
  if (size < kFixedPart + 1) return false;
  const char* p = text.getString();
  const char* const end = p + size;

  // The fixed part, by position; every byte read lies before `end`.
  const int century = twoDigits(p);
  const int yy = twoDigits(p + 2);
  zpcivil::DateTimeFields f;
  f.month = twoDigits(p + 5);
  f.day = twoDigits(p + 8);
  f.hour = twoDigits(p + 11);
  f.minute = twoDigits(p + 14);
  f.second = twoDigits(p + 17);
  f.millis = 0;
  if (century < 0 || yy < 0 || p[4] != '-' || p[7] != '-' || (p[10] != 'T' && p[10] != 't') ||
      p[13] != ':' || p[16] != ':') {
    return false;
  }
  f.year = century * 100 + yy;
  // A failed digit pair is -1, which these range tests catch too.
  if (f.month < 1 || f.month > 12 || f.day < 1 || f.day > zpcivil::daysInMonth(f.year, f.month) ||
      f.hour < 0 || f.hour > 23 || f.minute < 0 || f.minute > 59 || f.second < 0 ||
      f.second > 60) {
    return false;
  }
  p += kFixedPart;

  if (*p == '.') {
    ++p;
    const char* const digits = p;
    int ms = 0;
    for (; p < end && static_cast<unsigned char>(*p - '0') < 10; ++p) {
      if (p - digits < 3) ms = ms * 10 + (*p - '0');
    }
    if (p == digits) return false;
    for (auto n = p - digits; n < 3; ++n) ms *= 10;
    f.millis = ms;
  }

  // The zone: Z, or a sign, two digits of hours, and optionally the minutes
  // with or without a colon. The text must end right after it.
  if (p >= end) return false;
  int offset = 0;
  bool unknownZone = false;
  if (*p == 'Z' || *p == 'z') {
    ++p;
  } else if (*p == '+' || *p == '-') {
    const bool west = *p == '-';
    if (end - p < 3) return false;
    const int hh = twoDigits(p + 1);
    int mm = 0;
    p += 3;
    if (p < end) {
      if (*p == ':') ++p;
      if (end - p < 2) return false;
      mm = twoDigits(p);
      p += 2;
    }
    if (hh < 0 || hh > 23 || mm < 0 || mm > 59) return false;
    offset = (west ? -1 : 1) * (hh * 60 + mm);
    unknownZone = west && offset == 0;
  } else {
    return false;
  }
  if (p != end) return false;

  const int64_t days = zpcivil::shiftToGmt(f, offset);
  if (f.year < 0 || f.year > 9999) return false;

  zpcivil::storeGmtReading(f, days, unknownZone, value);
  if (extra) *extra = offset;
  return true;
}
