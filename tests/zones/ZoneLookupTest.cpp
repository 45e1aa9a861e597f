// Wall clock -> instant: the three kinds of reading, the default pick, the
// GMT record it sets; and the edges of both directions (fields that name no
// reading, the years 0 and 9999, a ZephalSysTime's instant).
#include "tests/support/ZoneOracle.h"
#include "tests/zones/ZoneTestValues.h"

using namespace zptest;

namespace {

constexpr ZephalLookupKind kUnique = ZephalLookupKind::kUnique;
constexpr ZephalLookupKind kSkipped = ZephalLookupKind::kSkipped;
constexpr ZephalLookupKind kRepeated = ZephalLookupKind::kRepeated;

}  // namespace

// Clock changes as the zones' rules state them: New York springs forward at
// 02:00 EST on the second Sunday of March and falls back at 02:00 EDT on the
// first of November; Berlin changes at 01:00 GMT on the last Sundays of March
// and October; Lord Howe moves half an hour at 02:00 on the first Sunday of
// October. Instants written as GMT readings (timegm).
TEST(ZoneLookup, KindsAndInstants) {
  struct Case {
    const char* zone;
    ZephalCalendarFields reading;
    ZephalLookupKind kind;
    Fields pre, trans, post;  // GMT readings of the instants
  };
  const Case cases[] = {
      {"America/New_York", readingOf(2024, 3, 10, 1, 59, 59), kUnique,
       {2024, 3, 10, 6, 59, 59}, {2024, 3, 10, 6, 59, 59}, {2024, 3, 10, 6, 59, 59}},
      {"America/New_York", readingOf(2024, 3, 10, 2, 0, 0), kSkipped,
       {2024, 3, 10, 7, 0, 0}, {2024, 3, 10, 7, 0, 0}, {2024, 3, 10, 6, 0, 0}},
      {"America/New_York", readingOf(2024, 3, 10, 2, 30, 0), kSkipped,
       {2024, 3, 10, 7, 30, 0}, {2024, 3, 10, 7, 0, 0}, {2024, 3, 10, 6, 30, 0}},
      {"America/New_York", readingOf(2024, 3, 10, 3, 0, 0), kUnique,
       {2024, 3, 10, 7, 0, 0}, {2024, 3, 10, 7, 0, 0}, {2024, 3, 10, 7, 0, 0}},
      {"America/New_York", readingOf(2024, 11, 3, 0, 59, 59), kUnique,
       {2024, 11, 3, 4, 59, 59}, {2024, 11, 3, 4, 59, 59}, {2024, 11, 3, 4, 59, 59}},
      {"America/New_York", readingOf(2024, 11, 3, 1, 0, 0), kRepeated,
       {2024, 11, 3, 5, 0, 0}, {2024, 11, 3, 6, 0, 0}, {2024, 11, 3, 6, 0, 0}},
      {"America/New_York", readingOf(2024, 11, 3, 1, 30, 0), kRepeated,
       {2024, 11, 3, 5, 30, 0}, {2024, 11, 3, 6, 0, 0}, {2024, 11, 3, 6, 30, 0}},
      {"America/New_York", readingOf(2024, 11, 3, 2, 0, 0), kUnique,
       {2024, 11, 3, 7, 0, 0}, {2024, 11, 3, 7, 0, 0}, {2024, 11, 3, 7, 0, 0}},
      {"Europe/Berlin", readingOf(2024, 3, 31, 2, 30, 0), kSkipped,
       {2024, 3, 31, 1, 30, 0}, {2024, 3, 31, 1, 0, 0}, {2024, 3, 31, 0, 30, 0}},
      {"Europe/Berlin", readingOf(2024, 10, 27, 2, 30, 0), kRepeated,
       {2024, 10, 27, 0, 30, 0}, {2024, 10, 27, 1, 0, 0}, {2024, 10, 27, 1, 30, 0}},
      {"Australia/Lord_Howe", readingOf(2024, 10, 6, 2, 15, 0), kSkipped,
       {2024, 10, 5, 15, 45, 0}, {2024, 10, 5, 15, 30, 0}, {2024, 10, 5, 15, 15, 0}},
      {"CET-1CEST,M3.5.0,M10.5.0/3", readingOf(2024, 3, 31, 2, 30, 0), kSkipped,
       {2024, 3, 31, 1, 30, 0}, {2024, 3, 31, 1, 0, 0}, {2024, 3, 31, 0, 30, 0}},
      {"CET-1CEST,M3.5.0,M10.5.0/3", readingOf(1900, 10, 28, 2, 30, 0), kRepeated,
       {1900, 10, 28, 0, 30, 0}, {1900, 10, 28, 1, 0, 0}, {1900, 10, 28, 1, 30, 0}},
      {"<+0530>-5:30", readingOf(2024, 3, 31, 2, 30, 0), kUnique,
       {2024, 3, 30, 21, 0, 0}, {2024, 3, 30, 21, 0, 0}, {2024, 3, 30, 21, 0, 0}},
  };
  auto gmt = [](const Fields& f) { return timegmOf(f[0], f[1], f[2], f[3], f[4], f[5]); };
  for (const Case& c : cases) {
    const ZephalTimeZone zone = loaded(c.zone);
    ZephalZoneLookup at;
    ASSERT_TRUE(zone.lookup(c.reading, at)) << c.zone;
    EXPECT_EQ(lookupOf(at), lookupOf({c.kind, gmt(c.pre), gmt(c.trans), gmt(c.post)}))
        << c.zone << " " << c.reading.wYear << "-" << c.reading.wMonth << "-" << c.reading.wDay << " "
        << c.reading.wHour << ":" << c.reading.wMinute;
    EXPECT_EQ(at.instant(), at.pre);
  }
}

