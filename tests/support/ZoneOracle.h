// The C library's zone as an oracle: its changes found by bisection, and
// this test binary run again once per zone with TZ naming the zone, as many
// at once as there are cores (the C library reads TZ once per process, so a
// test of one zone against it needs a process of its own).
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zptest {

// localtime_r's offset and summer-time flag at an instant; a change of either
// is a transition.
struct Rule {
  long long offset;
  int isDst;
  bool operator==(const Rule& o) const { return offset == o.offset && isDst == o.isDst; }
};

Rule ruleAt(long long instant);

// The zone as stretches of one rule: stretch i begins at changes[i - 1]
// (the first at the start of time) and has offsets[i].
struct Walk {
  std::vector<long long> changes;
  std::vector<long long> offsets;

  // How many instants read `wallClock` (local seconds): at most one per stretch.
  int occurrences(long long wallClock) const;
};

// localtime_r's changes from `from` to `to`, by bisection between probes a
// day apart: no two changes of the database cancel within one day.
Walk walkZone(long long from, long long to);

// Names (relative to `dir`) of the TZif files below it, posix/ and right/
// left out, links and backward names kept; sorted.
std::vector<std::string> zoneFileNames(const std::string& dir);

struct ZoneChild {
  std::string zone;
  bool passed;         // exited 0 with its one test passed
  std::string output;  // standard output and error
};

// Runs this binary with --gtest_filter=`filter` once for each zone, TZ set
// to it, and hands each finished run to `done` on the calling thread. False
// when a child could not be started or waited for.
bool runPerZone(const std::vector<std::string>& zones, const std::string& filter,
                const std::function<void(const ZoneChild&)>& done);

// The count after "walked " in a child's output, 0 without one.
long long walkedCount(const std::string& output);

// runPerZone for walks: the zones whose child failed (the first five
// reported as test failures with their output) and the changes walked.
struct Walks {
  std::vector<std::string> failed;
  long long walked = 0;
};
Walks runWalks(const std::vector<std::string>& zones, const std::string& filter);

}  // namespace zptest
