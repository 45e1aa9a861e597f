// The record: defaults, copies, SYSTEMTIME and tm exchange, month lengths and
// the one-second step, checked against the C library's own calendar.
#include <climits>
#include <type_traits>

#include "tests/TestValues.h"

using namespace zptest;

TEST(SysTimeRecord, DefaultsAndClear) {
  ZephalSysTime t;
  EXPECT_EQ(stateOf(t), kClearedState);
  EXPECT_EQ(t.heapUsage(), 0u);
  t = marked(makeTime({2024, 3, 7, 9, 5, 3}, true, 250));
  t.clear();
  EXPECT_EQ(stateOf(t), kClearedState);
}

TEST(SysTimeRecord, CopyAndSystemTimeCarryEverything) {
  ZephalSysTime src = marked(makeTime({2024, 7, 1, 12, 0, 0}, true, 500));
  src.m_time.wDayOfWeek = 1;
  ZephalSysTime copy;
  copy.copyFrom(src);
  EXPECT_EQ(stateOf(copy), stateOf(src));

  _SYSTEMTIME st{};
  src.toSYSTEMTIME(st);
  EXPECT_TRUE(std::memcmp(&st, &src.m_time, sizeof src.m_time) == 0 && st.nIsDst == 1);
  ZephalSysTime back;
  back.m_bFlagA = false;  // carried flags stay as they were
  back.fromSYSTEMTIME(st, false);
  EXPECT_EQ(stateOf(back), "2024 7 1 12 0 0 1 ms=500 gmt flags=010 dst=1");
}

TEST(SysTimeRecord, FromTmLoadsLow16BitsAndForgetsDst) {
  ZephalSysTime t = marked(makeTime({1, 1, 1, 1, 1, 1}, false, 500));
  tm in = tmOf(2024, 7, 1, 12);
  in.tm_wday = 1;
  in.tm_isdst = 1;
  t.fromTmStruct(true, in);
  EXPECT_EQ(stateOf(t), "2024 7 1 12 0 0 1 ms=0 local flags=001 dst=-1");
  const struct { int tmYear, tmMon; Fields yearAndMonth; } low16[] = {
      {70000 - 1900, 6, {70000 % 65536, 7}},
      {INT_MAX, INT_MAX, {(INT_MAX + 1900LL) % 65536, 0}},  // sums past INT_MAX
      {INT_MIN, -1, {(INT_MIN + 1900LL) & 0xFFFF, 0}},
  };
  for (const auto& c : low16) {
    in.tm_year = c.tmYear;
    in.tm_mon = c.tmMon;
    t.fromTmStruct(false, in);
    EXPECT_EQ(fieldsOf(t, 2), c.yearAndMonth) << c.tmYear;
  }
}

TEST(SysTimeRecord, ToTmNormalisesAsLocalTime) {
  // A GMT-marked value is still read as local wall-clock time.
  tm out;
  const long long count = makeTime({2024, 1, 15, 10, 20, 30}, false).toTmStruct(out);
  EXPECT_EQ(fieldsOf(out), (Fields{2024, 1, 15, 10, 20, 30, 1}));  // a Monday
  EXPECT_EQ(out.tm_yday, 14);
  EXPECT_EQ(count, timegmOf(2024, 1, 15, 10, 20, 30) - out.tm_gmtoff);
  makeTime({2024, 0, 10, 12, 0, 0}, true).toTmStruct(out);  // month 0: December before
  EXPECT_EQ(fieldsOf(out, 3), (Fields{2023, 12, 10}));
}

// Month lengths themselves meet gmtime_r in AddOneSecondMatchesGmtime.
TEST(SysTimeRecord, MonthLengthRepairsTheMonth) {
  const struct { int year, month, days, repairedMonth; } repairs[] = {
      {0, 2, 29, 2},      // year 0 is a leap year
      {2024, 0, 31, 1},   // month 0 becomes January
      {2024, 13, 31, 12}, // 13 and above become December
      {2023, 65535, 31, 12},
  };
  for (const auto& c : repairs) {
    ZephalSysTime t = makeTime({c.year, c.month, 1, 0, 0, 0}, false);
    EXPECT_EQ(t.numDaysThisMonth(), c.days) << c.year << "-" << c.month;
    EXPECT_EQ(t.m_time.wMonth, c.repairedMonth);
  }
}

// Every last second of a day in years with and without leap days: the step
// (and so numDaysThisMonth) must land where gmtime_r puts the next second,
// and leave the rest alone.
TEST(SysTimeRecord, AddOneSecondMatchesGmtime) {
  for (int year : {1900, 2000, 2023, 2024, 2100}) {
    for (long long s = timegmOf(year, 1, 1, 23, 59, 59); s < timegmOf(year + 1, 1, 1); s += 86400) {
      ZephalSysTime t = marked(makeTime(fieldsOf(gmtimeOf(s)), true, 250));
      t.m_time.wDayOfWeek = 5;
      t.addOneSecond();
      Fields want = fieldsOf(gmtimeOf(s + 1), 6);
      want.push_back(5);
      ASSERT_EQ(fieldsOf(t), want) << s;
      ASSERT_EQ(extrasOf(t), "ms=250 local flags=001 dst=1");
    }
  }
}

TEST(SysTimeRecord, AddOneSecondCarriesOnlyAtTheLimit) {
  const struct { Fields from, to; } cases[] = {
      {{2024, 5, 1, 10, 20, 60}, {2024, 5, 1, 10, 20, 61}},  // past the limit: no carry
      {{2024, 5, 1, 10, 60, 59}, {2024, 5, 1, 10, 61, 0}},
      {{2024, 0, 31, 23, 59, 59}, {2024, 2, 1, 0, 0, 0}},    // month 0 repaired to January first
  };
  for (const auto& c : cases) {
    ZephalSysTime t = makeTime(c.from, false);
    t.addOneSecond();
    EXPECT_EQ(fieldsOf(t, 6), c.to);
  }
}
