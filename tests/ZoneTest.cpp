// GMT/local conversion, offsets and summer time under the TZ of this run,
// checked against zoneinfo's answers in tests/data/zone_instants.tsv.
#include <gtest/gtest.h>

#include <atomic>

#include "tests/TestTables.h"
#include "tests/TestValues.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;
using zptest::toInt;

namespace {

struct ZoneRow {
  std::string kind;       // "instant" or "gap"
  long long utc;
  int gmt[7];             // Y M D h m s wday
  int local[7];
  int offset;
  int isDst;
  std::string localKind;  // "unique", "repeated" or "gap"
};

// The rows for the TZ of this run; empty (and the test skipped) for a zone
// the table does not know.
std::vector<ZoneRow> rowsForThisZone() {
  static const std::vector<zptest::Row> table = zptest::readTable("zone_instants.tsv");
  std::vector<ZoneRow> rows;
  for (const zptest::Row& r : table) {
    if (r[0] != zptest::currentTz()) continue;
    ZoneRow z;
    z.kind = r[1];
    z.utc = toInt(r[2]);
    for (int i = 0; i < 7; ++i) {
      z.gmt[i] = static_cast<int>(toInt(r[3 + i]));
      z.local[i] = static_cast<int>(toInt(r[10 + i]));
    }
    z.offset = static_cast<int>(toInt(r[17]));
    z.isDst = static_cast<int>(toInt(r[18]));
    z.localKind = r[19];
    rows.push_back(z);
  }
  return rows;
}

ZephalSysTime fromRow(const int f[7], bool local, int ms = 0) {
  return makeTime(f[0], f[1], f[2], f[3], f[4], f[5], local, ms);
}

#define ZONE_ROWS(rows)                                                   \
  const std::vector<ZoneRow> rows = rowsForThisZone();                    \
  if (rows.empty()) GTEST_SKIP() << "no table rows for TZ '" << zptest::currentTz() << "'"

}  // namespace

TEST(Zones, ToLocalGivesTheZonesWallClock) {
  ZONE_ROWS(rows);
  for (const ZoneRow& z : rows) {
    if (z.kind != "instant") continue;
    SCOPED_TRACE(z.utc);
    ZephalSysTime t = fromRow(z.gmt, false, 900);
    t.m_bFlagB = false;
    t.m_bFromUnknownTimezone = true;
    t.m_isDst = 1;
    t.toLocalSysTime();
    expectFields(t, z.local[0], z.local[1], z.local[2], z.local[3], z.local[4], z.local[5],
                 z.local[6]);
    EXPECT_TRUE(t.m_bLocal);
    EXPECT_EQ(t.m_time.wMilliseconds, 0);
    EXPECT_EQ(t.m_isDst, -1);
    EXPECT_TRUE(t.m_bFlagA && !t.m_bFlagB && t.m_bFromUnknownTimezone);
  }
}

TEST(Zones, ToGmtGivesTheInstant) {
  ZONE_ROWS(rows);
  for (const ZoneRow& z : rows) {
    if (z.kind != "instant" || z.localKind != "unique") continue;
    SCOPED_TRACE(z.utc);
    ZephalSysTime t = fromRow(z.local, true, 500);
    t.m_bFromUnknownTimezone = true;
    t.toGmtSysTime();
    expectFields(t, z.gmt[0], z.gmt[1], z.gmt[2], z.gmt[3], z.gmt[4], z.gmt[5], z.gmt[6]);
    EXPECT_FALSE(t.m_bLocal);
    EXPECT_EQ(t.m_time.wMilliseconds, 0);
    EXPECT_TRUE(t.m_bFromUnknownTimezone);
  }
}

