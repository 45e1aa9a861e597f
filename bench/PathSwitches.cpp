// Each fast path of the module timed with the path on and off, in a build of
// the library that can switch them (services/internal/FastPaths.h), so that the gain
// each path's comment cites can be checked:
//
//   BM_Path<Name>_On    the operation the path serves, as shipped
//   BM_Path<Name>_Off   the same with that one path switched off
//
// Both rows of a pair run the same code but for the one switch, which costs
// a load and a well-predicted branch in either.
#include <benchmark/benchmark.h>

#include <iostream>  // stream objects exist before the registrations below run
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "bench/OursReaders.h"
#include "services/internal/FastPaths.h"
#include "services/zpDatePattern.h"

namespace zpbench {
namespace {

// Texts with a '/' that are no JSON dates: the loader looks for "Date(" in
// each, which is where the memchr search serves.
const TextSet kSlashedTexts = {
    {"07/Mar/2024:09:05:03 +0000", 1709802303},
    {"2024/03/07 09:05:03", 1709802303},
    {"Thu, 07 Mar 2024 09:05:03 +0000 (GMT/UTC, via a relay)", 1709802303},
    {"Thu, 07 Mar 2024 09:05:03 GMT (Date in Mar/Apr)", 1709802303},
};

// HTTP's dates, whole texts in GMT, through the loader as a batch reads them.
const TextSet kHttpTexts = {
    {"Thu, 07 Mar 2024 09:05:03 GMT", 1709802303},
    {"Tue, 15 Nov 1994 08:12:31 GMT", 784887151},
    {"Sun, 06 Nov 1994 08:49:37 GMT", 784111777},
    {"Mon, 01 Jan 2024 00:00:00 GMT", 1704067200},
};

// RFC 3339 without a fraction, read by the pattern reader with its layout.
const TextSet kPatternDigitTexts = {
    {"2024-03-07T10:05:03+0100", 1709802303},
    {"1997-11-21T09:55:06-06:00", 880127706},
    {"2030-09-13T17:45:10+0530", 1915532110},
    {"2000-01-01T00:00:00Z", 946684800},
};

class OursPatternDigitReader {
 public:
  explicit OursPatternDigitReader(const TextSet& set) : m_set(set) {}
  bool read(std::size_t i, long long& s) {
    if (!zpParseDate(m_set[i].text, "%Y-%m-%dT%H:%M:%S%z", m_value, m_error)) return false;
    s = unixSecondsOf(m_value.m_time);
    return true;
  }

 private:
  const TextSet& m_set;
  ZephalSysTime m_value;
  ZephalTextError m_error;
};

// Writers of the instants: the ISO 8601 timestamp and the log record.
void writeIso(benchmark::State& state) {
  std::vector<ZephalSysTime> values(kWriteInstants.size());
  for (std::size_t i = 0; i < values.size(); ++i) values[i].fromUnixTime64(false, kWriteInstants[i]);
  StringBuffer out;
  for (auto _ : state) {
    for (const ZephalSysTime& v : values) {
      out.clear();
      v.getIso8601Timestamp(out);
      benchmark::DoNotOptimize(out.getString());
    }
  }
  reportPerText(state, values.size());
}

void writeLog(benchmark::State& state) {
  std::vector<ZephalSysTime> values(kWriteInstants.size());
  for (std::size_t i = 0; i < values.size(); ++i) values[i].fromUnixTime64(false, kWriteInstants[i]);
  LogNull log;
  for (auto _ : state) {
    for (const ZephalSysTime& v : values) v.logSysTime("t", log);
  }
  reportPerText(state, values.size());
}

// Runs `body` with `path` switched off (when `off`), and back on after.
template <void (*Body)(benchmark::State&)>
void switched(benchmark::State& state, zp_fast::Path path, bool off) {
  zp_fast::g_off = off ? 1u << path : 0u;
  Body(state);
  zp_fast::g_off = 0;
}

template <class Reader>
void readSwitched(benchmark::State& state, const TextSet* set, zp_fast::Path path, bool off) {
  zp_fast::g_off = off ? 1u << path : 0u;
  timeReader<Reader>(state, set, {});
  zp_fast::g_off = 0;
}

struct ReadPath {
  const char* name;
  zp_fast::Path path;
  const TextSet* texts;
  bool atomReader;  // AtomDateToSysTime rather than loadAnyFormat / parseRFC822Date
  bool loader;
};

const bool kRegistered = [] {
  const ReadPath reads[] = {
      {"FixedRfc1123", zp_fast::kFixedRfc1123, &kRfc1123Texts, false, false},
      {"HttpDate", zp_fast::kHttpDate, &kHttpTexts, false, true},
      {"FixedIso", zp_fast::kFixedIso, &kAtomTexts, true, false},
      {"MemchrSearch", zp_fast::kMemchrSearch, &kSlashedTexts, false, true},
      {"JsonShape", zp_fast::kJsonShape, &kLoadJsonTexts, false, true},
      {"Rfc3339Shape", zp_fast::kRfc3339Shape, &kLoadAtomTexts, false, true},
      {"DecimalShape", zp_fast::kDecimalShape, &kLoadUnixTexts, false, true},
      {"WeekdayRule", zp_fast::kWeekdayRule, &kLoadGeneralizedTexts, false, true},
  };
  for (const bool off : {false, true}) {
    benchmark::RegisterBenchmark(off ? "BM_PathPatternDigits_Off" : "BM_PathPatternDigits_On",
                                 readSwitched<OursPatternDigitReader>, &kPatternDigitTexts,
                                 zp_fast::kPatternDigits, off);
  }
  for (const ReadPath& r : reads) {
    for (const bool off : {false, true}) {
      const std::string name = std::string("BM_Path") + r.name + (off ? "_Off" : "_On");
      auto* run = r.loader ? readSwitched<OursLoadReader<false>>
                  : r.atomReader ? readSwitched<OursAtomReader>
                                 : readSwitched<OursRfc822Reader>;
      benchmark::RegisterBenchmark(name.c_str(), run, r.texts, r.path, off);
    }
  }
  for (const bool off : {false, true}) {
    const char* suffix = off ? "_Off" : "_On";
    benchmark::RegisterBenchmark((std::string("BM_PathPutDigits") + suffix).c_str(),
                                 switched<writeIso>, zp_fast::kPutDigits, off);
    benchmark::RegisterBenchmark((std::string("BM_PathPaddedPrint") + suffix).c_str(),
                                 switched<writeLog>, zp_fast::kPaddedPrint, off);
  }
  return true;
}();

}  // namespace
}  // namespace zpbench
