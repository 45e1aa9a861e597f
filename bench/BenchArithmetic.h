// A small random sequence for the benchmarks' inputs: the same instants in
// every run, spread over decades.
#pragma once

#include <cstdint>

namespace zpbench {

// A 64-bit linear congruential step, its high bits out.
inline uint64_t nextRandom(uint64_t& state) {
  state = state * 6364136223846793005ULL + 1442695040888963407ULL;
  return state >> 17;
}

}  // namespace zpbench