// A reading the clocks skip or repeat is whatever instant mktime picks for it.
TEST(Zones, GapAndOverlapFollowMktime) {
  ZONE_ROWS(rows);
  int seen = 0;
  for (const ZoneRow& z : rows) {
    if (z.localKind == "unique") continue;
    ++seen;
    tm image{};
    image.tm_year = z.local[0] - 1900;
    image.tm_mon = z.local[1] - 1;
    image.tm_mday = z.local[2];
    image.tm_hour = z.local[3];
    image.tm_min = z.local[4];
    image.tm_sec = z.local[5];
    image.tm_isdst = -1;
    const time_t chosen = mktime(&image);
    tm gmt;
    gmtime_r(&chosen, &gmt);
    ZephalSysTime t = fromRow(z.local, true);
    EXPECT_EQ(t.toUnixTime_gmt64(), chosen);
    t.toGmtSysTime();
    expectFields(t, gmt.tm_year + 1900, gmt.tm_mon + 1, gmt.tm_mday, gmt.tm_hour, gmt.tm_min,
                 gmt.tm_sec, gmt.tm_wday);
  }
  const bool zoneHasSummerTime = zptest::currentTz().find(',') != std::string::npos;
  EXPECT_EQ(seen > 0, zoneHasSummerTime);
}

TEST(Zones, OffsetAndSummerTimeAtTheValuesTime) {
  ZONE_ROWS(rows);
  for (const ZoneRow& z : rows) {
    if (z.kind != "instant" || z.localKind != "unique") continue;
    SCOPED_TRACE(z.utc);
    const ZephalSysTime gmt = fromRow(z.gmt, false);
    ZephalSysTime local = fromRow(z.local, true);
    EXPECT_EQ(gmt.getGmtOffsetInSeconds(0), z.offset);
    EXPECT_EQ(gmt.getCurrentGmtOffsetInSeconds(), z.offset);
    EXPECT_EQ(gmt.getGmtOffsetInSeconds(2), 0);  // past the recursion limit
    EXPECT_EQ(local.getGmtOffsetInSeconds(0), z.offset);
    EXPECT_EQ(local.getGmtOffsetInSeconds(2), z.offset);
    EXPECT_EQ(local.getIsDst(), z.isDst);
    EXPECT_EQ(local.m_isDst, z.isDst);
    EXPECT_EQ(gmtUnixToLocalUnix(static_cast<long>(z.utc)), z.utc + z.offset);
  }
}

// Local seconds (a GMT count plus the offset) marked local name the instant.
TEST(Zones, LocalSecondsRoundTrip) {
  ZONE_ROWS(rows);
  for (const ZoneRow& z : rows) {
    if (z.kind != "instant" || z.localKind != "unique") continue;
    ZephalSysTime t;
    t.fromUnixTime64(true, z.utc + z.offset);
    expectFields(t, z.local[0], z.local[1], z.local[2], z.local[3], z.local[4], z.local[5],
                 z.local[6]);
    EXPECT_EQ(t.toUnixTime_gmt64(), z.utc) << z.utc;
  }
}

TEST(Zones, ConversionToTheSameClockChangesNothing) {
  ZephalSysTime gmt = makeTime(2024, 7, 1, 12, 0, 0, false, 500);
  gmt.m_isDst = 1;
  gmt.toGmtSysTime();
  ZephalSysTime local = makeTime(2024, 7, 1, 12, 0, 0, true, 500);
  local.m_isDst = 1;
  local.toLocalSysTime();
  for (const ZephalSysTime* t : {&gmt, &local}) {
    expectFields(*t, 2024, 7, 1, 12, 0, 0, 0);
    EXPECT_EQ(t->m_time.wMilliseconds, 500);
    EXPECT_EQ(t->m_isDst, 1);
  }
}

TEST(Zones, CurrentTimeInBothClocks) {
  for (bool local : {false, true}) {
    ZephalSysTime t = makeTime(1999, 1, 1, 0, 0, 0, !local, 700);
    t.m_bFlagA = t.m_bFlagB = false;
    t.m_bFromUnknownTimezone = true;
    t.m_isDst = 1;
    const time_t before = time(nullptr);
    local ? t.getCurrentLocal() : t.getCurrentGmt();
    const time_t after = time(nullptr);
    EXPECT_EQ(t.m_bLocal, local);
    EXPECT_GE(t.toUnixTime_gmt64(), before);
    EXPECT_LE(t.toUnixTime_gmt64(), after);
    EXPECT_EQ(t.m_time.wMilliseconds, 0);
    EXPECT_EQ(t.m_isDst, -1);
    EXPECT_TRUE(t.m_bFlagA && t.m_bFlagB && !t.m_bFromUnknownTimezone);
  }
}