// Under each TZ the unit tests run under, every reading a change of 1971 to
// 2037 skips or repeats, against mktime told which side it means: tm_isdst 0
// reads it on standard time, 1 on summer time.
TEST(ZoneLookup, SkippedAndRepeatedAgainstMktime) {
  const std::string tz = currentTz();
  if (tz.empty()) GTEST_SKIP() << "TZ is not set";
  const ZephalTimeZone zone = loaded(tz);
  tzset();
  const Walk walk = walkZone(timegmOf(1971, 1, 1), timegmOf(2038, 1, 1));
  int checked = 0;
  for (size_t i = 0; i < walk.changes.size() && !HasFailure(); ++i) {
    const long long change = walk.changes[i], before = walk.offsets[i], after = walk.offsets[i + 1];
    const int dstBefore = ruleAt(change - 1).isDst, dstAfter = ruleAt(change).isDst;
    if (before == after || dstBefore == dstAfter) continue;
    const long long first = change + std::min(before, after), last = change + std::max(before, after);
    for (long long local = first; local < last; local += 450) {
      const ZephalCalendarFields reading = readingAt(local);
      ZephalZoneLookup at;
      ASSERT_TRUE(zone.lookup(reading, at));
      EXPECT_EQ(at.kind, after > before ? kSkipped : kRepeated) << local;
      EXPECT_EQ(at.pre, mktimeOf(reading, dstBefore)) << local;
      EXPECT_EQ(at.post, mktimeOf(reading, dstAfter)) << local;
      EXPECT_EQ(at.trans, change) << local;
      ++checked;
    }
  }
  if (tz.find(',') != std::string::npos) {
    EXPECT_GT(checked, 1000) << "a rule with summer time";
  }
}

