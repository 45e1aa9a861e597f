// The library's own formatted print and scan, and small text helpers.
//
// Only the conversions the library uses exist, each with a fixed argument
// width, so no variadic arguments and no locale are involved:
//
//   print  %w    unsigned 16-bit, via const uint16_t*     "%04w" -> 0987
//          %d    signed 32-bit,   via const int32_t*      "%02d" -> 07
//   scan   %d    signed 32-bit,   via int32_t*            "%04d" reads <= 4 chars
//
// A conversion may carry a '0' flag and a width of 1 to 9 digits ("%02w",
// "%4d"); "%%" is a percent sign. Print never writes more than `capacity`
// bytes, zero included, and always terminates when capacity > 0.
//
// An unknown conversion ("%s", "%x", a '%' at the end, or a seventh
// conversion when only six arguments exist) is copied to the output as
// written and uses no argument; in a scan it stops the scan there.
#pragma once

#include <cstdint>

struct _zpStdio {
  // Formats six values into `out`; returns the bytes written, zero excluded.
  static unsigned int _zpSprintf6(char* out, unsigned int capacity, const char* format,
                                  const void* a1, const void* a2, const void* a3,
                                  const void* a4, const void* a5, const void* a6);

  // Scans as sscanf does for "%Nd": white space before a number is skipped, an
  // optional sign counts toward the width, at most N characters are read
  // (no width: as many digits as there are). White space in the format matches
  // any run of white space; other literal bytes must match exactly. Returns
  // the number of conversions stored (0, not EOF, when none). A target keeps
  // its value when its conversion fails.
  static int _zpSscanf6(const char* text, const char* format, void* a1, void* a2,
                        void* a3, void* a4, void* a5, void* a6);
  static int _zpSscanf1(const char* text, const char* format, void* a1);
};

// The value of up to `count` decimal digits from `text`. Reading stops early
// at the first byte that is not a digit (the terminating zero included), so
// it never reads past the end of a text; `scratch` receives the number of
// digits read. No digit gives 0.
unsigned int zpUIntValueN(const char* text, unsigned int count, unsigned int& scratch);

// The first occurrence of `ch` in `text` (the terminating zero included), as
// strchr gives it; null when absent or when `text` is null.
const char* zpStrChr(const char* text, int ch);
char* zpStrChr(char* text, int ch);

// Writes `value` in decimal, zero-padded to at least `minDigits` (0 to 10),
// with no terminating zero, and returns the end: what "%0<minDigits>w"
// prints, for writers of fixed layouts that need not read a format.
char* zpPutDigits(char* out, uint32_t value, unsigned minDigits);

namespace zp64 {
// The value as unsigned: a non-negative value unchanged, a negative one 0.
unsigned long toUnsignedLong(long long v);
}  // namespace zp64
