// AtomDateToSysTime on any text, embedded zero bytes included (the buffer's
// size ends the text): a refused text leaves the value alone; a taken one is
// a valid GMT reading of the instant the text names, parseRFC822Date (which
// reads the same ISO 8601 shapes) agrees, and the RFC 822 round trip holds.
#include <time.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "fuzz/ParserChecks.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace {

int digitsAt(const char* p, int n) {
  int v = 0;
  for (int i = 0; i < n; ++i) v = v * 10 + (p[i] - '0');
  return v;
}

// The instant of YYYY-MM-DDThh:mm:ss at the start of a taken text, read at
// `offset` minutes east of GMT, by the C library rather than the parser's
// own calendar arithmetic.
long long statedInstant(const char* p, int offset) {
  tm t{};
  t.tm_year = digitsAt(p, 4) - 1900;
  t.tm_mon = digitsAt(p + 5, 2) - 1;
  t.tm_mday = digitsAt(p + 8, 2);
  t.tm_hour = digitsAt(p + 11, 2);
  t.tm_min = digitsAt(p + 14, 2);
  t.tm_sec = digitsAt(p + 17, 2);
  return static_cast<long long>(timegm(&t)) - offset * 60LL;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0xffff) return 0;
  StringBuffer text;
  text.appendN(reinterpret_cast<const char*>(data), static_cast<unsigned>(size));
  const std::string input = zpfuzz::quoted(text.getString(), text.getSize());
  const zpfuzz::PoisonedTail guard(text);

  ZephalSysTime fresh;
  int extra = 12345;
  const bool taken = _zpDateParser::AtomDateToSysTime(text, fresh, &extra);

  ZephalSysTime marked;
  zpfuzz::mark(marked);
  ZephalSysTime before;
  before.copyFrom(marked);
  if (_zpDateParser::AtomDateToSysTime(text, marked, nullptr) != taken) {
    zpfuzz::fail("the result depends on the value or on `extra`", input);
  }

  if (!taken) {
    if (!zpfuzz::sameRecord(marked, before) || !zpfuzz::sameRecord(fresh, ZephalSysTime()) ||
        extra != 12345) {
      zpfuzz::fail("a refused text changed the value or `extra`", input);
    }
    return 0;
  }

  zpfuzz::checkReading(fresh, "AtomDateToSysTime", input);
  ZephalSysTime expected;
  expected.copyFrom(fresh);
  expected.m_bFlagA = before.m_bFlagA;
  expected.m_bFlagB = before.m_bFlagB;
  if (!zpfuzz::sameRecord(marked, expected)) {
    zpfuzz::fail("the reading depends on the value it replaces", input);
  }
  if (extra <= -24 * 60 || extra >= 24 * 60) {
    zpfuzz::fail("offset out of range", input + " -> " + std::to_string(extra));
  }
  if (fresh.toUnixTime_gmt64() != statedInstant(text.getString(), extra)) {
    zpfuzz::fail("the reading is not the instant the text names",
                 input + " -> " + zpfuzz::fieldsOf(fresh) + " offset " + std::to_string(extra));
  }

  // An Atom text has no zero byte, so the C-string parser sees all of it.
  LogNull log;
  ZephalSysTime rfc;
  if (!_zpDateParser::parseRFC822Date(text.getString(), rfc, log)) {
    zpfuzz::fail("parseRFC822Date refuses an Atom text", input);
  }
  if (!zpfuzz::sameRecord(rfc, fresh)) {
    zpfuzz::fail("parseRFC822Date reads an Atom text differently",
                 input + " -> " + zpfuzz::fieldsOf(fresh) + " / " + zpfuzz::fieldsOf(rfc));
  }
  zpfuzz::checkRoundTrip(fresh, input);
  return 0;
}
