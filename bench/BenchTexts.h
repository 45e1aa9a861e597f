// The texts the parse and format benchmarks read, each with the Unix seconds
// it names (whole seconds, fraction dropped toward the past; a leap second
// counts as the next minute). The values come from Python's calendar.timegm,
// not from any reader measured here, so every reader, ours included, is
// checked against the same outside answer before it is timed.
//
// A row times one pass over the texts its reader gets right and reports the
// time per text in the `per_text` counter; a reader that gets some texts wrong
// is timed on the rest, and its label names the texts left out (1-based), so
// no row ever times a failure path.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "services/internal/CivilDays.h"
#include "time/ZephalSysTime.h"

namespace zpbench {

struct TextCase {
  const char* text;
  long long unixSeconds;
};

using TextSet = std::vector<TextCase>;

// The exact RFC 1123 layout of HTTP and most mail, GMT or a numeric zone.
inline const TextSet kRfc1123Texts = {
    {"Thu, 07 Mar 2024 09:05:03 GMT", 1709802303},
    {"Tue, 15 Nov 1994 08:12:31 GMT", 784887151},
    {"Fri, 21 Nov 1997 09:55:06 -0600", 880127706},
    {"Mon, 01 Jan 2024 00:00:00 +0000", 1704067200},
    {"Wed, 28 Feb 2024 23:59:59 -0800", 1709193599},
    {"Sat, 31 Dec 2016 12:00:00 +0100", 1483182000},
    {"Sun, 06 Nov 1994 08:49:37 GMT", 784111777},
    {"Fri, 13 Sep 2030 17:45:10 +0530", 1915532110},
};

// Date texts as mail and HTTP headers carry them.
inline const TextSet kMailTexts = {
    {"Thu, 07 Mar 2024 09:05:03 GMT", 1709802303},               // 1  RFC 1123
    {"Fri, 21 Nov 1997 09:55:06 -0600", 880127706},              // 2  numeric zone
    {"Tue, 15 Nov 1994 08:12:31 GMT", 784887151},                // 3
    {"Wed, 28 Feb 2024 23:59:59 -0800", 1709193599},             // 4  carries into Feb 29
    {"07 Mar 2024 09:05:03 +0100", 1709798703},                  // 5  no day name
    {"Sat, 29 Jun 2024 12:30:00 EST", 1719682200},               // 6  zone name
    {"Sun, 06 Nov 1994 08:49:37 PDT", 784136977},                // 7  zone name
    {"Thu, 07 Mar 2024 09:05:03 +0200 (CEST)", 1709795103},      // 8  comment
    {"Thu, 07 Mar 24 09:05:03 GMT", 1709802303},                 // 9  two-digit year
    {"Sunday, 06-Nov-94 08:49:37 GMT", 784111777},               // 10 RFC 850
    {"Sun Nov  6 08:49:37 1994", 784111777},                     // 11 asctime
    {"2024-03-07T09:05:03Z", 1709802303},                        // 12 ISO 8601
    {"2024-03-07 09:05:03+05:30", 1709782503},                   // 13 ISO 8601, space
    {"Tue, 5 Mar 2024 9:05 -0500", 1709647500},                  // 14 short fields, no seconds
    {"Thu, 07-Mar-2024 09:05:03 GMT", 1709802303},               // 15 cookie
    {"Mon, 01 Apr 2019 23:15:00 +0000 (UTC)", 1554160500},       // 16 comment
};

// RFC 3339 as Atom feeds and JSON APIs write it.
inline const TextSet kAtomTexts = {
    {"2024-03-07T09:05:03Z", 1709802303},              // 1
    {"2024-03-07T09:05:03+01:00", 1709798703},         // 2
    {"2024-03-07T09:05:03-05:00", 1709820303},         // 3
    {"2024-03-07T09:05:03.123Z", 1709802303},          // 4  milliseconds
    {"2024-03-07T09:05:03.123456789Z", 1709802303},    // 5  nanoseconds
    {"1985-04-12T23:20:50.52Z", 482196050},            // 6  RFC 3339 5.8
    {"1996-12-19T16:39:57-08:00", 851042397},          // 7  RFC 3339 5.8
    {"1990-12-31T23:59:60Z", 662688000},               // 8  leap second
    {"1937-01-01T12:00:27.87+00:20", -1041337173},     // 9  RFC 3339 5.8
    {"2024-02-29T23:30:00-02:30", 1709258400},         // 10 carries into March
    {"2000-01-01T00:00:00+14:00", 946634400},          // 11 carries into 1999
    {"2024-03-07t09:05:03z", 1709802303},              // 12 lower case
    {"2038-01-19T03:14:08Z", 2147483648},              // 13 past 32 bits
    {"1969-12-31T23:59:59.999Z", -1},                  // 14 before the epoch
    {"2024-03-07T09:05:03-00:00", 1709802303},         // 15 offset unknown
    {"2099-12-31T23:59:59.5+05:45", 4102424099},       // 16
};

// loadAnyFormat's forms, four texts each. JSON's zone suffix moves the
// instant by whole hours the other way, as the loader documents.
inline const TextSet kLoadJsonTexts = {
    {"/Date(1709802303000)/", 1709802303},
    {"/Date(1700000000000+0100)/", 1699996400},
    {"/Date(-86400000)/", -86400},
    {"/Date(1709802303123-0500)/", 1709820303},
};
inline const TextSet kLoadAtomTexts = {
    {"2024-03-07T09:05:03Z", 1709802303},
    {"1996-12-19T16:39:57-08:00", 851042397},
    {"2024-03-07T09:05:03.123Z", 1709802303},
    {"2024-02-29T23:30:00-02:30", 1709258400},
};
inline const TextSet kLoadGeneralizedFractionTexts = {
    {"20240307090503.123Z", 1709802303},
    {"19941115081231.000Z", 784887151},
    {"20301213174510.999Z", 1923414310},
    {"20000229235959.500Z", 951868799},
};
inline const TextSet kLoadUnixTexts = {
    {"1709802303", 1709802303},
    {"784887151", 784887151},
    {"0", 0},
    {"4102444799", 4102444799},
};
// Two-digit years 49 and 94, 97 read the same under the pivot 50 and POSIX's 69.
inline const TextSet kLoadUtcTimeTexts = {
    {"240307090503Z", 1709802303},
    {"941115081231Z", 784887151},
    {"971121155506Z", 880127706},
    {"491231235959Z", 2524607999},
};
inline const TextSet kLoadGeneralizedTexts = {
    {"20240307090503Z", 1709802303},
    {"19941115081231Z", 784887151},
    {"19971121155506Z", 880127706},
    {"20491231235959Z", 2524607999},
};

// The GMT instants the writers format.
inline const std::vector<long long> kWriteInstants = {
    1709802303, 784887151, 880127706, 1704067200, 1709193599, 1483182000, 1915532110, 4102444799,
};

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

}  // namespace zpbench
