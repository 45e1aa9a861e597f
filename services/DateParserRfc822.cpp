// parseRFC822Date: the date texts of mail and HTTP and the shapes common
// software writes. Year-first texts (ISO 8601, Unix seconds with a fraction)
// are read in DateParserIso.cpp, what people and office software write
// (numeric dates, 12-hour clocks, a date alone) in DateParserPeople.cpp.
//
// Forms read (tests/data/rfc822_accept.tsv starts from this list):
//
//   Thu, 07 Mar 2024 09:05:03 GMT          RFC 5322 / RFC 1123, HTTP's preferred form
//   07 Mar 2024 09:05:03 +0000             day name left out
//   Thu, 7 Mar 2024 9:5:3 -0500            one-digit day, hour, minute and second
//   Thu, 7 Mar 2024 09:05 -0500            no seconds (Go's RFC822: 07 Mar 24 10:05 CET)
//   Thu, 07 Mar 24 09:05:03 EST            two-digit year: 00-49 are 2000-2049, 50-99 1950-1999
//   Thu, 07 Mar 124 09:05:03 GMT           three-digit year: plus 1900 (RFC 5322 obs-year)
//   thursday, 07 march 2024 09:05:03 pdt   full names, any letter case
//   Thu, 07 Mar 2024 09:05:03 CET          a zone name with one offset in tzdata
//   Thu, 07 Mar 2024 09:05:03 -0000        zone unknown (RFC 5322 3.3)
//   Thu, 07 Mar 2024 09:05:03 A            military letter: zone unknown, Z is GMT
//   Thu, 07 Mar 2024 09:05:03 +0200 (GMT+02:00)
//                                          comments, nested, wherever white space may go
//   Thu, 07 Mar 2024 09:05:03 -0800 GMT    words after the zone are not read
//   Thu,\r\n 07 Mar 2024  09:05:03\tGMT     runs of white space, folded lines
//   Fri, 21 Nov 1997 09(comment):   55  :  06 -0600
//                                          and around the colons (RFC 5322 A.6.3)
//   Thu,, 07 Mar 2024 09:05:03 GMT         extra '.', ',' or ';' after the day name
//   Sat, 31 Dec 2016 23:59:60 +0000        leap second, stored as read
//   Thu, 07 Mar 2024 09:05:03.250 GMT      a fraction after the seconds, to the millisecond
//   Thursday, 07-Mar-24 09:05:03 GMT       RFC 850
//   Thu, 07-Mar-2024 09:05:03 GMT          the same with a four-digit year (cookies)
//   07/Mar/2024:09:05:03 +0000             access logs
//   Thu Mar  7 09:05:03 2024               asctime, Go's ANSIC (zone unknown)
//   Thu Mar  7 09:05:03 CET 2024           date(1), Go's UnixDate, Java's Date.toString
//   Thu Mar  7 06:05:03 -03 2024           date(1) in a zone without a name
//   Thu Mar 07 10:05:03 +0100 2024         Go's RubyDate
//   Thu Mar 7 10:05:03 2024 +0100          git's default
//   Thu Mar 07 2024 09:05:03 GMT+0100 (Central European Standard Time)
//                                          JavaScript's Date.toString
//
// Decisions where RFC 5322, RFC 9110 and the common readers (Python's
// email.utils, libcurl, Go's net/mail) differ:
//   - a day name that disagrees with the date is accepted and ignored, as
//     the readers do; wDayOfWeek is always computed;
//   - what follows a zone, once white space, a comment or '[' ends it, is
//     not read (the three readers all ignore it);
//   - a complete numeric offset (+hhmm, +hh:mm) ends the zone whatever
//     follows, even touching it: "+0000-0800 GMT", "+0100junk" and
//     "-0000)" are read by that offset; a name must end as above, so
//     "UTC1", "GMTx" and "GMT," are refused;
//   - "+05 30" is refused: the digits after the white space may be the
//     offset's minutes ("+05" alone is read, as date(1) writes it);
//   - a doubled sign ("++0100", "+-0000") leaves the zone unknown, fields as
//     written: the readers agree only when the digits are zero, and read
//     "++0100" as +0100, -0100 and +0010;
//   - white space and comments around the time's colons are read, as
//     RFC 5322's obsolete syntax allows, though the three readers refuse;
//   - the zone needs white space (or a comment) before it, as RFC 5322
//     says: "09:05:03+0100" is refused (ISO 8601 texts keep theirs);
//   - RFC 850's dashed form has two- or four-digit years (RFC 9110):
//     "21-Oct-215" is refused;
//   - a fraction of a second only after two-digit seconds: "17:34:0.1" is
//     refused;
//   - the RFC 5322 names (UT, UTC, GMT, EST ... PDT) have their RFC
//     meaning in the shapes of mail; where programs write their zone's
//     abbreviation (date(1), Go's UnixDate, Java's Date.toString) and in
//     the shapes people write, CST, CDT, PST and PDT are China's, Cuba's or
//     the Philippines' as much, and refused unless a numeric offset follows;
//     any other name is read only when tzdata and Java give it a single
//     offset (CET, JST, BRT); a name with several (IST, BST, BDT) is refused
//     unless a numeric offset follows it;
//   - where the zone comes before the year (date(1)), the year ends the
//     date: "Thu Mar 07 10:05:03 +0100 2024 -0800" is read at +0100;
//   - a date alone, which RFC 5322 does not allow but people write, is
//     midnight with the zone unknown when its year has four digits ("07 Mar
//     2024"; DateParserPeople.cpp); syslog's yearless "Mar  7 09:05:03" is
//     refused;
//   - numeric offsets go up to 23:59; the GMT reading must fall in years 0-9999.
#include <cstdint>
#include <cstring>

