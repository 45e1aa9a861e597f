// What loadAnyFormat must leave, worked out independently: the shape tests
// taken on the raw bytes in the documented order, each form then read by its
// own reader (or, for JSON and Unix seconds, by the C library) on a copy.
//
//   /Date(1700000000000+0100)/      JSON steps below, strtoll and sscanf
//   2024-03-07T09:05:03Z            AtomDateToSysTime; on refusal the tests go on
//   20240307090503.123Z             sscanf "%4d%2d%2d%2d%2d%2d"; fewer than six go on
//   1700000000                      strtoul, saturating at 2^32 - 1, via gmtime_r
//   240307090503Z                   fromX509 (UTCTime)
//   20240307090503Z                 zpUIntValueN over its fixed fields
//   anything else                   parseRFC822Date
#pragma once

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "services/zpStdio.h"
#include "time/ZephalSysTime.h"

namespace zpfuzz {

// Unix seconds of a JSON date by its steps, on a std::string:
//  1. trim space, tab, CR and LF at both ends (collapsing inner runs of white
//     space, the next documented step, changes nothing that strtoll or sscanf
//     reads, so it is left out);
//  2. drop the first "Date", then every '/', '(' and ')';
//  3. a leading '-' is the sign of a count before 1970 and goes;
//  4. the first '-' (else the first '+') starts a zone suffix: sscanf "%4d"
//     from the byte after it, as strchr finds it (none past a zero byte),
//     and the text is cut there;
//  5. seconds = strtoll of the rest / 1000, minus whole hours of the suffix.
inline long long jsonSeconds(std::string s) {
  const char* const blanks = " \t\r\n";
  const size_t first = s.find_first_not_of(blanks);
  s = first == std::string::npos ? "" : s.substr(first, s.find_last_not_of(blanks) - first + 1);
  const size_t date = s.find("Date");
  if (date != std::string::npos) s.erase(date, 4);
  for (const char c : {'/', '(', ')'}) s.erase(std::remove(s.begin(), s.end(), c), s.end());
  const bool beforeEpoch = !s.empty() && s[0] == '-';
  if (beforeEpoch) s.erase(0, 1);

  int hhmm = 0;
  size_t cut = s.find('-');
  const bool west = cut != std::string::npos;
  if (!west) cut = s.find('+');
  if (cut != std::string::npos) {
    const char* sign = std::strchr(s.c_str(), s[cut]);
    if (sign != nullptr) std::sscanf(sign + 1, "%4d", &hhmm);
    if (west) hhmm = -hhmm;
    s.erase(cut);
  }
  const long long seconds = std::strtoll(s.c_str(), nullptr, 10) / 1000;  // saturates
  return (beforeEpoch ? -seconds : seconds) - hhmm / 100 * 3600LL;
}

// The loader's result and record for `bytes`, starting from `start`.
inline bool expectedLoadAnyFormat(bool bLocal, const std::string& bytes, const ZephalSysTime& start,
                                  ZephalSysTime& want) {
  want.copyFrom(start);
  const auto count = [&](char c) { return std::count(bytes.begin(), bytes.end(), c); };
  const char* const text = bytes.c_str();  // what the C-string readers see
  const size_t size = bytes.size();
  const char last = size > 0 ? bytes[size - 1] : '\0';

  if (bytes.find("Date(") != std::string::npos && count('/') > 0) {
    want = expectedLoad(jsonSeconds(bytes), false);
    return true;
  }
  const long dashes = count('-'), colons = count(':');
  if (dashes >= 2 && colons == 2 && count('T') >= 1) {
    StringBuffer copy;
    copy.appendN(text, static_cast<unsigned>(size));
    if (_zpDateParser::AtomDateToSysTime(copy, want, nullptr)) return true;
  }
  int f[6];
  if (size == 19 && last == 'Z' && bytes[14] == '.' &&
      std::sscanf(text, "%4d%2d%2d%2d%2d%2d", &f[0], &f[1], &f[2], &f[3], &f[4], &f[5]) == 6) {
    want.clear();
    want.m_time = ZephalCalendarFields{low16(f[0]), low16(f[1]), 0, low16(f[2]),
                                       low16(f[3]), low16(f[4]), low16(f[5]), 0};
    return true;
  }
  if (size > 0 && std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    const unsigned long long v = std::strtoull(text, nullptr, 10);
    want = expectedLoad(static_cast<long long>(std::min<unsigned long long>(v, UINT_MAX)), bLocal);
    return true;
  }
  LogNull log;
  if (dashes == 0 && colons == 0 && last == 'Z' && size == 13) {
    want.fromX509(text, false, log);
    return true;
  }
  if (dashes == 0 && colons == 0 && last == 'Z' && size == 15) {
    // Digit runs of the 15 bytes themselves, a zero byte among them or not;
    // the flags, milliseconds and m_isDst stay.
    unsigned scratch = 0;
    const auto field = [&](unsigned at, unsigned n) { return zpUIntValueN(text + at, n, scratch); };
    ZephalCalendarFields& t = want.m_time;
    t.wYear = low16(field(0, 4));
    t.wMonth = low16(field(4, 2));
    t.wDay = low16(field(6, 2));
    t.wHour = low16(field(8, 2));
    t.wMinute = low16(field(10, 2));
    t.wSecond = low16(field(12, 2));
    t.wDayOfWeek = low16(_zpDateParser::DayOfWeek(t.wYear, t.wMonth, t.wDay));
    return true;
  }
  return _zpDateParser::parseRFC822Date(text, want, log);
}

}  // namespace zpfuzz
