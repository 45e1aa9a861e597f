// Fixed text layouts: the ISO 8601 basic timestamp, ASN.1 UTCTime and
// GeneralizedTime, RFC 822 (through the date parser), and the log record.
#include <cstring>

#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/XString.h"
#include "services/zpDateParser.h"
#include "services/internal/PutDigits.h"
#include "services/zpStdio.h"
#include "time/internal/AsnDigits.h"
#include "time/ZephalSysTime.h"

namespace {

// The two exchange layouts are written digit by digit (zpPutDigits prints
// what "%0Nw" prints): interpreting a format costs more than the rest of the
// work together.
//   ISO 8601 basic  %04w%02w%02wT%02w%02w%02wZ   20240307T090503Z
//   UTCTime         %02d%02d%02d%02d%02d%02dZ    240307090503Z
constexpr char kLogText[] = "%w/%w/%w %w:%02w:%02w";  // 3/7/2024 9:05:03
constexpr unsigned int kTextCapacity = 80;
constexpr unsigned int kLogCapacity = 100;

// UTCTime needs 12 readable bytes, GeneralizedTime 14; measured first so
// that no read passes the terminating zero. False for a null text.
bool holdsAsnFields(const char* text, bool fourDigitYear) {
  const size_t need = fourDigitYear ? 14 : 12;
  return text != nullptr && strnlen(text, need) == need;
}

void appendIso8601(const ZephalCalendarFields& f, StringBuffer& out) {
  char text[kTextCapacity];
  char* p = zp_detail::putDigits(text, f.wYear, 4);
  p = zp_detail::putDigits(p, f.wMonth, 2);
  p = zp_detail::putDigits(p, f.wDay, 2);
  *p++ = 'T';
  p = zp_detail::putDigits(p, f.wHour, 2);
  p = zp_detail::putDigits(p, f.wMinute, 2);
  p = zp_detail::putDigits(p, f.wSecond, 2);
  *p++ = 'Z';
  out.appendN(text, static_cast<unsigned int>(p - text));
}

}  // namespace

void ZephalSysTime::getIso8601Timestamp(StringBuffer& out) const {
  if (!m_bLocal) {
    appendIso8601(m_time, out);
    return;
  }
  ZephalSysTime gmt;
  gmt.copyFrom(*this);
  gmt.toGmtSysTime();
  appendIso8601(gmt.m_time, out);
}

bool ZephalSysTime::getAsnUtcDateTime(StringBuffer& out) {
  if (m_bLocal) toGmtSysTime();
  const uint32_t fields[6] = {m_time.wYear % 100u, m_time.wMonth,  m_time.wDay,
                              m_time.wHour,        m_time.wMinute, m_time.wSecond};
  char text[kTextCapacity];
  char* p = text;
  for (uint32_t field : fields) p = zp_detail::putDigits(p, field, 2);
  *p++ = 'Z';
  return out.appendN(text, static_cast<unsigned int>(p - text));
}

bool ZephalSysTime::fromAsnUtcDateTime(const char* text, LogBase& /*log*/) {
  if (!holdsAsnFields(text, false)) return false;
  zp_asn::storeAsnFields(text, false, m_time);
  m_bLocal = false;
  m_isDst = -1;
  return true;
}

bool ZephalSysTime::fromX509(const char* text, bool bGeneralizedTime, LogBase& /*log*/) {
  if (!holdsAsnFields(text, bGeneralizedTime)) return false;
  zp_asn::loadX509Fields(text, bGeneralizedTime, m_time);
  return true;
}

bool ZephalSysTime::setFromRfc822String(const char* text, LogBase& log) {
  return _zpDateParser::parseRFC822Date(text, *this, log);
}

bool ZephalSysTime::getRfc822String(StringBuffer& out) {
  return _zpDateParser::generateDateRFC822(*this, out);
}

void ZephalSysTime::getRfc822StringX(XString& out) {
  StringBuffer text;
  _zpDateParser::generateDateRFC822(*this, text);
  out.appendUtf8(text.getString());
}

void ZephalSysTime::logSysTime(const char* tag, LogBase& log) const {
  log.EnterContext(tag, 1);
  char text[kLogCapacity];
  _zpStdio::_zpSprintf6(text, kLogCapacity, kLogText, &m_time.wMonth, &m_time.wDay,
                        &m_time.wYear, &m_time.wHour, &m_time.wMinute, &m_time.wSecond);
  log.LogDataStr(m_bLocal ? "localDateTime" : "gmtDateTime", text);
  if (m_bFromUnknownTimezone) log.LogDataLong("fromUnknownTimezone", 1);
  log.LeaveContext();
}