#include "services/internal/DateCursor.h"
#include "services/internal/FastPaths.h"
#include "services/internal/FixedDates.h"
#include "services/internal/ParsedReading.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace {

using namespace zpread;

// Two, three or four digits, read as RFC 5322's obsolete syntax says; two
// or four when `dashed` (RFC 850 and cookies know no three-digit year).
inline const char* readYear(const char* p, Reading& r, bool dashed = false) {
  int v, w;
  r.yearAt = p;
  const char* q = readDigits(p, 4, v, w, r, "year must have 2 to 4 digits");
  if (!q) return nullptr;
  if (w == 1) return failAt(r, p, "year must have 2 to 4 digits");
  if (w == 3 && dashed) return failAt(r, p, "dashed year must have 2 or 4 digits");
  if (w == 2) v = zpcivil::yearFromTwoDigits(v);
  if (w == 3) v += 1900;
  r.f.year = v;
  return q;
}

// Whether a date may end at p, just after its year, with no time: when the
// year has four digits. Mail's two- and three-digit years come with a time;
// alone they are more likely a year cut short ("07 Mar 20") than a date.
inline bool mayEndAfter(const char* p, const Reading& r) { return p - r.yearAt == 4; }

// day month year [time [zone]], the day read and p just after it. '-' may
// join day, month and year (RFC 850) and '/' too (access logs, whose year
// a ':' joins to the time); a joiner, once used, joins all three.
inline const char* readDayFirst(const char* p, int day, Reading& r) {
  r.f.day = day;
  const char joiner = *p == '-' || *p == '/' ? *p : ' ';
  p = joiner != ' ' ? p + 1 : needCfws(p, r, "expected a space after the day");
  if (!p) return nullptr;
  p = readMonthName(p, r);
  if (!p) return nullptr;
  if (joiner != ' ') {
    if (*p != joiner) return failAt(r, p, "expected the day's joiner after the month");
    ++p;
  } else {
    p = needCfws(p, r, "expected a space after the month");
    if (!p) return nullptr;
  }
  p = readYear(p, r, joiner == '-');
  if (!p) return nullptr;
  if (joiner != '/' || *p != ':') {
    return readClockTail(p, r, joiner == '-' || mayEndAfter(p, r));
  }
  p = readTime(p + 1, r, TimeStyle::kMail);
  return p ? readMailZone(p, r) : nullptr;
}

// The zone between time and year (date(1), Go's UnixDate and RubyDate),
// then the year; p just after the time, a zone after white space. The year
// completes the date: what follows it is not read, a second zone included.
inline const char* readZoneThenYear(const char* p, Reading& r) {
  // These programs write their zone's abbreviation, CST in Shanghai as in
  // Chicago: mail's meanings of the names do not hold here.
  r.rfcZoneNames = false;
  p = readMailZone(p, r);
  if (!p) return nullptr;
  const char* q = skipCfws(p, r);
  if (!q) return nullptr;
  if (q == p || *q == '\0') return failAt(r, q, "expected a year after the zone");
  p = readYear(q, r);
  if (!p) return nullptr;
  if (*p == '\0' || isSpace(*p) || *p == '(') return p;
  return failAt(r, p, "expected a space after the year");
}

