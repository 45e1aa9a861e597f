// Where the pattern writer's bytes go, and the padding rules of GNU date's
// +FORMAT that every conversion shares (internal; DatePatternPadding.cpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "services/StringBuffer.h"
#include "services/internal/PatternDirective.h"
#include "services/internal/PutDigits.h"

namespace zppattern {

// Gathers a text in a block of its own and appends it to a StringBuffer in
// as few appends as fit, remembering the first failure: a layout's pieces
// are a few bytes each, and an append apiece cost more than the
// conversions (BM_PatternWrite_Ours: 3 times as many instructions).
class Sink {
 public:
  explicit Sink(StringBuffer& out) : m_out(out) {}
  void put(const char* text, size_t n) {
    if (n <= sizeof m_block - m_used) {
      // Byte by byte: the pieces are a few bytes, shorter than a call to memcpy.
      for (size_t i = 0; i < n; ++i) m_block[m_used + i] = text[i];
      m_used += n;
    } else {
      putLong(text, n);
    }
  }
  void put(char c) {
    if (m_used == sizeof m_block) flush();
    m_block[m_used++] = c;
  }
  // `value` in at least `digits` digits, zeros before it (digits <= 10).
  void putDigits(uint32_t value, unsigned digits) {
    if (sizeof m_block - m_used < 10) flush();
    m_used = static_cast<size_t>(zp_detail::putDigits(m_block + m_used, value, digits) - m_block);
  }
  void fill(char c, size_t n) {  // n copies of c; any n
    if (n <= sizeof m_block - m_used) {
      std::memset(m_block + m_used, c, n);
      m_used += n;
    } else {
      fillLong(c, n);
    }
  }
  // Appends what is gathered; false when any append failed.
  bool finish() {
    flush();
    return m_ok;
  }

 private:
  void flush();
  void putLong(const char* text, size_t n);
  void fillLong(char c, size_t n);

  StringBuffer& m_out;
  bool m_ok = true;
  size_t m_used = 0;
  char m_block[256];
};

enum class Case : uint8_t { kAsIs, kUpper, kLower };

// Text padded to `width` (none when negative or pad is '-') with zeros for
// the pads '0' and '+', spaces otherwise, its letters in `letters` case.
void putText(Sink& out, char pad, int width, const char* text, size_t n, Case letters);

// A number padded as date pads numbers: `digits` is its natural width, used
// when no width is given; pad 0 means zeros. A sign ('-' when `negative`,
// '+' when `plus`) goes before the zeros and after the spaces. Each set bit
// of `colonMask` puts a ':' before the digit of its place (bit 0: before the
// last digit), as in +hh:mm.
void putNumber(Sink& out, char pad, int width, int digits, uint64_t magnitude, bool negative,
               bool plus, unsigned colonMask = 0);

// A year-like number (%Y %C %y %G %g): the pad '+' shows a '+' when the
// number outgrows `digits` or the width does. `yearPad` stands in for the
// conversion's own pad when it has none (%F and %D hand theirs on).
void putYearish(Sink& out, const Directive& s, char yearPad, int width, int digits, int64_t value);

}  // namespace zppattern