TEST(Zones, DstDiffIsTodaysOffsetMinusTheValues) {
  ZONE_ROWS(rows);
  const time_t now = time(nullptr);
  tm today;
  localtime_r(&now, &today);
  for (const ZoneRow& z : rows) {
    if (z.kind != "instant" || z.localKind != "unique") continue;
    EXPECT_EQ(fromRow(z.local, true).getDstDiff(), today.tm_gmtoff - z.offset) << z.utc;
  }
}

TEST(Zones, IsDstIsCachedAndAskedAgainAfterAConversion) {
  ZephalSysTime t = makeTime(2024, 7, 1, 12, 0, 0, true);
  t.m_isDst = 0;
  EXPECT_EQ(t.getIsDst(), 0);  // from the cache, whatever the zone says
  t.toGmtSysTime();
  EXPECT_EQ(t.m_isDst, -1);
  tm image{};
  image.tm_year = t.m_time.wYear - 1900;
  image.tm_mon = t.m_time.wMonth - 1;
  image.tm_mday = t.m_time.wDay;
  image.tm_hour = t.m_time.wHour;
  image.tm_isdst = -1;
  mktime(&image);
  EXPECT_EQ(t.getIsDst(), image.tm_isdst);
}

TEST(Zones, IsDstReportsYearsBefore1901) {
  for (int year : {1900, 1901}) {
    ZephalSysTime t = makeTime(year, 7, 1, 12, 0, 0, true);
    tm image{};
    image.tm_year = year - 1900;
    image.tm_mon = 6;
    image.tm_mday = 1;
    image.tm_hour = 12;
    image.tm_isdst = -1;
    mktime(&image);
    const unsigned long reportsBefore = Psdk::badObjectCount();
    EXPECT_EQ(t.getIsDst(), image.tm_isdst);
    EXPECT_EQ(Psdk::badObjectCount() - reportsBefore, year == 1900 ? 1u : 0u);
  }
}

TEST(Zones, LocaltimeWrapperIgnoresNulls) {
  tm out{};
  out.tm_year = 42;
  zp_localtime_r(nullptr, &out);
  EXPECT_EQ(out.tm_year, 42);
  const long t = 0;
  zp_localtime_r(&t, nullptr);
  zp_localtime_r(&t, &out);
  EXPECT_EQ(out.tm_year, 70 - (out.tm_gmtoff < 0 ? 1 : 0));
}

// Outside the 32-bit range the full count keeps the true offset.
TEST(Zones, ToLocalBeyondThe32BitRange) {
  for (long long utc : {-1LL, -86400LL * 365 * 30, 4294967296LL, 4354819200LL}) {
    const time_t u = utc;
    tm expected;
    localtime_r(&u, &expected);
    ZephalSysTime t;
    t.fromUnixTime64(false, utc);
    t.toLocalSysTime();
    expectFields(t, expected.tm_year + 1900, expected.tm_mon + 1, expected.tm_mday,
                 expected.tm_hour, expected.tm_min, expected.tm_sec, expected.tm_wday);
  }
}

#if ZP_TEST_COUNTS_TZSET
// The test binary is linked with --wrap=tzset: the module's calls come here.
namespace {
std::atomic<int> g_moduleTzsetCalls{0};
}
extern "C" void __real_tzset();
extern "C" void __wrap_tzset() {
  g_moduleTzsetCalls.fetch_add(1);
  __real_tzset();
}

TEST(Zones, TzsetIsCalledOncePerProcess) {
  for (int i = 0; i < 100; ++i) {
    ZephalSysTime t = makeTime(2024, 1 + i % 12, 1, 12, 0, 0, true);
    t.toGmtSysTime();
    t.toLocalSysTime();
    t.getIsDst();
    zp_tzset();
  }
  EXPECT_EQ(g_moduleTzsetCalls.load(), 1);
}
#endif
