// Legacy time formats, ours beside the bare arithmetic written out by hand:
//
//   BM_ToFileTime_*   / BM_FromFileTime_*   seconds <-> FILETIME halves
//   BM_ToTicks_*      / BM_FromTicks_*      seconds <-> .NET ticks
//   BM_ToDos_*        / BM_FromDos_*        record  <-> DOS words (+ weekday)
//   BM_DosToUnix_*                          DOS words -> 32-bit seconds
//   BM_ToOle_*        / BM_FromOle_*        record  <-> OLE Automation date
//
// Each iteration converts the next of 1024 varied inputs. A baseline does
// only the arithmetic, inline; ours pays the call into the library and the
// record's bookkeeping. BM_DosToUnix_Timegm is the C library's way to the
// same count. BM_ToDosLocal_Ours has no baseline of its own: with the local
// flag the record is converted through the C library first; compare it with
// BM_ToDos_Baseline.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "bench/BenchArithmetic.h"
#include "services/internal/CivilDays.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

namespace {

using namespace zpbench;

constexpr size_t kInputs = 1024;  // a power of two: the index wraps by mask
constexpr int64_t kPerSecond = 10000000;
constexpr uint64_t kFileTimeEpoch = 116444736000000000ULL;  // 1601 to 1970 in 100 ns
constexpr uint64_t kTicksEpoch = 621355968000000000ULL;     // 0001 to 1970 in 100 ns
constexpr int64_t kOleEpochDays = -25569;                   // 1899-12-30 from 1970-01-01

// ---- Inputs -------------------------------------------------------------------

// Seconds from 1980 to 2037, so every format below can hold them.
std::vector<int64_t> makeSeconds() {
  std::vector<int64_t> out(kInputs);
  uint64_t state = 42;
  for (int64_t& s : out) s = 315532800 + static_cast<int64_t>(nextRandom(state) % 1830297600);
  return out;
}

const std::vector<int64_t>& seconds() {
  static const std::vector<int64_t> s = makeSeconds();
  return s;
}

// GMT records of those seconds; second 59 moved to 58 so that the DOS rows
// time the plain path (59 writes a carried copy instead).
std::vector<ZephalSysTime> makeRecords() {
  std::vector<ZephalSysTime> out(kInputs);
  for (size_t i = 0; i < kInputs; ++i) {
    out[i].fromUnixTime64(false, seconds()[i]);
    if (out[i].m_time.wSecond == 59) out[i].m_time.wSecond = 58;
  }
  return out;
}

const std::vector<ZephalSysTime>& records() {
  static const std::vector<ZephalSysTime> r = makeRecords();
  return r;
}

// ---- FILETIME and ticks -----------------------------------------------------------

void BM_ToFileTime_Ours(benchmark::State& state) {
  const std::vector<int64_t>& in = seconds();
  ZephalFileTime ft;
  _FILETIME raw;
  size_t i = 0;
  for (auto _ : state) {
    ft.m_unixTime = in[i++ & (kInputs - 1)];
    ft.toFILETIME(raw);
    benchmark::DoNotOptimize(raw);
  }
}

void BM_ToFileTime_Baseline(benchmark::State& state) {
  const std::vector<int64_t>& in = seconds();
  _FILETIME raw;
  size_t i = 0;
  for (auto _ : state) {
    const uint64_t c = static_cast<uint64_t>(in[i++ & (kInputs - 1)]) * kPerSecond + kFileTimeEpoch;
    raw.dwLowDateTime = static_cast<uint32_t>(c);
    raw.dwHighDateTime = c >> 32;
    benchmark::DoNotOptimize(raw);
  }
}

std::vector<_FILETIME> fileTimes() {
  std::vector<_FILETIME> out(kInputs);
  for (size_t i = 0; i < kInputs; ++i) {
    ZephalFileTime ft;
    ft.m_unixTime = seconds()[i];
    ft.toFILETIME(out[i]);
    out[i].dwLowDateTime += i * 777;  // sub-second parts
  }
  return out;
}

void BM_FromFileTime_Ours(benchmark::State& state) {
  const std::vector<_FILETIME> in = fileTimes();
  ZephalFileTime ft;
  size_t i = 0;
  for (auto _ : state) {
    ft.fromFILETIME(in[i++ & (kInputs - 1)]);
    benchmark::DoNotOptimize(ft.m_unixTime);
  }
}

void BM_FromFileTime_Baseline(benchmark::State& state) {
  const std::vector<_FILETIME> in = fileTimes();
  size_t i = 0;
  for (auto _ : state) {
    const _FILETIME& raw = in[i++ & (kInputs - 1)];
    const uint64_t c = (raw.dwHighDateTime & 0xFFFFFFFFULL) << 32 | (raw.dwLowDateTime & 0xFFFFFFFFULL);
    int64_t s = static_cast<int64_t>(c - kFileTimeEpoch) / kPerSecond;
    benchmark::DoNotOptimize(s);
  }
}

void BM_ToTicks_Ours(benchmark::State& state) {
  const std::vector<int64_t>& in = seconds();
  ZephalFileTime ft;
  size_t i = 0;
  for (auto _ : state) {
    ft.m_unixTime = in[i++ & (kInputs - 1)];
    benchmark::DoNotOptimize(ft.getDateTimeTicks());
  }
}

void BM_ToTicks_Baseline(benchmark::State& state) {
  const std::vector<int64_t>& in = seconds();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        static_cast<int64_t>(static_cast<uint64_t>(in[i++ & (kInputs - 1)]) * kPerSecond + kTicksEpoch));
  }
}

