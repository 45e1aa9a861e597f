// loadAnyFormat with both values of its flag on any text, embedded zero bytes
// included: the text is left alone, and the flag changes nothing but the
// marking of Unix seconds (a text of digits only) as local.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

namespace {

void checkUnchanged(const StringBuffer& text, const uint8_t* data, size_t size,
                    const std::string& input) {
  if (text.getSize() != size || std::memcmp(text.getString(), data, size) != 0 ||
      text.getString()[size] != '\0') {
    zpfuzz::fail("loadAnyFormat changed its text",
                 input + " -> " + zpfuzz::quoted(text.getString(), text.getSize()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0xffff) return 0;
  StringBuffer text;
  text.appendN(reinterpret_cast<const char*>(data), static_cast<unsigned>(size));
  const std::string input = zpfuzz::quoted(text.getString(), text.getSize());
  const bool unixSeconds = text.isDecimalNumber(true);

  ZephalSysTime asGmt;
  ZephalSysTime asLocal;
  bool takenGmt;
  bool takenLocal;
  {
    const zpfuzz::PoisonedTail guard(text);
    takenGmt = asGmt.loadAnyFormat(false, text);
    checkUnchanged(text, data, size, input);
    takenLocal = asLocal.loadAnyFormat(true, text);
    checkUnchanged(text, data, size, input);
  }

  ZephalSysTime expected;
  expected.copyFrom(asGmt);
  if (unixSeconds) expected.m_bLocal = true;
  if (takenGmt != takenLocal || !zpfuzz::sameRecord(asLocal, expected)) {
    zpfuzz::fail("the local flag changed more than the marking of Unix seconds",
                 input + " -> " + zpfuzz::fieldsOf(asGmt) + " / " + zpfuzz::fieldsOf(asLocal));
  }

  // Whatever was loaded must be countable, even fields no date has.
  (void)asGmt.toUnixTime_gmt64();
  (void)asLocal.toUnixTime_gmt64();
  return 0;
}
