// The loader's JSON steps and its decimal form written out one step at a
// time, with nothing skipped: the reference that loadAnyFormat's quicker
// readings of the same forms must match, field for field, on every text.
// Used by tests/LoaderTest.cpp and the json_decimal fuzz target.
#pragma once

#include <climits>

#include "services/StringBuffer.h"
#include "services/zpStdio.h"
#include "time/ZephalSysTime.h"

namespace zpsteps {

// Step 5's "%04d" after the sign at `sign`; 0 when nothing scans or the sign
// lies past a zero byte, where a C-string search cannot find it.
inline int scannedZone(const char* sign) {
  int zone = 0;
  if (sign != nullptr) _zpStdio::_zpSscanf1(sign + 1, "%04d", &zone);
  return zone;
}

// Unix seconds of a text that passed the JSON test.
inline long long jsonSeconds(const StringBuffer& text) {
  StringBuffer copy;  // 1: the caller's text stays as it is
  copy.append(text);
  copy.trim2();  // 2
  copy.trimInsideSpaces();
  copy.replaceFirstOccurance("Date", "", false);  // 3
  copy.removeCharOccurances('/');                 // 4
  copy.removeCharOccurances('(');
  copy.removeCharOccurances(')');
  // The module's reading of a count before 1970, where the steps leave the
  // choice open: a '-' that opens the copy signs the count.
  const bool negative = copy.charAt(0) == '-';
  if (negative) copy.replaceFirstOccurance("-", "", false);
  int z = 0;  // 5
  if (copy.containsChar('-')) {
    z = -scannedZone(zpStrChr(copy.getString(), '-'));
    copy.chopAtFirstChar('-');
  } else if (copy.containsChar('+')) {
    z = scannedZone(zpStrChr(copy.getString(), '+'));
    copy.chopAtFirstChar('+');
  }
  const int h = z / 100;                          // 6
  const long long s = copy.int64Value() / 1000;   // 7
  return (negative ? -s : s) - h * 3600LL;        // 8
}

// Loads `text` into `t` as the JSON steps or the decimal form read it;
// false, with `t` untouched, for a text that takes neither.
inline bool loadJsonOrDecimal(bool bLocal, const StringBuffer& text, ZephalSysTime& t) {
  if (text.containsSubstring("Date(") && text.containsChar('/')) {
    const long long u = jsonSeconds(text);
    if (u >= 0 && u <= UINT_MAX) {
      t.fromUnixTime(false, static_cast<unsigned>(zp64::toUnsignedLong(u)));  // 8, 9
    } else {
      t.fromUnixTime64(false, u);  // the module's choice where 32 bits cannot hold u
    }
    return true;
  }
  // Only digits reach the decimal test: no '/', '-' or 'Z' lets an earlier form take them.
  if (!text.isDecimalNumber(true)) return false;
  t.fromUnixTime(bLocal, text.uintValue());
  return true;
}

}  // namespace zpsteps
