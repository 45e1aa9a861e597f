// The cursor's out-of-line steps: comments, zones and the refusal record.
#include "services/internal/DateCursor.h"

#include "services/internal/DateZoneNames.h"
#include "services/LogBase.h"

namespace zpread {

// Comments nest and a backslash quotes the next byte (RFC 5322 3.2.2); any
// other byte, 128-255 included, is content.
__attribute__((cold, noinline)) const char* skipComment(const char* p, Reading& r) {
  const char* const open = p;
  int depth = 0;
  for (;;) {
    const char c = *p;
    if (c == '\0') return failAt(r, open, "unterminated comment");
    ++p;
    if (c == '(') {
      ++depth;
    } else if (c == ')') {
      if (--depth == 0) return p;
    } else if (c == '\\') {
      if (*p == '\0') return failAt(r, open, "unterminated comment");
      ++p;
    }
  }
}

namespace {

// A name that tzdata gives several offsets names no instant by itself; a
// numeric offset after it (white space and comments between) settles it.
const char* settleAmbiguous(const char* name, const char* p, Reading& r) {
  const char* q = skipCfws(p, r);
  if (q && isSign(*q)) return readOffset(q, r);
  return failAt(r, name, "zone name with several offsets");
}

// After GMT, UT or UTC, the offset from GMT that follows the name, if any:
// JavaScript's GMT+0100, read as any offset is, and ICU's GMT-5, GMT+5:30
// and UTC−5, whose hour may have one digit and whose minus may be U+2212.
const char* readOffsetFromGmt(const char* p, Reading& r) {
  const bool unicodeMinus = p[0] == '\xE2' && p[1] == '\x88' && p[2] == '\x92';
  if (!unicodeMinus && !isSign(*p)) return p;
  const char* const digits = p + (unicodeMinus ? 3 : 1);
  if (!unicodeMinus && isDigit(digits[0]) && isDigit(digits[1])) return readOffset(p, r);
  int hours, minutes = 0, width;
  const char* q = readDigits(digits, 2, hours, width, r, "bad zone offset");
  if (q && *q == ':') {
    q = readFixed(q + 1, 2, 0, 59, minutes, r, "bad zone offset", "zone offset out of range");
  }
  if (!q) return nullptr;
  if (hours > 23) return failAt(r, p, "zone offset out of range");
  r.offset = (unicodeMinus || *p == '-' ? -1 : 1) * (hours * 60 + minutes);
  r.offsetEnd = q;
  return q;
}

// "++0100", "+-0000": which sign was meant cannot be told (Python, libcurl
// and Go read such texts three ways), so the fields stand as written, the
// zone unknown, as for -0000.
const char* readDoubledSign(const char* p, Reading& r) {
  p = readOffset(p + 1, r);
  r.zoneKnown = false;
  r.offset = 0;
  return p;
}

// A numeric offset, a zone name, or a military letter, at p.
const char* readZone(const char* p, Reading& r, bool mail) {
  if (isSign(*p)) return mail && isSign(p[1]) ? readDoubledSign(p, r) : readOffset(p, r);
  const char* const name = p;
  uint64_t key;
  int len;
  p = readWord(p, key, len, r);
  if (!p) return nullptr;
  r.zoneKnown = true;
  switch (key) {
    case nameKey("gmt"): case nameKey("ut"): case nameKey("utc"):
      r.offset = 0;
      return readOffsetFromGmt(p, r);
    case nameKey("z"): r.offset = 0; return p;
    case nameKey("j"): return failAt(r, name, "J names no military zone");
    default: break;
  }
  // In the shapes of mail the RFC 5322 names keep their RFC meaning,
  // whatever else software uses them for (CST is also China's and Cuba's);
  // elsewhere the table says what software means by them.
  if (r.rfcZoneNames) {
    switch (key) {
      case nameKey("est"): r.offset = -5 * 60; return p;
      case nameKey("edt"): r.offset = -4 * 60; return p;
      case nameKey("cst"): r.offset = -6 * 60; return p;
      case nameKey("cdt"): r.offset = -5 * 60; return p;
      case nameKey("mst"): r.offset = -7 * 60; return p;
      case nameKey("mdt"): r.offset = -6 * 60; return p;
      case nameKey("pst"): r.offset = -8 * 60; return p;
      case nameKey("pdt"): r.offset = -7 * 60; return p;
      default: break;
    }
  }
  if (len == 0) return failAt(r, name, "expected a zone");
  if (len == 1) {
    // RFC 822 got the signs of the military letters backwards, so RFC 5322
    // 4.3 says to read them as -0000.
    r.zoneKnown = false;
    r.offset = 0;
    return p;
  }
  const int minutes = zoneNameOffset(name, static_cast<size_t>(len));
  if (minutes == kUnknownZone) return failAt(r, name, "unknown zone name");
  if (minutes == kAmbiguousZone) return settleAmbiguous(name, p, r);
  r.offset = minutes;
  return p;
}

// The zone at p and where it ends. RFC 9557's suffix ("[Europe/Berlin]")
// and the words Go and mailers add ("+0100 CET m=+0.000123", "-0800 GMT")
// come after such an end. A name must end there: "UTC1" and "GMTx" hold no
// name we know.
const char* readZoneToEnd(const char* p, Reading& r, bool mail) {
  p = readZone(p, r, mail);
  if (!p) return nullptr;
  if (*p == '\0' || isSpace(*p) || *p == '(' || *p == '[') return p;
  if (mail && p == r.offsetEnd) return p;
  return failAt(r, p, "expected a space after the zone");
}

}  // namespace

const char* readMailZone(const char* p, Reading& r) {
  const char* const start = p;
  p = skipCfws(p, r);
  if (!p) return nullptr;
  if (*p == '\0') return p;
  if (p == start) return failAt(r, p, "expected a space before the zone");
  return readZoneToEnd(p, r, true);
}

const char* readIsoZone(const char* p, Reading& r) {
  p = skipCfws(p, r);
  if (!p) return nullptr;
  return *p == '\0' ? p : readZoneToEnd(p, r, false);
}

__attribute__((cold, noinline)) bool refuse(LogBase& log, const char* reader, const char* why,
                                            size_t byte, const char* text) {
  static const char kAt[] = " at byte ";
  char line[96];  // the longest reason is under 40 bytes; a byte count under 21
  char* p = line;
  for (const char* s = why; *s && p < line + 60; ++s) *p++ = *s;
  for (const char* s = kAt; *s; ++s) *p++ = *s;
  char digits[24];
  char* d = digits + sizeof digits;
  do {
    *--d = static_cast<char>('0' + byte % 10);
    byte /= 10;
  } while (byte != 0);
  while (d < digits + sizeof digits) *p++ = *d++;
  *p = '\0';
  log.EnterContext(reader, 1);
  log.LogDataStr("error", line);
  log.LogDataStr("text", text ? text : "");
  log.LeaveContext();
  return false;
}

}  // namespace zpread
