// GMT/local conversion, offsets and summer time under the TZ of this run,
// checked against zoneinfo's answers in tests/data/zone_instants.tsv.
#include <atomic>

#include "tests/TestValues.h"
#include "time/TimeFunctions.h"

using namespace zptest;

// Each instant both ways, the local seconds that name it, and the zone's
// offset and summer time at it.
TEST(Zones, AgreeWithZoneinfo) {
  const std::vector<Row> rows = zoneRows("zone_instants.tsv", "instant");
  ZP_SKIP_IF_NO_ROWS(rows);
  const time_t now = time(nullptr);
  tm today;
  localtime_r(&now, &today);
  for (const Row& r : rows) {  // utc | gmt: Y M D h m s wday | local: same | offset isdst kind
    SCOPED_TRACE(r[2]);
    const long long utc = toInt(r[2]), offset = toInt(r[17]);
    const Fields gmtFields = intsOf(r, 3, 7), localFields = intsOf(r, 10, 7);
    ZephalSysTime t = marked(makeTime(gmtFields, false, 900));
    t.toLocalSysTime();
    EXPECT_EQ(fieldsOf(t), localFields);
    EXPECT_EQ(extrasOf(t), "ms=0 local flags=001 dst=-1");
    ZephalSysTime seconds;
    seconds.fromUnixTime64(true, utc + offset);
    EXPECT_EQ(fieldsOf(seconds), localFields);
    EXPECT_EQ(gmtUnixToLocalUnix(static_cast<long>(utc)), utc + offset);
    const ZephalSysTime gmt = makeTime(gmtFields, false);
    EXPECT_EQ(gmt.getCurrentGmtOffsetInSeconds(), offset);  // either half of a repeated hour
    EXPECT_EQ(gmt.getGmtOffsetInSeconds(2), 0);  // past the recursion limit
    if (r[19] != "unique") continue;  // a repeated reading names two instants
    EXPECT_EQ(seconds.toUnixTime_gmt64(), utc);
    ZephalSysTime local = makeTime(localFields, true);
    EXPECT_EQ(local.getGmtOffsetInSeconds(2), offset);
    EXPECT_EQ(local.getDstDiff(), today.tm_gmtoff - offset);
    EXPECT_EQ(local.getIsDst(), toInt(r[18]));
    t = marked(makeTime(localFields, true, 500));
    t.toGmtSysTime();
    EXPECT_EQ(fieldsOf(t), gmtFields);
    EXPECT_EQ(extrasOf(t), "ms=0 gmt flags=001 dst=-1");
  }
}

// A reading the clocks skip or repeat is whatever instant mktime picks for it.
TEST(Zones, GapAndOverlapFollowMktime) {
  int seen = 0;
  for (const Row& r : zoneRows("zone_instants.tsv", "")) {
    if (r[19] == "unique") continue;
    ++seen;
    const Fields wall = intsOf(r, 10, 6);
    tm image = tmOf(wall[0], wall[1], wall[2], wall[3], wall[4], wall[5]);
    const time_t chosen = mktime(&image);
    ZephalSysTime t = makeTime(wall, true);
    EXPECT_EQ(t.toUnixTime_gmt64(), chosen);
    t.toGmtSysTime();
    EXPECT_EQ(fieldsOf(t), fieldsOf(gmtimeOf(chosen)));
  }
  EXPECT_EQ(seen > 0, currentTz().find(',') != std::string::npos);  // zones with summer time
}

// Converting a value to its own clock changes nothing; the current time in each.
TEST(Zones, BothClocks) {
  for (bool local : {false, true}) {
    ZephalSysTime same = marked(makeTime({2024, 7, 1, 12, 0, 0}, local, 500));
    const std::string before = stateOf(same);
    local ? same.toLocalSysTime() : same.toGmtSysTime();
    EXPECT_EQ(stateOf(same), before);
    const auto [now, t] = atOneSecond([local](time_t) {
      ZephalSysTime v = marked(makeTime({1999, 1, 1, 0, 0, 0}, !local, 700));
      local ? v.getCurrentLocal() : v.getCurrentGmt();
      return v;
    });
    EXPECT_EQ(t.toUnixTime_gmt64(), now);
    EXPECT_EQ(extrasOf(t), local ? "ms=0 local flags=110 dst=-1" : "ms=0 gmt flags=110 dst=-1");
  }
}

// mktime's answer, cached until a conversion; years before 1901 are reported.
TEST(Zones, IsDstAsksMktimeOnceAndReportsOldYears) {
  for (int year : {1900, 1901, 2024}) {
    ZephalSysTime t = makeTime({year, 7, 1, 12, 0, 0}, true);
    tm image = tmOf(year, 7, 1, 12);
    mktime(&image);
    const unsigned long reportsBefore = Psdk::badObjectCount();
    EXPECT_EQ(t.getIsDst(), image.tm_isdst);
    EXPECT_EQ(t.m_isDst, image.tm_isdst);
    EXPECT_EQ(Psdk::badObjectCount() - reportsBefore, year == 1900 ? 1u : 0u);
    t.m_isDst = 5;
    EXPECT_EQ(t.getIsDst(), 5);
  }
}

TEST(Zones, LocaltimeWrapperIgnoresNulls) {
  tm out = tmOf(1942, 1, 1);
  const long t = 0;
  zp_localtime_r(nullptr, &out);
  zp_localtime_r(&t, nullptr);
  EXPECT_EQ(out.tm_year, 42);
  zp_localtime_r(&t, &out);
  EXPECT_EQ(out.tm_year, 70 - (out.tm_gmtoff < 0 ? 1 : 0));
}

// Outside the 32-bit range the full count keeps the true offset.
TEST(Zones, ToLocalBeyondThe32BitRange) {
  for (long long utc : {-1LL, -86400LL * 365 * 30, 4294967296LL, 4354819200LL}) {
    const time_t u = utc;
    tm expected;
    ZephalSysTime t;
    t.fromUnixTime64(false, utc);
    t.toLocalSysTime();
    EXPECT_EQ(fieldsOf(t), fieldsOf(*localtime_r(&u, &expected))) << utc;
  }
}

#if ZP_TEST_COUNTS_TZSET
// The test binary is linked with --wrap=tzset: the module's calls come here.
static std::atomic<int> g_moduleTzsetCalls{0};
extern "C" void __real_tzset();
extern "C" void __wrap_tzset() {
  g_moduleTzsetCalls.fetch_add(1);
  __real_tzset();
}

TEST(Zones, TzsetIsCalledOncePerProcess) {
  for (int i = 0; i < 100; ++i) {
    ZephalSysTime t = makeTime({2024, 1 + i % 12, 1, 12, 0, 0}, true);
    t.toGmtSysTime();
    t.toLocalSysTime();
    t.getIsDst();
    zp_tzset();
  }
  EXPECT_EQ(g_moduleTzsetCalls.load(), 1);
}
#endif
