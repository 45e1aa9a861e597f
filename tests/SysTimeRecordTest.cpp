// The record: defaults, copies, SYSTEMTIME and tm exchange, month lengths and
// the one-second step, checked against the C library's own calendar.
#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "tests/TestValues.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;

namespace {

long long utcSeconds(int y, int mo, int d, int h, int mi, int s) {
  tm t{};
  t.tm_year = y - 1900;
  t.tm_mon = mo - 1;
  t.tm_mday = d;
  t.tm_hour = h;
  t.tm_min = mi;
  t.tm_sec = s;
  return timegm(&t);
}

}  // namespace

TEST(SysTimeRecord, LayoutAndDefaults) {
  static_assert(std::is_base_of<ZephalObject, ZephalSysTime>::value, "public base");
  static_assert(std::has_virtual_destructor<ZephalSysTime>::value, "virtual destructor");
  ZephalSysTime t;
  EXPECT_TRUE(zptest::isDefaultState(t));
  EXPECT_EQ(t.heapUsage(), 0u);

  // The four flags follow the fields directly, then m_isDst.
  const auto* base = reinterpret_cast<const char*>(&t.m_time);
  EXPECT_EQ(reinterpret_cast<const char*>(&t.m_bLocal) - base, 16);
  EXPECT_EQ(reinterpret_cast<const char*>(&t.m_bFromUnknownTimezone) - base, 19);
  EXPECT_EQ(reinterpret_cast<const char*>(&t.m_isDst) - base, 20);

  t = makeTime(2024, 3, 7, 9, 5, 3, true, 250);
  t.m_bFlagA = t.m_bFlagB = false;
  t.m_bFromUnknownTimezone = true;
  t.m_isDst = 1;
  t.clear();
  EXPECT_TRUE(zptest::isDefaultState(t));
}

TEST(SysTimeRecord, CopyAndSystemTimeCarryEverything) {
  ZephalSysTime src = makeTime(2024, 7, 1, 12, 0, 0, true, 500);
  src.m_time.wDayOfWeek = 1;
  src.m_isDst = 1;
  src.m_bFromUnknownTimezone = true;
  src.m_bFlagB = false;
  ZephalSysTime copy;
  copy.copyFrom(src);
  EXPECT_EQ(std::memcmp(&copy.m_time, &src.m_time, sizeof src.m_time), 0);
  EXPECT_TRUE(copy.m_bLocal && copy.m_bFromUnknownTimezone && copy.m_bFlagA && !copy.m_bFlagB);
  EXPECT_EQ(copy.m_isDst, 1);

  _SYSTEMTIME st{};
  src.toSYSTEMTIME(st);
  EXPECT_EQ(st.nIsDst, 1);
  ZephalSysTime back;
  back.m_bFlagA = false;  // carried flags stay as they were
  back.fromSYSTEMTIME(st, false);
  _SYSTEMTIME again{};
  back.toSYSTEMTIME(again);
  EXPECT_EQ(std::memcmp(&st, &again, sizeof st), 0);
  EXPECT_FALSE(back.m_bLocal);
  EXPECT_FALSE(back.m_bFlagA);
}

TEST(SysTimeRecord, FromTmLoadsLow16BitsAndForgetsDst) {
  ZephalSysTime t = makeTime(1, 1, 1, 1, 1, 1, false, 500);
  t.m_bFromUnknownTimezone = true;
  tm in{};
  in.tm_year = 124;
  in.tm_mon = 6;
  in.tm_mday = 1;
  in.tm_hour = 12;
  in.tm_wday = 1;
  in.tm_isdst = 1;
  t.fromTmStruct(true, in);
  expectFields(t, 2024, 7, 1, 12, 0, 0, 1);
  EXPECT_EQ(t.m_time.wMilliseconds, 0);
  EXPECT_EQ(t.m_isDst, -1);
  EXPECT_TRUE(t.m_bLocal);
  EXPECT_TRUE(t.m_bFromUnknownTimezone);

  in.tm_year = 70000 - 1900;  // 70000 does not fit: the low 16 bits are kept
  t.fromTmStruct(false, in);
  EXPECT_EQ(t.m_time.wYear, 70000 % 65536);
}

