#include "tools/DateInput.h"

#include "time/ZephalFileTime.h"
#include "time/ZephalText.h"
#include "tools/Clocks.h"
#include "tools/CountArgs.h"
#include "tools/InputChecks.h"

namespace zpdate {
namespace {

constexpr unsigned long long kPerSecond = zp_filetime::kIntervalsPerSecond;
constexpr unsigned long long kPerMillisecond = kPerSecond / 1000;

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
  value.m_time.wMilliseconds = static_cast<uint16_t>(count % kPerSecond / kPerMillisecond);
  return finish(value, out, why);
}

bool loadUnixMs(const char* text, Instant& out, std::string& why) {
  long long n = 0;
  if (!readSigned(text, n)) return refuse(why, "not a number of milliseconds");
  if (n < kFirstSecond * 1000 || n > kLastSecond * 1000 + 999) return refuse(why, kOutsideYears);
  const long long seconds = (n >= 0 ? n : n - 999) / 1000;  // floored
  ZephalSysTime value;
  value.fromUnixTime64(false, seconds);
  value.m_time.wMilliseconds = static_cast<uint16_t>(n - seconds * 1000);
  return finish(value, out, why);
}

bool loadDos(const char* const* values, Instant& out, std::string& why) {
  unsigned long long date = 0, time = 0;
  if (!readUnsigned(values[0], date) || !readUnsigned(values[1], time) || date > 0xFFFF ||
      time > 0xFFFF) {
    return refuse(why, "not a pair of 16-bit DOS words");
  }
  const auto dosDate = static_cast<unsigned short>(date), dosTime = static_cast<unsigned short>(time);
  // The module reads impossible words as other values: checked as they stand.
  if (!checkFields(ZephalSysTime::unpackDosDateTime(dosDate, dosTime), 59, why)) return false;
  ZephalSysTime value;
  value.fromDosDateTime(dosDate, dosTime, nullptr);
  return finish(value, out, why);
}

bool loadOle(const char* text, bool assumeLocal, Instant& out, std::string& why) {
  double date = 0;
  if (!readDays(text, date)) return refuse(why, "not a number of days");
  ZephalSysTime value;
  if (!value.fromOleDate(assumeLocal, date)) {
    return refuse(why, "outside the OLE dates 0100-01-01 to 9999-12-31");
  }
  return finish(value, out, why);
}

}  // namespace

long long unixSeconds(const Instant& in) { return in.gmt.toUnixTime_gmt64(); }

bool loadText(const char* text, size_t size, const TextReading& how, Instant& out,
              std::string& why) {
  out.readInZone = false;
  ZephalTextOptions options;
  options.order = how.order;
  options.layouts = how.layouts.data();
  options.layoutCount = how.layouts.size();
  ZephalSysTime value;
  ZephalTextError error;
  if (!zpReadDate({text, size}, options, value, error)) {
    describeRefusal(error, why);
    return false;
  }
  const bool noZone = value.m_bFromUnknownTimezone && !value.m_bLocal;
  if (noZone && inputZoneName() != nullptr) {
    if (!fromInputZone(value, why)) return false;
    out.readInZone = true;
  } else if (noZone && how.assumeLocal) {
    value.m_bLocal = true;
    value.m_isDst = -1;
  }
  return finish(value, out, why);
}

bool loadNumeric(Numeric kind, const char* const* values, bool assumeLocal, Instant& out,
                 std::string& why) {
  ZephalSysTime value;
  long long n = 0;
  unsigned long long u = 0;
  switch (kind) {
    case Numeric::kUnix:
      if (!readSigned(values[0], n)) return refuse(why, "not a number of seconds");
      if (!inYears(n)) return refuse(why, kOutsideYears);
      value.fromUnixTime64(false, n);
      return finish(value, out, why);
    case Numeric::kUnixMs: return loadUnixMs(values[0], out, why);
    case Numeric::kFileTime:
      if (!readUnsigned(values[0], u)) return refuse(why, "not a FILETIME count");
      return loadIntervals(false, u, kLastFileTime, out, why);
    case Numeric::kTicks:
      if (!readSigned(values[0], n)) return refuse(why, "not a tick count");
      if (n < 0) return refuse(why, kOutsideYears);
      return loadIntervals(true, static_cast<unsigned long long>(n), zp_filetime::kLastTicks, out,
                           why);
    case Numeric::kDos: return loadDos(values, out, why);
    case Numeric::kOle: return loadOle(values[0], assumeLocal, out, why);
    case Numeric::kNow: value.getCurrentGmt(); return finish(value, out, why);
  }
  return refuse(why, "unknown input");
}

}  // namespace zpdate
