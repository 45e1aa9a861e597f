// Reading the fixed-position digit fields of ASN.1 times. Internal to the
// module: the text readers check a field run once, then read it plainly.
#pragma once

namespace zp_asn {

// True when the n bytes at p are ASCII digits; stops at the first that is not,
// so a shorter text ends the test at its zero.
inline bool allDigits(const char* p, unsigned int n) {
  for (unsigned int i = 0; i < n; ++i) {
    if (static_cast<unsigned char>(p[i] - '0') > 9) return false;
  }
  return true;
}

// The value of n bytes already known to be digits.
inline unsigned int digitsValue(const char* p, unsigned int n) {
  unsigned int v = 0;
  for (unsigned int i = 0; i < n; ++i) v = v * 10 + static_cast<unsigned int>(p[i] - '0');
  return v;
}

}  // namespace zp_asn
