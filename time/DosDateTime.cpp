// MS-DOS packed date and time, the pair of words in ZIP and FAT entries:
//
//   date word: bits 0-4 day, 5-8 month, 9-15 year-1980
//   time word: bits 0-4 second/2, 5-10 minute, 11-15 hour
//
// Two-second resolution, years 1980 to 2107, no zone.
#include <time.h>

#include "services/internal/CivilDays.h"
#include "services/zpDateParser.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

namespace {

// False for a date word with day 0 or a month outside 1..12.
bool validDate(const ZephalCalendarFields& f) {
  return f.wDay != 0 && f.wMonth >= 1 && f.wMonth <= 12;
}

// A time field past its range (hour 24-31, minute 60-63, second 60-62)
// reads as 0 on its own; the other two are kept.
void repairTime(ZephalCalendarFields& f) {
  if (f.wHour > 23) f.wHour = 0;
  if (f.wMinute > 59) f.wMinute = 0;
  if (f.wSecond > 59) f.wSecond = 0;
}

// Masks keep each field in its bits whatever the record holds; after the
// clamp the year field is [0, 57].
unsigned short packDate(const ZephalCalendarFields& f) {
  const unsigned year = f.wYear - 1980u;
  return static_cast<unsigned short>((f.wDay & 0x1Fu) | ((f.wMonth & 0x0Fu) << 5) | (year << 9));
}

unsigned short packTime(const ZephalCalendarFields& f) {
  const unsigned halfSeconds = (f.wSecond + 1u) / 2;  // an odd second rounds up
  return static_cast<unsigned short>((halfSeconds & 0x1Fu) | ((f.wMinute & 0x3Fu) << 5) |
                                     ((f.wHour & 0x1Fu) << 11));
}

}  // namespace

ZephalCalendarFields ZephalSysTime::unpackDosDateTime(unsigned short dosDate,
                                                      unsigned short dosTime) {
  ZephalCalendarFields f{};
  f.wDay = static_cast<uint16_t>(dosDate & 0x1F);
  f.wMonth = static_cast<uint16_t>((dosDate >> 5) & 0x0F);
  f.wYear = static_cast<uint16_t>(1980 + (dosDate >> 9));    // [1980, 2107]
  f.wHour = static_cast<uint16_t>(dosTime >> 11);             // [0, 31]
  f.wMinute = static_cast<uint16_t>((dosTime >> 5) & 0x3F);   // [0, 63]
  f.wSecond = static_cast<uint16_t>(2 * (dosTime & 0x1F));    // [0, 62]
  return f;
}

void ZephalSysTime::fromDosDateTime(unsigned short dosDate, unsigned short dosTime, LogBase*) {
  clear();
  ZephalCalendarFields f = unpackDosDateTime(dosDate, dosTime);
  if (!validDate(f)) {
    getCurrentGmt();
    return;
  }
  repairTime(f);  // 31 February stays as written
  f.wDayOfWeek = static_cast<uint16_t>(_zpDateParser::DayOfWeek(f.wYear, f.wMonth, f.wDay));
  m_time = f;
  // The words name a wall clock, but nobody recorded whose.
  m_bLocal = true;
  m_bFromUnknownTimezone = true;
}

void ZephalSysTime::toDosDateTime(bool bLocal, unsigned short& dosDate, unsigned short& dosTime,
                                  LogBase* log) {
  if (bLocal) toLocalSysTime();
  // Clamped in the record itself. 2037, not the 2107 the field could hold:
  // the last whole year that a signed 32-bit time_t reaches.
  if (m_time.wYear < 1980) m_time.wYear = 1980;
  if (m_time.wYear > 2037) m_time.wYear = 2037;
  if (m_time.wSecond == 59) {
    // Second 59 rounds up into the next minute; a copy takes the carry,
    // which can run into the next year (and be clamped back again).
    ZephalSysTime next;
    next.copyFrom(*this);
    next.addOneSecond();
    next.toDosDateTime(bLocal, dosDate, dosTime, log);
    return;
  }
  dosDate = packDate(m_time);
  dosTime = packTime(m_time);
}

unsigned int ZephalFileTime::dosDateTimeToUnixTime32(unsigned short dosDate,
                                                     unsigned short dosTime) {
  ZephalCalendarFields f = ZephalSysTime::unpackDosDateTime(dosDate, dosTime);
  if (!validDate(f)) return static_cast<unsigned int>(time(nullptr));
  repairTime(f);
  // The count timegm gives for these fields: a day past the month's end
  // counts on into the next month, as timegm carries it.
  const int64_t days = zpcivil::daysFromCivil(f.wYear, f.wMonth, 1) + f.wDay - 1;
  const int64_t seconds =
      days * zpcivil::kSecondsPerDay + f.wHour * 3600 + f.wMinute * 60 + f.wSecond;
  // The last 32-bit second is 2106-02-07 06:28:15; later dates wrap.
  return static_cast<unsigned int>(static_cast<uint64_t>(seconds));
}
