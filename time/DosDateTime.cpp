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

struct DosDate {
  int year;   // [1980, 2107]
  int month;  // [1, 12]
  int day;    // [1, 31], not checked against the month
};

struct DosClock {
  int hour, minute, second;
};

// False for a word with day 0 or a month outside 1..12.
bool readDate(unsigned dosDate, DosDate& out) {
  out.day = static_cast<int>(dosDate & 0x1F);
  out.month = static_cast<int>((dosDate >> 5) & 0x0F);
  out.year = 1980 + static_cast<int>(dosDate >> 9);
  return out.day != 0 && out.month >= 1 && out.month <= 12;
}

// A field past its range (hour 24-31, minute 60-63, second code 30-31)
// reads as 0 on its own; the other two are kept.
DosClock readTime(unsigned dosTime) {
  const int hour = static_cast<int>(dosTime >> 11);             // [0, 31]
  const int minute = static_cast<int>((dosTime >> 5) & 0x3F);   // [0, 63]
  const int second = 2 * static_cast<int>(dosTime & 0x1F);      // [0, 62]
  return DosClock{hour < 24 ? hour : 0, minute < 60 ? minute : 0, second < 60 ? second : 0};
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

void ZephalSysTime::fromDosDateTime(unsigned short dosDate, unsigned short dosTime, LogBase*) {
  clear();
  DosDate d;
  if (!readDate(dosDate, d)) {
    getCurrentGmt();
    return;
  }
  const DosClock c = readTime(dosTime);
  m_time.wYear = static_cast<uint16_t>(d.year);
  m_time.wMonth = static_cast<uint16_t>(d.month);
  m_time.wDay = static_cast<uint16_t>(d.day);  // 31 February stays as written
  m_time.wDayOfWeek = static_cast<uint16_t>(_zpDateParser::DayOfWeek(d.year, d.month, d.day));
  m_time.wHour = static_cast<uint16_t>(c.hour);
  m_time.wMinute = static_cast<uint16_t>(c.minute);
  m_time.wSecond = static_cast<uint16_t>(c.second);
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
  DosDate d;
  if (!readDate(dosDate, d)) return static_cast<unsigned int>(time(nullptr));
  const DosClock c = readTime(dosTime);
  // The count timegm gives for these fields: a day past the month's end
  // counts on into the next month, as timegm carries it.
  const int64_t days = zpcivil::daysFromCivil(d.year, d.month, 1) + d.day - 1;
  const int64_t seconds = days * zpcivil::kSecondsPerDay + c.hour * 3600 + c.minute * 60 + c.second;
  // The last 32-bit second is 2106-02-07 06:28:15; later dates wrap.
  return static_cast<unsigned int>(static_cast<uint64_t>(seconds));
}