std::vector<long long> ticks() {
  std::vector<long long> out(kInputs);
  for (size_t i = 0; i < kInputs; ++i) {
    out[i] = static_cast<long long>(seconds()[i]) * kPerSecond + 621355968000000000LL + i * 7777;
  }
  return out;
}

void BM_FromTicks_Ours(benchmark::State& state) {
  const std::vector<long long> in = ticks();
  ZephalFileTime ft;
  size_t i = 0;
  for (auto _ : state) {
    ft.fromDateTimeTicks(in[i++ & (kInputs - 1)]);
    benchmark::DoNotOptimize(ft.m_unixTime);
  }
}

void BM_FromTicks_Baseline(benchmark::State& state) {
  const std::vector<long long> in = ticks();
  size_t i = 0;
  for (auto _ : state) {
    int64_t s = static_cast<int64_t>(static_cast<uint64_t>(in[i++ & (kInputs - 1)]) - kTicksEpoch) /
                kPerSecond;
    benchmark::DoNotOptimize(s);
  }
}

// ---- DOS date and time ---------------------------------------------------------------

void BM_ToDos_Ours(benchmark::State& state) {
  std::vector<ZephalSysTime> in = records();  // in range: the year clamp changes nothing
  unsigned short date, time;
  size_t i = 0;
  for (auto _ : state) {
    in[i++ & (kInputs - 1)].toDosDateTime(false, date, time, nullptr);
    benchmark::DoNotOptimize(date);
    benchmark::DoNotOptimize(time);
  }
}

void BM_ToDos_Baseline(benchmark::State& state) {
  const std::vector<ZephalSysTime>& in = records();
  size_t i = 0;
  for (auto _ : state) {
    const ZephalCalendarFields& f = in[i++ & (kInputs - 1)].m_time;
    const uint16_t y = f.wYear < 1980 ? 1980 : f.wYear > 2037 ? 2037 : f.wYear;
    unsigned short date = static_cast<unsigned short>(f.wDay | f.wMonth << 5 | (y - 1980) << 9);
    unsigned short time =
        static_cast<unsigned short>((f.wSecond + 1) / 2 | f.wMinute << 5 | f.wHour << 11);
    benchmark::DoNotOptimize(date);
    benchmark::DoNotOptimize(time);
  }
}

