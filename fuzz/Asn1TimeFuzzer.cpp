// fromX509 in both modes and fromAsnUtcDateTime on any text: a text too short
// for the fields is refused without a change; otherwise exactly the fields
// change (and the flags each documents), a run of digits reads as its value,
// and UTCTime survives the round trip through getAsnUtcDateTime.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace {

bool allDigits(const char* p, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (p[i] < '0' || p[i] > '9') return false;
  }
  return true;
}

unsigned digitsAt(const char* p, size_t n) {
  unsigned v = 0;
  for (size_t i = 0; i < n; ++i) v = v * 10 + static_cast<unsigned>(p[i] - '0');
  return v;
}

// When the fields are all digits, they are read as written, the year of
// UTCTime with the pivot 50.
void checkDigitFields(const ZephalSysTime& t, const char* text, size_t yearDigits,
                      const std::string& what) {
  if (!allDigits(text, yearDigits + 10)) return;
  unsigned year = digitsAt(text, yearDigits);
  if (yearDigits == 2) year += year < 50 ? 2000 : 1900;
  const char* p = text + yearDigits;
  const ZephalCalendarFields& f = t.m_time;
  if (f.wYear != year || f.wMonth != digitsAt(p, 2) || f.wDay != digitsAt(p + 2, 2) ||
      f.wHour != digitsAt(p + 4, 2) || f.wMinute != digitsAt(p + 6, 2) ||
      f.wSecond != digitsAt(p + 8, 2)) {
    zpfuzz::fail("digits not read as written", what + " -> " + zpfuzz::fieldsOf(t));
  }
}

// Everything but the six fields, and whatever `extra` names, is as in `before`.
void checkKept(const ZephalSysTime& after, const ZephalSysTime& before, bool dayOfWeek,
               bool zoneAndDst, const std::string& what) {
  ZephalSysTime expected;
  expected.copyFrom(before);
  const ZephalCalendarFields& a = after.m_time;
  ZephalCalendarFields& e = expected.m_time;
  e.wYear = a.wYear;
  e.wMonth = a.wMonth;
  e.wDay = a.wDay;
  e.wHour = a.wHour;
  e.wMinute = a.wMinute;
  e.wSecond = a.wSecond;
  if (dayOfWeek) e.wDayOfWeek = a.wDayOfWeek;
  if (zoneAndDst) {
    expected.m_bLocal = false;
    expected.m_isDst = -1;
  }
  if (!zpfuzz::sameRecord(after, expected)) {
    zpfuzz::fail("a reader changed what it should keep",
                 what + " -> " + zpfuzz::fieldsOf(after) + " from " + zpfuzz::fieldsOf(before));
  }
}

void checkX509(const zpfuzz::ExactText& text, bool generalized) {
  const size_t needed = generalized ? 14 : 12;
  const std::string what =
      std::string(generalized ? "fromX509 (GeneralizedTime) " : "fromX509 (UTCTime) ") +
      text.quoted();
  LogNull log;
  ZephalSysTime t;
  zpfuzz::mark(t);
  ZephalSysTime before;
  before.copyFrom(t);
  const bool taken = t.fromX509(text.get(), generalized, log);
  if (taken != (text.size() >= needed)) zpfuzz::fail("refused or taken by mistake", what);
  if (!taken) {
    if (!zpfuzz::sameRecord(t, before)) zpfuzz::fail("a refused text changed the value", what);
    return;
  }
  checkKept(t, before, true, false, what);
  const ZephalCalendarFields& f = t.m_time;
  if (f.wDayOfWeek != _zpDateParser::DayOfWeek(f.wYear, f.wMonth, f.wDay) || f.wDayOfWeek > 6) {
    zpfuzz::fail("wrong day of the week", what + " -> " + zpfuzz::fieldsOf(t));
  }
  checkDigitFields(t, text.get(), needed - 10, what);
  (void)t.toUnixTime_gmt64();
}

void checkUtcTime(const zpfuzz::ExactText& text) {
  const std::string what = "fromAsnUtcDateTime " + text.quoted();
  LogNull log;
  ZephalSysTime t;
  zpfuzz::mark(t);
  ZephalSysTime before;
  before.copyFrom(t);
  const bool taken = t.fromAsnUtcDateTime(text.get(), log);
  if (taken != (text.size() >= 12)) zpfuzz::fail("refused or taken by mistake", what);
  if (!taken) {
    if (!zpfuzz::sameRecord(t, before)) zpfuzz::fail("a refused text changed the value", what);
    return;
  }
  checkKept(t, before, false, true, what);
  checkDigitFields(t, text.get(), 2, what);
  (void)t.toUnixTime_gmt64();

  // Two-digit fields and a year the pivot gives write back as read.
  const ZephalCalendarFields& f = t.m_time;
  if (f.wYear < 1950 || f.wYear > 2049 || f.wMonth > 99 || f.wDay > 99 || f.wHour > 99 ||
      f.wMinute > 99 || f.wSecond > 99) {
    return;
  }
  StringBuffer written;
  ZephalSysTime copy;
  copy.copyFrom(t);
  if (!copy.getAsnUtcDateTime(written)) zpfuzz::fail("getAsnUtcDateTime failed", what);
  ZephalSysTime back;
  back.copyFrom(t);
  if (!back.fromAsnUtcDateTime(written.getString(), log) || !zpfuzz::sameRecord(back, t)) {
    zpfuzz::fail("UTCTime round trip changed the fields",
                 what + " -> " + zpfuzz::fieldsOf(t) + " -> " + zpfuzz::quoted(written.getString()) +
                     " -> " + zpfuzz::fieldsOf(back));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const zpfuzz::ExactText text(data, size);
  checkX509(text, true);
  checkX509(text, false);
  checkUtcTime(text);
  return 0;
}
