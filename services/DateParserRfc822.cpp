// parseRFC822Date: the date texts of mail and HTTP and the shapes common
// software writes. Year-first texts (ISO 8601, Unix seconds with a fraction)
// are read in DateParserIso.cpp.
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
//     meaning; any other name is read only when tzdata gives it a single
//     offset since 1970 (CET, JST, AST); a name with several (IST, BST) is
//     refused unless a numeric offset follows it;
//   - where the zone comes before the year (date(1)), the year ends the
//     date: "Thu Mar 07 10:05:03 +0100 2024 -0800" is read at +0100;
//   - a date needs a time: "07 Mar 2024" alone is refused, as RFC 5322 says;
//     so is syslog's yearless "Mar  7 09:05:03";
//   - numeric offsets go up to 23:59; the GMT reading must fall in years 0-9999.
#include <cstdint>
#include <cstring>

#include "services/internal/DateCursor.h"
#include "services/internal/FastPaths.h"
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
  if (w == 2) v += v < 50 ? 2000 : 1900;
  if (w == 3) v += 1900;
  r.f.year = v;
  return q;
}

// day month year time [zone], the day read and p just after it. '-' may
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
  if (joiner == '/' && *p == ':') {
    ++p;
  } else {
    p = needCfws(p, r, "expected a space after the year");
    if (!p) return nullptr;
  }
  p = readTime(p, r, TimeStyle::kMail);
  return p ? readMailZone(p, r) : nullptr;
}

