// parseRFC822Date and setFromRfc822String on any text: both agree, a refused
// text leaves the value alone, a taken one is a valid GMT reading that
// survives the round trip through generateDateRFC822.
#include <cstddef>
#include <cstdint>

#include "fuzz/FuzzSupport.h"
#include "fuzz/ParserChecks.h"
#include "services/LogBase.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const zpfuzz::ExactText text(data, size);
  LogNull log;

  ZephalSysTime fresh;
  const bool taken = _zpDateParser::parseRFC822Date(text.get(), fresh, log);

  // The member form on a marked value, which also shows what it keeps.
  ZephalSysTime marked;
  zpfuzz::mark(marked);
  ZephalSysTime before;
  before.copyFrom(marked);
  if (marked.setFromRfc822String(text.get(), log) != taken) {
    zpfuzz::fail("setFromRfc822String and parseRFC822Date disagree", text.quoted());
  }

  if (!taken) {
    if (!zpfuzz::sameRecord(marked, before) || !zpfuzz::sameRecord(fresh, ZephalSysTime())) {
      zpfuzz::fail("a refused text changed the value",
                   text.quoted() + " -> " + zpfuzz::fieldsOf(marked));
    }
    return 0;
  }

  zpfuzz::checkReading(fresh, "parseRFC822Date", text.quoted());
  // The carried flags stay; everything else is the parser's.
  ZephalSysTime expected;
  expected.copyFrom(fresh);
  expected.m_bFlagA = before.m_bFlagA;
  expected.m_bFlagB = before.m_bFlagB;
  if (!zpfuzz::sameRecord(marked, expected)) {
    zpfuzz::fail("the reading depends on the value it replaces",
                 text.quoted() + " -> " + zpfuzz::fieldsOf(fresh) + " / " +
                     zpfuzz::fieldsOf(marked));
  }
  zpfuzz::checkRoundTrip(fresh, text.quoted());
  return 0;
}
