// Loading zones: names of the system's tzdata, TZ rules, and the refusals,
// each with its reason and byte; a refused text never becomes UTC.
#include <atomic>
#include <filesystem>

#include "tests/zones/ZoneTestValues.h"

using namespace zptest;

namespace {

// 2024-07-01 12:00:00 GMT, in summer time north of the equator.
constexpr int64_t kJuly2024 = 1719835200;

std::string julyIn(const ZephalTimeZone& zone) {
  ZephalWallClock wall;
  return zone.wallClockAt(kJuly2024, 0, wall) ? wallOf(wall) : "refused";
}

}  // namespace

TEST(ZoneLoad, NamesAndRules) {
  struct Case {
    const char* text;
    const char* july;  // the wall clock at kJuly2024
  };
  const Case cases[] = {
      {"America/New_York", "2024 7 1 8 0 0 1 -14400 EDT dst"},
      {"Europe/Berlin", "2024 7 1 14 0 0 1 7200 CEST dst"},
      {"Asia/Kolkata", "2024 7 1 17 30 0 1 19800 IST std"},
      {"Australia/Sydney", "2024 7 1 22 0 0 1 36000 AEST std"},
      {"UTC", "2024 7 1 12 0 0 1 0 UTC std"},
      {"Etc/GMT+5", "2024 7 1 7 0 0 1 -18000 -05 std"},
      {"EST5EDT", "2024 7 1 8 0 0 1 -14400 EDT dst"},  // a zone file: the file wins over the rule
      {"posix/Europe/Berlin", "2024 7 1 14 0 0 1 7200 CEST dst"},
      {"UTC0", "2024 7 1 12 0 0 1 0 UTC std"},  // no zone file: a rule
      {"CET-1CEST,M3.5.0,M10.5.0/3", "2024 7 1 14 0 0 1 7200 CEST dst"},
      {"EST5EDT,M3.2.0,M11.1.0", "2024 7 1 8 0 0 1 -14400 EDT dst"},
      {"<+0530>-5:30", "2024 7 1 17 30 0 1 19800 +0530 std"},
      {"AEST-10AEDT,M10.1.0,M4.1.0/3", "2024 7 1 22 0 0 1 36000 AEST std"},
      {"XXX+3YYY+2:00:00,J60/2,J300", "2024 7 1 10 0 0 1 -7200 YYY dst"},
      {"EST5EDT4,0/0,J365/25", "2024 7 1 8 0 0 1 -14400 EDT dst"},  // summer time all year
      {"<ABCDEFGHIJKLMNOP>-1", "2024 7 1 13 0 0 1 3600 ABCDEFGHIJKLMNOP std"},
  };
  for (const Case& c : cases) {
    const ZephalTimeZone zone = loaded(c.text);
    EXPECT_EQ(zone.name(), c.text);
    EXPECT_EQ(julyIn(zone), c.july) << c.text;
  }
}

