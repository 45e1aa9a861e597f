// Checks shared by the targets of the date parser's readers: what a reading
// may hold, and the round trip through generateDateRFC822.
#pragma once

#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace zpfuzz {

inline bool isLeap(unsigned y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }

inline unsigned monthLength(unsigned y, unsigned m) {
  static const unsigned kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && isLeap(y) ? 29 : kDays[m - 1];
}

// What both readers promise for a text they take: a GMT reading in years
// 0-9999 with every field in range (second 60 allowed), the weekday computed
// and the summer-time cache reset.
inline void checkReading(const ZephalSysTime& t, const char* who, const std::string& input) {
  const ZephalCalendarFields& f = t.m_time;
  const bool inRange = f.wYear <= 9999 && f.wMonth >= 1 && f.wMonth <= 12 && f.wDay >= 1 &&
                       f.wDay <= monthLength(f.wYear, f.wMonth) && f.wHour <= 23 &&
                       f.wMinute <= 59 && f.wSecond <= 60 && f.wMilliseconds <= 999;
  if (!inRange) fail("a field out of range", std::string(who) + " " + input + " -> " + fieldsOf(t));
  if (f.wDayOfWeek != _zpDateParser::DayOfWeek(f.wYear, f.wMonth, f.wDay)) {
    fail("wrong day of the week", std::string(who) + " " + input + " -> " + fieldsOf(t));
  }
  if (t.m_bLocal || t.m_isDst != -1) {
    fail("not a GMT reading", std::string(who) + " " + input + " -> " + fieldsOf(t));
  }
}

// Whatever a reader took, generateDateRFC822 writes and parseRFC822Date reads
// back to the same instant. Both sides are GMT readings, so the instant is
// timegm of the fields: a leap second (kept as :60 on both sides) counts as
// :00 of the next minute on both, and a reading of a text without a zone
// (fields as read) is compared as those fields read as GMT, which is how the
// generator writes it. Milliseconds are not written, so not compared.
inline void checkRoundTrip(const ZephalSysTime& read, const std::string& input) {
  ZephalSysTime value;
  value.copyFrom(read);
  StringBuffer written;
  if (!_zpDateParser::generateDateRFC822(value, written)) {
    fail("generateDateRFC822 refused a parsed value", input + " -> " + fieldsOf(read));
  }
  LogNull log;
  ZephalSysTime back;
  if (!_zpDateParser::parseRFC822Date(written.getString(), back, log)) {
    fail("parseRFC822Date refused generateDateRFC822's text",
         input + " -> " + fieldsOf(read) + " -> " + quoted(written.getString()));
  }
  if (back.toUnixTime_gmt64() != read.toUnixTime_gmt64()) {
    fail("round trip through generateDateRFC822 moved the instant",
         input + " -> " + fieldsOf(read) + " -> " + quoted(written.getString()) + " -> " +
             fieldsOf(back));
  }
}

}  // namespace zpfuzz
