// OLE Automation dates (days since 1899-12-30 00:00:00, the time of day as
// the fraction) and the day arithmetic done through them. The format itself
// is the date parser's; this file decides which fields go in, in which zone,
// and what becomes of the value.
#include <cstdint>

#include "services/internal/OleRange.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace {

// The span getNumDaysOld counts in: 0100-01-01 to 9999-12-31 00:00:00.
constexpr double kFirstOleDay = zpole::kFirstDay;
constexpr double kLastOleDay = zpole::kLastDay;

// Half a second in days: pushes a date that a rounding error left just short
// of its midnight (on the side toward 0.0) past it before truncation.
constexpr double kHalfSecond = 1.0 / 172800;

constexpr int kOutOfRange = -9999;

// The day number of an OLE date, or false outside the span. The range test
// is written so that NaN fails it too, before the cast (which NaN would make
// undefined). Counted from the span's first day, so never negative.
bool dayNumber(double date, int64_t& out) {
  if (!(date >= kFirstOleDay && date <= kLastOleDay)) return false;
  const double nudged = date > 0.0 ? date + kHalfSecond : date - kHalfSecond;
  out = static_cast<int64_t>(nudged) - zpole::kFirstDay;  // truncates toward zero
  return true;
}

// The parser leaves the 0.0 in place (1899-12-30 00:00:00) for fields that
// name no date it can write.
double oleDateOf(const ZephalCalendarFields& f) {
  double date = 0.0;
  _zpDateParser::TmToVariant(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond, date);
  return date;
}

}  // namespace

double ZephalSysTime::toOleDate(bool bLocal) {
  if (bLocal) {
    toLocalSysTime();
  } else if (m_bLocal) {  // a GMT value needs no call at all
    toGmtSysTime();
  }
  return oleDateOf(m_time);
}

bool ZephalSysTime::fromOleDate(bool bLocal, double date) {
  tm t{};
  t.tm_isdst = -1;
  if (!_zpDateParser::VariantToTm(date, t)) return false;
  brokenDownLoad(t, bLocal);  // marks the fields, shifts nothing
  return true;
}

bool ZephalSysTime::addDays(int n) {
  // On the wall-clock fields as they stand: a local value keeps its time of
  // day across a change of summer time.
  double date = _zpDateParser::SystemTimeToVariant(*this) + static_cast<double>(n);
  _zpDateParser::VariantToSystemTime(date, *this);
  m_isDst = -1;
  return true;
}

int ZephalSysTime::getNumDaysOld() const {
  ZephalSysTime now;
  now.getCurrentGmt();
  int64_t today, day;
  if (!dayNumber(_zpDateParser::SystemTimeToVariant(now), today)) return kOutOfRange;
  if (!dayNumber(_zpDateParser::SystemTimeToVariant(*this), day)) return kOutOfRange;
  return static_cast<int>(today - day);  // |difference| < 3652059
}

bool ZephalSysTime::isAfter(ZephalSysTime& other) {
  toGmtSysTime();
  const double a = oleDateOf(m_time);
  other.toGmtSysTime();
  const double b = oleDateOf(other.m_time);
  return a > b;
}
