// loadAnyFormat with both values of its flag on any text, embedded zero bytes
// included, starting from a value unlike any reading: the text is left alone,
// and the result and the whole record (flags included) are what the form the
// text's shape selects gives when read by its own reader (LoaderOracle.h).
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "fuzz/LoaderOracle.h"
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
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  StringBuffer text;
  text.appendN(bytes.data(), static_cast<unsigned>(size));
  const std::string input = zpfuzz::quoted(bytes.data(), size);
  ZephalSysTime start;
  zpfuzz::mark(start);

  for (const bool bLocal : {false, true}) {
    ZephalSysTime got;
    got.copyFrom(start);
    bool taken;
    {
      const zpfuzz::PoisonedTail guard(text);
      taken = got.loadAnyFormat(bLocal, text);
      checkUnchanged(text, data, size, input);
    }
    ZephalSysTime want;
    const bool wantTaken = zpfuzz::expectedLoadAnyFormat(bLocal, bytes, start, want);
    if (taken != wantTaken || !zpfuzz::sameRecord(got, want)) {
      zpfuzz::fail("loadAnyFormat differs from the reader of the text's form",
                   input + (bLocal ? " local" : " gmt") + " -> " + std::to_string(taken) + " " +
                       zpfuzz::fieldsOf(got) + ", want " + std::to_string(wantTaken) + " " +
                       zpfuzz::fieldsOf(want));
    }
    // Whatever was loaded must be countable, even fields no date has.
    (void)got.toUnixTime_gmt64();
  }
  return 0;
}
