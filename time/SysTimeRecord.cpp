// The record itself: reset, copy, SYSTEMTIME and tm exchange, calendar steps.
#include <cstring>

#include "services/internal/CivilDays.h"
#include "time/TimeFunctions.h"
#include "time/ZephalSysTime.h"

void ZephalSysTime::clear() {
  m_time = ZephalCalendarFields{};
  m_bLocal = false;
  m_bFlagA = true;
  m_bFlagB = true;
  m_bFromUnknownTimezone = false;
  m_isDst = -1;
}

void ZephalSysTime::copyFrom(const ZephalSysTime& src) {
  m_time = src.m_time;
  m_bLocal = src.m_bLocal;
  m_bFlagA = src.m_bFlagA;
  m_bFlagB = src.m_bFlagB;
  m_bFromUnknownTimezone = src.m_bFromUnknownTimezone;
  m_isDst = src.m_isDst;
}

// The eight fields lie in SYSTEMTIME's order and widths at the start of both
// (ZephalSysTime.h asserts it), so they copy as one block.
void ZephalSysTime::toSYSTEMTIME(_SYSTEMTIME& st) const {
  std::memcpy(&st, &m_time, sizeof m_time);
  st.nIsDst = m_isDst;
}

void ZephalSysTime::fromSYSTEMTIME(const _SYSTEMTIME& st, bool bLocal) {
  std::memcpy(&m_time, &st, sizeof m_time);
  m_bLocal = bLocal;
  m_isDst = st.nIsDst;
}

long long ZephalSysTime::toTmStruct(tm& t) const {
  toBrokenDownImage(t, true);
  return zp_mktime64(&t);
}

void ZephalSysTime::fromTmStruct(bool bLocal, const tm& t) { brokenDownLoad(t, bLocal); }

void ZephalSysTime::toBrokenDownImage(tm& t, bool asLocal) const {
  t = tm{};
  // Signed arithmetic: month 0 gives -1, which the C library normalises to
  // December of the year before.
  t.tm_year = static_cast<int>(m_time.wYear) - 1900;
  t.tm_mon = static_cast<int>(m_time.wMonth) - 1;
  t.tm_mday = m_time.wDay;
  t.tm_hour = m_time.wHour;
  t.tm_min = m_time.wMinute;
  t.tm_sec = m_time.wSecond;
  t.tm_wday = m_time.wDayOfWeek;
  t.tm_isdst = asLocal ? -1 : 0;
}

void ZephalSysTime::brokenDownLoad(const tm& t, bool bLocal) {
  // Each field keeps the low 16 bits of the int. The sums are taken in
  // unsigned arithmetic, which wraps where int would overflow (tm_year from
  // 2^31 - 1900 on, a year gmtime_r reaches) and leaves the low 16 bits as
  // the exact sum has them.
  m_time.wYear = static_cast<uint16_t>(static_cast<unsigned>(t.tm_year) + 1900u);
  m_time.wMonth = static_cast<uint16_t>(static_cast<unsigned>(t.tm_mon) + 1u);
  m_time.wDayOfWeek = static_cast<uint16_t>(t.tm_wday);
  m_time.wDay = static_cast<uint16_t>(t.tm_mday);
  m_time.wHour = static_cast<uint16_t>(t.tm_hour);
  m_time.wMinute = static_cast<uint16_t>(t.tm_min);
  m_time.wSecond = static_cast<uint16_t>(t.tm_sec);
  m_time.wMilliseconds = 0;
  m_isDst = -1;
  m_bLocal = bLocal;
}

void ZephalSysTime::resetLoad(const tm& t, bool bLocal) {
  clear();
  brokenDownLoad(t, bLocal);
}

int ZephalSysTime::numDaysThisMonth() {
  if (m_time.wMonth == 0) m_time.wMonth = 1;
  if (m_time.wMonth >= 13) m_time.wMonth = 12;
  return zpcivil::daysInMonth(m_time.wYear, m_time.wMonth);
}

void ZephalSysTime::addOneSecond() {
  // Each carry tests for equality with its limit, so a field already past
  // it just goes up by one.
  if (++m_time.wSecond != 60) return;
  m_time.wSecond = 0;
  if (++m_time.wMinute != 60) return;
  m_time.wMinute = 0;
  if (++m_time.wHour != 24) return;
  m_time.wHour = 0;
  ++m_time.wDay;
  if (m_time.wDay <= numDaysThisMonth()) return;
  m_time.wDay = 1;
  if (++m_time.wMonth <= 12) return;
  m_time.wMonth = 1;
  ++m_time.wYear;
}