void BM_ToDosLocal_Ours(benchmark::State& state) {
  const std::vector<ZephalSysTime>& in = records();
  ZephalSysTime t;
  unsigned short date, time;
  size_t i = 0;
  for (auto _ : state) {
    t.copyFrom(in[i++ & (kInputs - 1)]);  // GMT, so the zone step runs every time
    t.toDosDateTime(true, date, time, nullptr);
    benchmark::DoNotOptimize(date);
    benchmark::DoNotOptimize(time);
  }
}

struct DosWords {
  std::vector<unsigned short> date, time;
};

DosWords dosWords() {
  DosWords w{std::vector<unsigned short>(kInputs), std::vector<unsigned short>(kInputs)};
  std::vector<ZephalSysTime> in = records();
  for (size_t i = 0; i < kInputs; ++i) in[i].toDosDateTime(false, w.date[i], w.time[i], nullptr);
  return w;
}

void BM_FromDos_Ours(benchmark::State& state) {
  const DosWords in = dosWords();
  ZephalSysTime t;
  size_t i = 0;
  for (auto _ : state) {
    const size_t k = i++ & (kInputs - 1);
    t.fromDosDateTime(in.date[k], in.time[k], nullptr);
    benchmark::DoNotOptimize(t.m_time);
  }
}

void BM_FromDos_Baseline(benchmark::State& state) {
  const DosWords in = dosWords();
  ZephalCalendarFields f{};
  size_t i = 0;
  for (auto _ : state) {
    const size_t k = i++ & (kInputs - 1);
    const unsigned date = in.date[k], time = in.time[k];
    f.wDay = date & 0x1F;
    f.wMonth = (date >> 5) & 0x0F;
    f.wYear = static_cast<uint16_t>(1980 + (date >> 9));
    const int64_t days = zpcivil::daysFromCivil(f.wYear, f.wMonth, f.wDay);
    f.wDayOfWeek = static_cast<uint16_t>(zpcivil::weekdayFromDays(days));
    f.wHour = static_cast<uint16_t>(time >> 11);
    f.wMinute = (time >> 5) & 0x3F;
    f.wSecond = static_cast<uint16_t>(2 * (time & 0x1F));
    benchmark::DoNotOptimize(f);
  }
}

void BM_DosToUnix_Ours(benchmark::State& state) {
  const DosWords in = dosWords();
  size_t i = 0;
  for (auto _ : state) {
    const size_t k = i++ & (kInputs - 1);
    benchmark::DoNotOptimize(ZephalFileTime::dosDateTimeToUnixTime32(in.date[k], in.time[k]));
  }
}

void BM_DosToUnix_Baseline(benchmark::State& state) {
  const DosWords in = dosWords();
  size_t i = 0;
  for (auto _ : state) {
    const size_t k = i++ & (kInputs - 1);
    const unsigned date = in.date[k], time = in.time[k];
    const int64_t days =
        zpcivil::daysFromCivil(1980 + (date >> 9), (date >> 5) & 0x0F, date & 0x1F);
    const int64_t s = days * 86400 + (time >> 11) * 3600 + ((time >> 5) & 0x3F) * 60 + 2 * (time & 0x1F);
    benchmark::DoNotOptimize(static_cast<uint32_t>(s));
  }
}

void BM_DosToUnix_Timegm(benchmark::State& state) {
  const DosWords in = dosWords();
  size_t i = 0;
  for (auto _ : state) {
    const size_t k = i++ & (kInputs - 1);
    const unsigned date = in.date[k], time = in.time[k];
    tm t{};
    t.tm_year = static_cast<int>(80 + (date >> 9));
    t.tm_mon = static_cast<int>((date >> 5) & 0x0F) - 1;
    t.tm_mday = static_cast<int>(date & 0x1F);
    t.tm_hour = static_cast<int>(time >> 11);
    t.tm_min = static_cast<int>((time >> 5) & 0x3F);
    t.tm_sec = static_cast<int>(2 * (time & 0x1F));
    benchmark::DoNotOptimize(static_cast<uint32_t>(timegm(&t)));
  }
}