TEST(SysTimeRecord, ToTmNormalisesAsLocalTime) {
  // A GMT-marked value is still read as local wall-clock time.
  const ZephalSysTime t = makeTime(2024, 1, 15, 10, 20, 30, false);
  tm out;
  const long long count = t.toTmStruct(out);
  EXPECT_EQ(out.tm_year, 124);
  EXPECT_EQ(out.tm_mon, 0);
  EXPECT_EQ(out.tm_mday, 15);
  EXPECT_EQ(out.tm_hour, 10);
  EXPECT_EQ(out.tm_min, 20);
  EXPECT_EQ(out.tm_sec, 30);
  EXPECT_EQ(out.tm_wday, 1);  // a Monday
  EXPECT_EQ(out.tm_yday, 14);
  EXPECT_EQ(count, utcSeconds(2024, 1, 15, 10, 20, 30) - out.tm_gmtoff);

  // Month 0 is December of the year before.
  ZephalSysTime(makeTime(2024, 0, 10, 12, 0, 0, true)).toTmStruct(out);
  EXPECT_EQ(out.tm_year, 123);
  EXPECT_EQ(out.tm_mon, 11);
}

TEST(SysTimeRecord, MonthLengthsMatchTheCLibrary) {
  for (int year : {1, 4, 100, 400, 1600, 1700, 1900, 1999, 2000, 2023, 2024, 2100, 2400, 9999}) {
    for (int month = 1; month <= 12; ++month) {
      ZephalSysTime t = makeTime(year, month, 1, 0, 0, 0, false);
      const long long days =
          (utcSeconds(year, month + 1, 1, 0, 0, 0) - utcSeconds(year, month, 1, 0, 0, 0)) / 86400;
      EXPECT_EQ(t.numDaysThisMonth(), days) << year << "-" << month;
    }
  }
}

TEST(SysTimeRecord, MonthLengthRepairsTheMonth) {
  struct Case {
    int year, month, days, repairedMonth;
  } const cases[] = {
      {0, 2, 29, 2},      // year 0 is a leap year
      {2024, 0, 31, 1},   // month 0 becomes January
      {2024, 13, 31, 12}, // 13 and above become December
      {2023, 65535, 31, 12},
  };
  for (const Case& c : cases) {
    ZephalSysTime t = makeTime(c.year, c.month, 1, 0, 0, 0, false);
    EXPECT_EQ(t.numDaysThisMonth(), c.days) << c.year << "-" << c.month;
    EXPECT_EQ(t.m_time.wMonth, c.repairedMonth);
  }
}

// Every last second of a day in years with and without leap days: the step
// must land where gmtime_r puts the next second.
TEST(SysTimeRecord, AddOneSecondMatchesGmtime) {
  for (int year : {1900, 2000, 2023, 2024, 2100}) {
    for (long long s = utcSeconds(year, 1, 1, 23, 59, 59); s < utcSeconds(year + 1, 1, 1, 0, 0, 0);
         s += 86400) {
      const time_t now = s, next = s + 1;
      tm a, b;
      gmtime_r(&now, &a);
      gmtime_r(&next, &b);
      ZephalSysTime t = makeTime(a.tm_year + 1900, a.tm_mon + 1, a.tm_mday, a.tm_hour, a.tm_min,
                                 a.tm_sec, true, 250);
      t.m_time.wDayOfWeek = 5;
      t.m_isDst = 1;
      t.addOneSecond();
      expectFields(t, b.tm_year + 1900, b.tm_mon + 1, b.tm_mday, 0, 0, 0, 5);
      ASSERT_EQ(t.m_time.wMilliseconds, 250);
      ASSERT_EQ(t.m_isDst, 1);
      ASSERT_TRUE(t.m_bLocal);
    }
  }
}

TEST(SysTimeRecord, AddOneSecondCarriesOnlyAtTheLimit) {
  struct Case {
    int from[6];
    int to[6];
  } const cases[] = {
      {{2024, 5, 1, 10, 59, 59}, {2024, 5, 1, 11, 0, 0}},
      {{2024, 5, 1, 10, 20, 60}, {2024, 5, 1, 10, 20, 61}},  // past the limit: no carry
      {{2024, 5, 1, 10, 60, 59}, {2024, 5, 1, 10, 61, 0}},
      {{2024, 0, 31, 23, 59, 59}, {2024, 2, 1, 0, 0, 0}},    // month 0 repaired to January first
      {{2024, 12, 31, 23, 59, 59}, {2025, 1, 1, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    ZephalSysTime t = makeTime(c.from[0], c.from[1], c.from[2], c.from[3], c.from[4], c.from[5], false);
    t.addOneSecond();
    expectFields(t, c.to[0], c.to[1], c.to[2], c.to[3], c.to[4], c.to[5], -1);
  }
}
