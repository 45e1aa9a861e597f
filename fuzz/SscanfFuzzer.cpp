// _zpSscanf6 (and _zpSscanf1) on any format and text. The input is the format,
// a zero byte, then the text; an input without a zero byte is a text for the
// loader's GeneralizedTime format. Each gets a heap block of its exact size.
//
// Checked: the count is 0..6, targets after the stored ones keep their
// values, _zpSscanf1 stores what _zpSscanf6 stores first, and for formats of
// literal ASCII, "%%" and "%Nd" / "%0Nd" (N 1-9, so no value can overflow),
// six conversions at most, the C library's sscanf reads the same.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/zpStdio.h"

namespace {

constexpr char kGeneralizedFields[] = "%04d%02d%02d%02d%02d%02d";  // the loader's
constexpr int32_t kUntouched = -559038737;                         // 0xdeadbeef

// True when sscanf's reading of `format` is the one zpStdio.h describes.
bool comparableWithSscanf(const char* format) {
  int conversions = 0;
  for (const char* p = format; *p != '\0'; ++p) {
    const unsigned char c = static_cast<unsigned char>(*p);
    if (c >= 0x80) return false;
    if (c != '%') continue;
    if (p[1] == '%') {
      ++p;
      continue;
    }
    if (p[1] == '0') ++p;
    if (p[1] < '1' || p[1] > '9' || p[2] != 'd') return false;
    p += 2;
    ++conversions;
  }
  return conversions <= 6;
}

std::string valuesOf(int count, const int32_t* v) {
  std::string out = std::to_string(count) + " [";
  for (int i = 0; i < 6; ++i) out += (i ? " " : "") + std::to_string(v[i]);
  return out + "]";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const uint8_t* zero = static_cast<const uint8_t*>(std::memchr(data, 0, size));
  const zpfuzz::ExactText format =
      zero ? zpfuzz::ExactText(data, static_cast<size_t>(zero - data))
           : zpfuzz::ExactText(reinterpret_cast<const uint8_t*>(kGeneralizedFields),
                               sizeof kGeneralizedFields - 1);
  const zpfuzz::ExactText text = zero ? zpfuzz::ExactText(zero + 1, size - (zero + 1 - data))
                                      : zpfuzz::ExactText(data, size);
  const std::string what = "format " + format.quoted() + " text " + text.quoted();

  int32_t v[6] = {kUntouched, kUntouched, kUntouched, kUntouched, kUntouched, kUntouched};
  const int n = _zpStdio::_zpSscanf6(text.get(), format.get(), &v[0], &v[1], &v[2], &v[3], &v[4],
                                     &v[5]);
  if (n < 0 || n > 6) zpfuzz::fail("count out of range", what + " -> " + valuesOf(n, v));
  for (int i = n; i < 6; ++i) {
    if (v[i] != kUntouched) zpfuzz::fail("a target past the count changed", what + " -> " + valuesOf(n, v));
  }

  int32_t one = kUntouched;
  const int n1 = _zpStdio::_zpSscanf1(text.get(), format.get(), &one);
  if (n1 != (n > 0 ? 1 : 0) || one != (n > 0 ? v[0] : kUntouched)) {
    zpfuzz::fail("_zpSscanf1 and _zpSscanf6 disagree",
                 what + " -> " + valuesOf(n, v) + " / " + std::to_string(n1) + " " +
                     std::to_string(one));
  }

  if (comparableWithSscanf(format.get())) {
    int c[6] = {kUntouched, kUntouched, kUntouched, kUntouched, kUntouched, kUntouched};
    int cn = std::sscanf(text.get(), format.get(), &c[0], &c[1], &c[2], &c[3], &c[4], &c[5]);
    if (cn == EOF) cn = 0;  // zpStdio.h: 0, not EOF, when none
    bool same = cn == n;
    for (int i = 0; i < 6 && same; ++i) same = c[i] == v[i];
    if (!same) {
      int32_t c32[6];
      for (int i = 0; i < 6; ++i) c32[i] = c[i];
      zpfuzz::fail("sscanf reads it differently",
                   what + " -> " + valuesOf(n, v) + " / sscanf " + valuesOf(cn, c32));
    }
  }
  return 0;
}
