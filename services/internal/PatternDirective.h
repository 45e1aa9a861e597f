// One conversion of a pattern layout as GNU date spells it, for the writer
// and the reader alike (internal): '%', flags, a width, an E or O modifier,
// colons before 'z', then the conversion letter.
//
//   "%_10:z"  flags '_', width 10, one colon, conversion 'z'
//   "%-d"     flag '-', no width, conversion 'd'
#pragma once

#include <climits>
#include <cstddef>

namespace zppattern {

struct Directive {
  const char* start = nullptr;  // the '%'
  int width = -1;               // -1 when none; saturates at INT_MAX, as GNU date's does
  char pad = 0;                 // 0, '_', '-', '0' or '+': the last of these flags given
  bool upper = false;           // '^'
  bool swapCase = false;        // '#'
  char modifier = 0;            // 0, 'E' or 'O'
  int colons = 0;               // before 'z'; counted up to 4, past which none is valid
  // The conversion letter; ':' for colons that no 'z' follows, and 0 for a
  // conversion cut short by the layout's end.
  char conversion = 0;
};

inline bool isDigitByte(char c) { return static_cast<unsigned char>(c - '0') < 10; }

// Most conversions are '%' and a letter alone: no directive to read, and the
// struct's stores and loads cost more than the conversion itself (the
// reader's RFC 3339 layout takes half the time without them).
inline bool isPlainConversion(char c) {
  return static_cast<unsigned char>((c | 0x20) - 'a') < 26 && c != 'E' && c != 'O';
}

inline constexpr Directive kPlainDirective{};

// Reads the conversion whose '%' is at p, the layout ending at `end` or at a
// zero byte, and returns where the layout goes on. Colons that no 'z'
// follows end the conversion at the first of them, so "%:Y" is "%:" and
// then "Y".
inline const char* readDirective(const char* p, const char* end, Directive& s) {
  s = Directive{};
  s.start = p++;
  for (; p < end; ++p) {
    const char c = *p;
    if (c == '_' || c == '-' || c == '0' || c == '+') {
      s.pad = c;
    } else if (c == '^') {
      s.upper = true;
    } else if (c == '#') {
      s.swapCase = true;
    } else {
      break;
    }
  }
  if (p < end && isDigitByte(*p)) {
    long long width = 0;
    for (; p < end && isDigitByte(*p); ++p) {
      width = width * 10 + (*p - '0');
      if (width > INT_MAX) width = INT_MAX;
    }
    s.width = static_cast<int>(width);
  }
  if (p < end && (*p == 'E' || *p == 'O')) s.modifier = *p++;
  if (p == end || *p == '\0') return p;  // cut short by the layout's end
  if (*p == ':') {
    const char* q = p;
    int colons = 0;
    for (; q < end && *q == ':'; ++q) colons += colons < 4;
    if (q < end && *q == 'z') {
      s.colons = colons;
      s.conversion = 'z';
      return q + 1;
    }
    s.conversion = ':';
    return p + 1;
  }
  s.conversion = *p;
  return p + 1;
}

}  // namespace zppattern
