// The fast paths of the module, each of which gives what the general path
// beside it gives, only sooner. Internal to the module.
//
// Each path keeps its figure honest through a benchmark row that times it
// switched off (bench/PathSwitches.cpp). Only the benchmark's own build of the
// library defines ZEPHAL_FAST_PATH_SWITCHES; in every other build on() is a
// constant true, and the test and the general path after it compile away.
#pragma once

namespace zp_fast {

enum Path : unsigned {
  kFixedRfc1123,    // readFixedRfc1123: "Thu, 07 Mar 2024 09:05:03 " by position
  kHttpDate,        // readHttpDate: "Thu, 07 Mar 2024 09:05:03 GMT" whole, by words
  kFixedIso,        // readFixedIsoDateTime: "2024-03-07T09:05:03" by position
  kPutDigits,       // zpPutDigits: two and four digits from the pair table
  kPaddedPrint,     // _zpSprintf6: "%02w", "%04w", "%02d" without the format reader
  kMemchrSearch,    // StringBuffer: memchr to the first candidate, and between them
  kJsonShape,       // loadAnyFormat: /Date(ms[+-hhmm])/ read in place
  kRfc3339Shape,    // loadAnyFormat: RFC 3339 read whole by position, before the counts
  kDecimalShape,    // loadAnyFormat: up to ten digits read in one pass
  kWeekdayRule,     // DayOfWeek: Sakamoto's rule for the usual fields
  kPatternDigits,   // zpParseDate: layouts of full-width numbers read in one pass
  kPathCount
};

#if ZEPHAL_FAST_PATH_SWITCHES
inline unsigned g_off = 0;  // one bit per Path; set only by the benchmark
inline bool on(Path p) { return (g_off >> p & 1u) == 0; }
#else
constexpr bool on(Path) { return true; }
#endif

}  // namespace zp_fast
