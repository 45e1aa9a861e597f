#include "tools/DatePattern.h"

#include <cstring>

#include "services/zpStdio.h"

namespace zpdate {
namespace {

constexpr unsigned kMaxWidth = 999;

// GNU's %N: a width below 9 keeps the leading digits, one above pads zeros.
void appendNanoseconds(unsigned millis, unsigned width, std::string& out) {
  char digits[9];
  zpPutDigits(digits, millis, 3);
  std::memset(digits + 3, '0', 6);
  out.append(digits, width < 9 ? width : 9);
  if (width > 9) out.append(width - 9, '0');
}

// One conversion, as written, through strftime.
void appendConversion(const char* conv, size_t size, const tm& fields, std::string& out) {
  char format[32];
  if (size >= sizeof format) {  // flags and width longer than any that means something
    out.append(conv, size);
    return;
  }
  std::memcpy(format, conv, size);
  format[size] = '\0';
  char text[kMaxWidth + 64];
  out.append(text, strftime(text, sizeof text, format, &fields));
}

}  // namespace

void appendOffset(long gmtoff, int colons, std::string& out) {
  const unsigned long magnitude = static_cast<unsigned long>(gmtoff < 0 ? -gmtoff : gmtoff);
  const unsigned fields[3] = {static_cast<unsigned>(magnitude / 3600),
                              static_cast<unsigned>(magnitude / 60 % 60),
                              static_cast<unsigned>(magnitude % 60)};
  int shown = colons == 1 ? 2 : 3;
  if (colons == 3) shown = fields[2] != 0 ? 3 : fields[1] != 0 ? 2 : 1;
  char text[12];
  char* p = text;
  *p++ = gmtoff < 0 ? '-' : '+';
  for (int i = 0; i < shown; ++i) {
    if (i > 0) *p++ = ':';
    p = zpPutDigits(p, fields[i], 2);
  }
  out.append(text, static_cast<size_t>(p - text));
}

void appendPattern(const char* pattern, const Clock& clock, std::string& out) {
  const char* p = pattern;
  while (*p != '\0') {
    if (*p != '%') {
      const char* next = std::strchr(p, '%');
      const size_t size = next ? static_cast<size_t>(next - p) : std::strlen(p);
      out.append(p, size);
      p += size;
      continue;
    }
    const char* conv = p++;
    while (*p != '\0' && std::strchr("-_0^#", *p) != nullptr) ++p;
    unsigned width = 0;
    bool hasWidth = false;
    for (; *p >= '0' && *p <= '9'; ++p, hasWidth = true) {
      width = 10 * width + static_cast<unsigned>(*p - '0');
      if (width > kMaxWidth) width = kMaxWidth;
    }
    int colons = 0;
    while (*p == ':') ++colons, ++p;
    if (*p == 'E' || *p == 'O') ++p;
    if (*p == '\0') {  // a '%' that ends the pattern stands for itself, as in GNU date
      out.append(conv, static_cast<size_t>(p - conv));
      break;
    }
    const char conversion = *p++;
    const size_t convSize = static_cast<size_t>(p - conv);
    if (convSize == 2 && (conversion == 'Y' || conversion == 'F')) {
      // Four digits for any year, as GNU date writes it (strftime writes "1").
      char year[4];
      out.append(
          year,
          static_cast<size_t>(
              zpPutDigits(year, static_cast<uint32_t>(clock.fields.tm_year + 1900), 4) - year));
      if (conversion == 'F') appendConversion("-%m-%d", 6, clock.fields, out);
    } else if (conversion == 'N' && colons == 0) {
      appendNanoseconds(clock.millis, hasWidth ? width : 9, out);
    } else if (conversion == 'z' && colons >= 1 && colons <= 3) {
      appendOffset(clock.fields.tm_gmtoff, colons, out);
    } else if (colons > 0) {
      out.append(conv, convSize);
    } else {
      appendConversion(conv, convSize, clock.fields, out);
    }
  }
}

}  // namespace zpdate
