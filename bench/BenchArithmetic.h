// The bare arithmetic the baseline rows write out by hand, inline, so that
// a baseline pays for nothing but the calendar: Howard Hinnant's
// days_from_civil and civil_from_days, and a small random sequence.
#pragma once

#include <cstdint>

namespace zpbench {

// A 64-bit linear congruential step, its high bits out.
inline uint64_t nextRandom(uint64_t& state) {
  state = state * 6364136223846793005ULL + 1442695040888963407ULL;
  return state >> 17;
}

// Days from 1970-01-01 (Howard Hinnant's days_from_civil); d may run past the month.
inline int64_t daysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);             // [0, 399]
  const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;  // [0, 365]
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;            // [0, 146096]
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

struct Civil {
  int64_t y;
  unsigned m, d;
};

inline Civil civilFromDays(int64_t z) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);                // [0, 146096]
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;  // [0, 399]
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);                // [0, 365]
  const unsigned mp = (5 * doy + 2) / 153;                                     // [0, 11]
  const unsigned m = mp < 10 ? mp + 3 : mp - 9;
  return Civil{static_cast<int64_t>(yoe) + era * 400 + (m <= 2), m, doy - (153 * mp + 2) / 5 + 1};
}

inline unsigned weekday(int64_t days) { return static_cast<unsigned>(((days % 7) + 11) % 7); }

}  // namespace zpbench
