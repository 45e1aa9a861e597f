// zpPutDigits inline, for the module's own writers (internal): the public
// zpPutDigits is this, out of line.
#pragma once

#include <cstdint>
#include <cstring>

#include "services/internal/FastPaths.h"

namespace zp_detail {

// "00" to "99": one table load writes two digits.
inline constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

char* putDigitsAnyWidth(char* out, uint32_t value, unsigned minDigits);

// Days, hours and the like take two digits, years four: those skip the loop
// (BM_PathPutDigits: 8.0 ns instead of 17.7 ns an ISO 8601 timestamp, 2.21x).
inline char* putDigits(char* out, uint32_t value, unsigned minDigits) {
  if (!zp_fast::on(zp_fast::kPutDigits)) return putDigitsAnyWidth(out, value, minDigits);
  if (minDigits == 2 && value < 100) {
    std::memcpy(out, kDigitPairs + 2 * value, 2);
    return out + 2;
  }
  if (minDigits == 4 && value < 10000) {
    std::memcpy(out, kDigitPairs + 2 * (value / 100), 2);
    std::memcpy(out + 2, kDigitPairs + 2 * (value % 100), 2);
    return out + 4;
  }
  return putDigitsAnyWidth(out, value, minDigits);
}

}  // namespace zp_detail