// ---- OLE Automation dates --------------------------------------------------------------
// All inputs lie after 1899-12-30, where the date is simply days + fraction.

void BM_ToOle_Ours(benchmark::State& state) {
  std::vector<ZephalSysTime> in = records();  // GMT: toOleDate(false) converts nothing
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(in[i++ & (kInputs - 1)].toOleDate(false));
}

void BM_ToOle_Baseline(benchmark::State& state) {
  const std::vector<ZephalSysTime>& in = records();
  size_t i = 0;
  for (auto _ : state) {
    const ZephalCalendarFields& f = in[i++ & (kInputs - 1)].m_time;
    const int64_t days = zpcivil::daysFromCivil(f.wYear, f.wMonth, f.wDay) - kOleEpochDays;
    const int secs = f.wHour * 3600 + f.wMinute * 60 + f.wSecond;
    benchmark::DoNotOptimize(static_cast<double>(days) + secs / 86400.0);
  }
}

std::vector<double> oleDates() {
  std::vector<double> out(kInputs);
  std::vector<ZephalSysTime> in = records();
  for (size_t i = 0; i < kInputs; ++i) out[i] = in[i].toOleDate(false);
  return out;
}

void BM_FromOle_Ours(benchmark::State& state) {
  const std::vector<double> in = oleDates();
  ZephalSysTime t;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(t.fromOleDate(false, in[i++ & (kInputs - 1)]));
    benchmark::DoNotOptimize(t.m_time);
  }
}

void BM_FromOle_Baseline(benchmark::State& state) {
  const std::vector<double> in = oleDates();
  ZephalCalendarFields f{};
  size_t i = 0;
  for (auto _ : state) {
    const double date = in[i++ & (kInputs - 1)];
    const double whole = std::floor(date);
    const int64_t day = static_cast<int64_t>(whole);
    const int secs = static_cast<int>((date - whole) * 86400 + 0.5);  // [0, 86400]
    const int64_t days = day + kOleEpochDays + secs / 86400;
    const int s = secs % 86400;
    const zpcivil::CivilDate c = zpcivil::civilFromDays(days);
    f.wYear = static_cast<uint16_t>(c.year);
    f.wMonth = static_cast<uint16_t>(c.month);
    f.wDay = static_cast<uint16_t>(c.day);
    f.wDayOfWeek = static_cast<uint16_t>(zpcivil::weekdayFromDays(days));
    f.wHour = static_cast<uint16_t>(s / 3600);
    f.wMinute = static_cast<uint16_t>(s / 60 % 60);
    f.wSecond = static_cast<uint16_t>(s % 60);
    benchmark::DoNotOptimize(f);
  }
}

}  // namespace

BENCHMARK(BM_ToFileTime_Ours);
BENCHMARK(BM_ToFileTime_Baseline);
BENCHMARK(BM_FromFileTime_Ours);
BENCHMARK(BM_FromFileTime_Baseline);
BENCHMARK(BM_ToTicks_Ours);
BENCHMARK(BM_ToTicks_Baseline);
BENCHMARK(BM_FromTicks_Ours);
BENCHMARK(BM_FromTicks_Baseline);
BENCHMARK(BM_ToDos_Ours);
BENCHMARK(BM_ToDos_Baseline);
BENCHMARK(BM_ToDosLocal_Ours);
BENCHMARK(BM_FromDos_Ours);
BENCHMARK(BM_FromDos_Baseline);
BENCHMARK(BM_DosToUnix_Ours);
BENCHMARK(BM_DosToUnix_Baseline);
BENCHMARK(BM_DosToUnix_Timegm);
BENCHMARK(BM_ToOle_Ours);
BENCHMARK(BM_ToOle_Baseline);
BENCHMARK(BM_FromOle_Ours);
BENCHMARK(BM_FromOle_Baseline);
