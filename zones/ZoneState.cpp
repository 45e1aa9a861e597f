// Building a zone's state: cctz's changes from 1900 (a rule's from 1971) to
// 2100 as stretches of one offset, indexed by bucket; and the cache that
// keeps each state for the life of the process.
#include "zones/internal/ZoneState.h"

#include <map>
#include <memory>
#include <mutex>

#include "zones/internal/ZoneRule.h"

namespace {

constexpr int64_t kTableFirst = -2208988800;  // 1900-01-01 00:00:00 GMT
constexpr int64_t kTableLast = 4102444800;    // 2100-01-01 00:00:00 GMT

cctz::time_point<cctz::seconds> pointAt(int64_t t) { return cctz::time_point<cctz::seconds>(cctz::seconds(t)); }

int64_t secondsOf(const cctz::time_point<cctz::seconds>& t) { return t.time_since_epoch().count(); }

zpzone::Stretch stretchAt(const cctz::time_zone& zone, int64_t t) {
  const cctz::time_zone::absolute_lookup at = zone.lookup(pointAt(t));
  return {t, at.offset, at.is_dst, at.abbr};
}

// Each change of offset, summer time or abbreviation in [first, last), as
// cctz's next_transition reports them.
std::vector<zpzone::Stretch> stretchesOf(const cctz::time_zone& zone, int64_t first, int64_t last) {
  std::vector<zpzone::Stretch> out{stretchAt(zone, first)};
  cctz::time_zone::civil_transition change;
  for (auto t = pointAt(first); zone.next_transition(t, &change);) {
    t = zone.lookup(change.to).trans;
    if (secondsOf(t) >= last) break;
    out.push_back(stretchAt(zone, secondsOf(t)));
  }
  return out;
}

std::unique_ptr<zpzone::ZoneState> build(const cctz::time_zone& zone, bool isRule) {
  auto state = std::make_unique<zpzone::ZoneState>();
  state->zone = zone;
  state->isRule = isRule;
  state->tableFirst = isRule ? zpzone::kFirstPlainInstant : kTableFirst;
  state->stretches = stretchesOf(zone, state->tableFirst, kTableLast);
  if (state->stretches.size() > UINT16_MAX) return state;  // no table: cctz answers all
  state->tableLast = kTableLast;
  const size_t buckets = static_cast<size_t>((kTableLast - state->tableFirst - 1) >> zpzone::kBucketShift) + 1;
  state->bucketFirst.resize(buckets);
  size_t i = 0;
  for (size_t b = 0; b < buckets; ++b) {
    const int64_t bucketStart = state->tableFirst + (static_cast<int64_t>(b) << zpzone::kBucketShift);
    while (i + 1 < state->stretches.size() && state->stretches[i + 1].start <= bucketStart) ++i;
    state->bucketFirst[b] = static_cast<uint16_t>(i);
  }
  return state;
}

}  // namespace

zpzone::Stretch zpzone::ZoneState::atFromCctz(int64_t t) const { return stretchAt(zone, t); }

const zpzone::ZoneState* zpzone::stateOf(const std::string& key, const cctz::time_zone& zone, bool isRule) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<ZoneState>>* states = new std::map<std::string, std::unique_ptr<ZoneState>>;
  const std::lock_guard<std::mutex> lock(mutex);
  std::unique_ptr<ZoneState>& state = (*states)[key];
  if (!state) state = build(zone, isRule);
  return state.get();
}

const zpzone::ZoneState* zpzone::utcState() {
  static const ZoneState* const utc = stateOf("UTC", cctz::utc_time_zone(), false);
  return utc;
}
