// Unix time in both widths and moving by seconds, checked against Python's
// datetime (tests/data/unix_instants.tsv) and glibc's timegm.
#include <climits>

#include "tests/TestValues.h"
#include "time/TimeFunctions.h"
#include "time/ZephalFileTime.h"

using namespace zptest;

TEST(UnixTime, LoadAndCountAgreeWithPython) {
  for (const Row& r : readTable("unix_instants.tsv")) {
    const long long count = toInt(r[0]);
    SCOPED_TRACE(count);
    ZephalSysTime t = marked(makeTime({1, 1, 1, 1, 1, 1}, true, 999));
    t.fromUnixTime64(false, count);
    EXPECT_EQ(fieldsOf(t), intsOf(r, 1, 7));
    EXPECT_EQ(extrasOf(t), "ms=0 gmt flags=110 dst=-1");
    EXPECT_EQ(t.toUnixTime_gmt64(), count);
    EXPECT_EQ(t.toUnixTime_gmt(), static_cast<unsigned int>(count & 0xFFFFFFFF));
    t.m_time.wMilliseconds = 999;  // milliseconds do not count
    EXPECT_EQ(t.toUnixTime_gmt64(), count);

    if (count >= 0 && count <= UINT_MAX) {  // the 32-bit form: no sign extension
      ZephalSysTime narrow;
      narrow.fromUnixTime(true, static_cast<unsigned int>(count));
      EXPECT_EQ(fieldsOf(narrow), intsOf(r, 1, 7));
      EXPECT_TRUE(narrow.m_bLocal);  // marked, not shifted
    }
  }
}

// Counts at the far end of what a tm holds: the year passes 2^31 - 1 and is
// stored as its low 16 bits; past tm_year INT_MAX the value stays cleared.
// Every path that breaks a count down goes through the same load.
TEST(UnixTime, FarCountsKeepTheLow16BitsOfTheYear) {
  const struct { long long count; std::string state, log; } rows[] = {
      {67767976233532799,  // year 2^31 - 1
       "65535 12 31 23 59 59 2 ms=0 gmt flags=110 dst=-1", "12/31/65535 23:59:59"},
      {67767976233532800,  // year 2^31
       "0 1 1 0 0 0 3 ms=0 gmt flags=110 dst=-1", "1/1/0 0:00:00"},
      {67768036191676799,  // tm_year INT_MAX
       "1899 12 31 23 59 59 3 ms=0 gmt flags=110 dst=-1", "12/31/1899 23:59:59"},
      {67768036191676800, kClearedState, "0/0/0 0:00:00"},
      {LLONG_MAX, kClearedState, "0/0/0 0:00:00"},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.count);
    ZephalSysTime t = marked(makeTime({2024, 3, 7, 12, 0, 0}, true, 5));
    t.fromUnixTime64(false, r.count);
    EXPECT_EQ(stateOf(t), r.state);
    ZephalSysTime moved = makeTime({1970, 1, 1, 0, 0, 1}, false);
    moved.addSeconds64(r.count - 1);
    EXPECT_EQ(stateOf(moved), r.state);
    ZephalFileTime ft;
    ft.fromUnixTime64(r.count, 0);
    ZephalSysTime fromFile = marked(makeTime({2024, 3, 7, 12, 0, 0}, true, 5));
    ft.toSystemTime_gmt(fromFile);
    EXPECT_EQ(stateOf(fromFile), r.state);
    ft.toSystemTime_local(fromFile);
    EXPECT_TRUE(fromFile.m_bLocal);
    LogRecorder log;  // the record of the fields as the breakdown left them
    ft.logFileTimeAsGmt("far", log);
    EXPECT_EQ(log.render(), "far:\n  gmtDateTime: " + r.log + "\n");
  }
}

TEST(UnixTime, AddSeconds) {
  const struct { Fields from; bool wide; long long n; Fields to; } cases[] = {
      {{2024, 2, 28, 12, 0, 0}, false, 86400, {2024, 2, 29, 12, 0, 0, 4}},
      {{1970, 1, 1, 0, 0, 5}, false, -10, {1970, 1, 1, 0, 0, 0, 4}},  // stops at 1970
      {{1970, 1, 1, 0, 0, 5}, true, -10, {1969, 12, 31, 23, 59, 55, 3}},
      {{2024, 1, 1, 0, 0, 0}, false, INT_MIN, {1970, 1, 1, 0, 0, 0, 4}},  // stops at 1970
      {{2106, 2, 7, 6, 28, 15}, false, 1, {1970, 1, 1, 0, 0, 0, 4}},  // wraps modulo 2^32
      {{2024, 1, 1, 0, 0, 0}, true, -86400LL * 365 * 100, {1924, 1, 26, 0, 0, 0, 6}},
  };
  for (const auto& c : cases) {
    ZephalSysTime t = marked(makeTime(c.from, false, 300));
    EXPECT_TRUE(c.wide ? t.addSeconds64(c.n) : t.addSeconds(static_cast<int>(c.n)));
    EXPECT_EQ(fieldsOf(t), c.to);
    EXPECT_EQ(extrasOf(t), "ms=0 gmt flags=110 dst=-1");
  }
}

TEST(UnixTime, AddSecondsMovesALocalValueToGmt) {
  ZephalSysTime local = marked(makeTime({2024, 7, 1, 12, 0, 0}, true, 250));
  const std::string before = stateOf(local);
  EXPECT_TRUE(local.addSeconds(0) && local.addSeconds64(0));
  EXPECT_EQ(stateOf(local), before);
  const long long instant = local.toUnixTime_gmt64();
  local.addSeconds(1);
  EXPECT_FALSE(local.m_bLocal);
  EXPECT_EQ(local.toUnixTime_gmt64(), instant + 1);
}

// POSIX's formula against glibc's timegm for every day of years around the
// century rules, at a time of day that changes with the day; before 1970 it
// reports and refuses.
TEST(UnixTime, TmFormulaMatchesTimegm) {
  const unsigned long reportsBefore = Psdk::badObjectCount();
  for (int year : {1970, 1972, 1999, 2000, 2001, 2038, 2100, 2400}) {
    for (int yday = 0; yday < (timegmOf(year + 1, 1, 1) - timegmOf(year, 1, 1)) / 86400; ++yday) {
      tm t = tmOf(year, 6, 1, yday % 24, yday % 60, yday * 7 % 61);  // second 60 counts as 60 s
      t.tm_yday = yday;  // the day comes from here, not from tm_mon and tm_mday
      ASSERT_EQ(tm_to_unixTime64(&t), timegmOf(year, 1, yday + 1, t.tm_hour, t.tm_min, t.tm_sec))
          << year << " day " << yday;
    }
  }
  tm t = tmOf(1969, 12, 31, 23, 59, 59);
  EXPECT_EQ(tm_to_unixTime64(&t), -1);
  EXPECT_EQ(Psdk::badObjectCount() - reportsBefore, 1u);
}
