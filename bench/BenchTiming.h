// How the benchmarks time readers and report their rows.
//
// A row times one pass over the texts its reader gets right and reports the
// time per text in the `per_text` counter; a reader that gets some texts wrong
// is timed on the rest, and its label names the texts left out (1-based), so
// no row ever times a failure path.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "services/internal/CivilDays.h"
#include "time/ZephalSysTime.h"

namespace zpbench {

// The Unix seconds of a GMT reading by calendar arithmetic, the same work the
// fixed-format floor does; toUnixTime_gmt64 would add a timegm call.
inline long long unixSecondsOf(const ZephalCalendarFields& t) {
  return zpcivil::daysFromCivil(t.wYear, t.wMonth, t.wDay) * 86400 + t.wHour * 3600LL +
         t.wMinute * 60LL + t.wSecond;
}

// Readers are classes built from the text set (any per-text preparation, such
// as choosing a format, happens there, untimed) with
//   bool read(std::size_t i, long long& unixSeconds);

// Indices of the texts `reader` gets right.
template <class Reader>
std::vector<std::size_t> textsReadRight(Reader& reader, const TextSet& set) {
  std::vector<std::size_t> right;
  for (std::size_t i = 0; i < set.size(); ++i) {
    long long s = 0;
    if (reader.read(i, s) && s == set[i].unixSeconds) right.push_back(i);
  }
  return right;
}

template <class Reader>
std::vector<std::size_t> textsReadRight(const TextSet& set) {
  Reader reader(set);
  return textsReadRight(reader, set);
}

inline std::string describeSubset(const std::vector<std::size_t>& subset, std::size_t total) {
  std::string label = std::to_string(subset.size()) + "/" + std::to_string(total) + " texts";
  if (subset.size() == total) return label;
  label += ", not:";
  std::size_t next = 0;
  for (std::size_t i = 0; i < total; ++i) {
    if (next < subset.size() && subset[next] == i) {
      ++next;
    } else {
      label += " " + std::to_string(i + 1);
    }
  }
  return label;
}

// Seconds per text, shown by the console reporter as e.g. "42.1ns".
inline void reportPerText(benchmark::State& state, std::size_t textsPerPass) {
  state.counters["per_text"] = benchmark::Counter(
      static_cast<double>(textsPerPass),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Times `Reader` on `subset` (the texts it reads right when empty).
template <class Reader>
void timeReader(benchmark::State& state, const TextSet* set, std::vector<std::size_t> subset) {
  Reader reader(*set);
  const std::vector<std::size_t> right = textsReadRight(reader, *set);
  if (subset.empty()) subset = right;
  for (std::size_t i : subset) {
    if (std::find(right.begin(), right.end(), i) == right.end()) {
      state.SkipWithError(("misreads text " + std::to_string(i + 1)).c_str());
      return;
    }
  }
  if (subset.empty()) {
    state.SkipWithError("reads none of the texts");
    return;
  }
  for (auto _ : state) {
    for (std::size_t i : subset) {
      long long s = 0;
      bool ok = reader.read(i, s);
      benchmark::DoNotOptimize(ok);
      benchmark::DoNotOptimize(s);
    }
  }
  reportPerText(state, subset.size());
  state.SetLabel(describeSubset(subset, set->size()));
}

// Registers `name` timing Reader on every text it reads right.
template <class Reader>
void registerReader(const std::string& name, const TextSet& set) {
  benchmark::RegisterBenchmark(name.c_str(), timeReader<Reader>, &set,
                               std::vector<std::size_t>{});
}

// Registers `name` timing Ours on exactly the texts Peer reads right, when
// that is not all of them, so that every peer row has an ours row on the
// same inputs.
template <class Ours, class Peer>
void registerOursOnPeerTexts(const std::string& name, const TextSet& set) {
  const std::vector<std::size_t> subset = textsReadRight<Peer>(set);
  if (subset.empty() || subset.size() == set.size()) return;
  benchmark::RegisterBenchmark(name.c_str(), timeReader<Ours>, &set, subset);
}

// For each text, the index of the first format with which readWith(i, f, s)
// gives the right seconds; 0 when none does (that text is then misread and
// left out of the timing).
template <class ReadWith>
std::vector<std::size_t> chooseFormats(const TextSet& set, std::size_t formatCount,
                                       ReadWith readWith) {
  std::vector<std::size_t> chosen(set.size(), 0);
  for (std::size_t i = 0; i < set.size(); ++i) {
    for (std::size_t f = 0; f < formatCount; ++f) {
      long long s = 0;
      if (readWith(i, f, s) && s == set[i].unixSeconds) {
        chosen[i] = f;
        break;
      }
    }
  }
  return chosen;
}

}  // namespace zpbench
