// What most unit tests use: the module's headers, the tables, and small
// builders and one-line views of values.
#pragma once

#include <time.h>

#include <cstring>
#include <memory>
#include <utility>

#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "tests/TestTables.h"
#include "time/ZephalSysTime.h"

namespace zptest {

using Fields = std::vector<int>;  // Y M D h m s [wday]

// Y M D h m s (a weekday after them is not read), GMT or local wall clock.
inline ZephalSysTime makeTime(const Fields& f, bool local, int ms = 0) {
  ZephalSysTime t;
  t.m_time = ZephalCalendarFields{uint16_t(f[0]), uint16_t(f[1]), 0,
                                  uint16_t(f[2]), uint16_t(f[3]), uint16_t(f[4]),
                                  uint16_t(f[5]), uint16_t(ms)};
  t.m_bLocal = local;
  return t;
}

// Every carried flag and the cache away from its default: "flags=001 dst=1".
inline ZephalSysTime marked(ZephalSysTime t) {
  t.m_bFlagA = t.m_bFlagB = false;
  t.m_bFromUnknownTimezone = true;
  t.m_isDst = 1;
  return t;
}

// A zeroed tm holding the fields, tm_isdst -1 for mktime (timegm ignores it).
inline tm tmOf(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
  tm t{};
  t.tm_year = y - 1900, t.tm_mon = mo - 1, t.tm_mday = d;
  t.tm_hour = h, t.tm_min = mi, t.tm_sec = s, t.tm_isdst = -1;
  return t;
}

inline long long timegmOf(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
  tm t = tmOf(y, mo, d, h, mi, s);
  return timegm(&t);
}

inline tm gmtimeOf(long long count) {
  const time_t t = count;
  tm out{};
  gmtime_r(&t, &out);
  return out;
}

// The first n of Y M D h m s wday.
inline Fields fieldsOf(const ZephalSysTime& t, size_t n = 7) {
  const ZephalCalendarFields& f = t.m_time;
  Fields v{f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond, f.wDayOfWeek};
  v.resize(n);
  return v;
}

inline Fields fieldsOf(const tm& t, size_t n = 7) {
  Fields v{t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, t.tm_wday};
  v.resize(n);
  return v;
}

// All but the calendar fields, e.g. "ms=250 local flags=101 dst=-1" (flags:
// m_bFlagA, m_bFlagB, m_bFromUnknownTimezone).
inline std::string extrasOf(const ZephalSysTime& t) {
  return "ms=" + std::to_string(t.m_time.wMilliseconds) + (t.m_bLocal ? " local" : " gmt") +
         " flags=" + char('0' + t.m_bFlagA) + char('0' + t.m_bFlagB) +
         char('0' + t.m_bFromUnknownTimezone) + " dst=" + std::to_string(t.m_isDst);
}

// The whole value, e.g. "2024 3 7 9 5 3 4 ms=0 gmt flags=110 dst=-1".
inline std::string stateOf(const ZephalSysTime& t) {
  std::string s;
  for (int v : fieldsOf(t)) s += std::to_string(v) + ' ';
  return s + extrasOf(t);
}

// The text in a heap block of exactly its size, so that reading past the
// terminating zero is an AddressSanitizer error.
inline std::unique_ptr<char[]> exactCopy(const std::string& text) {
  std::unique_ptr<char[]> p(new char[text.size() + 1]);
  std::memcpy(p.get(), text.c_str(), text.size() + 1);
  return p;
}

constexpr const char* kClearedState = "0 0 0 0 0 0 0 ms=0 gmt flags=110 dst=-1";

// Calls body(now) until the clock reads the same second before and after it,
// so that expectations derived from `now` hold for what body saw.
template <typename Body>
auto atOneSecond(Body body) {
  for (;;) {
    const time_t now = time(nullptr);
    auto result = body(now);
    if (time(nullptr) == now) return std::make_pair(now, result);
  }
}

// Texts for the loader's JSON and decimal forms made from parts (LoaderTest.cpp).
std::vector<std::string> jsonAndDecimalTexts();

}  // namespace zptest
