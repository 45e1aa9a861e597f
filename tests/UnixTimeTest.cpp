// Unix time in both widths and moving by seconds, checked against Python's
// datetime (tests/data/unix_instants.tsv) and glibc's timegm.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "tests/TestTables.h"
#include "tests/TestValues.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;
using zptest::toInt;

TEST(UnixTime, LoadAndCountAgreeWithPython) {
  for (const zptest::Row& r : zptest::readTable("unix_instants.tsv")) {
    const long long count = toInt(r[0]);
    SCOPED_TRACE(count);
    ZephalSysTime t = makeTime(1, 1, 1, 1, 1, 1, true, 999);
    t.m_bFlagA = false;
    t.m_bFromUnknownTimezone = true;
    t.m_isDst = 0;
    t.fromUnixTime64(false, count);
    expectFields(t, int(toInt(r[1])), int(toInt(r[2])), int(toInt(r[3])), int(toInt(r[4])),
                 int(toInt(r[5])), int(toInt(r[6])), int(toInt(r[7])));
    EXPECT_TRUE(zptest::isDefaultState(ZephalSysTime()));
    EXPECT_EQ(t.m_time.wMilliseconds, 0);
    EXPECT_EQ(t.m_isDst, -1);
    EXPECT_TRUE(t.m_bFlagA && t.m_bFlagB && !t.m_bFromUnknownTimezone && !t.m_bLocal);
    EXPECT_EQ(t.toUnixTime_gmt64(), count);
    EXPECT_EQ(t.toUnixTime_gmt(), static_cast<unsigned int>(count & 0xFFFFFFFF));

    if (count >= 0 && count <= UINT_MAX) {  // the 32-bit form: no sign extension
      ZephalSysTime narrow;
      narrow.fromUnixTime(true, static_cast<unsigned int>(count));
      expectFields(narrow, t.m_time.wYear, t.m_time.wMonth, t.m_time.wDay, t.m_time.wHour,
                   t.m_time.wMinute, t.m_time.wSecond, t.m_time.wDayOfWeek);
      EXPECT_TRUE(narrow.m_bLocal);  // marked, not shifted
    }
  }
}

TEST(UnixTime, MillisecondsDoNotCount) {
  EXPECT_EQ(makeTime(2024, 3, 7, 12, 0, 0, false, 999).toUnixTime_gmt64(),
            makeTime(2024, 3, 7, 12, 0, 0, false, 0).toUnixTime_gmt64());
}

TEST(UnixTime, CountBeyondTmLeavesTheClearedValue) {
  ZephalSysTime t = makeTime(2024, 3, 7, 12, 0, 0, true, 5);
  t.fromUnixTime64(true, LLONG_MAX);
  EXPECT_TRUE(zptest::isDefaultState(t));
}

TEST(UnixTime, AddSeconds) {
  struct Case {
    int from[6];
    bool wide;
    long long n;
    int to[7];
  } const cases[] = {
      {{2024, 2, 28, 12, 0, 0}, false, 86400, {2024, 2, 29, 12, 0, 0, 4}},
      {{1970, 1, 1, 0, 0, 5}, false, -10, {1970, 1, 1, 0, 0, 0, 4}},   // stops at 1970
      {{1970, 1, 1, 0, 0, 5}, true, -10, {1969, 12, 31, 23, 59, 55, 3}},
      {{2024, 1, 1, 0, 0, 0}, false, INT_MIN, {1970, 1, 1, 0, 0, 0, 4}},     // stops at 1970
      {{2106, 2, 7, 6, 28, 15}, false, 1, {1970, 1, 1, 0, 0, 0, 4}},   // wraps modulo 2^32
      {{2024, 1, 1, 0, 0, 0}, true, -86400LL * 365 * 100, {1924, 1, 26, 0, 0, 0, 6}},
  };
  for (const Case& c : cases) {
    ZephalSysTime t = makeTime(c.from[0], c.from[1], c.from[2], c.from[3], c.from[4], c.from[5],
                               false, 300);
    t.m_bFlagA = false;
    t.m_bFromUnknownTimezone = true;
    EXPECT_TRUE(c.wide ? t.addSeconds64(c.n) : t.addSeconds(static_cast<int>(c.n)));
    expectFields(t, c.to[0], c.to[1], c.to[2], c.to[3], c.to[4], c.to[5], c.to[6]);
    EXPECT_EQ(t.m_time.wMilliseconds, 0);
    EXPECT_TRUE(t.m_bFlagA && !t.m_bFromUnknownTimezone && !t.m_bLocal);
  }
}

TEST(UnixTime, AddSecondsMovesALocalValueToGmt) {
  ZephalSysTime local = makeTime(2024, 7, 1, 12, 0, 0, true, 250);
  ZephalSysTime same = local;
  EXPECT_TRUE(same.addSeconds(0));
  EXPECT_TRUE(same.addSeconds64(0));
  EXPECT_EQ(std::memcmp(&same.m_time, &local.m_time, sizeof local.m_time), 0);
  EXPECT_TRUE(same.m_bLocal);

  const long long instant = local.toUnixTime_gmt64();
  local.addSeconds(1);
  EXPECT_FALSE(local.m_bLocal);
  EXPECT_EQ(local.toUnixTime_gmt64(), instant + 1);
}

// POSIX's formula against glibc's timegm for every day of years around the
// century rules, at a time of day that changes with the day.
TEST(UnixTime, TmFormulaMatchesTimegm) {
  for (int year : {1970, 1972, 1999, 2000, 2001, 2038, 2100, 2400}) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    for (int yday = 0; yday < (leap ? 366 : 365); ++yday) {
      tm t{};
      t.tm_year = year - 1900;
      t.tm_yday = yday;
      t.tm_hour = yday % 24;
      t.tm_min = yday % 60;
      t.tm_sec = (yday * 7) % 61;  // second 60 counts as 60 seconds
      t.tm_mon = 5;                // not read: the day comes from tm_yday
      tm ref = t;
      ref.tm_mon = 0;
      ref.tm_mday = yday + 1;
      ASSERT_EQ(tm_to_unixTime64(&t), timegm(&ref)) << year << " day " << yday;
    }
  }
}

TEST(UnixTime, TmFormulaRefusesYearsBefore1970) {
  tm t{};
  t.tm_year = 69;
  const unsigned long reportsBefore = Psdk::badObjectCount();
  EXPECT_EQ(tm_to_unixTime64(&t), -1);
  EXPECT_EQ(Psdk::badObjectCount() - reportsBefore, 1u);
  t.tm_year = 70;
  EXPECT_EQ(tm_to_unixTime64(&t), 0);
  EXPECT_EQ(Psdk::badObjectCount() - reportsBefore, 1u);
}
