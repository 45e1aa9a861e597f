// The last step shared by the date readers: a reading already shifted to
// GMT, narrowed into a value. Internal to the parser.
#pragma once

#include <cstdint>

#include "services/CivilDays.h"
#include "time/ZephalSysTime.h"

namespace zpcivil {

// Stores `f` (day number `days`) as a GMT value: m_isDst -1, the
// unknown-zone flag as given, m_bFlagA and m_bFlagB left alone.
inline void storeGmtReading(const DateTimeFields& f, int64_t days, bool unknownZone,
                            ZephalSysTime& value) {
  ZephalCalendarFields& t = value.m_time;
  t.wYear = static_cast<uint16_t>(f.year);
  t.wMonth = static_cast<uint16_t>(f.month);
  t.wDayOfWeek = static_cast<uint16_t>(weekdayFromDays(days));
  t.wDay = static_cast<uint16_t>(f.day);
  t.wHour = static_cast<uint16_t>(f.hour);
  t.wMinute = static_cast<uint16_t>(f.minute);
  t.wSecond = static_cast<uint16_t>(f.second);
  t.wMilliseconds = static_cast<uint16_t>(f.millis);
  value.m_bLocal = false;
  value.m_bFromUnknownTimezone = unknownZone;
  value.m_isDst = -1;
}

}  // namespace zpcivil