// The zone between time and year (date(1), Go's UnixDate and RubyDate),
// then the year; p just after the time, a zone after white space. The year
// completes the date: what follows it is not read, a second zone included.
inline const char* readZoneThenYear(const char* p, Reading& r) {
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
// (month day time year [zone]), date(1) (month day time zone year) and
// JavaScript (month day year time zone).
inline const char* readMonthFirst(const char* p, Reading& r) {
  int w;
  p = needCfws(p, r, "expected a space after the month");
  if (!p) return nullptr;
  r.dayAt = p;
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
    p = readTime(p, r, TimeStyle::kMail);
    return p ? readMailZone(p, r) : nullptr;
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

// The month and day names of the fixed layouts, each with the byte after it
// ("mar ", "thu,") as one 32-bit word, letters folded to lower case, found
// by a perfect hash: a table load and a compare instead of the switch, whose
// branches a random month or day mispredicts. Folding with 0x20 turns only
// letters into 'a'..'z', so a word that matches holds letters.
constexpr uint32_t nameWord(const char* p) {
  const auto byte = [](char c) { return static_cast<uint32_t>(static_cast<unsigned char>(c)); };
  return (byte(p[0]) | byte(p[1]) << 8 | byte(p[2]) << 16 | byte(p[3]) << 24) | 0x202020u;
}
constexpr unsigned monthSlot(uint32_t word) { return static_cast<uint32_t>(word * 26596u) >> 28; }
constexpr unsigned daySlot(uint32_t word) { return static_cast<uint32_t>(word * 2466u) >> 29; }

struct NameSlots {
  uint32_t word[16];
  uint8_t value[16];  // the month 1..12, or 1 for a day name; 0 in a free slot
};

constexpr NameSlots makeSlots(const char* const* names, int count, bool months) {
  NameSlots t{};
  for (int i = 0; i < count; ++i) {
    const uint32_t word = nameWord(names[i]);
    const unsigned slot = months ? monthSlot(word) : daySlot(word);
    t.word[slot] = word;
    t.value[slot] = static_cast<uint8_t>(months ? i + 1 : 1);
  }
  return t;
}

constexpr const char* kMonthNames[] = {"jan ", "feb ", "mar ", "apr ", "may ", "jun ",
                                       "jul ", "aug ", "sep ", "oct ", "nov ", "dec "};
constexpr const char* kDayNames[] = {"sun,", "mon,", "tue,", "wed,", "thu,", "fri,", "sat,"};
constexpr NameSlots kMonthSlots = makeSlots(kMonthNames, 12, true);
constexpr NameSlots kDaySlots = makeSlots(kDayNames, 7, false);

constexpr int filledSlots(const NameSlots& t) {
  int n = 0;
  for (uint8_t v : t.value) n += v != 0;
  return n;
}
static_assert(filledSlots(kMonthSlots) == 12 && filledSlots(kDaySlots) == 7,
              "every three-letter name has a slot of its own");

// 1..12 for "mar " at p, any letter case, else 0; a day name and ',': 1, else 0.
inline int fixedMonth(const char* p) {
  const uint32_t word = nameWord(p);
  const unsigned slot = monthSlot(word);
  return kMonthSlots.word[slot] == word ? kMonthSlots.value[slot] : 0;
}
inline bool fixedDayName(const char* p) {
  const uint32_t word = nameWord(p);
  const unsigned slot = daySlot(word);
  return kDaySlots.word[slot] == word && kDaySlots.value[slot] != 0;
}

// The fields of "Thu, 07 Mar 2024 09:05:03 " at p, its bytes of the right
// kinds already: false for a name or field out of range.
inline bool readFixedFields(const char* p, Reading& r) {
  const auto two = [](const char* q) { return (q[0] - '0') * 10 + (q[1] - '0'); };
  const int month = fixedMonth(p + 8);
  const int hour = two(p + 17), minute = two(p + 20), second = two(p + 23);
  if (!fixedDayName(p) || month == 0 || hour > 23 || minute > 59 || second > 60) return false;
  r.f.day = two(p + 5);
  r.f.month = month;
  r.f.year = two(p + 12) * 100 + two(p + 14);
  r.f.hour = hour;
  r.f.minute = minute;
  r.f.second = second;
  r.f.millis = 0;
  r.dayAt = p + 5;
  r.yearAt = p + 12;
  return true;
}

// "Thu, 07 Mar 2024 09:05:03 " by position: most mail and all HTTP dates.
// Null, with nothing reported, for anything else (a byte out of place, a
// name or field out of range), which the general reader then takes; so this
// changes how fast, never what, is read. The && chain stops at the first
// byte that does not match, so a terminating zero ends it. With the names'
// hash above and the GMT end in readDate: 27 ns instead of 36 ns a text
// (BM_PathFixedRfc1123).
inline const char* readFixedRfc1123(const char* p, Reading& r) {
  if (!(isLetter(p[0]) && isLetter(p[1]) && isLetter(p[2]) && p[3] == ',' && p[4] == ' ' &&
        isDigit(p[5]) && isDigit(p[6]) && p[7] == ' ' && isLetter(p[8]) && isLetter(p[9]) &&
        isLetter(p[10]) && p[11] == ' ' && isDigit(p[12]) && isDigit(p[13]) && isDigit(p[14]) &&
        isDigit(p[15]) && p[16] == ' ' && isDigit(p[17]) && isDigit(p[18]) && p[19] == ':' &&
        isDigit(p[20]) && isDigit(p[21]) && p[22] == ':' && isDigit(p[23]) && isDigit(p[24]) &&
        p[25] == ' ')) {
    return nullptr;
  }
  return readFixedFields(p, r) ? p + 25 : nullptr;
}

// ---- HTTP's date, whole -----------------------------------------------------------

// Eight bytes of a layout, loaded as one little-endian word: which bytes
// must be given ones, and which digits ('9' in the layout; 'a' is a letter,
// left to the names' words).
struct WordLayout {
  uint64_t literalMask, literal, digitMask;
};

constexpr WordLayout wordLayout(const char* layout) {
  WordLayout w{0, 0, 0};
  for (int i = 0; i < 8; ++i) {
    const uint64_t byte = uint64_t{0xFF} << (8 * i);
    if (layout[i] == '9') {
      w.digitMask |= byte;
    } else if (layout[i] != 'a') {
      w.literalMask |= byte;
      w.literal |= static_cast<uint64_t>(static_cast<unsigned char>(layout[i])) << (8 * i);
    }
  }
  return w;
}

constexpr char kHttpLayout[] = "aaa, 99 aaa 9999 99:99:99 GMT";
constexpr size_t kHttpSize = sizeof kHttpLayout - 1;
constexpr size_t kHttpWordAt[4] = {0, 8, 16, kHttpSize - 8};  // the last two overlap
constexpr WordLayout kHttpWords[4] = {wordLayout(kHttpLayout + kHttpWordAt[0]),
                                      wordLayout(kHttpLayout + kHttpWordAt[1]),
                                      wordLayout(kHttpLayout + kHttpWordAt[2]),
                                      wordLayout(kHttpLayout + kHttpWordAt[3])};

inline uint64_t littleWord(const char* p) {
  uint64_t w;
  std::memcpy(&w, p, sizeof w);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  w = __builtin_bswap64(w);
#endif
  return w;
}

// Zero when the word has the layout's given bytes and digits where it has
// them. A digit is 0x30..0x39: its high half 3, and still 3 once 6 is added
// to it, which carries out of no byte whose high half is 3.
inline uint64_t layoutMismatch(uint64_t w, const WordLayout& l) {
  constexpr uint64_t kHigh = 0xF0F0F0F0F0F0F0F0u, kThree = 0x3030303030303030u,
                     kSix = 0x0606060606060606u;
  const uint64_t high = l.digitMask & kHigh, three = l.digitMask & kThree;
  return ((w & l.literalMask) ^ l.literal) | ((w & high) ^ three) |
         (((w + (l.digitMask & kSix)) & high) ^ three);
}

// "Thu, 07 Mar 2024 09:05:03 GMT", the whole text, as HTTP writes every date:
// four word loads test all 29 bytes at once, where readFixedRfc1123 tests
// them one by one, as it must when it knows no length. False, with nothing
// reported, for anything else.
inline bool readHttpDate(const char* p, Reading& r) {
  uint64_t mismatch = 0;
  for (int i = 0; i < 4; ++i) mismatch |= layoutMismatch(littleWord(p + kHttpWordAt[i]), kHttpWords[i]);
  if (mismatch != 0 || !readFixedFields(p, r)) return false;
  r.zoneKnown = true;
  r.offset = 0;
  return true;
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

bool zpread::loadHttpDateByPosition(const StringBuffer& text, ZephalSysTime& value) {
  if (text.getSize() != kHttpSize) return false;
  Reading r;
  return readHttpDate(text.getString(), r) && settle(r, value);
}

bool _zpDateParser::parseRFC822Date(const char* text, ZephalSysTime& value, LogBase& log) {
  static const char kReader[] = "parseRFC822Date";
  if (!text) return refuse(log, kReader, "no text", 0, "");
  Reading r;
  if (!readDate(text, r) || !settle(r, value)) {
    return refuse(log, kReader, r.why, static_cast<size_t>(r.at - text), text);
  }
  return true;
}
