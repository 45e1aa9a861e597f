// Pattern layouts, ours beside the peers on the same layouts and texts:
//
//   BM_PatternRead_*      eight texts, each with its own layout: zpParseDate,
//                         strptime + timegm, absl::ParseTime
//   BM_PatternReadIso_*   one layout, %Y-%m-%dT%H:%M:%S%z, four texts
//   BM_PatternWrite_*     five layouts on eight GMT instants: zpWallClockOf +
//                         zpFormatDate, strftime from a tm, absl::FormatTime
//
// Each layout is spelled as its library spells it (abseil's %Y takes every
// digit of a run, so "%E4Y" where digits follow). Every reader's seconds and
// every writer's text are checked before timing. Compare `per_text`.
#include <time.h>

#include <cstddef>
#include <iostream>  // stream objects exist before the registrations below run
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "services/StringBuffer.h"
#include "services/zpDatePattern.h"
#include "time/ZephalSysTime.h"

#if ZP_BENCH_ABSL
#include <absl/time/time.h>
#endif

namespace zpbench {
namespace {

struct LayoutCase {
  const char* layout;
  const char* abslLayout;
  TextCase text;
};

const std::vector<LayoutCase> kMixed = {
    {"%Y-%m-%dT%H:%M:%S%z", "%Y-%m-%dT%H:%M:%S%z", {"2024-03-07T10:05:03+0100", 1709802303}},
    {"%Y-%m-%d %H:%M:%S", "%Y-%m-%d %H:%M:%S", {"2024-03-07 09:05:03", 1709802303}},
    {"%a, %d %b %Y %H:%M:%S %z",
     "%a, %d %b %Y %H:%M:%S %z",
     {"Fri, 21 Nov 1997 09:55:06 -0600", 880127706}},
    {"%d/%m/%Y %H:%M", "%d/%m/%Y %H:%M", {"07/03/2024 09:05", 1709802300}},
    {"%Y%m%d%H%M%S", "%E4Y%m%d%H%M%S", {"20240307090503", 1709802303}},
    {"%b %d %Y %I:%M:%S %p", "%b %d %Y %I:%M:%S %p", {"Mar 07 2024 09:05:03 PM", 1709845503}},
    {"%A %B %d %Y %H:%M", "%A %B %d %Y %H:%M", {"Thursday March 07 2024 09:05", 1709802300}},
    {"%Y-%m-%d", "%Y-%m-%d", {"2024-02-29", 1709164800}},
};

const std::vector<LayoutCase> kIso = {
    {"%Y-%m-%dT%H:%M:%S%z", "%Y-%m-%dT%H:%M:%S%z", {"2024-03-07T10:05:03+0100", 1709802303}},
    {"%Y-%m-%dT%H:%M:%S%z", "%Y-%m-%dT%H:%M:%S%z", {"1997-11-21T09:55:06-0600", 880127706}},
    {"%Y-%m-%dT%H:%M:%S%z", "%Y-%m-%dT%H:%M:%S%z", {"2030-09-13T17:45:10+0530", 1915532110}},
    {"%Y-%m-%dT%H:%M:%S%z", "%Y-%m-%dT%H:%M:%S%z", {"2000-01-01T00:00:00Z", 946684800}},
};

class OursPatternReader {
 public:
  explicit OursPatternReader(const std::vector<LayoutCase>& cases) : m_cases(cases) {}
  bool read(std::size_t i, long long& s) {
    const LayoutCase& c = m_cases[i];
    if (!zpParseDate(c.text.text, c.layout, m_value, m_error)) return false;
    s = unixSecondsOf(m_value.m_time);
    return true;
  }

 private:
  const std::vector<LayoutCase>& m_cases;
  ZephalSysTime m_value;
  ZephalTextError m_error;
};

class StrptimePatternReader {
 public:
  explicit StrptimePatternReader(const std::vector<LayoutCase>& cases) : m_cases(cases) {}
  bool read(std::size_t i, long long& s) {
    tm t{};
    const char* end = strptime(m_cases[i].text.text, m_cases[i].layout, &t);
    if (end == nullptr || *end != '\0') return false;
    const long offset = t.tm_gmtoff;  // timegm clears it
    s = static_cast<long long>(timegm(&t)) - offset;
    return true;
  }

 private:
  const std::vector<LayoutCase>& m_cases;
};

#if ZP_BENCH_ABSL
class AbslPatternReader {
 public:
  explicit AbslPatternReader(const std::vector<LayoutCase>& cases) : m_cases(cases) {}
  bool read(std::size_t i, long long& s) {
    absl::Time t;
    if (!absl::ParseTime(m_cases[i].abslLayout, m_cases[i].text.text, &t, &m_error)) return false;
    s = absl::ToUnixSeconds(t);
    return true;
  }