// Summer time from 1 January 00:00 on +05 (19:00 GMT the day before) to
// 31 December 24:00 on +06 (18:00 GMT): an hour of standard time a year,
// from 18:00 to 19:00 GMT on 31 December, in every year, whose GMT year the
// C library alone looks at (it gives standard time until 24:00 GMT), and
// whose local year Python's zoneinfo mixes up.
TEST(ZoneLookup, AnHourOfStandardTimeAYear) {
  const ZephalTimeZone zone = loaded("<+05>-5<+06>-6,J1/0,J365/24");
  struct Case {
    Fields gmt;
    const char* wall;
  };
  const Case cases[] = {
      {{2017, 12, 31, 17, 59, 59}, "2017 12 31 23 59 59 0 21600 +06 dst"},
      {{2017, 12, 31, 18, 0, 0}, "2017 12 31 23 0 0 0 18000 +05 std"},
      {{2017, 12, 31, 18, 59, 59}, "2017 12 31 23 59 59 0 18000 +05 std"},
      {{2017, 12, 31, 19, 0, 0}, "2018 1 1 1 0 0 1 21600 +06 dst"},
      {{2017, 12, 31, 23, 59, 59}, "2018 1 1 5 59 59 1 21600 +06 dst"},
      {{1899, 12, 31, 18, 30, 0}, "1899 12 31 23 30 0 0 18000 +05 std"},
      {{1899, 12, 31, 23, 59, 59}, "1900 1 1 5 59 59 1 21600 +06 dst"},
      {{2099, 12, 31, 23, 59, 59}, "2100 1 1 5 59 59 5 21600 +06 dst"},
  };
  for (const Case& c : cases) {
    ZephalWallClock wall;
    ASSERT_TRUE(zone.wallClockAt(timegmOf(c.gmt[0], c.gmt[1], c.gmt[2], c.gmt[3], c.gmt[4], c.gmt[5]), 0, wall));
    EXPECT_EQ(wallOf(wall), c.wall);
  }
}

TEST(ZoneLookup, ToGmtSysTimeTakesTheDefaultPick) {
  const ZephalTimeZone ny = loaded("America/New_York");
  struct Case {
    ZephalCalendarFields reading;
    const char* gmt;
    ZephalLookupKind kind;
  };
  const Case cases[] = {
      {readingOf(2024, 3, 10, 2, 30, 0), "2024 3 10 7 30 0 0 ms=999 gmt flags=110 dst=-1", kSkipped},
      {readingOf(2024, 11, 3, 1, 30, 0), "2024 11 3 5 30 0 0 ms=999 gmt flags=110 dst=-1", kRepeated},
      {readingOf(2024, 3, 7, 4, 5, 3), "2024 3 7 9 5 3 4 ms=999 gmt flags=110 dst=-1", kUnique},
      {readingOf(9999, 12, 31, 18, 59, 59), "9999 12 31 23 59 59 5 ms=999 gmt flags=110 dst=-1", kUnique},
      {readingOf(2024, 12, 31, 23, 59, 60), "2025 1 1 5 0 0 3 ms=999 gmt flags=110 dst=-1", kUnique},
  };
  for (const Case& c : cases) {
    ZephalCalendarFields reading = c.reading;
    reading.wMilliseconds = 999;
    ZephalSysTime out = marked(makeTime({1, 2, 3, 4, 5, 6}, true));
    ZephalLookupKind kind = kSkipped;
    ASSERT_TRUE(ny.toGmtSysTime(reading, out, &kind));
    EXPECT_EQ(stateOf(out), c.gmt);
    EXPECT_EQ(kind, c.kind);
    // In place: the record's own fields as the reading.
    ZephalSysTime same;
    same.m_time = reading;
    ASSERT_TRUE(ny.toGmtSysTime(same.m_time, same));
    EXPECT_EQ(stateOf(same), c.gmt);
  }
}

TEST(ZoneLookup, FieldsThatNameNoReading) {
  const ZephalTimeZone berlin = loaded("Europe/Berlin");
  const ZephalCalendarFields bad[] = {
      readingOf(2024, 0, 1, 0, 0, 0),   readingOf(2024, 13, 1, 0, 0, 0),  readingOf(2024, 4, 31, 0, 0, 0),
      readingOf(2023, 2, 29, 0, 0, 0),  readingOf(2024, 1, 0, 0, 0, 0),   readingOf(2024, 1, 1, 24, 0, 0),
      readingOf(2024, 1, 1, 0, 60, 0),  readingOf(2024, 1, 1, 0, 0, 61),  readingOf(10000, 1, 1, 0, 0, 0),
      readingOf(65535, 12, 31, 0, 0, 0),
  };
  for (ZephalCalendarFields f : bad) {
    ZephalZoneLookup at{kRepeated, 1, 2, 3};
    EXPECT_FALSE(berlin.lookup(f, at)) << f.wYear << "-" << f.wMonth << "-" << f.wDay;
    EXPECT_EQ(lookupOf(at), "repeated 1 2 3");
    ZephalSysTime out = marked(makeTime({1, 2, 3, 4, 5, 6}, true));
    EXPECT_FALSE(berlin.toGmtSysTime(f, out));
    EXPECT_EQ(stateOf(out), stateOf(marked(makeTime({1, 2, 3, 4, 5, 6}, true))));
  }
  ZephalCalendarFields ms = readingOf(2024, 1, 1, 0, 0, 0);
  ms.wMilliseconds = 1000;
  ZephalZoneLookup at;
  EXPECT_FALSE(berlin.lookup(ms, at));
  // Year 0 reads; its GMT reading in a zone east of GMT falls in year -1.
  EXPECT_TRUE(berlin.lookup(readingOf(0, 1, 1, 0, 30, 0), at));
  ZephalSysTime out;
  EXPECT_FALSE(berlin.toGmtSysTime(readingOf(0, 1, 1, 0, 30, 0), out));
  EXPECT_TRUE(berlin.toGmtSysTime(readingOf(0, 1, 1, 1, 30, 0), out));
}

