// zephal::zones against the C library, on every zone of the system's tzdata.
//
// NamedZoneWalk loads the zone TZ names and compares it with localtime_r and
// mktime under that TZ: every change of offset or summer time from 1900 to
// 2037 (found by bisecting localtime_r) and 1 s either side, the readings a
// change skips or repeats, and random instants (fixed seed) from 1900 to
// 2100, before 1900 and up to 9999. For a rule string the C library computes
// every year before 1970 as 1970, so there the walk and the instants start in
// 1970 and Python's zoneinfo answers for earlier years (ZonePeerTest.cpp).
// NamedZoneDatabase runs this binary again for every TZif file under
// /usr/share/zoneinfo and the rules below, one process per zone, as many at
// once as there are cores.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>

#include "tests/support/ZoneOracle.h"
#include "tests/zones/ZoneTestValues.h"

using namespace zptest;
namespace fs = std::filesystem;

namespace {

const fs::path kZoneDir = "/usr/share/zoneinfo";

// Rules beyond the four the unit tests run under; the C library reads each
// as zoneinfo does (summer time all year, and one with an hour of standard
// time at the new year, it does not: ZonePeerTest.cpp has them).
const char* const kRules[] = {
    "AEST-10AEDT,M10.1.0,M4.1.0/3",      // across the new year
    "<-02>2<-01>,M3.5.0/-1,M10.5.0/0",   // a change before midnight
    "IST-2IDT,M3.4.4/26,M10.5.0",        // past 24 h
    "XXX3YYY,M3.2.0/167,M11.1.0/-167",   // the extremes of RFC 8536
    "XXX3YYY,J60/2,J300",                // Julian days, 29 February not counted
    "XXX3YYY,59/2,300",                  // zero-based days, counted
    "NZST-12:00NZDT-13:00:00,M9.5.0,M4.1.0/3",
    "<+1345>-13:45<+1445>,M9.5.0/2:45,M4.1.0/3:45",
    "<-0330>3:30<-0230>,M3.2.0/0:01,M11.1.0/0:01",
};

constexpr int kMillis = 250;

// localtime_r's reading of `utc` is the component's.
bool sameWallClock(const ZephalTimeZone& zone, long long utc) {
  const tm local = localtimeOf(utc);
  ZephalWallClock wall;
  if (!zone.wallClockAt(utc, kMillis, wall)) {
    ADD_FAILURE() << "no wall clock at " << utc;
    return false;
  }
  EXPECT_EQ(wallOf(wall), wallOf(local)) << "at " << utc;
  EXPECT_EQ(wall.fields.wMilliseconds, kMillis);
  return wallOf(wall) == wallOf(local);
}

// The reading at `utc` looked up again names `utc`: the only instant (as
// mktime finds it too) or one of two.
void expectReadingNamesIt(const ZephalTimeZone& zone, long long utc, int occurrences) {
  const tm local = localtimeOf(utc);
  const ZephalCalendarFields reading = readingOf(local);
  ZephalZoneLookup at;
  ASSERT_TRUE(zone.lookup(reading, at)) << utc;
  if (occurrences == 0) occurrences = at.kind == ZephalLookupKind::kUnique ? 1 : 2;
  if (occurrences == 1) {
    EXPECT_EQ(lookupOf(at), lookupOf({ZephalLookupKind::kUnique, utc, utc, utc})) << wallOf(local);
    EXPECT_EQ(mktimeOf(reading, -1), utc) << wallOf(local);
  } else {
    EXPECT_EQ(at.kind, ZephalLookupKind::kRepeated) << wallOf(local);
    EXPECT_TRUE(at.pre == utc || at.post == utc) << wallOf(local) << ": " << lookupOf(at);
    EXPECT_TRUE(at.pre < at.trans && at.trans <= at.post) << lookupOf(at);
  }
}

// Readings a change from `before` to `after` seconds east at `change` skips
// (a jump forward) or repeats (back): the first, one in the middle, the last.
void expectChangeReadings(const ZephalTimeZone& zone, long long change, long long before, long long after) {
  if (before == after) return;
  const long long first = change + std::min(before, after), last = change + std::max(before, after) - 1;
  const ZephalLookupKind kind = after > before ? ZephalLookupKind::kSkipped : ZephalLookupKind::kRepeated;
  for (long long local : {first, first + (last - first) / 2, last}) {
    ZephalZoneLookup at;
    ASSERT_TRUE(zone.lookup(readingAt(local), at));
    EXPECT_EQ(lookupOf(at), lookupOf({kind, local - before, change, local - after}))
        << "reading " << wallOf(gmtimeOf(local)) << " at the change " << change;
  }
}

// Random instants in [from, to): wall clock and the lookup of its reading.
void checkRandomInstants(const ZephalTimeZone& zone, long long from, long long to, int count,
                         std::mt19937_64& random) {
  std::uniform_int_distribution<long long> pick(from, to - 1);
  for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
    const long long utc = pick(random);
    if (sameWallClock(zone, utc)) expectReadingNamesIt(zone, utc, 0);
  }
}

}  // namespace

