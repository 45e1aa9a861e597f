// The byte tests and digit reads every date reader needs (internal).
#pragma once

#include <cstddef>

namespace zpread {

inline bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// The value of the two bytes at p, already known to be digits.
inline int twoDigits(const char* p) { return (p[0] - '0') * 10 + (p[1] - '0'); }

// True when the n bytes at p are all ASCII digits (the caller knows they
// are there to read).
inline bool allDigits(const char* p, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (!isDigit(p[i])) return false;
  }
  return true;
}

}  // namespace zpread
