// Zones loaded and read from several threads at once agree with the same
// work done on one thread, and run clean under ThreadSanitizer: cctz's cache
// of zones, the rule source it calls on a first load, and the zone objects,
// which threads share.
#include <thread>
#include <vector>

#include "tests/zones/ZoneTestValues.h"

using namespace zptest;

namespace {

constexpr int kThreads = 4;
constexpr int kPerThread = 300;

// Names and rules no other test loads, so that the threads load them first,
// at once; each thread takes them in its own order.
const char* const kZones[] = {
    "America/Denver", "Asia/Shanghai", "Europe/Paris", "Pacific/Auckland", "Africa/Cairo",
    "MST7MDT,M3.2.0,M11.1.0", "<+0845>-8:45", "WET0WEST,M3.5.0/1,M10.5.0", "<-03>3<-02>,M3.5.0/-2,M10.5.0/-1",
    "America/Denver",
};
constexpr int kZoneCount = static_cast<int>(std::size(kZones));

// Wall clock of an instant and the lookup of that reading, in one line.
std::string answer(const ZephalTimeZone& zone, int i) {
  const int64_t utc = 1000000000LL + i * 7777777LL;
  ZephalWallClock wall;
  if (!zone.wallClockAt(utc, i % 1000, wall)) return "refused";
  ZephalZoneLookup at;
  zone.lookup(wall.fields, at);
  return wallOf(wall) + " " + lookupOf(at);
}

}  // namespace

TEST(ZoneThreads, LoadAndConvertAtOnce) {
  std::vector<std::vector<std::string>> answers(kThreads);
  const ZephalTimeZone shared = loaded("Europe/Madrid");
  std::vector<std::thread> threads;
  for (int th = 0; th < kThreads; ++th) {
    threads.emplace_back([&, th] {
      ZephalTimeZone zones[kZoneCount];
      for (int k = 0; k < kZoneCount; ++k) {
        ZephalTextError error;
        const int z = (k + th * 3) % kZoneCount;
        if (!zones[z].load(kZones[z], error)) answers[th].push_back(std::string("refused ") + kZones[z]);
      }
      for (int i = 0; i < kPerThread; ++i) {
        answers[th].push_back(answer(zones[i % kZoneCount], i));
        answers[th].push_back(answer(shared, i));
      }
    });
  }
  for (std::thread& t : threads) t.join();

  std::vector<std::string> expected;
  for (int i = 0; i < kPerThread; ++i) {
    expected.push_back(answer(loaded(kZones[i % kZoneCount]), i));
    expected.push_back(answer(shared, i));
  }
  for (int th = 0; th < kThreads; ++th) EXPECT_EQ(answers[th], expected) << "thread " << th;
}
