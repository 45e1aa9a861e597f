// The parts of parseRFC822Date's dates that people, spreadsheets, databases
// and user interfaces write, and mail does not: numeric dates, a date without
// a time, a 12-hour clock, words between date and time.
//
// Forms read (tests/data/people_dates.tsv holds what real programs write):
//
//   January 25, 2026                    a date alone is midnight, zone unknown
//   Jan 25, 2026, 12:32:01 AM           ',' or "at" between date and time
//   Sunday, January 25, 2026 at 12:32:01 AM EST
//   25 Jan 2026, 00:32                  day first, with the month's name
//   21-Oct-2034  25-JAN-26              a database's DD-MON-YYYY and DD-MON-YY
//   25.1.2026, 00:32:01  25.01.26       day.month.year: every locale writing
//                                       dots puts the day first
//   3/7/2024  07-03-2024 14:05  3/7/24  numeric, in the caller's order
//   9:05 AM  12:05 a.m.  3:35:55 PM     12-hour clocks, after a space, U+00A0
//                                       or U+202F (as ICU writes it)
//
// The RFC 5322 zone names keep their RFC meaning only in the shapes of mail;
// in these CST is China's as much as Chicago's, and refused unless an
// offset settles it.
//
// A numeric date with '/' or '-' has no order of its own: US software writes
// the month first, British, French and Indian software the day first. Unless
// the caller names the order, such a date is read only when just one of the
// two orders gives a date (13/03/2024, or 5/5/2024 where both give the same);
// otherwise it is refused: "day and month order unknown". A two-digit field
// first is a year only when the caller says year first (24/03/07).
//
// Year-first dates with '/' or '.' (2026/1/25, 2015.12.16) are read with
// the ISO 8601 texts (DateParserIso.cpp); the zone forms ICU writes after GMT
// and UTC (GMT-5, GMT+5:30, UTC−5 with U+2212) with the other zones
// (DateCursor.cpp).
#include "services/internal/CivilDays.h"
#include "services/internal/DateCursor.h"

