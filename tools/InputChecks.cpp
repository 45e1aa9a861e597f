#include "tools/InputChecks.h"

#include <charconv>
#include <cstdio>

namespace zpdate {

const char kOutsideYears[] = "outside the years 0001 to 9999";

// Out of the way of the loops that call them: most inputs are no refusal.
[[gnu::cold, gnu::noinline]] bool refuse(std::string& why, const char* reason) {
  why = reason;
  return false;
}

[[gnu::cold, gnu::noinline]] bool refuseFormatted(std::string& why, const char* format, unsigned a,
                                                  unsigned b, unsigned c) {
  char text[96];
  std::snprintf(text, sizeof text, format, a, b, c);
  why = text;
  return false;
}

bool checkFields(const ZephalCalendarFields& f, unsigned lastSecond, std::string& why) {
  if (f.wMonth < 1 || f.wMonth > 12) return refuseFormatted(why, "impossible date: month %u", f.wMonth);
  ZephalSysTime month;  // numDaysThisMonth's repair of the month does no harm here
  month.m_time = f;
  if (f.wDay < 1 || f.wDay > month.numDaysThisMonth()) {
    return refuseFormatted(why, "impossible date: day %u of %04u-%02u", f.wDay, f.wYear, f.wMonth);
  }
  if (f.wHour > 23) return refuseFormatted(why, "impossible time: hour %u", f.wHour);
  if (f.wMinute > 59) return refuseFormatted(why, "impossible time: minute %u", f.wMinute);
  if (f.wSecond > lastSecond) return refuseFormatted(why, "impossible time: second %u", f.wSecond);
  return true;
}

namespace {

bool sameClock(const ZephalCalendarFields& a, const ZephalCalendarFields& b) {
  return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour &&
         a.wMinute == b.wMinute && a.wSecond == b.wSecond;
}

}  // namespace

bool finish(const ZephalSysTime& loaded, Instant& out, std::string& why) {
  out.value = loaded;  // as copyFrom copies, without the call
  out.gmt = loaded;
  if (loaded.m_bLocal) {
    out.gmt.toGmtSysTime();  // which drops the milliseconds
    out.gmt.m_time.wMilliseconds = loaded.m_time.wMilliseconds;
    ZephalSysTime back;  // mktime moves a skipped wall-clock time; the way back shows it
    back.copyFrom(out.gmt);
    back.toLocalSysTime();
    if (!sameClock(back.m_time, loaded.m_time)) {
      return refuse(why, "no such time on the local clock (a clock change skips it)");
    }
  }
  const ZephalCalendarFields& g = out.gmt.m_time;
  return (g.wYear >= 1 && g.wYear <= 9999) || refuse(why, kOutsideYears);
}

void describeRefusal(const ZephalTextError& error, std::string& why) {
  if (error.form == ZephalTextForm::kUnixSeconds) {
    why = "more than 32-bit Unix seconds; for milliseconds use --unix-ms";
    return;
  }
  // The parser's reasons say what was expected of a date; the fixed forms'
  // reasons need the form's name beside them.
  const bool named = error.form != ZephalTextForm::kDateParser && error.form != ZephalTextForm::kNone;
  why = named ? zpTextFormName(error.form) : "not a date";
  why += ": ";
  why += error.reason;
  why += " at byte ";
  char digits[24];
  why.append(digits, std::to_chars(digits, digits + sizeof digits, error.byte).ptr);
}

}  // namespace zpdate
