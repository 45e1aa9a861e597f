#include "tools/CountArgs.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>

namespace zpdate {
namespace {

// from_chars takes no white space, no '+' and no "0x", and says where it
// stopped: all the strictness needed, once the whole text must be used.
template <typename T, typename... Base>
bool readWhole(const char* begin, const char* end, T& out, Base... base) {
  if (begin == end) return false;
  const std::from_chars_result r = std::from_chars(begin, end, out, base...);
  if (r.ptr != end) return false;
  if (r.ec == std::errc::result_out_of_range) {
    const bool negative = *begin == '-';
    out = negative ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();
    return true;
  }
  return r.ec == std::errc();
}

}  // namespace

bool readSigned(const char* text, long long& out) {
  const bool plus = *text == '+';
  if (plus && text[1] == '-') return false;
  return readWhole(text + plus, text + std::strlen(text), out, 10);
}

bool readUnsigned(const char* text, unsigned long long& out) {
  const bool hex = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  return readWhole(text + (hex ? 2 : 0), text + std::strlen(text), out, hex ? 16 : 10);
}

bool readDays(const char* text, double& out) {
  const bool plus = *text == '+';
  if (plus && text[1] == '-') return false;
  return readWhole(text + plus, text + std::strlen(text), out, std::chars_format::general);
}

}  // namespace zpdate
