#include "tools/DateInput.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "services/internal/CivilDays.h"
#include "time/ZephalFileTime.h"

namespace zpdate {
namespace {

constexpr char kOutsideYears[] = "outside the years 0001 to 9999";
// 9999-12-31T23:59:59.9999999Z in 100-ns intervals from 1601-01-01 and from 0001-01-01.
constexpr unsigned long long kLastFileTime = 2650467743999999999ULL;
constexpr unsigned long long kLastTicks = 3155378975999999999ULL;
constexpr unsigned long long kPerSecond = 10000000;

// Out of the way of the loops that call them: most texts are no refusal.
template <typename... Args>
[[gnu::cold, gnu::noinline]] bool refuse(std::string& why, const char* format, Args... args) {
  char text[96];
  std::snprintf(text, sizeof text, format, args...);
  why = text;
  return false;
}

[[gnu::cold, gnu::noinline]] bool refuse(std::string& why, const char* reason) {
  why = reason;
  return false;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool allDigits(const char* p, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (!isDigit(p[i])) return false;
  }
  return true;
}

bool inYears(long long seconds) { return seconds >= kFirstSecond && seconds <= kLastSecond; }

// Fields that name a real date and time; a second up to `lastSecond`
// (60 lets a leap second through).
bool checkFields(const ZephalCalendarFields& f, unsigned lastSecond, std::string& why) {
  if (f.wMonth < 1 || f.wMonth > 12) return refuse(why, "impossible date: month %u", f.wMonth);
  if (f.wDay < 1 || f.wDay > zpcivil::daysInMonth(f.wYear, f.wMonth)) {
    return refuse(why, "impossible date: day %u of %04u-%02u", f.wDay, f.wYear, f.wMonth);
  }
  if (f.wHour > 23) return refuse(why, "impossible time: hour %u", f.wHour);
  if (f.wMinute > 59) return refuse(why, "impossible time: minute %u", f.wMinute);
  if (f.wSecond > lastSecond) return refuse(why, "impossible time: second %u", f.wSecond);
  return true;
}

bool sameClock(const ZephalCalendarFields& a, const ZephalCalendarFields& b) {
  return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour &&
         a.wMinute == b.wMinute && a.wSecond == b.wSecond;
}

// The last step of every input: checks the loaded fields and works out the
// GMT reading and the Unix seconds.
bool finish(const ZephalSysTime& loaded, unsigned millis, Instant& out, std::string& why) {
  if (!checkFields(loaded.m_time, 60, why)) return false;
  out.value = loaded;  // as copyFrom copies, without the call
  out.gmt = loaded;
  if (loaded.m_bLocal) {
    out.gmt.toGmtSysTime();
    ZephalSysTime back;  // mktime moves a skipped wall-clock time; the way back shows it
    back.copyFrom(out.gmt);
    back.toLocalSysTime();
    if (!sameClock(back.m_time, loaded.m_time)) {
      return refuse(why, "no such time on the local clock (a clock change skips it)");
    }
  }
  const ZephalCalendarFields& g = out.gmt.m_time;
  if (g.wYear < 1 || g.wYear > 9999) return refuse(why, kOutsideYears);
  out.value.m_time.wMilliseconds = out.gmt.m_time.wMilliseconds = static_cast<uint16_t>(millis);
  return true;
}

// ---- Texts the loader would read wrongly -----------------------------------------

// "/Date(-1700000000123+0100)/", blanks around allowed: the millisecond count
// and the suffix's whole hours, which is all the loader reads of it.
bool readJsonDate(const char* p, const char* end, long long& millis, int& hours) {
  while (p < end && (*p == ' ' || *p == '\t')) ++p;
  while (end > p && (end[-1] == ' ' || end[-1] == '\t')) --end;
  if (end - p < 9 || std::memcmp(p, "/Date(", 6) != 0 || std::memcmp(end - 2, ")/", 2) != 0) {
    return false;
  }
  p += 6;
  end -= 2;
  const bool negative = *p == '-';
  if (negative) ++p;
  const char* digits = p;
  while (p < end && isDigit(*p)) ++p;
  const char* digitsEnd = p;
  if (digits == digitsEnd) return false;
  hours = 0;
  if (p < end) {
    if (end - p != 5 || (*p != '+' && *p != '-') || !allDigits(p + 1, 4)) return false;
    hours = (p[1] - '0') * 10 + (p[2] - '0');
    if (*p == '-') hours = -hours;
  }
  while (digits + 1 < digitsEnd && *digits == '0') ++digits;
  // 16 digits of milliseconds are past the year 9999 already; more would overflow.
  millis = 0;
  for (const char* d = digits; d < digitsEnd && d < digits + 16; ++d)
    millis = 10 * millis + (*d - '0');
  if (negative) millis = -millis;
  return true;
}

// What the tool keeps of a text that the loader drops: the milliseconds of
// a JSON date or a GeneralizedTime fraction.
struct Kept {
  unsigned millis = 0;
  bool secondLate = false;  // the loader's second is one past the instant's
};

// Refuses what loadAnyFormat would misread; `t` is the text, `size` its length.
bool checkShape(const char* t, size_t size, bool mayHoldParen, Kept& kept, std::string& why) {
  if (size > 0 && allDigits(t, size)) {
    // The loader reads decimal seconds as 32 bits and saturates beyond them.
    if (size > 10 || std::strtoull(t, nullptr, 10) > 4294967295ULL) {
      return refuse(why, "more than 32-bit Unix seconds; for milliseconds use --unix-ms");
    }
    return true;
  }
  if (mayHoldParen && std::memchr(t, '(', size) != nullptr && std::strstr(t, "Date(") != nullptr &&
      std::memchr(t, '/', size) != nullptr) {
    long long millis = 0;
    int hours = 0;
    if (!readJsonDate(t, t + size, millis, hours)) {
      return refuse(why, "not a JSON date /Date(milliseconds[+hhmm])/");
    }
    const long long seconds = zpcivil::floorDiv(millis, 1000);
    kept.millis = static_cast<unsigned>(millis - seconds * 1000);
    // The loader truncates toward zero: before 1970 that is one second late.
    kept.secondLate = millis < 0 && kept.millis != 0;
    return inYears(seconds - hours * 3600LL) || refuse(why, kOutsideYears);
  }
  const bool asnShape = size > 0 && t[size - 1] == 'Z' && std::memchr(t, '-', size) == nullptr &&
                        std::memchr(t, ':', size) == nullptr;
  if (!asnShape) return true;
  // The loader reads these fields without looking at the bytes.
  if ((size == 13 || size == 15) && !allDigits(t, size - 1)) {
    return refuse(why, size == 13 ? "not a UTCTime: a field is not digits"
                                  : "not a GeneralizedTime: a field is not digits");
  }
  if (size == 19 && t[14] == '.') {
    if (!allDigits(t, 14) || !allDigits(t + 15, 3)) {
      return refuse(why, "not a GeneralizedTime: a field is not digits");
    }
    kept.millis = static_cast<unsigned>((t[15] - '0') * 100 + (t[16] - '0') * 10 + (t[17] - '0'));
  }
  return true;
}

// ---- Numbers ------------------------------------------------------------------------

// The whole text as a signed decimal; a value past 64 bits saturates, which
// every range below refuses.
bool readSigned(const char* s, long long& out) {
  const char* digits = s + (*s == '-' || *s == '+');
  if (!isDigit(*digits)) return false;
  char* end = nullptr;
  out = std::strtoll(s, &end, 10);
  return *end == '\0';
}

// The whole text as unsigned decimal, or hex after "0x"; saturates as above.
bool readUnsigned(const char* s, unsigned long long& out) {
  const bool hex = s[0] == '0' && (s[1] == 'x' || s[1] == 'X');
  const char* digits = s + (hex ? 2 : 0);
  if (!(hex ? std::isxdigit(static_cast<unsigned char>(*digits)) : isDigit(*digits))) return false;
  char* end = nullptr;
  out = std::strtoull(digits, &end, hex ? 16 : 10);
  return *end == '\0';
}

// DOS date word: bits 0-4 day, 5-8 month, 9-15 year-1980; time word: bits
// 0-4 second/2, 5-10 minute, 11-15 hour. The module reads impossible fields
// as other values, so they are checked here, as the words hold them.
bool checkDosWords(unsigned date, unsigned time, std::string& why) {
  ZephalCalendarFields f{};
  f.wYear = static_cast<uint16_t>(1980 + (date >> 9));
  f.wMonth = static_cast<uint16_t>((date >> 5) & 0xF);
  f.wDay = static_cast<uint16_t>(date & 0x1F);
  f.wHour = static_cast<uint16_t>(time >> 11);
  f.wMinute = static_cast<uint16_t>((time >> 5) & 0x3F);
  f.wSecond = static_cast<uint16_t>(2 * (time & 0x1F));
  return checkFields(f, 59, why);
}

// A FILETIME count, or .NET ticks: 100-ns intervals, checked against `last`.
bool loadIntervals(bool ticks, unsigned long long count, unsigned long long last, Instant& out,
                   std::string& why) {
  if (count > last) return refuse(why, kOutsideYears);
  // The module reads whole seconds, truncated toward zero; milliseconds are kept here.
  const unsigned long long whole = count - count % kPerSecond;
  ZephalFileTime fileTime;
  if (ticks) {
    fileTime.fromDateTimeTicks(static_cast<long long>(whole));
  } else {
    fileTime.setFileTime(static_cast<unsigned>(whole >> 32), static_cast<unsigned>(whole));
  }
  ZephalSysTime value;
  fileTime.toSystemTime_gmt(value);
  return finish(value, static_cast<unsigned>(count % kPerSecond / 10000), out, why);
}

}  // namespace

long long unixSeconds(const Instant& in) {
  const ZephalCalendarFields& g = in.gmt.m_time;
  return zpcivil::daysFromCivil(g.wYear, g.wMonth, g.wDay) * 86400 + g.wHour * 3600 +
         g.wMinute * 60 + g.wSecond;
}

bool loadText(const char* text, size_t size, bool assumeLocal, StringBuffer& scratch, Instant& out,
              std::string& why, MayHold may) {
  if (may.zero && std::memchr(text, '\0', size) != nullptr) return refuse(why, "holds a zero byte");
  scratch.clear();
  scratch.appendN(text, static_cast<unsigned>(size));
  Kept kept;
  if (!checkShape(scratch.getString(), size, may.paren, kept, why)) return false;

  ZephalSysTime value;
  if (!value.loadAnyFormat(false, scratch)) return refuse(why, "not a date");
  if (kept.secondLate) value.addSeconds64(-1);
  if (assumeLocal && value.m_bFromUnknownTimezone && !value.m_bLocal) {
    value.m_bLocal = true;
    value.m_isDst = -1;
  }
  return finish(value, kept.millis + value.m_time.wMilliseconds, out, why);
}

bool loadNumeric(Numeric kind, const char* const* values, bool assumeLocal, Instant& out,
                 std::string& why) {
  ZephalSysTime value;
  long long n = 0;
  unsigned long long u = 0, v = 0;
  switch (kind) {
    case Numeric::kUnix:
      if (!readSigned(values[0], n)) return refuse(why, "not a number of seconds");
      if (!inYears(n)) return refuse(why, kOutsideYears);
      value.fromUnixTime64(false, n);
      return finish(value, 0, out, why);
    case Numeric::kUnixMs: {
      if (!readSigned(values[0], n)) return refuse(why, "not a number of milliseconds");
      if (n < kFirstSecond * 1000 || n > kLastSecond * 1000 + 999) {
        return refuse(why, kOutsideYears);
      }
      const long long seconds = zpcivil::floorDiv(n, 1000);
      value.fromUnixTime64(false, seconds);
      return finish(value, static_cast<unsigned>(n - seconds * 1000), out, why);
    }
    case Numeric::kFileTime:
      if (!readUnsigned(values[0], u)) return refuse(why, "not a FILETIME count");
      return loadIntervals(false, u, kLastFileTime, out, why);
    case Numeric::kTicks:
      if (!readSigned(values[0], n)) return refuse(why, "not a tick count");
      if (n < 0) return refuse(why, kOutsideYears);
      return loadIntervals(true, static_cast<unsigned long long>(n), kLastTicks, out, why);
    case Numeric::kDos:
      if (!readUnsigned(values[0], u) || !readUnsigned(values[1], v) || u > 0xFFFF || v > 0xFFFF) {
        return refuse(why, "not a pair of 16-bit DOS words");
      }
      if (!checkDosWords(static_cast<unsigned>(u), static_cast<unsigned>(v), why)) return false;
      value.fromDosDateTime(static_cast<unsigned short>(u), static_cast<unsigned short>(v),
                            nullptr);
      return finish(value, 0, out, why);
    case Numeric::kOle: {
      char* end = nullptr;
      const double date = std::strtod(values[0], &end);
      if (values[0][0] == '\0' || *end != '\0') return refuse(why, "not a number of days");
      if (!value.fromOleDate(assumeLocal, date)) {
        return refuse(why, "outside the OLE dates 0100-01-01 to 9999-12-31");
      }
      return finish(value, 0, out, why);
    }
    case Numeric::kNow: value.getCurrentGmt(); return finish(value, 0, out, why);
  }
  return refuse(why, "unknown input");
}

}  // namespace zpdate
