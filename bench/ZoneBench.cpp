// Named zones (zephal::zones) against cctz itself and the C library, and the
// std::chrono conversions against the bare arithmetic:
//
//   BM_ZoneWallClock<Zone>_*   instant -> wall clock in New York or Berlin:
//                              ours (fields, weekday, offset, abbreviation),
//                              cctz's convert (the fields alone), localtime_r
//                              with TZ set to the same zone
//   BM_ZoneLookup<Zone>_*      wall clock -> instant: ours, cctz's lookup,
//                              mktime with TZ set
//   BM_ChronoTo_* / BM_ChronoFrom_*   ZephalSysTime <-> system_clock::time_point,
//                              ours against days_from_civil written inline
//
// Each iteration takes the next of 1024 instants from 1970 to 2037. The
// zone rows exist only when zephal::zones is built.
#include <benchmark/benchmark.h>
#include <time.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/BenchArithmetic.h"
#include "services/internal/CivilDays.h"
#include "time/ZephalChrono.h"
#include "time/ZephalSysTime.h"

#if ZP_BENCH_ZONES
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>

#include "zones/ZephalTimeZone.h"
#endif

namespace {

using namespace zpbench;

constexpr size_t kInputs = 1024;  // a power of two: the index wraps by mask

// Seconds from 1970 to 2037: decades of summer-time rules.
const std::vector<int64_t>& instants() {
  static const std::vector<int64_t> out = [] {
    std::vector<int64_t> v(kInputs);
    uint64_t state = 7;
    for (int64_t& s : v) s = static_cast<int64_t>(nextRandom(state) % 2145916800);
    return v;
  }();
  return out;
}

// GMT records of those instants, with milliseconds.
const std::vector<ZephalSysTime>& records() {
  static const std::vector<ZephalSysTime> out = [] {
    std::vector<ZephalSysTime> v(kInputs);
    for (size_t i = 0; i < kInputs; ++i) {
      v[i].fromUnixTime64(false, instants()[i]);
      v[i].m_time.wMilliseconds = static_cast<uint16_t>(i % 1000);
    }
    return v;
  }();
  return out;
}

// ---- std::chrono --------------------------------------------------------------------

void BM_ChronoTo_Ours(benchmark::State& state) {
  const std::vector<ZephalSysTime>& in = records();
  std::chrono::system_clock::time_point tp;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zpToTimePoint(in[i++ & (kInputs - 1)], tp));
    benchmark::DoNotOptimize(tp);
  }
}

void BM_ChronoTo_Baseline(benchmark::State& state) {
  const std::vector<ZephalSysTime>& in = records();
  size_t i = 0;
  for (auto _ : state) {
    const ZephalCalendarFields& f = in[i++ & (kInputs - 1)].m_time;
    const int64_t s = zpcivil::daysFromCivil(f.wYear, f.wMonth, f.wDay) * 86400 + f.wHour * 3600 + f.wMinute * 60 + f.wSecond;
    const std::chrono::system_clock::time_point tp(std::chrono::milliseconds(s * 1000 + f.wMilliseconds));
    benchmark::DoNotOptimize(tp);
  }
}

std::vector<std::chrono::system_clock::time_point> points() {
  std::vector<std::chrono::system_clock::time_point> out(kInputs);
  for (size_t i = 0; i < kInputs; ++i) {
    out[i] = std::chrono::system_clock::time_point(std::chrono::seconds(instants()[i])) +
             std::chrono::nanoseconds(i * 987654);
  }
  return out;
}

void BM_ChronoFrom_Ours(benchmark::State& state) {
  const std::vector<std::chrono::system_clock::time_point> in = points();
  ZephalSysTime t;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zpFromTimePoint(in[i++ & (kInputs - 1)], t));
    benchmark::DoNotOptimize(t.m_time);
  }
}

void BM_ChronoFrom_Baseline(benchmark::State& state) {
  const std::vector<std::chrono::system_clock::time_point> in = points();
  ZephalSysTime t;
  size_t i = 0;
  for (auto _ : state) {
    const int64_t ms = std::chrono::floor<std::chrono::milliseconds>(in[i++ & (kInputs - 1)]).time_since_epoch().count();
    const int64_t s = ms >= 0 ? ms / 1000 : (ms - 999) / 1000;
    const int64_t days = s >= 0 ? s / 86400 : (s - 86399) / 86400;
    const unsigned sod = static_cast<unsigned>(s - days * 86400);
    const zpcivil::CivilDate c = zpcivil::civilFromDays(days);
    t.m_time = ZephalCalendarFields{uint16_t(c.year), uint16_t(c.month), uint16_t(zpcivil::weekdayFromDays(days)), uint16_t(c.day),
                                    uint16_t(sod / 3600), uint16_t(sod / 60 % 60), uint16_t(sod % 60),
                                    uint16_t(ms - s * 1000)};
    benchmark::DoNotOptimize(t.m_time);
  }
}

BENCHMARK(BM_ChronoTo_Ours);
BENCHMARK(BM_ChronoTo_Baseline);
BENCHMARK(BM_ChronoFrom_Ours);
BENCHMARK(BM_ChronoFrom_Baseline);

#if ZP_BENCH_ZONES

// ---- Named zones ----------------------------------------------------------------------

