// Reading the fixed-position digit fields of ASN.1 times. Internal to the
// module: the text readers check a field run once, then read it plainly.
#pragma once

#include <cstdint>

#include "services/internal/ParsedReading.h"
#include "services/internal/TextBytes.h"
#include "services/zpDateParser.h"
#include "services/zpStdio.h"
#include "time/ZephalSysTime.h"

namespace zp_asn {

// Reads UTCTime (yymmddhhmmss, two-digit year with the pivot 50) or, with
// fourDigitYear, GeneralizedTime (yyyymmddhhmmss) from a text with at least
// that many readable bytes, and stores the six fields as read; nothing else
// changes. Each field is what zpUIntValueN gives over its width (the year
// over all four), so a field stops at its first non-digit, a zero byte
// included: "20 40307090503Z" is the year 20.
inline void storeAsnFields(const char* text, bool fourDigitYear, ZephalCalendarFields& t) {
  const unsigned yearDigits = fourDigitYear ? 4 : 2;
  // Digits only, the usual case, need none of zpUIntValueN's stops.
  const bool digitsOnly = zpread::allDigits(text, yearDigits + 10);
  unsigned scratch = 0;
  auto field = [&](const char* p) {
    return digitsOnly ? static_cast<unsigned>(zpread::twoDigits(p)) : zpUIntValueN(p, 2, scratch);
  };
  unsigned year = digitsOnly && fourDigitYear
                      ? static_cast<unsigned>(100 * zpread::twoDigits(text) + zpread::twoDigits(text + 2))
                      : zpUIntValueN(text, yearDigits, scratch);
  if (!fourDigitYear) year = static_cast<unsigned>(zpcivil::yearFromTwoDigits(static_cast<int>(year)));
  const char* p = text + yearDigits;
  zpcivil::narrowInto(t, year, field(p), field(p + 2), field(p + 4), field(p + 6), field(p + 8));
}

// fromX509's reading: the six fields, then their day of the week.
inline void loadX509Fields(const char* text, bool fourDigitYear, ZephalCalendarFields& t) {
  storeAsnFields(text, fourDigitYear, t);
  t.wDayOfWeek = static_cast<uint16_t>(_zpDateParser::DayOfWeek(t.wYear, t.wMonth, t.wDay));
}

}  // namespace zp_asn
