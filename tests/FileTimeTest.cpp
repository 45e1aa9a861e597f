// The file time value: FILETIME and .NET ticks against Python's datetime
// (tests/data/filetime_*.tsv) and published .NET constants, the calendar
// bridge, the 32-bit local shift and comparisons.
#include <gtest/gtest.h>

#include <climits>

#include "services/LogBase.h"
#include "tests/TestTables.h"
#include "tests/TestValues.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;
using zptest::toInt;

namespace {

ZephalFileTime seconds(long long t) {
  ZephalFileTime ft;
  ft.fromUnixTime64(t, 0);
  return ft;
}

}  // namespace

TEST(FileTime, CountsAgreeWithPython) {
  for (const zptest::Row& r : zptest::readTable("filetime_instants.tsv")) {
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

    ft.m_bFlagB = false;
    ft.m_bFromUnknownTimezone = true;
    for (bool local : {false, true}) {
      ZephalSysTime st = makeTime(1, 2, 3, 4, 5, 6, !local, 700);
      st.m_isDst = 1;
      local ? ft.toSystemTime_local(st) : ft.toSystemTime_gmt(st);
      expectFields(st, int(toInt(r[4])), int(toInt(r[5])), int(toInt(r[6])), int(toInt(r[7])),
                   int(toInt(r[8])), int(toInt(r[9])), int(toInt(r[10])));
      EXPECT_EQ(st.m_bLocal, local);
      EXPECT_EQ(st.m_time.wMilliseconds, 0);
      EXPECT_EQ(st.m_isDst, -1);
      EXPECT_TRUE(st.m_bFlagA && !st.m_bFlagB && st.m_bFromUnknownTimezone);
      ZephalFileTime back;
      st.m_bLocal = false;
      st.toFileTime_gmt(back);
      EXPECT_EQ(back.m_unixTime, unix);
      EXPECT_TRUE(back.m_bFlagA && !back.m_bFlagB && back.m_bFromUnknownTimezone);
    }
  }
}

// Reading truncates toward zero, so 1970 is approached from both sides.
TEST(FileTime, ReadingTruncatesTowardZero) {
  for (const zptest::Row& r : zptest::readTable("filetime_reads.tsv")) {
    SCOPED_TRACE(r[0] + " " + r[1] + " " + r[2]);
    ZephalFileTime ft = seconds(12345);
    if (r[0] == "ticks") {
      ft.fromDateTimeTicks(toInt(r[2]));
      EXPECT_EQ(ft.m_unixTime, toInt(r[3]));
      continue;
    }
    const unsigned int high = static_cast<unsigned int>(toInt(r[1]));
    const unsigned int low = static_cast<unsigned int>(toInt(r[2]));
    ft.setFileTime(high, low);
    EXPECT_EQ(ft.m_unixTime, toInt(r[3]));
    // Only the low 32 bits of each word are read.
    const _FILETIME raw{low | 0xABCD000000000000UL, high | 0xFFFFFFFF00000000UL};
    ft.fromFILETIME(raw);
    EXPECT_EQ(ft.m_unixTime, toInt(r[3]));
  }
}

// .NET's DateTime.cs (dotnet/runtime, System.Private.CoreLib): UnixEpochTicks =
// 621355968000000000, FileTimeOffset = 504911232000000000 (ticks at
// 1601-01-01; ToFileTimeUtc is Ticks - FileTimeOffset), MaxTicks =
// 3155378975999999999 (DateTime.MaxValue, 9999-12-31 23:59:59.9999999).
// Microsoft's time_t-to-FILETIME recipe adds 116444736000000000.
TEST(FileTime, PublishedDotNetValues) {
  EXPECT_EQ(seconds(0).getDateTimeTicks(), 621355968000000000LL);
  EXPECT_EQ((static_cast<long long>(seconds(0).getHighDateTime()) << 32) |
                seconds(0).getLowDateTime(),
            116444736000000000LL);
  ZephalFileTime ft;
  ft.fromDateTimeTicks(504911232000000000LL);
  EXPECT_EQ(ft.getHighDateTime(), 0u);
  EXPECT_EQ(ft.getLowDateTime(), 0u);
  ft.fromDateTimeTicks(3155378975999999999LL);
  EXPECT_EQ(ft.getDateTimeTicks(), 3155378975990000000LL);
  ft.fromDateTimeTicks(621355968000000000LL - 1);
  EXPECT_EQ(ft.m_unixTime, 0);
}