// Year 0 to 9999 on the zone's clock, and milliseconds 0..999, or false.
TEST(ZoneLookup, WallClockEdges) {
  const ZephalTimeZone ny = loaded("America/New_York"), tokyo = loaded("Asia/Tokyo");
  struct Case {
    const ZephalTimeZone& zone;
    int64_t utc;
    int ms;
    const char* wall;  // "" for false
  };
  const int64_t first = -62167219200, last = 253402300799;  // 0000-01-01, 9999-12-31 23:59:59 GMT
  const Case cases[] = {
      {tokyo, first, 0, "0 1 1 9 18 59 6 33539 LMT std"},
      {ny, first, 0, ""},
      {ny, first + 17762, 0, "0 1 1 0 0 0 6 -17762 LMT std"},
      {ny, last, 999, "9999 12 31 18 59 59 5 -18000 EST std"},
      {tokyo, last, 0, ""},
      {tokyo, last - 32400, 0, "9999 12 31 23 59 59 5 32400 JST std"},
      {ny, 0, -1, ""},
      {ny, 0, 1000, ""},
      {ny, INT64_MIN, 0, ""},
      {ny, INT64_MAX, 0, ""},
  };
  for (const Case& c : cases) {
    ZephalWallClock wall;
    wall.abbreviation = "untouched";
    const bool ok = c.zone.wallClockAt(c.utc, c.ms, wall);
    EXPECT_EQ(ok ? wallOf(wall) : "", c.wall) << c.utc;
    if (ok) {
      EXPECT_EQ(wall.fields.wMilliseconds, c.ms);
    } else {
      EXPECT_STREQ(wall.abbreviation, "untouched");
    }
  }
}

// A value's instant: a GMT value's fields, a local value on the process's
// clock (mktime), milliseconds carried; the value itself is unchanged.
TEST(ZoneLookup, WallClockOfASysTime) {
  const ZephalTimeZone kolkata = loaded("Asia/Kolkata");
  ZephalSysTime gmt = makeTime({2024, 3, 7, 9, 5, 3}, false, 250);
  ZephalWallClock wall;
  ASSERT_TRUE(kolkata.wallClockOf(gmt, wall));
  EXPECT_EQ(wallOf(wall), "2024 3 7 14 35 3 4 19800 IST std");
  EXPECT_EQ(wall.fields.wMilliseconds, 250);

  const ZephalSysTime local = makeTime({2024, 7, 1, 12, 0, 0}, true, 7);
  const std::string before = stateOf(local);
  ASSERT_TRUE(kolkata.wallClockOf(local, wall));
  ZephalWallClock expected;
  ASSERT_TRUE(kolkata.wallClockAt(local.toUnixTime_gmt64(), 7, expected));
  EXPECT_EQ(wallOf(wall), wallOf(expected));
  EXPECT_EQ(stateOf(local), before);

  for (ZephalSysTime bad : {makeTime({2024, 2, 30, 0, 0, 0}, false), makeTime({2024, 1, 1, 0, 0, 0}, true, 1000),
                            makeTime({10000, 1, 1, 0, 0, 0}, false)}) {
    EXPECT_FALSE(kolkata.wallClockOf(bad, wall)) << stateOf(bad);
  }
}
