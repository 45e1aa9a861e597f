// The writers on arbitrary fields against snprintf of the same fields:
// getIso8601Timestamp, getAsnUtcDateTime, getRfc822String (and its XString
// form), logSysTime and logFileTimeAsGmt. A local value is written as its
// GMT reading, which the oracle takes from mktime and gmtime_r; the process
// runs in a zone with summer time.
#include <time.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/XString.h"
#include "services/zpDateParser.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

namespace {

using zpfuzz::fail;
using zpfuzz::fieldsOf;
using zpfuzz::imageOf;

// printf of whatever fits; the fields are 16 bits, so every text is short.
template <typename... Args>
std::string format(const char* layout, Args... args) {
  char text[128];
  std::snprintf(text, sizeof text, layout, args...);
  return text;
}

// The GMT reading of a local value: mktime's instant broken down by gmtime_r,
// each field cut to 16 bits as the record stores it.
ZephalCalendarFields gmtReading(const ZephalCalendarFields& f) {
  tm image = imageOf(f, true);
  const time_t instant = mktime(&image);
  tm g;
  gmtime_r(&instant, &g);
  using zpfuzz::low16;
  return ZephalCalendarFields{low16(g.tm_year, 1900), low16(g.tm_mon, 1), low16(g.tm_wday),
                              low16(g.tm_mday),       low16(g.tm_hour),   low16(g.tm_min),
                              low16(g.tm_sec),        0};
}

void expectText(const char* who, const std::string& got, const std::string& want,
                const ZephalSysTime& value) {
  if (got != want) fail(who, fieldsOf(value) + " -> " + got + ", want " + want);
}

// ISO 8601 basic and UTCTime: "%04u%02u%02uT%02u%02u%02uZ" and
// "%02u%02u%02u%02u%02u%02uZ" (year modulo 100) of the GMT reading.
// getIso8601Timestamp leaves the value alone; getAsnUtcDateTime leaves it GMT.
void checkExchangeTexts(const ZephalSysTime& value) {
  const ZephalCalendarFields g = value.m_bLocal ? gmtReading(value.m_time) : value.m_time;
  StringBuffer iso;
  iso.append("x");
  value.getIso8601Timestamp(iso);
  expectText("getIso8601Timestamp", iso.getString(),
             format("x%04u%02u%02uT%02u%02u%02uZ", g.wYear, g.wMonth, g.wDay, g.wHour, g.wMinute,
                    g.wSecond),
             value);

  ZephalSysTime copy;
  copy.copyFrom(value);
  StringBuffer asn;
  if (!copy.getAsnUtcDateTime(asn)) fail("getAsnUtcDateTime refused", fieldsOf(value));
  expectText("getAsnUtcDateTime", asn.getString(),
             format("%02u%02u%02u%02u%02u%02uZ", g.wYear % 100, g.wMonth, g.wDay, g.wHour,
                    g.wMinute, g.wSecond),
             value);
  if (copy.m_bLocal || copy.m_time.wYear != g.wYear || copy.m_time.wSecond != g.wSecond ||
      copy.m_time.wDay != g.wDay) {
    fail("getAsnUtcDateTime did not leave the GMT reading", fieldsOf(copy));
  }
}

// RFC 822: C-locale day and month names (strftime) of timegm's weekday, the
// fields as they stand, then GMT or the local offset as +hhmm (seconds of
// the offset dropped). No month name, no text.
void checkRfc822(const ZephalSysTime& value) {
  ZephalSysTime copy;
  copy.copyFrom(value);
  StringBuffer out;
  const ZephalCalendarFields& f = value.m_time;
  const bool written = copy.getRfc822String(out);
  if (f.wMonth < 1 || f.wMonth > 12) {
    if (written) fail("getRfc822String wrote a month with no name", fieldsOf(value));
    return;
  }
  tm day = zpfuzz::tmOf(f.wYear, f.wMonth, f.wDay);  // an hour past 23 must not move the weekday
  timegm(&day);
  tm names{};
  names.tm_wday = day.tm_wday;
  names.tm_mon = f.wMonth - 1;
  char dayName[8], monthName[8];
  strftime(dayName, sizeof dayName, "%a", &names);
  strftime(monthName, sizeof monthName, "%b", &names);
  std::string zone = "GMT";
  if (value.m_bLocal) {
    // The offset that makes the text name mktime's instant of the reading
    // (in a gap that skips an hour, not the tm_gmtoff mktime lands on).
    tm asGmt = imageOf(f, false), asLocal = imageOf(f, true);
    const long offset = static_cast<long>(timegm(&asGmt) - mktime(&asLocal));
    const long mins = (offset < 0 ? -offset : offset) / 60;
    zone = format("%c%02ld%02ld", offset < 0 ? '-' : '+', mins / 60 % 100, mins % 60);
  }
  const std::string want = format("%s, %02u %s %04u %02u:%02u:%02u ", dayName, f.wDay, monthName,
                                  f.wYear, f.wHour, f.wMinute, f.wSecond) + zone;
  expectText("getRfc822String", out.getString(), want, value);
  XString x;
  copy.copyFrom(value);
  copy.getRfc822StringX(x);
  expectText("getRfc822StringX", x.getUtf8(), want, value);
}

// The log record: "%u/%u/%u %u:%02u:%02u" (month, day, year) of the fields as
// they stand, under the name of their clock, then the unknown-zone flag.
std::string logLines(const char* tag, const ZephalCalendarFields& f, bool local, bool unknown) {
  return format("%s:\n  %s: %u/%u/%u %u:%02u:%02u\n", tag, local ? "localDateTime" : "gmtDateTime",
                f.wMonth, f.wDay, f.wYear, f.wHour, f.wMinute, f.wSecond) +
         (unknown ? "  fromUnknownTimezone: 1\n" : "");
}

void checkLogs(const ZephalSysTime& value, long long seconds) {
  LogRecorder log;
  value.logSysTime("value", log);
  expectText("logSysTime", log.render(),
             logLines("value", value.m_time, value.m_bLocal, value.m_bFromUnknownTimezone), value);

  // A file time is logged as gmtime_r breaks it down (all zero where it cannot).
  ZephalFileTime ft;
  ft.fromUnixTime64(seconds, 0);
  ft.m_bFromUnknownTimezone = value.m_bFromUnknownTimezone;
  LogRecorder fileLog;
  ft.logFileTimeAsGmt("file", fileLog);
  const ZephalSysTime g = zpfuzz::expectedLoad(seconds, false);
  expectText("logFileTimeAsGmt", fileLog.render(),
             logLines("file", g.m_time, false, ft.m_bFromUnknownTimezone), g);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  zpfuzz::Numbers in(data, size);
  ZephalSysTime value;
  value.m_time = in.fields();
  value.m_bLocal = in.flag();
  value.m_bFromUnknownTimezone = in.flag();
  const ZephalSysTime before = value;
  checkExchangeTexts(value);
  checkRfc822(value);
  checkLogs(value, in.i64());
  if (!zpfuzz::sameRecord(value, before)) fail("a const writer changed the value", fieldsOf(value));
  return 0;
}
