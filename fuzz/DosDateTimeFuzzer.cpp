// MS-DOS date and time words against timegm: dosDateTimeToUnixTime32,
// fromDosDateTime, and toDosDateTime on any record, with its year clamp and
// its rounding of an odd second. The process runs in a zone with summer
// time, so writing a GMT record as local meets clock changes.
#include <time.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

namespace {

using zpfuzz::fail;
using zpfuzz::fieldsOf;
using zpfuzz::tmOf;

// The words as the format defines them:
//   date word: bits 0-4 day, 5-8 month, 9-15 year-1980
//   time word: bits 0-4 second/2, 5-10 minute, 11-15 hour
struct Words {
  int year, month, day, hour, minute, second;
};

Words decode(unsigned dosDate, unsigned dosTime) {
  return Words{1980 + static_cast<int>(dosDate >> 9), static_cast<int>(dosDate >> 5 & 15),
               static_cast<int>(dosDate & 31),        static_cast<int>(dosTime >> 11),
               static_cast<int>(dosTime >> 5 & 63),   2 * static_cast<int>(dosTime & 31)};
}

std::string wordsText(unsigned dosDate, unsigned dosTime) {
  return std::to_string(dosDate) + "/" + std::to_string(dosTime);
}

// A bad date word (day 0, month outside 1..12) reads as the clock: the two
// calls are compared only when the clock read one second around them.
template <typename Call>
bool atOneSecond(Call call, time_t& now) {
  now = time(nullptr);
  call();
  return time(nullptr) == now;
}

// Both readers, for any pair of words. Good words: dosDateTimeToUnixTime32
// is timegm of the fields (an hour 24+, a minute 60+, a second 60+ each
// read as 0; a day past the month's end carried), low 32 bits;
// fromDosDateTime stores the fields as read with timegm's weekday, marked
// local and of unknown zone. Bad words: the current seconds, and the
// current GMT reading.
void checkReaders(uint16_t dosDate, uint16_t dosTime) {
  const Words w = decode(dosDate, dosTime);
  const bool good = w.day != 0 && w.month >= 1 && w.month <= 12;
  const int hour = w.hour < 24 ? w.hour : 0, minute = w.minute < 60 ? w.minute : 0,
            second = w.second < 60 ? w.second : 0;
  unsigned int count = 0;
  ZephalSysTime read;
  zpfuzz::mark(read);
  time_t now;
  const auto readBoth = [&] {
    count = ZephalFileTime::dosDateTimeToUnixTime32(dosDate, dosTime);
    read.fromDosDateTime(dosDate, dosTime, nullptr);
  };
  if (!atOneSecond(readBoth, now)) return;
  ZephalSysTime want = zpfuzz::expectedLoad(now, false);
  unsigned int wantCount = static_cast<unsigned int>(now);
  if (good) {
    tm t = tmOf(w.year, w.month, w.day, hour, minute, second);
    wantCount = static_cast<unsigned int>(timegm(&t));
    want.m_time = ZephalCalendarFields{
        static_cast<uint16_t>(w.year),   static_cast<uint16_t>(w.month),  static_cast<uint16_t>(t.tm_wday),
        static_cast<uint16_t>(w.day),    static_cast<uint16_t>(hour),     static_cast<uint16_t>(minute),
        static_cast<uint16_t>(second),   0};
    want.m_bLocal = true;
    want.m_bFromUnknownTimezone = true;
  }
  if (count != wantCount) {
    fail("dosDateTimeToUnixTime32 differs from timegm",
         wordsText(dosDate, dosTime) + " -> " + std::to_string(count) + ", want " + std::to_string(wantCount));
  }
  if (!zpfuzz::sameRecord(read, want)) {
    fail("fromDosDateTime", wordsText(dosDate, dosTime) + " -> " + fieldsOf(read) + ", want " + fieldsOf(want));
  }
}

bool isRealDate(const ZephalCalendarFields& f) {
  tm t = tmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond);
  const time_t c = timegm(&t);
  tm g;
  return f.wMonth >= 1 && f.wMonth <= 12 && f.wDay >= 1 && f.wHour < 24 && f.wMinute < 60 &&
         f.wSecond < 60 && gmtime_r(&c, &g) != nullptr && g.tm_mday == f.wDay && g.tm_mon + 1 == f.wMonth;
}

