// The free-form loader: tells the date text forms apart by cheap tests on
// the text, in a fixed order, and hands each to its reader.
//
//   /Date(1700000000000+0100)/      JSON milliseconds, optional zone suffix
//   2024-03-07T09:05:03Z            Atom: >= 2 '-', exactly 2 ':', >= 1 'T'
//   20240307090503.123Z             19 bytes, '.' at 14, ends in Z
//   1700000000                      digits only: Unix seconds
//   240307090503Z                   13 bytes, no '-' or ':', ends in Z
//   20240307090503Z                 15 bytes, no '-' or ':', ends in Z
//   Thu, 07 Mar 2024 09:05:03 GMT   anything else: the RFC 822 parser
#include <cstring>

#include "services/internal/FastPaths.h"
#include "services/internal/ParsedReading.h"
#include "services/internal/TextBytes.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "services/zpStdio.h"
#include "time/internal/AsnDigits.h"
#include "time/internal/LoaderForms.h"
#include "time/ZephalSysTime.h"

namespace {

constexpr char kGeneralizedFields[] = "%04d%02d%02d%02d%02d%02d";  // 20240307090503

// Reads a "%04d" zone suffix after `sign` ("+0530" is 530); 0 when none scans.
// `sign` is null when the buffer's sign lies past an embedded zero byte.
int zoneSuffix(const char* sign) {
  int32_t hhmm = 0;
  if (sign != nullptr) _zpStdio::_zpSscanf1(sign + 1, "%04d", &hhmm);
  return hhmm;
}

// On /Date(ms[+-hhmm])/ and nothing else the general steps below edit
// nothing but the brackets away, so reading it in place gives the same
// seconds without the copy, the edits and the scan (BM_PathJsonShape: 31 ns
// instead of 93 ns a text, 2.96x).
bool readPlainJson(const char* text, unsigned size, long long& seconds) {
  zpload::JsonParts j;
  if (!zpload::splitPlainJson(text, size, j)) return false;
  seconds = (j.beforeEpoch ? -(j.millis / 1000) : j.millis / 1000) - j.zone / 100 * 3600LL;
  return true;
}

// Unix seconds of a JSON date text such as /Date(1700000000000-0500)/,
// worked out on a copy. The zone suffix moves the instant by whole hours
// only ("+0530" counts as 5 h), and milliseconds are dropped.
long long jsonUnixSeconds(const StringBuffer& text) {
  long long plain;
  if (zp_fast::on(zp_fast::kJsonShape) && readPlainJson(text.getString(), text.getSize(), plain)) {
    return plain;
  }
  StringBuffer copy;
  copy.append(text);
  copy.trim2();
  copy.trimInsideSpaces();
  copy.replaceFirstOccurance("Date", "", false);
  copy.removeCharOccurances('/');
  copy.removeCharOccurances('(');
  copy.removeCharOccurances(')');

  // A count before 1970 brings its own '-', which is no zone suffix.
  const bool beforeEpoch = copy.charAt(0) == '-';
  if (beforeEpoch) copy.replaceFirstOccurance("-", "", false);

  int zone = 0;  // hhmm east of GMT
  if (copy.containsChar('-')) {
    zone = -zoneSuffix(zpStrChr(copy.getString(), '-'));
    copy.chopAtFirstChar('-');
  } else if (copy.containsChar('+')) {
    zone = zoneSuffix(zpStrChr(copy.getString(), '+'));
    copy.chopAtFirstChar('+');
  }
  const int hours = zone / 100;
  const long long seconds = copy.int64Value() / 1000;
  return (beforeEpoch ? -seconds : seconds) - hours * 3600LL;
}

// The six fields of "20240307090503.123Z" as the "%04d%02d..." scan reads
// them; true when all six convert. Digits only, the usual case, are read by
// position, which gives what the scan gives at a fraction of its cost.
bool readGeneralizedFields(const char* text, int32_t f[6]) {
  if (!zpread::allDigits(text, zpload::kFractionPoint)) {
    return _zpStdio::_zpSscanf6(text, kGeneralizedFields, &f[0], &f[1], &f[2], &f[3], &f[4],
                                &f[5]) == 6;
  }
  f[0] = 100 * zpread::twoDigits(text) + zpread::twoDigits(text + 2);
  for (int i = 1; i < 6; ++i) f[i] = zpread::twoDigits(text + 2 + 2 * i);
  return true;
}

// Unix seconds when the whole text is decimal digits, as isDecimalNumber(true)
// and uintValue() read them (saturated at 2^32 - 1). Up to ten digits, the
// common case, one pass does both (BM_PathDecimalShape: 24 ns instead of
// 29 ns a text, 1.17x).
bool readDecimalSeconds(const StringBuffer& text, unsigned int& seconds) {
  if (!zpread::isDigit(text.lastChar())) return false;  // most texts; one test spares the scan
  const unsigned size = text.getSize();
  if (size == 0 || size > 10 || !zp_fast::on(zp_fast::kDecimalShape)) {
    if (!text.isDecimalNumber(true)) return false;
    seconds = text.uintValue();
    return true;
  }
  long long value;
  if (!zpload::readDigitRun(text.getString(), text.getString() + size, value)) return false;
  seconds = value > 0xFFFFFFFFLL ? 0xFFFFFFFFu : static_cast<unsigned>(value);
  return true;
}

}  // namespace

