// loadAnyFormat's JSON and decimal forms against the same forms read step by
// step (LoaderSteps.h): on any text that takes either, with either local
// flag, every field and flag must agree.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzSupport.h"
#include "fuzz/LoaderSteps.h"
#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0xffff) return 0;
  StringBuffer text;
  text.appendN(reinterpret_cast<const char*>(data), static_cast<unsigned>(size));
  for (const bool local : {false, true}) {
    ZephalSysTime steps, loaded;
    zpfuzz::mark(steps);
    zpfuzz::mark(loaded);
    if (!zpsteps::loadJsonOrDecimal(local, text, steps)) return 0;
    bool taken;
    {
      const zpfuzz::PoisonedTail guard(text);
      taken = loaded.loadAnyFormat(local, text);
    }
    if (!taken || !zpfuzz::sameRecord(loaded, steps)) {
      zpfuzz::fail("loadAnyFormat and the steps read the text apart",
                   zpfuzz::quoted(text.getString(), text.getSize()) + " -> " +
                       zpfuzz::fieldsOf(loaded) + " / steps " + zpfuzz::fieldsOf(steps));
    }
  }
  return 0;
}