TEST(NamedZoneWalk, AgreesWithTheCLibrary) {
  const std::string tz = currentTz();
  if (tz.empty()) GTEST_SKIP() << "TZ is not set";
  const ZephalTimeZone zone = loaded(tz);
  ASSERT_FALSE(HasFailure());
  tzset();
  const bool isFile = fs::is_regular_file(kZoneDir / tz);

  const long long y1900 = timegmOf(1900, 1, 1), y1970 = timegmOf(1970, 1, 1), y2100 = timegmOf(2100, 1, 1);
  const Walk walk = walkZone(isFile ? y1900 : y1970, timegmOf(2038, 1, 1));
  for (size_t i = 0; i < walk.changes.size() && !HasFailure(); ++i) {
    const long long change = walk.changes[i];
    SCOPED_TRACE("TZ '" + tz + "', change at " + std::to_string(change));
    for (long long utc : {change - 1, change, change + 1}) {
      if (sameWallClock(zone, utc)) {
        expectReadingNamesIt(zone, utc, walk.occurrences(utc + localtimeOf(utc).tm_gmtoff));
      }
    }
    expectChangeReadings(zone, change, walk.offsets[i], walk.offsets[i + 1]);
  }

  SCOPED_TRACE("TZ '" + tz + "', the ends of the component's table of offsets, and random instants");
  for (long long utc : {y1900 - 1, y1900, y1970 - 1, y1970, timegmOf(1971, 1, 1) - 1, timegmOf(1971, 1, 1),
                        y2100 - 1, y2100}) {
    if ((isFile || utc >= y1970) && sameWallClock(zone, utc)) expectReadingNamesIt(zone, utc, 0);
  }
  std::mt19937_64 random(20240307);
  checkRandomInstants(zone, isFile ? y1900 : y1970, y2100, 400, random);
  if (isFile) checkRandomInstants(zone, timegmOf(1, 1, 2), y1900, 40, random);
  checkRandomInstants(zone, y2100, timegmOf(9999, 12, 31), 60, random);
  std::printf("walked %zu transitions\n", walk.changes.size());
}

TEST(NamedZoneDatabase, EveryZoneAgreesWithTheCLibrary) {
  if (!fs::is_directory(kZoneDir)) GTEST_SKIP() << kZoneDir << " is missing (Debian's tzdata installs it)";
  if (!fs::exists("/proc/self/exe")) GTEST_SKIP() << "no /proc/self/exe to run this binary again";
  std::vector<std::string> zones = zoneFileNames(kZoneDir);
  ASSERT_FALSE(zones.empty()) << "no TZif file under " << kZoneDir;
  const size_t files = zones.size();
  zones.insert(zones.end(), std::begin(kRules), std::end(kRules));

  const Walks walks = runWalks(zones, "NamedZoneWalk.*");
  std::printf("%zu zones under %s and %zu rules, %lld transitions\n", files, kZoneDir.c_str(),
              std::size(kRules), walks.walked);
  EXPECT_TRUE(walks.failed.empty()) << walks.failed.size() << " zones disagree, first " << walks.failed.front();
}