// TZ set to `zone` while a C library row runs, then as it was.
class ScopedTz {
 public:
  explicit ScopedTz(const char* zone) {
    const char* old = std::getenv("TZ");
    m_had = old != nullptr;
    if (m_had) m_old = old;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ScopedTz() {
    if (m_had) {
      setenv("TZ", m_old.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

 private:
  bool m_had = false;
  std::string m_old;
};

ZephalTimeZone ourZone(const char* name) {
  ZephalTimeZone zone;
  ZephalTextError error;
  if (!zone.load(name, error)) std::abort();
  return zone;
}

cctz::time_zone cctzZone(const char* name) {
  cctz::time_zone zone;
  if (!cctz::load_time_zone(name, &zone)) std::abort();
  return zone;
}

void wallClockOurs(benchmark::State& state, const char* name) {
  const ZephalTimeZone zone = ourZone(name);
  const std::vector<int64_t>& in = instants();
  ZephalWallClock wall;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zone.wallClockAt(in[i++ & (kInputs - 1)], 0, wall));
    benchmark::DoNotOptimize(wall);
  }
}

void wallClockCctz(benchmark::State& state, const char* name) {
  const cctz::time_zone zone = cctzZone(name);
  const std::vector<int64_t>& in = instants();
  size_t i = 0;
  for (auto _ : state) {
    const cctz::time_point<cctz::seconds> tp{cctz::seconds{in[i++ & (kInputs - 1)]}};
    benchmark::DoNotOptimize(cctz::convert(tp, zone));
  }
}

void wallClockLocaltime(benchmark::State& state, const char* name) {
  const ScopedTz tz(name);
  const std::vector<int64_t>& in = instants();
  tm local;
  size_t i = 0;
  for (auto _ : state) {
    const time_t t = in[i++ & (kInputs - 1)];
    benchmark::DoNotOptimize(localtime_r(&t, &local));
    benchmark::DoNotOptimize(local);
  }
}

// Readings of the instants in the zone, for the lookups.
std::vector<ZephalCalendarFields> readings(const char* name) {
  const ZephalTimeZone zone = ourZone(name);
  std::vector<ZephalCalendarFields> out(kInputs);
  for (size_t i = 0; i < kInputs; ++i) {
    ZephalWallClock wall;
    zone.wallClockAt(instants()[i], 0, wall);
    out[i] = wall.fields;
  }
  return out;
}

void lookupOurs(benchmark::State& state, const char* name) {
  const ZephalTimeZone zone = ourZone(name);
  const std::vector<ZephalCalendarFields> in = readings(name);
  ZephalZoneLookup at;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(zone.lookup(in[i++ & (kInputs - 1)], at));
    benchmark::DoNotOptimize(at);
  }
}

void lookupCctz(benchmark::State& state, const char* name) {
  const cctz::time_zone zone = cctzZone(name);
  const std::vector<ZephalCalendarFields> in = readings(name);
  size_t i = 0;
  for (auto _ : state) {
    const ZephalCalendarFields& f = in[i++ & (kInputs - 1)];
    benchmark::DoNotOptimize(zone.lookup(cctz::civil_second(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond)));
  }
}

void lookupMktime(benchmark::State& state, const char* name) {
  const std::vector<ZephalCalendarFields> in = readings(name);
  const ScopedTz tz(name);
  size_t i = 0;
  for (auto _ : state) {
    const ZephalCalendarFields& f = in[i++ & (kInputs - 1)];
    tm t{};
    t.tm_year = f.wYear - 1900, t.tm_mon = f.wMonth - 1, t.tm_mday = f.wDay;
    t.tm_hour = f.wHour, t.tm_min = f.wMinute, t.tm_sec = f.wSecond, t.tm_isdst = -1;
    benchmark::DoNotOptimize(mktime(&t));
  }
}

BENCHMARK_CAPTURE(wallClockOurs, NewYork, "America/New_York")->Name("BM_ZoneWallClockNewYork_Ours");
BENCHMARK_CAPTURE(wallClockCctz, NewYork, "America/New_York")->Name("BM_ZoneWallClockNewYork_Cctz");
BENCHMARK_CAPTURE(wallClockLocaltime, NewYork, "America/New_York")->Name("BM_ZoneWallClockNewYork_Localtime");
BENCHMARK_CAPTURE(wallClockOurs, Berlin, "Europe/Berlin")->Name("BM_ZoneWallClockBerlin_Ours");
BENCHMARK_CAPTURE(wallClockCctz, Berlin, "Europe/Berlin")->Name("BM_ZoneWallClockBerlin_Cctz");
BENCHMARK_CAPTURE(wallClockLocaltime, Berlin, "Europe/Berlin")->Name("BM_ZoneWallClockBerlin_Localtime");
BENCHMARK_CAPTURE(lookupOurs, NewYork, "America/New_York")->Name("BM_ZoneLookupNewYork_Ours");
BENCHMARK_CAPTURE(lookupCctz, NewYork, "America/New_York")->Name("BM_ZoneLookupNewYork_Cctz");
BENCHMARK_CAPTURE(lookupMktime, NewYork, "America/New_York")->Name("BM_ZoneLookupNewYork_Mktime");
BENCHMARK_CAPTURE(lookupOurs, Berlin, "Europe/Berlin")->Name("BM_ZoneLookupBerlin_Ours");
BENCHMARK_CAPTURE(lookupCctz, Berlin, "Europe/Berlin")->Name("BM_ZoneLookupBerlin_Cctz");
BENCHMARK_CAPTURE(lookupMktime, Berlin, "Europe/Berlin")->Name("BM_ZoneLookupBerlin_Mktime");

#endif  // ZP_BENCH_ZONES

}  // namespace