TEST(ZoneLoad, Refusals) {
  struct Case {
    std::string text;
    const char* reason;
    size_t byte;
  };
  const Case cases[] = {
      {"", "empty zone name", 0},
      {"Nowhere/Foo", "unknown zone name", 0},
      {"Europe/Berln", "unknown zone name", 0},
      {"america/new_york", "unknown zone name", 0},
      {"Etc/GMT+15", "unknown zone name", 0},
      {"AB3", "unknown zone name", 0},
      {"CET-25", "unknown zone name", 0},
      {"/usr/share/zoneinfo/UTC", "zone names are relative to the tzdata folder", 0},
      {"../zoneinfo/UTC", "'..' in the zone name", 0},
      {"Europe/../../../etc/passwd", "'..' in the zone name", 7},
      {"Europe/..", "'..' in the zone name", 7},
      {"Europe//Berlin", "expected the offset from GMT in hours", 6},
      {"right/UTC", "unknown zone name", 0},  // leap seconds: cctz counts none
      {std::string("Europe/Berlin\0x", 15), "zero byte in the zone name", 13},
      {"CET-1CEST", "expected ',' and the days summer time starts and ends", 9},
      {"CET-1CEST,M3.5.0", "expected ',' and the day summer time ends", 16},
      {"CET-1CEST,M3.5.0,", "expected a day: Mm.w.d, Jn or n", 17},
      {"CET-1CEST,M13.5.0,M10.5.0", "month outside 1..12", 11},
      {"CET-1CEST,M3.6.0,M10.5.0", "week outside 1..5", 13},
      {"CET-1CEST,M3.5.7,M10.5.0", "weekday outside 0..6", 15},
      {"CET-1CEST,M3,M10.5.0", "expected '.' after the month", 12},
      {"CET-1CEST,J0,J365", "day outside 1..365", 11},
      {"CET-1CEST,366,J365", "day outside 0..365", 10},
      {"CET-1CEST,M3.5.0/168,M10.5.0", "time of day past 167 hours", 17},
      {"CET-1CEST,M3.5.0/2:60,M10.5.0", "minutes past 59", 19},
      {"CET-1CEST,M3.5.0/2:00:60,M10.5.0", "seconds past 59", 22},
      {"CET-1CEST,M3.5.0,M10.5.0/3x", "unexpected text after the rule", 26},
      {"CET-1CEST-2:", "expected minutes after ':'", 12},
      {"<+0530>-24", "offset of 24 hours or more", 7},
      {"<+0530>-25", "offset hours past 24", 8},
      {"<AB>3", "zone abbreviation in <> shorter than three characters", 0},
      {"<+0530-5:30", "expected '>' after the zone abbreviation", 8},
      {"<ABCDEFGHIJKLMNOPQ>-1", "zone abbreviation longer than 16 characters", 0},
      {"<+0530>", "expected the offset from GMT in hours", 7},
      {"CET-1CE,M3.5.0,M10.5.0", "expected a zone abbreviation of three or more letters", 5},
      {"XXX3YYY,0/0,365/25", "cctz cannot hold this rule", 0},  // summer ends after the next begins
  };
  for (const Case& c : cases) {
    ZephalTimeZone zone = loaded("Europe/Berlin");
    ZephalTextError error;
    EXPECT_FALSE(zone.load(c.text, error)) << c.text;
    EXPECT_STREQ(error.reason, c.reason) << c.text;
    EXPECT_EQ(error.byte, c.byte) << c.text;
    // The zone is left as it was: still Berlin, never UTC.
    EXPECT_EQ(zone.name(), "Europe/Berlin") << c.text;
    EXPECT_EQ(julyIn(zone), "2024 7 1 14 0 0 1 7200 CEST dst") << c.text;
  }
}

TEST(ZoneLoad, UtcUntilLoaded) {
  const ZephalTimeZone zone;
  EXPECT_EQ(zone.name(), "UTC");
  EXPECT_EQ(julyIn(zone), "2024 7 1 12 0 0 1 0 UTC std");
}

TEST(ZoneLoad, CopiesAreIndependent) {
  ZephalTimeZone berlin = loaded("Europe/Berlin");
  ZephalTimeZone copy = berlin;
  ZephalTextError error;
  ASSERT_TRUE(copy.load("<+0530>-5:30", error));
  EXPECT_EQ(julyIn(berlin), "2024 7 1 14 0 0 1 7200 CEST dst");
  EXPECT_EQ(julyIn(copy), "2024 7 1 17 30 0 1 19800 +0530 std");
  berlin = copy;
  EXPECT_EQ(berlin.name(), "<+0530>-5:30");
  EXPECT_EQ(julyIn(berlin), "2024 7 1 17 30 0 1 19800 +0530 std");
}

#if ZP_TEST_COUNTS_ZONE_CALLS
// The test binary is linked with --wrap for these: the component's calls come here.
static std::atomic<int> g_zoneCalls{0};
extern "C" {
void __real_tzset();
int __real_setenv(const char*, const char*, int);
int __real_putenv(char*);
int __real_unsetenv(const char*);
void __wrap_tzset() {
  ++g_zoneCalls;
  __real_tzset();
}
int __wrap_setenv(const char* name, const char* value, int overwrite) {
  ++g_zoneCalls;
  return __real_setenv(name, value, overwrite);
}
int __wrap_putenv(char* text) {
  ++g_zoneCalls;
  return __real_putenv(text);
}
int __wrap_unsetenv(const char* name) {
  ++g_zoneCalls;
  return __real_unsetenv(name);
}
}

TEST(ZoneLoad, NeitherTzsetNorTheEnvironment) {
  const int before = g_zoneCalls.load();
  const std::string tzBefore = currentTz();
  for (const char* name : {"America/Chicago", "Asia/Tokyo", "WET0WEST,M3.5.0/1,M10.5.0", "Nowhere/Foo"}) {
    ZephalTimeZone zone;
    ZephalTextError error;
    zone.load(name, error);
    ZephalWallClock wall;
    ZephalZoneLookup at;
    zone.wallClockAt(kJuly2024, 0, wall);
    zone.lookup(readingOf(2024, 3, 31, 2, 30, 0), at);
  }
  EXPECT_EQ(g_zoneCalls.load(), before);
  EXPECT_EQ(currentTz(), tzBefore);
}
#endif