bool ZephalSysTime::loadAnyFormat(bool bLocal, StringBuffer& text) {
  // Two whole shapes reach one reader whatever the tests below say of them,
  // and by position they skip those tests; any other text fails at its
  // length or first bytes. An HTTP date holds no '/', '-' or final digit or
  // 'Z', so it always falls through to the RFC 822 reader (BM_PathHttpDate:
  // 13 ns instead of 25 ns a text, 1.84x). An RFC 3339 text goes to the Atom
  // reader or, with a "+01:00" (three ':'), to the RFC 822 reader's ISO steps, and
  // both read it alike (BM_PathRfc3339Shape: 22 ns instead of 42 ns a text, 1.91x).
  const char* const bytes = text.getString();
  if (zp_fast::on(zp_fast::kHttpDate) &&
      zpread::loadHttpDateByPosition(bytes, text.getSize(), *this)) {
    return true;
  }
  if (zp_fast::on(zp_fast::kRfc3339Shape) &&
      zpread::loadRfc3339ByPosition(bytes, text.getSize(), *this)) {
    return true;
  }

  // '/' first: most texts hold none, and one memchr says so.
  if (text.containsChar('/') && text.containsSubstring(zpload::kJsonMark)) {
    fromUnixTime64(false, jsonUnixSeconds(text));
    return true;
  }

  // Each count is taken once, and only when a test still depends on it:
  // with fewer than two '-' the Atom test fails whatever the other two say.
  const unsigned int dashes = text.countCharOccurances('-');
  // && stops at the first count that fails the test, before taking the next.
  if (dashes >= 2 &&
      zpload::atomCounts(dashes, text.countCharOccurances(':'), text.countCharOccurances('T')) &&
      _zpDateParser::AtomDateToSysTime(text, *this, nullptr)) {
    return true;
  }

  const unsigned int size = text.getSize();
  const char last = text.lastChar();
  if (zpload::fractionShape(size, last, text.charAt(zpload::kFractionPoint))) {
    int32_t f[6];
    if (readGeneralizedFields(text.getString(), f)) {
      // The fraction is dropped and no day of the week is computed here.
      clear();
      zpcivil::narrowInto(m_time, f[0], f[1], f[2], f[3], f[4], f[5]);
      return true;
    }
  }

  unsigned int seconds;
  if (readDecimalSeconds(text, seconds)) {
    fromUnixTime(bLocal, seconds);
    return true;
  }

  LogNull discard;
  const bool asnShape = zpload::asnShape(dashes, last, [&] { return text.containsChar(':'); });
  if (asnShape && size == zpload::kUtcTimeSize) {
    fromX509(text.getString(), false, discard);
    return true;
  }
  if (asnShape && size == zpload::kGeneralizedSize) {
    // Read in place rather than through fromX509, which stops at a zero
    // byte: the buffer's 15 bytes are all there to read, a zero among them.
    zp_asn::loadX509Fields(text.getString(), true, m_time);
    return true;
  }
  return _zpDateParser::parseRFC822Date(text.getString(), *this, discard);
}
