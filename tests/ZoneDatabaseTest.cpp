// Every zone of the system's database against the C library itself.
//
// ZoneWalk checks the zone of this process: it finds each change of
// localtime_r's offset or summer-time flag from 1970 to 2037 by bisection and
// compares the module with localtime_r and mktime at the change, 1 s either
// side and the size of the change either side. ZoneDatabase runs this binary
// again for every TZif file under /usr/share/zoneinfo (posix/ and right/ left
// out, links and backward names kept) with TZ naming it, one process per zone
// since the module reads the zone once per process, as many at once as there
// are cores. Two cores take about 7 s, 90 s under AddressSanitizer.
#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/TestValues.h"
#include "tests/support/ZoneOracle.h"
#include "time/TimeFunctions.h"

using namespace zptest;
namespace fs = std::filesystem;

namespace {

// Leaves glibc's mktime, which starts from its previous answer, on the
// other rule, so a repeated reading is asked for in the less helpful state.
void primeMktime(long long instant) {
  const time_t t = instant;
  tm reading{};
  localtime_r(&t, &reading);
  reading.tm_isdst = -1;
  mktime(&reading);
}

// The module against localtime_r and mktime at one instant of the walk;
// `other` is an instant under the rule on the far side of the transition.
void checkInstant(long long utc, long long other, bool unique) {
  SCOPED_TRACE("instant " + std::to_string(utc));
  const time_t u = utc;
  tm local{};
  localtime_r(&u, &local);
  ZephalSysTime gmt;
  gmt.fromUnixTime64(false, utc);
  primeMktime(other);
  EXPECT_EQ(gmt.getGmtOffsetInSeconds(0), local.tm_gmtoff);
  EXPECT_EQ(gmtUnixToLocalUnix(static_cast<long>(utc)), utc + local.tm_gmtoff);
  ZephalSysTime wall;
  wall.copyFrom(gmt);
  wall.toLocalSysTime();
  EXPECT_EQ(fieldsOf(wall), fieldsOf(local));
  tm chosen = local;
  chosen.tm_isdst = -1;
  mktime(&chosen);  // a repeated reading's flag is whichever instant mktime takes
  EXPECT_EQ(wall.getIsDst(), unique ? local.tm_isdst : chosen.tm_isdst);
  if (!unique) return;
  EXPECT_EQ(wall.getGmtOffsetInSeconds(0), local.tm_gmtoff);
  EXPECT_EQ(wall.toUnixTime_gmt64(), utc);
  wall.toGmtSysTime();
  EXPECT_EQ(fieldsOf(wall), fieldsOf(gmtimeOf(utc)));
}

}  // namespace

TEST(ZoneWalk, EveryTransitionAgreesWithTheCLibrary) {
  zp_tzset();
  const Walk walk = walkZone(timegmOf(1970, 1, 1), timegmOf(2038, 1, 1));
  for (size_t i = 0; i < walk.changes.size(); ++i) {
    const long long at = walk.changes[i];
    SCOPED_TRACE("TZ '" + currentTz() + "', transition at " + std::to_string(at));
    const long long size = std::llabs(walk.offsets[i + 1] - walk.offsets[i]);
    std::vector<long long> instants{at - 1, at, at + 1};
    if (size != 0) instants.insert(instants.end(), {at - size, at + size});
    for (long long utc : instants) {
      const long long other = utc < at ? at + size : at - size - 1;
      checkInstant(utc, other, walk.occurrences(utc + ruleAt(utc).offset) == 1);
    }
    if (HasFailure()) return;  // the first transition that disagrees says enough
  }
  std::printf("walked %zu transitions\n", walk.changes.size());
}

TEST(ZoneDatabase, EveryZoneAgreesWithTheCLibrary) {
  const fs::path dir = "/usr/share/zoneinfo";
  if (!fs::is_directory(dir)) GTEST_SKIP() << dir << " is missing (Debian's tzdata installs it)";
  if (!fs::exists("/proc/self/exe")) GTEST_SKIP() << "no /proc/self/exe to run this binary again";
  const std::vector<std::string> zones = zoneFileNames(dir);
  ASSERT_FALSE(zones.empty()) << "no TZif file under " << dir;

  const Walks walks = runWalks(zones, "ZoneWalk.*");
  std::printf("%zu zones under %s, %lld transitions\n", zones.size(), dir.c_str(), walks.walked);
  EXPECT_TRUE(walks.failed.empty()) << walks.failed.size() << " zones disagree, first " << walks.failed.front();
}
