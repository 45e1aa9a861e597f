// The file time value: FILETIME and .NET ticks against Python's datetime
// (tests/data/filetime_*.tsv, whose generator checks the published .NET
// constants), the calendar bridge, the 32-bit local shift and comparisons.
#include <climits>

#include "tests/TestValues.h"
#include "time/ZephalFileTime.h"

using namespace zptest;

static ZephalFileTime seconds(long long t) {
  ZephalFileTime ft;
  ft.fromUnixTime64(t, 0);
  return ft;
}

TEST(FileTime, CountsAgreeWithPython) {
  for (const Row& r : readTable("filetime_instants.tsv")) {
    const long long unix = toInt(r[0]);
    SCOPED_TRACE(unix);
    ZephalFileTime ft = seconds(unix);
    _FILETIME raw{~0UL, ~0UL};
    ft.toFILETIME(raw);
    EXPECT_EQ(raw.dwHighDateTime, static_cast<unsigned long>(toInt(r[1])));
    EXPECT_EQ(raw.dwLowDateTime, static_cast<unsigned long>(toInt(r[2])));
    EXPECT_EQ(ft.getHighDateTime(), raw.dwHighDateTime);
    EXPECT_EQ(ft.getLowDateTime(), raw.dwLowDateTime);
    EXPECT_EQ(ft.getDateTimeTicks(), toInt(r[3]));

    ft.m_bFlagA = ft.m_bFlagB = false;
    ft.m_bFromUnknownTimezone = true;
    for (bool local : {false, true}) {
      ZephalSysTime st = makeTime({1, 2, 3, 4, 5, 6}, !local, 700);
      st.m_isDst = 1;
      local ? ft.toSystemTime_local(st) : ft.toSystemTime_gmt(st);
      EXPECT_EQ(fieldsOf(st), intsOf(r, 4, 7));
      EXPECT_EQ(extrasOf(st), local ? "ms=0 local flags=001 dst=-1" : "ms=0 gmt flags=001 dst=-1");
      ZephalFileTime back;
      st.m_bLocal = false;
      st.toFileTime_gmt(back);
      EXPECT_EQ(back.m_unixTime, unix);
      EXPECT_TRUE(!back.m_bFlagA && !back.m_bFlagB && back.m_bFromUnknownTimezone);
    }
  }
}

// Reading truncates toward zero, so 1970 is approached from both sides.
TEST(FileTime, ReadingTruncatesTowardZero) {
  for (const Row& r : readTable("filetime_reads.tsv")) {
    SCOPED_TRACE(r[0] + " " + r[1] + " " + r[2]);
    ZephalFileTime ft = seconds(12345);
    if (r[0] == "ticks") {
      ft.fromDateTimeTicks(toInt(r[2]));
      EXPECT_EQ(ft.m_unixTime, toInt(r[3]));
      continue;
    }
    const unsigned long high = toInt(r[1]), low = toInt(r[2]);
    ft.setFileTime(high, low);
    EXPECT_EQ(ft.m_unixTime, toInt(r[3]));
    ft = seconds(12345);
    ft.fromFILETIME({low | 0xABCD000000000000UL, high | 0xFFFFFFFF00000000UL});  // upper halves unread
    EXPECT_EQ(ft.m_unixTime, toInt(r[3]));
  }
}

TEST(FileTime, ValueBasics) {
  ZephalFileTime ft = seconds(-1), copy;
  ft.m_bFlagA = false;
  ft.m_bFromUnknownTimezone = true;
  copy.copyFrom(ft);
  EXPECT_TRUE(copy.m_unixTime == -1 && !copy.m_bFlagA && copy.m_bFromUnknownTimezone);
  EXPECT_EQ(copy.toUnixTime32(), 4294967295u);
  copy.clear();
  EXPECT_TRUE(copy.m_unixTime == 0 && copy.m_bFlagA && copy.m_bFlagB && !copy.m_bFromUnknownTimezone);
  copy.fromUnixTime32(4294967295u, 7);
  EXPECT_EQ(copy.m_unixTime, 4294967295LL);  // zero-extended
}

TEST(FileTime, ComparisonsAtThe32BitWrap) {
  const struct { long long a, b, exact, nearestSec; } rows[] = {
      {-1, 0, -1, 1}, {0, -1, 1, -1},                   // -1 is 0xFFFFFFFF in 32 bits
      {4294967296LL, 0, 1, 0}, {4294967295LL, -1, 1, 0},  // 2^32 apart: equal in 32 bits
      {2147483648LL, 2147483647LL, 1, 1},                 // unsigned, so no sign at bit 31
      {5, 5, 0, 0}, {-4294967296LL * 3, 1, -1, -1},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(ZephalFileTime::compareFileTimeExact(seconds(r.a), seconds(r.b)), r.exact) << r.a;
    EXPECT_EQ(ZephalFileTime::compareFileTimeNearestSec(seconds(r.a), seconds(r.b)), r.nearestSec)
        << r.a;
  }
}

// Zoneinfo's offsets for the TZ of this run (tests/data/zone_instants.tsv).
TEST(FileTime, LocalShiftIs32Bit) {
  const std::vector<Row> rows = zoneRows("zone_instants.tsv", "instant");
  ZP_SKIP_IF_NO_ROWS(rows);
  for (const Row& r : rows) {
    const long long utc = toInt(r[2]);
    if (utc < 0 || utc > UINT_MAX) continue;
    const unsigned int expected = static_cast<unsigned int>(utc + toInt(r[17]));  // wraps
    for (long long alias : {utc, utc - 4294967296LL, utc + 4294967296LL}) {
      ZephalFileTime ft = seconds(alias);
      ft.toLocalFileTime_careful();
      EXPECT_EQ(ft.m_unixTime, static_cast<long long>(expected)) << alias;
    }
  }
}

TEST(FileTime, CurrentTime) {
  const auto [now, got] = atOneSecond([](time_t) {
    ZephalFileTime gmt, local;
    gmt.getCurrentGmt();
    local.getCurrentLocal();
    return std::make_pair(gmt.m_unixTime, local.m_unixTime);
  });
  tm parts;
  EXPECT_EQ(got, std::make_pair(int64_t{now}, now + localtime_r(&now, &parts)->tm_gmtoff));
}

// Seconds beyond the years a tm holds leave the fields cleared, still marked.
TEST(FileTime, CalendarEdgeAndLog) {
  ZephalFileTime ft = seconds(LLONG_MAX);
  ft.m_bFromUnknownTimezone = true;
  ZephalSysTime st = makeTime({2024, 3, 7, 9, 5, 3}, false, 5);
  ft.toSystemTime_local(st);
  EXPECT_EQ(stateOf(st), "0 0 0 0 0 0 0 ms=0 local flags=111 dst=-1");
  LogRecorder log;
  ft.fromUnixTime64(1245073530, 0);
  ft.logFileTimeAsGmt("modified", log);
  EXPECT_EQ(log.render(), "modified:\n  gmtDateTime: 6/15/2009 13:45:30\n  fromUnknownTimezone: 1\n");
}
