// What a loaded zone holds (internal header): cctz's zone, and a table of
// its offsets from 1900 to 2100 that finds the one in force at an instant
// in a load and a compare or two, where cctz searches all its changes (some
// 1,000 with the 400 years it adds to a zone's rule): the wall clock of an
// instant takes 10.5 ns instead of 29 ns (BM_ZoneWallClockNewYork_Ours with
// the table and with cctz's lookup in its place; cctz's convert alone: 23 ns).
//
// States are built once per zone and kept for the life of the process, as
// cctz keeps its zones: a ZephalTimeZone is a pointer to one, and copies
// share it. Nothing in a state changes after it is built.
#pragma once

#include <cctz/time_zone.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zpzone {

// An offset, its summer-time flag and abbreviation, in force from `start`.
struct Stretch {
  int64_t start;  // Unix seconds
  int32_t offset;  // seconds east of GMT
  bool isDst;
  const char* abbreviation;  // cctz's, kept as long as the zone
};

struct ZoneState {
  cctz::time_zone zone;
  bool isRule = false;  // a TZ rule's zone: instants before 1971 move on by cycles
  int64_t tableFirst = 0;  // the instants the table covers, [tableFirst, tableLast)
  int64_t tableLast = 0;
  std::vector<Stretch> stretches;  // ascending; the first starts at tableFirst
  std::vector<uint16_t> bucketFirst;  // per bucket from tableFirst: the stretch in force at its start

  // The stretch in force at `t`.
  Stretch at(int64_t t) const;
  Stretch atFromCctz(int64_t t) const;  // outside the table
};

// Buckets of 2^22 s (48.5 days): a zone changes its offset at most a few
// times in one, so a short scan from the bucket's first stretch finds `t`'s.
constexpr int kBucketShift = 22;

inline Stretch ZoneState::at(int64_t t) const {
  if (t < tableFirst || t >= tableLast) return atFromCctz(t);
  size_t i = bucketFirst[static_cast<uint64_t>(t - tableFirst) >> kBucketShift];
  while (i + 1 < stretches.size() && stretches[i + 1].start <= t) ++i;
  return stretches[i];
}

// The state of the zone cctz loaded under `key`, built on first use.
const ZoneState* stateOf(const std::string& key, const cctz::time_zone& zone, bool isRule);

// UTC's, for a zone not yet loaded.
const ZoneState* utcState();

}  // namespace zpzone