namespace zpread {
namespace {

// The white space ICU writes between the time and AM/PM: a space, U+00A0
// or U+202F; its length in bytes, or 0.
int meridiemSpace(const char* p) {
  if (*p == ' ') return 1;
  if (p[0] == '\xC2' && p[1] == '\xA0') return 2;
  if (p[0] == '\xE2' && p[1] == '\x80' && p[2] == '\xAF') return 3;
  return 0;
}

bool validDate(int year, int month, int day) {
  return month >= 1 && month <= 12 && day >= 1 && day <= zpcivil::daysInMonth(year, month);
}

// The fields of a numeric date in `order`; false for an order the fields
// cannot take: a year first needs two digits there and a day last, as no
// one writes a one-digit year.
struct NumericFields {
  int first, second, third;  // as written
  int firstWidth, thirdWidth;
};

bool arrange(const NumericFields& n, ZephalDateOrder order, int& year, int& month, int& day) {
  const int fullYear = n.thirdWidth == 4 ? n.third : zpcivil::yearFromTwoDigits(n.third);
  switch (order) {
    case ZephalDateOrder::kMonthDayYear:
      year = fullYear;
      month = n.first;
      day = n.second;
      return true;
    case ZephalDateOrder::kDayMonthYear:
      year = fullYear;
      month = n.second;
      day = n.first;
      return true;
    case ZephalDateOrder::kYearMonthDay:
      if (n.firstWidth != 2 || n.thirdWidth > 2) return false;
      year = zpcivil::yearFromTwoDigits(n.first);
      month = n.second;
      day = n.third;
      return true;
    case ZephalDateOrder::kUnknown: break;
  }
  return false;
}

// The order to read a numeric date in when the caller named none: the one
// order that gives a date, or the first of several that give the same one.
const char* chooseOrder(const NumericFields& n, const char* at, ZephalDateOrder& order,
                        Reading& r) {
  const ZephalDateOrder kOrders[] = {ZephalDateOrder::kMonthDayYear,
                                     ZephalDateOrder::kDayMonthYear,
                                     ZephalDateOrder::kYearMonthDay};
  int found = 0, year = 0, month = 0, day = 0;
  for (ZephalDateOrder candidate : kOrders) {
    int y, m, d;
    if (!arrange(n, candidate, y, m, d) || !validDate(y, m, d)) continue;
    if (found++ > 0 && (y != year || m != month || d != day)) {
      return failAt(r, at, "day and month order unknown");
    }
    if (found == 1) {
      order = candidate;
      year = y;
      month = m;
      day = d;
    }
  }
  return found > 0 ? at : failAt(r, at, "no order of day and month gives a date");
}

}  // namespace

bool startsNumericDate(const char* p) {
  const char* q = p + (isDigit(p[1]) ? 2 : 1);
  return (*q == '/' || *q == '-' || *q == '.') && isDigit(q[1]);
}

const char* readMeridiem(const char* p, Reading& r) {
  const char* const q = p + meridiemSpace(p);
  const char c = static_cast<char>(q[0] | 0x20);
  if (c != 'a' && c != 'p') return p;
  const char* end;
  if ((q[1] | 0x20) == 'm') {
    end = q + 2;
  } else if (q[1] == '.' && (q[2] | 0x20) == 'm' && q[3] == '.') {
    end = q + 4;
  } else {
    return p;
  }
  if (isLetter(*end) || isDigit(*end)) return p;  // a word such as "AMT"
  if (r.f.hour < 1 || r.f.hour > 12) return failAt(r, q, "hour out of range for AM or PM");
  r.f.hour = r.f.hour % 12 + (c == 'p' ? 12 : 0);  // 12:05 AM is 00:05
  return end;
}

const char* readClockTail(const char* p, Reading& r, bool mayEnd) {
  const char* q = skipCfws(p, r);
  if (!q) return nullptr;
  if (*q == '\0') {
    if (!mayEnd) return failAt(r, r.yearAt, "a date alone needs a four-digit year");
    r.f.hour = r.f.minute = r.f.second = r.f.millis = 0;
    return q;
  }
  if (*q == ',') {
    q = skipCfws(q + 1, r);
    r.rfcZoneNames = false;
  } else if (q == p) {
    return failAt(r, q, "expected a space after the year");
  } else if ((q[0] | 0x20) == 'a' && (q[1] | 0x20) == 't' && isSpace(q[2])) {
    q = skipCfws(q + 2, r);
    r.rfcZoneNames = false;
  }
  if (!q) return nullptr;
  p = readTime(q, r, TimeStyle::kMail);
  const char* const time = p;
  if (p) p = readMeridiem(p, r);
  if (p != time) r.rfcZoneNames = false;
  return p ? readMailZone(p, r) : nullptr;
}

const char* readNumericDate(const char* p, Reading& r) {
  const char* const at = p;
  r.rfcZoneNames = false;
  NumericFields n;
  int width;
  p = readDigits(p, 2, n.first, n.firstWidth, r, "expected a date");
  if (!p) return nullptr;
  const char sep = *p;
  const char* const second = p + 1;
  p = readDigits(second, 2, n.second, width, r, "expected the date's second field");
  if (!p) return nullptr;
  if (*p != sep) return failAt(r, p, "expected the date's separator after its second field");
  const char* const third = p + 1;
  p = readDigits(third, 4, n.third, n.thirdWidth, r, "expected the date's third field");
  if (!p) return nullptr;
  if (n.thirdWidth != 2 && n.thirdWidth != 4) {
    return failAt(r, third, "year must have 2 or 4 digits");
  }
  ZephalDateOrder order = sep == '.' ? ZephalDateOrder::kDayMonthYear : r.order;
  if (order == ZephalDateOrder::kUnknown && !chooseOrder(n, at, order, r)) return nullptr;
  if (!arrange(n, order, r.f.year, r.f.month, r.f.day)) {
    return failAt(r, at, "no two-digit year first, as the order says");
  }
  const bool dayFirst = order == ZephalDateOrder::kDayMonthYear;
  const char* const monthAt = order == ZephalDateOrder::kMonthDayYear ? at : second;
  if (r.f.month < 1 || r.f.month > 12) return failAt(r, monthAt, "month out of range");
  r.dayAt = dayFirst ? at : order == ZephalDateOrder::kYearMonthDay ? third : second;
  r.yearAt = order == ZephalDateOrder::kYearMonthDay ? at : third;
  return readClockTail(p, r, true);
}

}  // namespace zpread
