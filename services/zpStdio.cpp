// Print and scan for the conversions "%[0][1-9]w" and "%[0][1-9]d".
//
// Each conversion is read once from the format into a Conversion, then
// printed or scanned by one small function. Both loops look at every format
// and text byte before stepping over it, so neither reads past a zero.
#include "services/zpStdio.h"

#include <cstring>

#include "services/internal/FastPaths.h"
#include "services/internal/PutDigits.h"
#include "services/internal/TextBytes.h"

namespace {

constexpr int kArgumentCount = 6;

// isspace() of the C locale, as sscanf skips it; no locale is consulted.
bool isCSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

struct Conversion {
  bool zeroPad = false;
  unsigned width = 0;  // 0: no width
  char type = '\0';    // 'w' or 'd'; '\0' for an unknown conversion
};

// Reads the conversion that follows a '%'; returns where it ends. An unknown
// one ends after its flag and width, so the byte that spoilt it (perhaps the
// '%' of the next conversion, perhaps the zero) is handled as ordinary text.
const char* readConversion(const char* p, Conversion* c) {
  if (*p == '0') {
    c->zeroPad = true;
    ++p;
  }
  if (*p >= '1' && *p <= '9') c->width = static_cast<unsigned>(*p++ - '0');
  if (*p == 'w' || *p == 'd') c->type = *p++;
  return p;
}

using zp_detail::kDigitPairs;

// Longest printed number: a width of 9, or "-2147483648".
constexpr int kMaxNumberLength = 11;

unsigned digitCount(uint32_t v) {
  unsigned n = 1;
  for (; v >= 100; v /= 100) n += 2;
  return n + (v >= 10 ? 1 : 0);
}

// Writes `v` in decimal, right to left, ending at `end`.
void writeDigits(char* end, uint32_t v) {
  for (; v >= 100; v /= 100) {
    end -= 2;
    std::memcpy(end, kDigitPairs + 2 * (v % 100), 2);
  }
  if (v >= 10) {
    std::memcpy(end - 2, kDigitPairs + 2 * v, 2);
  } else {
    end[-1] = static_cast<char>('0' + v);
  }
}

// Byte loops: the pieces are a few bytes, too short to pay for a call.
char* fill(char* next, char c, unsigned n) {
  while (n-- > 0) *next++ = c;
  return next;
}

// Copies [begin, end) to `next`, stopping at `last`; returns the new `next`.
char* copyClipped(char* next, const char* last, const char* begin, const char* end) {
  while (begin != end && next != last) *next++ = *begin++;
  return next;
}

// Prints a number at `next` and returns the new `next`, never passing `last`.
char* printNumber(char* next, const char* last, const Conversion& c, bool negative,
                  uint32_t magnitude) {
  const unsigned digits = digitCount(magnitude);
  const unsigned unpadded = digits + (negative ? 1 : 0);
  const unsigned pad = c.width > unpadded ? c.width - unpadded : 0;
  if (unpadded + pad > static_cast<unsigned>(last - next)) {
    // Cut short by the capacity: print it whole locally, then copy what fits.
    char text[kMaxNumberLength];
    const char* const textEnd = printNumber(text, text + sizeof text, c, negative, magnitude);
    return copyClipped(next, last, text, textEnd);
  }
  if (!c.zeroPad) next = fill(next, ' ', pad);
  if (negative) *next++ = '-';
  if (c.zeroPad) next = fill(next, '0', pad);  // zeros go after the sign
  writeDigits(next + digits, magnitude);
  return next + digits;
}

char* printConversion(char* next, const char* last, const Conversion& c, const void* argument) {
  if (c.type == 'w') return printNumber(next, last, c, false, *static_cast<const uint16_t*>(argument));
  const int32_t value = *static_cast<const int32_t*>(argument);
  // Negating in unsigned arithmetic keeps INT32_MIN defined.
  const uint32_t bits = static_cast<uint32_t>(value);
  return printNumber(next, last, c, value < 0, value < 0 ? 0u - bits : bits);
}

// Reads one "%Nd" field as sscanf does; returns where it stopped, or null
// when no digit came. A field without width saturates at the int32 range.
const char* scanInt(const char* p, unsigned width, int32_t* value) {
  while (isCSpace(*p)) ++p;
  unsigned budget = width > 0 ? width : ~0u;  // the sign counts toward the width
  const bool negative = *p == '-';
  if (*p == '+' || *p == '-') {
    ++p;
    --budget;
  }
  const uint32_t limit = negative ? 0x80000000u : 0x7fffffffu;
  uint32_t magnitude = 0;
  const char* digits = p;
  for (; budget > 0 && zpread::isDigit(*p); ++p, --budget) {
    const uint32_t digit = static_cast<uint32_t>(*p - '0');
    magnitude = magnitude > (limit - digit) / 10 ? limit : magnitude * 10 + digit;
  }
  if (p == digits) return nullptr;
  *value = static_cast<int32_t>(negative ? -int64_t{magnitude} : int64_t{magnitude});
  return p;
}

// The scan shared by the one- and six-target forms. A null target stops the
// scan, as an unknown conversion does.
int scan(const char* text, const char* format, void* const* targets, int targetCount) {
  if (text == nullptr || format == nullptr) return 0;
  int stored = 0;
  int used = 0;
  const char* in = text;
  for (const char* f = format; *f != '\0';) {
    if (isCSpace(*f)) {
      while (isCSpace(*f)) ++f;
      while (isCSpace(*in)) ++in;
      continue;
    }
    if (*f != '%' || f[1] == '%') {
      if (*f == '%') {  // "%%", before which sscanf skips white space
        ++f;
        while (isCSpace(*in)) ++in;
      }
      if (*in != *f) return stored;
      ++in;
      ++f;
      continue;
    }
    Conversion c;
    f = readConversion(f + 1, &c);
    void* target = (c.type == 'd' && used < targetCount) ? targets[used++] : nullptr;
    int32_t value;
    if (target == nullptr || (in = scanInt(in, c.width, &value)) == nullptr) return stored;
    *static_cast<int32_t*>(target) = value;
    ++stored;
  }
  return stored;
}

// The conversions of date texts ("%02w", "%04w", "%02d") with a value that
// fits the width, and room to spare: digit pairs straight out
// (BM_PathPaddedPrint: 26 ns instead of 31 ns a log record, 1.19x). Returns the
// new `next`, or null to take the general path.
char* printPaddedFast(char* next, const char* last, const char* p, const void* argument) {
  if (!zp_fast::on(zp_fast::kPaddedPrint) || p[0] != '0' || (p[1] != '2' && p[1] != '4') ||
      (p[2] != 'w' && p[2] != 'd') ||
      argument == nullptr || last - next < 4) {
    return nullptr;
  }
  const int32_t value = p[2] == 'w' ? *static_cast<const uint16_t*>(argument)
                                    : *static_cast<const int32_t*>(argument);
  const unsigned width = static_cast<unsigned>(p[1] - '0');
  if (value < 0 || value >= (width == 2 ? 100 : 10000)) return nullptr;
  return zp_detail::putDigits(next, static_cast<uint32_t>(value), width);
}

}  // namespace