 private:
  const std::vector<LayoutCase>& m_cases;
  std::string m_error;
};
#endif

template <class Reader>
void timePatternReader(benchmark::State& state, const std::vector<LayoutCase>* cases) {
  Reader reader(*cases);
  for (std::size_t i = 0; i < cases->size(); ++i) {
    long long s = 0;
    if (!reader.read(i, s) || s != (*cases)[i].text.unixSeconds) {
      state.SkipWithError(("misreads " + std::string((*cases)[i].text.text)).c_str());
      return;
    }
  }
  for (auto _ : state) {
    for (std::size_t i = 0; i < cases->size(); ++i) {
      long long s = 0;
      benchmark::DoNotOptimize(reader.read(i, s));
      benchmark::DoNotOptimize(s);
    }
  }
  reportPerText(state, cases->size());
}

// ---- Writers ------------------------------------------------------------------------

const char* const kWriteLayouts[] = {"%Y-%m-%dT%H:%M:%S%z", "%a, %d %b %Y %H:%M:%S GMT",
                                     "%A %B %e %Y %I:%M:%S %p", "%F %T", "%d/%m/%y %H:%M"};
constexpr std::size_t kLayoutCount = sizeof kWriteLayouts / sizeof *kWriteLayouts;

// Text i is instant i / kLayoutCount in layout i % kLayoutCount.
std::size_t writeCount() { return kWriteInstants.size() * kLayoutCount; }

class OursPatternWriter {
 public:
  OursPatternWriter() {
    for (long long s : kWriteInstants) {
      m_values.emplace_back();
      m_values.back().fromUnixTime64(false, s);
    }
  }
  void write(std::size_t i) {
    ZephalWallClock clock;
    zpWallClockOf(m_values[i / kLayoutCount], clock);
    m_out.clear();
    zpFormatDate(kWriteLayouts[i % kLayoutCount], clock, m_out);
  }
  std::string text() const { return m_out.getString(); }

 private:
  std::vector<ZephalSysTime> m_values;
  StringBuffer m_out;
};

class StrftimePatternWriter {
 public:
  StrftimePatternWriter() {
    for (long long s : kWriteInstants) {
      const time_t t = static_cast<time_t>(s);
      m_tms.emplace_back();
      gmtime_r(&t, &m_tms.back());
    }
  }
  void write(std::size_t i) {
    m_size =
        strftime(m_text, sizeof m_text, kWriteLayouts[i % kLayoutCount], &m_tms[i / kLayoutCount]);
  }
  std::string text() const { return std::string(m_text, m_size); }

 private:
  std::vector<tm> m_tms;
  char m_text[96];
  std::size_t m_size = 0;
};

#if ZP_BENCH_ABSL
// FormatTime returns a new string each call: abseil writes into no caller's buffer.
class AbslPatternWriter {
 public:
  AbslPatternWriter() : m_zone(absl::UTCTimeZone()) {
    for (long long s : kWriteInstants) m_times.push_back(absl::FromUnixSeconds(s));
  }
  void write(std::size_t i) {
    m_out = absl::FormatTime(kWriteLayouts[i % kLayoutCount], m_times[i / kLayoutCount], m_zone);
  }
  std::string text() const { return m_out; }

 private:
  std::vector<absl::Time> m_times;
  absl::TimeZone m_zone;
  std::string m_out;
};
#endif

template <class Writer>
void timePatternWriter(benchmark::State& state) {
  Writer writer;
  StrftimePatternWriter reference;
  for (std::size_t i = 0; i < writeCount(); ++i) {
    writer.write(i);
    reference.write(i);
    if (writer.text() != reference.text()) {
      state.SkipWithError(("wrote " + writer.text() + " for " + reference.text()).c_str());
      return;
    }
  }
  for (auto _ : state) {
    for (std::size_t i = 0; i < writeCount(); ++i) {
      writer.write(i);
      benchmark::ClobberMemory();
    }
  }
  reportPerText(state, writeCount());
}

template <class Reader>
void registerPatternReader(const char* name, const std::vector<LayoutCase>& cases) {
  benchmark::RegisterBenchmark(name, timePatternReader<Reader>, &cases);
}

const bool kRegistered = [] {
  registerPatternReader<OursPatternReader>("BM_PatternRead_Ours", kMixed);
  registerPatternReader<StrptimePatternReader>("BM_PatternRead_Strptime", kMixed);
  registerPatternReader<OursPatternReader>("BM_PatternReadIso_Ours", kIso);
  registerPatternReader<StrptimePatternReader>("BM_PatternReadIso_Strptime", kIso);
  benchmark::RegisterBenchmark("BM_PatternWrite_Ours", timePatternWriter<OursPatternWriter>);
  benchmark::RegisterBenchmark("BM_PatternWrite_Strftime",
                               timePatternWriter<StrftimePatternWriter>);
#if ZP_BENCH_ABSL
  registerPatternReader<AbslPatternReader>("BM_PatternRead_Absl", kMixed);
  registerPatternReader<AbslPatternReader>("BM_PatternReadIso_Absl", kIso);
  benchmark::RegisterBenchmark("BM_PatternWrite_Absl", timePatternWriter<AbslPatternWriter>);
#endif
  return true;
}();

}  // namespace
}  // namespace zpbench