TEST(FileTime, ValueBasics) {
  ZephalFileTime ft = seconds(-1);
  ft.m_bFlagA = false;
  ft.m_bFromUnknownTimezone = true;
  ZephalFileTime copy;
  copy.copyFrom(ft);
  EXPECT_TRUE(copy.m_unixTime == -1 && !copy.m_bFlagA && copy.m_bFromUnknownTimezone);
  EXPECT_EQ(copy.toUnixTime32(), 4294967295u);
  copy.clear();
  EXPECT_TRUE(copy.m_unixTime == 0 && copy.m_bFlagA && copy.m_bFlagB && !copy.m_bFromUnknownTimezone);
  copy.fromUnixTime32(4294967295u, 7);
  EXPECT_EQ(copy.m_unixTime, 4294967295LL);  // zero-extended
}

TEST(FileTime, ComparisonsAtThe32BitWrap) {
  const struct {
    long long a, b, exact, nearestSec;
  } rows[] = {
      {-1, 0, -1, 1},                   // -1 is 0xFFFFFFFF in 32 bits
      {0, -1, 1, -1},
      {4294967296LL, 0, 1, 0},          // 2^32 apart: equal in 32 bits
      {4294967295LL, -1, 1, 0},
      {2147483648LL, 2147483647LL, 1, 1},  // unsigned, so no sign at bit 31
      {5, 5, 0, 0},
      {-4294967296LL * 3, 1, -1, -1},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(ZephalFileTime::compareFileTimeExact(seconds(r.a), seconds(r.b)), r.exact) << r.a;
    EXPECT_EQ(ZephalFileTime::compareFileTimeNearestSec(seconds(r.a), seconds(r.b)), r.nearestSec)
        << r.a;
  }
}

// Zoneinfo's offsets for the TZ of this run (tests/data/zone_instants.tsv).
TEST(FileTime, LocalShiftIs32Bit) {
  int seen = 0;
  for (const zptest::Row& r : zptest::readTable("zone_instants.tsv")) {
    const long long utc = toInt(r[2]);
    if (r[0] != zptest::currentTz() || r[1] != "instant" || utc < 0 || utc > UINT_MAX) continue;
    const unsigned int expected = static_cast<unsigned int>(utc + toInt(r[17]));  // wraps
    for (long long alias : {utc, utc - 4294967296LL, utc + 4294967296LL}) {
      ZephalFileTime ft = seconds(alias);
      ft.toLocalFileTime_careful();
      EXPECT_EQ(ft.m_unixTime, static_cast<long long>(expected)) << alias;
    }
    ++seen;
  }
  if (seen == 0) GTEST_SKIP() << "no rows for TZ '" << zptest::currentTz() << "'";
}

TEST(FileTime, CurrentTime) {
  for (;;) {
    const time_t before = time(nullptr);
    ZephalFileTime gmt, local;
    gmt.getCurrentGmt();
    local.getCurrentLocal();
    tm parts;
    localtime_r(&before, &parts);
    if (time(nullptr) != before) continue;  // a second passed: again
    EXPECT_EQ(gmt.m_unixTime, before);
    EXPECT_EQ(local.m_unixTime, before + parts.tm_gmtoff);
    break;
  }
}

TEST(FileTime, SecondsBeyondTmLeaveTheFieldsCleared) {
  ZephalFileTime ft = seconds(LLONG_MAX);
  ft.m_bFromUnknownTimezone = true;
  ZephalSysTime st = makeTime(2024, 3, 7, 9, 5, 3, false, 5);
  ft.toSystemTime_local(st);
  expectFields(st, 0, 0, 0, 0, 0, 0, 0);
  EXPECT_TRUE(st.m_bLocal && st.m_bFromUnknownTimezone);
}

TEST(FileTime, LogsTheGmtDate) {
  LogRecorder log;
  ZephalFileTime ft = seconds(1245073530);
  ft.logFileTimeAsGmt("modified", log);
  ft.m_bFromUnknownTimezone = true;
  ft.logFileTimeAsGmt("modified", log);
  EXPECT_EQ(log.render(),
            "modified:\n"
            "  gmtDateTime: 6/15/2009 13:45:30\n"
            "modified:\n"
            "  gmtDateTime: 6/15/2009 13:45:30\n"
            "  fromUnknownTimezone: 1\n");
}