// A conversion whose argument is null is copied as written, like an unknown
// one, but still takes its argument's place: arguments stay positional.
unsigned int _zpStdio::_zpSprintf6(char* out, unsigned int capacity, const char* format,
                                   const void* a1, const void* a2, const void* a3,
                                   const void* a4, const void* a5, const void* a6) {
  if (capacity == 0) return 0;
  const void* const arguments[kArgumentCount] = {a1, a2, a3, a4, a5, a6};
  char* next = out;
  char* const last = out + capacity - 1;  // kept for the zero
  int used = 0;
  for (const char* p = format != nullptr ? format : ""; *p != '\0' && next != last;) {
    if (*p != '%' || p[1] == '%') {  // "%%" prints one percent sign
      p += (*p == '%') ? 2 : 1;
      *next++ = p[-1];
      continue;
    }
    if (used < kArgumentCount) {
      if (char* const fast = printPaddedFast(next, last, p + 1, arguments[used])) {
        next = fast;
        ++used;
        p += 4;
        continue;
      }
    }
    Conversion c;
    const char* const end = readConversion(p + 1, &c);
    const void* argument = (c.type != '\0' && used < kArgumentCount) ? arguments[used++] : nullptr;
    if (argument != nullptr) {
      next = printConversion(next, last, c, argument);
    } else {
      next = copyClipped(next, last, p, end);
    }
    p = end;
  }
  *next = '\0';
  return static_cast<unsigned>(next - out);
}

int _zpStdio::_zpSscanf6(const char* text, const char* format, void* a1, void* a2, void* a3,
                         void* a4, void* a5, void* a6) {
  void* const targets[kArgumentCount] = {a1, a2, a3, a4, a5, a6};
  return scan(text, format, targets, kArgumentCount);
}

int _zpStdio::_zpSscanf1(const char* text, const char* format, void* a1) {
  return scan(text, format, &a1, 1);
}

// Counts past nine digits can overflow; the value then saturates.
unsigned int zpUIntValueN(const char* text, unsigned int count, unsigned int& scratch) {
  unsigned value = 0;
  unsigned n = 0;
  for (; text != nullptr && n < count && zpread::isDigit(text[n]); ++n) {
    const unsigned digit = static_cast<unsigned>(text[n] - '0');
    value = value > (~0u - digit) / 10 ? ~0u : value * 10 + digit;
  }
  scratch = n;
  return value;
}

char* zp_detail::putDigitsAnyWidth(char* out, uint32_t value, unsigned minDigits) {
  const unsigned digits = digitCount(value);
  char* const end = out + (digits > minDigits ? digits : minDigits);
  fill(out, '0', static_cast<unsigned>(end - out) - digits);
  writeDigits(end, value);
  return end;
}

char* zpPutDigits(char* out, uint32_t value, unsigned minDigits) {
  return zp_detail::putDigits(out, value, minDigits);
}

const char* zpStrChr(const char* text, int ch) {
  return text == nullptr ? nullptr : std::strchr(text, ch);
}

char* zpStrChr(char* text, int ch) { return text == nullptr ? nullptr : std::strchr(text, ch); }

namespace zp64 {
unsigned long toUnsignedLong(long long v) { return v < 0 ? 0 : static_cast<unsigned long>(v); }
}  // namespace zp64
