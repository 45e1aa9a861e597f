// Reading the fixed-position digit fields of ASN.1 times. Internal to the
// module: the text readers check a field run once, then read it plainly.
#pragma once

#include <cstdint>
#include <cstring>

namespace zp_asn {

// True when all eight bytes of x are ASCII digits: adding 6 carries a digit
// byte 0x30-0x39 into 0x36-0x3F, any other byte leaves the 0x3 high nibble
// in one of the two.
inline bool eightDigits(uint64_t x) {
  return ((x & 0xF0F0F0F0F0F0F0F0u) | (((x + 0x0606060606060606u) & 0xF0F0F0F0F0F0F0F0u) >> 4)) ==
         0x3333333333333333u;
}

// True when the n bytes at p are ASCII digits, for 8 <= n <= 16 readable
// bytes (the callers measure the text first): two overlapping 8-byte loads.
inline bool allDigits(const char* p, unsigned int n) {
  uint64_t head, tail;
  std::memcpy(&head, p, 8);
  std::memcpy(&tail, p + n - 8, 8);
  return eightDigits(head) && eightDigits(tail);
}

// The value of two bytes already known to be digits.
inline unsigned int twoDigits(const char* p) {
  return static_cast<unsigned int>(p[0] - '0') * 10 + static_cast<unsigned int>(p[1] - '0');
}

}  // namespace zp_asn
