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
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include "tests/TestValues.h"
#include "time/TimeFunctions.h"

extern char** environ;

using namespace zptest;
namespace fs = std::filesystem;

namespace {

// localtime_r's offset and summer-time flag at an instant; a change of either
// is a transition.
struct Rule {
  long long offset;
  int isDst;
  bool operator==(const Rule& o) const { return offset == o.offset && isDst == o.isDst; }
};

Rule ruleAt(long long instant) {
  const time_t t = instant;
  tm local{};
  localtime_r(&t, &local);
  return {local.tm_gmtoff, local.tm_isdst};
}

// The zone from 1970 to 2037 as stretches of one rule: stretch i begins at
// changes[i - 1] (the first at the start of time) and has offsets[i].
struct Walk {
  std::vector<long long> changes;
  std::vector<long long> offsets;

  // How many instants read `wallClock` (local seconds): at most one per stretch.
  int occurrences(long long wallClock) const {
    int n = 0;
    for (size_t i = 0; i < offsets.size(); ++i) {
      const long long instant = wallClock - offsets[i];
      n += (i == 0 || changes[i - 1] <= instant) && (i == changes.size() || instant < changes[i]);
    }
    return n;
  }
};

// Bisects localtime_r's rule, probing a day apart: no two changes of the
// database cancel within one day.
Walk walkZone(long long from, long long to) {
  constexpr long long kStep = 86400;
  Walk walk{{}, {ruleAt(from).offset}};
  for (long long at = from; at < to;) {
    const long long next = std::min(at + kStep, to);
    if (ruleAt(at) == ruleAt(next)) {
      at = next;
      continue;
    }
    long long lo = at, hi = next;  // rule(lo) is the old one, rule(hi) is not
    while (hi - lo > 1) {
      const long long mid = lo + (hi - lo) / 2;
      (ruleAt(mid) == ruleAt(lo) ? lo : hi) = mid;
    }
    walk.changes.push_back(hi);
    walk.offsets.push_back(ruleAt(hi).offset);
    at = hi;
  }
  return walk;
}

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

std::string readFile(const std::string& path) {
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Names (relative to `dir`) of the TZif files below it, posix/ and right/ aside.
std::vector<std::string> zoneNames(const fs::path& dir) {
  std::vector<std::string> names;
  for (auto it = fs::recursive_directory_iterator(dir); it != fs::recursive_directory_iterator(); ++it) {
    const std::string name = fs::relative(it->path(), dir).string();
    if (it->is_directory()) {
      if (name == "posix" || name == "right") it.disable_recursion_pending();
      continue;
    }
    char magic[4] = {};
    std::ifstream(it->path(), std::ios::binary).read(magic, 4);
    if (std::string(magic, 4) == "TZif") names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

// This binary, run with TZ=zone and only the walk of its own zone; output to `log`.
pid_t spawnWalk(const std::string& zone, const std::string& log) {
  static const std::string self = fs::read_symlink("/proc/self/exe").string();
  std::vector<std::string> env{"TZ=" + zone};
  for (char** e = environ; *e != nullptr; ++e) {
    if (std::strncmp(*e, "TZ=", 3) != 0) env.emplace_back(*e);
  }
  std::vector<char*> envp, argv;
  for (std::string& e : env) envp.push_back(e.data());
  envp.push_back(nullptr);
  std::string filter = "--gtest_filter=ZoneWalk.*", brief = "--gtest_brief=1";
  argv = {const_cast<char*>(self.c_str()), filter.data(), brief.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  pid_t pid = -1;
  if (posix_spawn(&pid, self.c_str(), &actions, nullptr, argv.data(), envp.data()) != 0) pid = -1;
  posix_spawn_file_actions_destroy(&actions);
  return pid;
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
  const std::vector<std::string> zones = zoneNames(dir);
  ASSERT_FALSE(zones.empty()) << "no TZif file under " << dir;

  const size_t slots = std::max(1u, std::thread::hardware_concurrency());
  std::map<pid_t, std::pair<std::string, std::string>> running;  // pid -> zone, log
  std::vector<std::string> failed;
  long long walked = 0;
  size_t next = 0;
  while (next < zones.size() || !running.empty()) {
    if (next < zones.size() && running.size() < slots) {
      const std::string log = testing::TempDir() + "zone_walk_" + std::to_string(getpid()) +
                              "_" + std::to_string(next) + ".txt";
      const pid_t pid = spawnWalk(zones[next], log);
      ASSERT_GT(pid, 0) << "cannot run " << zones[next];
      running[pid] = {zones[next++], log};
      continue;
    }
    int status = 0;
    const pid_t pid = waitpid(-1, &status, 0);
    ASSERT_GT(pid, 0);
    const auto [zone, log] = running.at(pid);
    running.erase(pid);
    const std::string output = readFile(log);
    std::remove(log.c_str());
    long long count = 0;
    const size_t at = output.find("walked ");
    if (at != std::string::npos) count = std::stoll(output.substr(at + 7));
    walked += count;
    const bool passed = WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
                        output.find("[  PASSED  ] 1 test.") != std::string::npos;
    if (!passed) {
      failed.push_back(zone);
      if (failed.size() <= 5) ADD_FAILURE() << "TZ=" << zone << ":\n" << output.substr(0, 4000);
    }
  }
  std::printf("%zu zones under %s, %lld transitions\n", zones.size(), dir.c_str(), walked);
  EXPECT_TRUE(failed.empty()) << failed.size() << " zones disagree, first " << failed.front();
}