// Month first, the month read and p just after its name: asctime and git
// (month day time year [zone]), date(1) (month day time zone year),
// JavaScript (month day year time zone) and people (month day, year [time]).
inline const char* readMonthFirst(const char* p, Reading& r) {
  int w;
  p = needCfws(p, r, "expected a space after the month");
  if (!p) return nullptr;
  r.dayAt = p;
  p = readDigits(p, 2, r.f.day, w, r, "bad day");
  if (!p) return nullptr;
  if (*p == ',') {  // people's "Jan 25, 2026"
    r.rfcZoneNames = false;
    p = skipCfws(p + 1, r);
    if (p) p = readYear(p, r);
    return p ? readClockTail(p, r, mayEndAfter(p, r)) : nullptr;
  }
  p = needCfws(p, r, "expected a space after the day");
  if (!p) return nullptr;
  const char* q = p;
  while (isDigit(*q)) ++q;
  if (*q != ':') {
    p = readYear(p, r);
    return p ? readClockTail(p, r, mayEndAfter(p, r)) : nullptr;
  }
  p = readTime(p, r, TimeStyle::kMail);
  if (!p) return nullptr;
  q = skipCfws(p, r);
  if (!q) return nullptr;
  if (*q == '\0') return failAt(r, q, "expected a year after the time");
  if (q == p) return failAt(r, q, "expected a space after the time");
  if (!isDigit(*q)) return readZoneThenYear(p, r);
  p = readYear(q, r);
  return p ? readMailZone(p, r) : nullptr;
}


inline bool isDayNameTail(char c) { return c == ',' || c == '.' || c == ';'; }

// After a day name, p just past it: white space, comments and a run of
// ',', '.' or ';' holding a comma, or white space alone (RFC 5322 lets
// white space come before the comma too). Python's and libcurl's readers
// both take "Thu,, 07" and "Thu., 07".
inline const char* skipAfterDayName(const char* p, Reading& r) {
  const char* q = skipCfws(p, r);
  if (!q) return nullptr;
  bool comma = false;
  for (; isDayNameTail(*q); ++q) comma |= *q == ',';
  if (!comma) {
    if (q == p || isDayNameTail(q[-1])) return failAt(r, q, "expected ',' after the day name");
    return q;
  }
  return skipCfws(q, r);
}

inline const char* readDate(const char* p, Reading& r) {
  p = skipCfws(p, r);
  if (!p) return nullptr;
  if (const char* q = zp_fast::on(zp_fast::kFixedRfc1123) ? readFixedRfc1123(p, r) : nullptr) {
    // " GMT" and the end, as HTTP writes every date: readMailZone's reading.
    if (q[0] == ' ' && q[1] == 'G' && q[2] == 'M' && q[3] == 'T' && q[4] == '\0') {
      r.zoneKnown = true;
      r.offset = 0;
      return q + 4;
    }
    return readMailZone(q, r);
  }
  bool dayName = false;
  if (isLetter(*p)) {
    uint64_t key;
    int len;
    const char* q = readWord(p, key, len, r);
    if (!q) return nullptr;
    if (!isDayName(key)) {
      q = readMonthName(p, r);
      return q ? readMonthFirst(q, r) : nullptr;
    }
    p = skipAfterDayName(q, r);
    if (!p) return nullptr;
    if (isLetter(*p)) {
      q = readMonthName(p, r);
      return q ? readMonthFirst(q, r) : nullptr;
    }
    dayName = true;
  }
  if (!isDigit(*p)) return failAt(r, p, "expected a date");
  if (startsNumericDate(p)) return readNumericDate(p, r);
  if (!isDigit(p[1]) || !isDigit(p[2])) {
    r.dayAt = p;
    int day, w;
    const char* q = readDigits(p, 2, day, w, r, "expected a date");
    return q ? readDayFirst(q, day, r) : nullptr;
  }
  if (dayName) return failAt(r, p, "day name before a year-first date");
  return readYearFirst(p, r);
}

}  // namespace

bool _zpDateParser::parseRFC822Date(const char* text, ZephalSysTime& value, LogBase& log) {
  static const char kReader[] = "parseRFC822Date";
  if (!text) return refuse(log, kReader, "no text", 0, "");
  Reading r;
  if (!readMailText(text, value, r)) {
    return refuse(log, kReader, r.why, static_cast<size_t>(r.at - text), text);
  }
  return true;
}

bool zpread::readMailText(const char* text, ZephalSysTime& value, Reading& r) {
  return readDate(text, r) && settle(r, value);
}
