// The tests by which the loader tells its forms apart, and the plain JSON
// date's parts (internal): loadAnyFormat and zpReadDate apply the same ones,
// in the same order.
//
//   /Date(1700000000000+0100)/      a '/' and "Date(" anywhere
//   2024-03-07T09:05:03Z            >= 2 '-', exactly 2 ':', >= 1 'T'
//   20240307090503.123Z             19 bytes, '.' at 14, ends in Z
//   1700000000                      digits only
//   240307090503Z                   13 bytes, no '-' or ':', ends in Z
//   20240307090503Z                 15 bytes, no '-' or ':', ends in Z
#pragma once

#include <cstddef>
#include <cstring>

#include "services/internal/TextBytes.h"

namespace zpload {

constexpr char kJsonMark[] = "Date(";

constexpr bool atomCounts(unsigned dashes, unsigned colons, unsigned tees) {
  return dashes >= 2 && colons == 2 && tees >= 1;
}

constexpr size_t kFractionSize = 19;  // 20240307090503.123Z
constexpr size_t kFractionPoint = 14;
constexpr bool fractionShape(size_t size, char last, char atPoint) {
  return size == kFractionSize && last == 'Z' && atPoint == '.';
}

constexpr size_t kUtcTimeSize = 13;      // 240307090503Z
constexpr size_t kGeneralizedSize = 15;  // 20240307090503Z
// `hasColon` is asked last, as it searches the text.
template <typename HasColon>
bool asnShape(unsigned dashes, char last, HasColon hasColon) {
  return dashes == 0 && last == 'Z' && !hasColon();
}

// The value of the digits in [p, end), at most 18 of them, so it cannot
// overflow; false when a byte is no digit or there are none or too many.
inline bool readDigitRun(const char* p, const char* end, long long& value) {
  if (p == end || end - p > 18) return false;
  unsigned long long v = 0;
  for (; p < end; ++p) {
    if (!zpread::isDigit(*p)) return false;
    v = v * 10 + static_cast<unsigned>(*p - '0');
  }
  value = static_cast<long long>(v);
  return true;
}

// /Date(1700000000000)/, /Date(-86400000)/, /Date(1700000000000+0100)/ and
// nothing else: no blanks, no other byte, at most 18 digits after any
// leading zeros.
struct JsonParts {
  bool beforeEpoch;
  long long millis;  // the count's magnitude
  int zone;          // the suffix as hhmm east of GMT, 0 without one
};

inline bool splitPlainJson(const char* p, size_t size, JsonParts& out) {
  const char* end = p + size;
  if (size < 9 || std::memcmp(p, "/Date(", 6) != 0 || std::memcmp(end - 2, ")/", 2) != 0) {
    return false;
  }
  p += 6;
  end -= 2;
  out.beforeEpoch = *p == '-';
  p += out.beforeEpoch;
  out.zone = 0;
  if (end - p > 5 && (end[-5] == '+' || end[-5] == '-')) {
    long long hhmm;
    if (!readDigitRun(end - 4, end, hhmm)) return false;
    out.zone = static_cast<int>(end[-5] == '-' ? -hhmm : hhmm);
    end -= 5;
  }
  while (end - p > 1 && *p == '0') ++p;
  return readDigitRun(p, end, out.millis);
}

}  // namespace zpload
