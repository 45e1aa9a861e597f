// What the tests of zephal::zones share: a zone loaded or the test failed,
// one-line views of wall clocks and lookups, and the C library's answers.
#pragma once

#include <gtest/gtest.h>
#include <time.h>

#include <string>

#include "tests/TestValues.h"
#include "zones/ZephalTimeZone.h"

namespace zptest {

inline ZephalTimeZone loaded(const std::string& name) {
  ZephalTimeZone zone;
  ZephalTextError error;
  EXPECT_TRUE(zone.load(name, error)) << name << ": " << (error.reason ? error.reason : "") << " at byte "
                                      << error.byte;
  return zone;
}

inline Fields fieldsOf(const ZephalWallClock& w) {
  const ZephalCalendarFields& f = w.fields;
  return {f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond, f.wDayOfWeek};
}

// "2024 3 10 3 0 0 0 -14400 EDT dst"
inline std::string wallOf(const ZephalWallClock& w) {
  std::string s;
  for (int v : fieldsOf(w)) s += std::to_string(v) + ' ';
  return s + std::to_string(w.gmtOffset) + ' ' + w.abbreviation + (w.isDst ? " dst" : " std");
}

inline std::string wallOf(const tm& t) {
  std::string s;
  for (int v : fieldsOf(t)) s += std::to_string(v) + ' ';
  return s + std::to_string(t.tm_gmtoff) + ' ' + t.tm_zone + (t.tm_isdst > 0 ? " dst" : " std");
}

inline const char* kindName(ZephalLookupKind kind) {
  switch (kind) {
    case ZephalLookupKind::kSkipped:
      return "skipped";
    case ZephalLookupKind::kRepeated:
      return "repeated";
    default:
      return "unique";
  }
}

// "repeated 1730611800 1730613600 1730615400"
inline std::string lookupOf(const ZephalZoneLookup& at) {
  return std::string(kindName(at.kind)) + ' ' + std::to_string(at.pre) + ' ' + std::to_string(at.trans) +
         ' ' + std::to_string(at.post);
}

// Calendar fields (milliseconds 0) from Y M D h m s.
inline ZephalCalendarFields readingOf(int y, int mo, int d, int h, int mi, int s) {
  return ZephalCalendarFields{uint16_t(y), uint16_t(mo), 0, uint16_t(d), uint16_t(h), uint16_t(mi),
                              uint16_t(s), 0};
}

inline ZephalCalendarFields readingOf(const tm& t) {
  return readingOf(t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
}

// The reading `localSeconds` (seconds since 1970 on the zone's clock) names.
inline ZephalCalendarFields readingAt(long long localSeconds) { return readingOf(gmtimeOf(localSeconds)); }

inline tm localtimeOf(long long utc) {
  const time_t t = utc;
  tm out{};
  localtime_r(&t, &out);
  return out;
}

// mktime of a reading with the given tm_isdst (-1: mktime decides).
inline long long mktimeOf(const ZephalCalendarFields& f, int isDst) {
  tm t = tmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond);
  t.tm_isdst = isDst;
  return mktime(&t);
}

}  // namespace zptest
