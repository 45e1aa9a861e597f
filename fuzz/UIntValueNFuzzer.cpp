// zpUIntValueN on any text and count. The first input byte is the count (255
// stands for UINT_MAX, a count no text reaches), the rest up to a zero byte
// the text, in a heap block of its exact size so that reading past its zero
// is caught. Checked against a plain reading of the digits, saturated at
// UINT_MAX as zpStdio.cpp does.
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/zpStdio.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const unsigned count = data[0] == 255 ? UINT_MAX : data[0];
  const zpfuzz::ExactText text(data + 1, size - 1);

  unsigned expectedDigits = 0;
  uint64_t expected = 0;
  for (; expectedDigits < count && expectedDigits < text.size(); ++expectedDigits) {
    const char c = text.get()[expectedDigits];
    if (c < '0' || c > '9') break;
    expected = expected * 10 + static_cast<unsigned>(c - '0');
    if (expected > UINT_MAX) expected = UINT_MAX;
  }

  unsigned digits = 12345;
  const unsigned value = zpUIntValueN(text.get(), count, digits);
  if (value != expected || digits != expectedDigits) {
    zpfuzz::fail("zpUIntValueN misread",
                 "count " + std::to_string(count) + " text " + text.quoted() + " -> " +
                     std::to_string(value) + " (" + std::to_string(digits) + " digits), expected " +
                     std::to_string(expected) + " (" + std::to_string(expectedDigits) + ")");
  }
  return 0;
}