// toDosDateTime on any record. With bLocal a GMT record first becomes
// localtime_r's reading of its instant. Then the record's year is clamped to
// 1980..2037 in place. For a real date the words name that reading with an
// odd second rounded up (timegm and gmtime_r carry it), and a carry into 2038
// is clamped back to 2037. For anything else they hold each field masked to
// its bits, the second halved rounding up; second 59 there goes through the
// record's own calendar step, which this does not model.
void checkWriter(const ZephalCalendarFields& f, bool recordLocal, bool bLocal) {
  ZephalSysTime t;
  zpfuzz::mark(t);
  t.m_time = f;
  t.m_bLocal = recordLocal;
  ZephalCalendarFields want = f;
  if (bLocal && !recordLocal) {
    tm image = tmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond);
    const time_t instant = timegm(&image);
    tm local;
    localtime_r(&instant, &local);
    want = ZephalCalendarFields{zpfuzz::low16(local.tm_year, 1900), zpfuzz::low16(local.tm_mon, 1),
                                zpfuzz::low16(local.tm_wday),       zpfuzz::low16(local.tm_mday),
                                zpfuzz::low16(local.tm_hour),       zpfuzz::low16(local.tm_min),
                                zpfuzz::low16(local.tm_sec),        0};
  }
  if (want.wYear < 1980) want.wYear = 1980;
  if (want.wYear > 2037) want.wYear = 2037;

  unsigned short dosDate = 0xFFFF, dosTime = 0xFFFF;
  t.toDosDateTime(bLocal, dosDate, dosTime, nullptr);
  const std::string trace = fieldsOf(t) + " -> " + wordsText(dosDate, dosTime);
  const ZephalCalendarFields& got = t.m_time;
  if (got.wYear != want.wYear || got.wMonth != want.wMonth || got.wDay != want.wDay ||
      got.wHour != want.wHour || got.wMinute != want.wMinute || got.wSecond != want.wSecond ||
      t.m_bLocal != (bLocal || recordLocal)) {
    fail("toDosDateTime left the record other than converted and clamped", trace);
  }

  const Words w = decode(dosDate, dosTime);
  if (isRealDate(want)) {
    tm image = tmOf(want.wYear, want.wMonth, want.wDay, want.wHour, want.wMinute, want.wSecond);
    const time_t rounded = timegm(&image) + (want.wSecond & 1);
    tm g;
    gmtime_r(&rounded, &g);
    const int year = g.tm_year + 1900 > 2037 ? 2037 : g.tm_year + 1900;
    if (w.year != year || w.month != g.tm_mon + 1 || w.day != g.tm_mday || w.hour != g.tm_hour ||
        w.minute != g.tm_min || w.second != g.tm_sec) {
      fail("toDosDateTime's words name another time than timegm's", trace);
    }
  } else if (want.wSecond != 59) {
    if (w.year != want.wYear || w.month != (want.wMonth & 15) || w.day != (want.wDay & 31) ||
        w.hour != (want.wHour & 31) || w.minute != (want.wMinute & 63) ||
        w.second != 2 * ((want.wSecond + 1) / 2 & 31)) {
      fail("toDosDateTime did not mask the fields into their bits", trace);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zpfuzz::Numbers in(data, size);
  const uint16_t dosDate = in.u16(), dosTime = in.u16();
  checkReaders(dosDate, dosTime);
  // Arbitrary fields, and real ones drawn from the same words, so that both
  // of the writer's cases are met often.
  const ZephalCalendarFields f = in.fields();
  const bool recordLocal = in.flag(), bLocal = in.flag();
  checkWriter(f, recordLocal, bLocal);
  const Words w = decode(dosDate, dosTime);
  const ZephalCalendarFields near{static_cast<uint16_t>(w.year - 16 + w.month),
                                  static_cast<uint16_t>(w.month % 12 + 1), 0,
                                  static_cast<uint16_t>(w.day % 28 + 1),
                                  static_cast<uint16_t>(w.hour % 24),
                                  static_cast<uint16_t>(w.minute % 60),
                                  static_cast<uint16_t>(w.second % 60 + (dosTime >> 15)), 0};
  checkWriter(near, recordLocal, bLocal);
  return 0;
}
