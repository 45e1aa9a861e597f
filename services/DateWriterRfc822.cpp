// generateDateRFC822: the RFC 1123 form of mail and HTTP, in GMT or with the
// local zone's numeric offset.
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "services/internal/PutDigits.h"
#include "services/zpStdio.h"
#include "time/ZephalSysTime.h"

bool _zpDateParser::generateDateRFC822(ZephalSysTime& value, StringBuffer& out) {
  static const char kDays[] = "SunMonTueWedThuFriSat";
  static const char kMonths[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
  const ZephalCalendarFields& t = value.m_time;
  // A month outside 1-12 has no name; writing some other month would lie.
  if (t.wMonth < 1 || t.wMonth > 12) return false;

  char buf[48];  // "Thu, 07 Mar 2024 09:05:03 +0100" is 31; wide 16-bit fields add 13
  char* p = buf;
  const char* name = kDays + 3 * DayOfWeek(t.wYear, t.wMonth, t.wDay);
  *p++ = name[0];
  *p++ = name[1];
  *p++ = name[2];
  *p++ = ',';
  *p++ = ' ';
  p = zp_detail::putDigits(p, t.wDay, 2);
  *p++ = ' ';
  name = kMonths + 3 * (t.wMonth - 1);
  *p++ = name[0];
  *p++ = name[1];
  *p++ = name[2];
  *p++ = ' ';
  p = zp_detail::putDigits(p, t.wYear, 4);
  *p++ = ' ';
  p = zp_detail::putDigits(p, t.wHour, 2);
  *p++ = ':';
  p = zp_detail::putDigits(p, t.wMinute, 2);
  *p++ = ':';
  p = zp_detail::putDigits(p, t.wSecond, 2);
  *p++ = ' ';
  if (!value.m_bLocal) {
    *p++ = 'G';
    *p++ = 'M';
    *p++ = 'T';
  } else {
    const int offset = value.getGmtOffsetInSeconds(0);
    // Seconds of an offset (old local mean times) are dropped, not rounded.
    const unsigned mins = static_cast<unsigned>(offset < 0 ? -offset : offset) / 60;
    *p++ = offset < 0 ? '-' : '+';
    p = zp_detail::putDigits(p, mins / 60 % 100, 2);
    p = zp_detail::putDigits(p, mins % 60, 2);
  }
  return out.appendN(buf, static_cast<unsigned>(p - buf));
}
