// Where the pattern writer's bytes go, and the padding rules of GNU date's
// +FORMAT that every conversion shares (internal; DatePatternPadding.cpp).
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/StringBuffer.h"
#include "services/internal/PatternSpec.h"

namespace zppattern {

// Appends to a StringBuffer and remembers the first failure, so that the
// writer tests once at the end rather than after every piece.
class Sink {
 public:
  explicit Sink(StringBuffer& out) : m_out(out) {}
  void put(const char* text, size_t n);
  void fill(char c, size_t n);  // n copies of c; any n
  bool ok() const { return m_ok; }

 private:
  StringBuffer& m_out;
  bool m_ok = true;
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
void putYearish(Sink& out, const Spec& s, char yearPad, int width, int digits, int64_t value);

}  // namespace zppattern
