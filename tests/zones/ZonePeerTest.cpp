// zephal::zones against Python's zoneinfo (tests/data/gen_named_zone_tables.py):
// zones with unusual histories and rule strings, over the years 1 to 9999,
// where the C library computes a rule's years before 1970 as 1970.
#include <map>

#include "tests/zones/ZoneTestValues.h"

using namespace zptest;

namespace {

// Each zone of a table loaded once.
const ZephalTimeZone& zoneNamed(const std::string& name) {
  static std::map<std::string, ZephalTimeZone> zones;
  auto it = zones.find(name);
  if (it == zones.end()) it = zones.emplace(name, loaded(name)).first;
  return it->second;
}

ZephalLookupKind kindNamed(const std::string& name) {
  return name == "skipped" ? ZephalLookupKind::kSkipped
                           : name == "repeated" ? ZephalLookupKind::kRepeated : ZephalLookupKind::kUnique;
}

}  // namespace

TEST(ZonePeer, WallClocksOfInstants) {
  // zone unix | Y M D h m s wday | offset abbreviation dst
  int failures = 0;
  for (const Row& r : readTable("named_zone_instants.tsv")) {
    ZephalWallClock wall;
    ASSERT_TRUE(zoneNamed(r[0]).wallClockAt(toInt(r[1]), 0, wall)) << r[0] << " " << r[1];
    const Fields expected = intsOf(r, 2, 7);
    const std::string want = wallOf(ZephalWallClock{
        {uint16_t(expected[0]), uint16_t(expected[1]), uint16_t(expected[6]), uint16_t(expected[2]),
         uint16_t(expected[3]), uint16_t(expected[4]), uint16_t(expected[5]), 0},
        int32_t(toInt(r[9])), r[11] == "1", r[10].c_str()});
    EXPECT_EQ(wallOf(wall), want) << r[0] << " at " << r[1];
    if (wallOf(wall) != want && ++failures == 1000) break;
  }
}

TEST(ZonePeer, InstantsOfReadings) {
  // zone | Y M D h m s | kind pre trans post
  int failures = 0;
  for (const Row& r : readTable("named_zone_readings.tsv")) {
    const Fields f = intsOf(r, 1, 6);
    ZephalZoneLookup at;
    ASSERT_TRUE(zoneNamed(r[0]).lookup(readingOf(f[0], f[1], f[2], f[3], f[4], f[5]), at)) << r[0];
    const std::string want = lookupOf({kindNamed(r[7]), toInt(r[8]), toInt(r[9]), toInt(r[10])});
    EXPECT_EQ(lookupOf(at), want) << r[0] << " reading " << f[0] << "-" << f[1] << "-" << f[2] << " "
                                  << f[3] << ":" << f[4] << ":" << f[5];
    if (lookupOf(at) != want && ++failures == 1000) break;
  }
}
