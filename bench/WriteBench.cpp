// Writing date texts, ours beside the peers on the same work:
//
//   BM_WriteIso8601_*   20240307T090503Z               getIso8601Timestamp
//   BM_WriteUtcTime_*   240307090503Z                  getAsnUtcDateTime
//   BM_WriteRfc1123_*   Thu, 07 Mar 2024 09:05:03 GMT  getRfc822String
//
// Writers start from GMT values (ours: the record; strftime and fmt: a tm;
// abseil: an absl::Time; _GmtimeStrftime: a time_t) and write into a buffer
// that is cleared, not rebuilt, for each text (BenchWriters.h). Compare
// `per_text`.
#include <time.h>

#include <cstring>
#include <iostream>  // stream objects exist before the registrations below run
#include <string>
#include <vector>

#include "bench/BenchWriters.h"
#include "services/internal/CivilDays.h"
#include "time/ZephalSysTime.h"

#if ZP_BENCH_ABSL
#include <absl/time/time.h>
#endif
#if ZP_BENCH_FMT
#include <fmt/chrono.h>
#include <fmt/format.h>
#endif

namespace zpbench {
namespace {

template <Form F>
class StrftimeWriter {
 public:
  explicit StrftimeWriter(const std::vector<long long>& instants) : m_tms(gmtTms(instants)) {}
  void write(std::size_t i) {
    char text[64];
    const std::size_t n = strftime(text, sizeof text, strftimeFormat(F), &m_tms[i]);
    m_out.clear();
    m_out.append(text, n);
  }
  std::string text() const { return m_out; }

 private:
  std::vector<tm> m_tms;
  std::string m_out;
};

template <Form F>
class GmtimeStrftimeWriter {
 public:
  explicit GmtimeStrftimeWriter(const std::vector<long long>& instants) {
    for (long long s : instants) m_instants.push_back(static_cast<time_t>(s));
  }
  void write(std::size_t i) {
    tm t;
    gmtime_r(&m_instants[i], &t);
    char text[64];
    const std::size_t n = strftime(text, sizeof text, strftimeFormat(F), &t);
    m_out.clear();
    m_out.append(text, n);
  }
  std::string text() const { return m_out; }

 private:
  std::vector<time_t> m_instants;
  std::string m_out;
};

#if ZP_BENCH_FMT
template <Form F>
class FmtWriter {
 public:
  explicit FmtWriter(const std::vector<long long>& instants) : m_tms(gmtTms(instants)) {}
  void write(std::size_t i) {
    m_out.clear();
    if constexpr (F == Form::kIso8601) {
      fmt::format_to(fmt::appender(m_out), "{:%Y%m%dT%H%M%SZ}", m_tms[i]);
    } else if constexpr (F == Form::kUtcTime) {
      fmt::format_to(fmt::appender(m_out), "{:%y%m%d%H%M%SZ}", m_tms[i]);
    } else {
      fmt::format_to(fmt::appender(m_out), "{:%a, %d %b %Y %H:%M:%S GMT}", m_tms[i]);
    }
  }
  std::string text() const { return fmt::to_string(m_out); }

 private:
  std::vector<tm> m_tms;
  fmt::memory_buffer m_out;
};
#endif

#if ZP_BENCH_ABSL
// FormatTime returns a new string each call: abseil has no writer into a
// caller's buffer, so the allocation is part of its cost.
template <Form F>
class AbslWriter {
 public:
  explicit AbslWriter(const std::vector<long long>& instants) : m_zone(absl::UTCTimeZone()) {
    for (long long s : instants) m_times.push_back(absl::FromUnixSeconds(s));
  }
  void write(std::size_t i) {
    constexpr const char* kFormat = F == Form::kIso8601   ? "%Y%m%dT%H%M%SZ"
                                    : F == Form::kUtcTime ? "%y%m%d%H%M%SZ"
                                                          : "%a, %d %b %E4Y %H:%M:%S GMT";
    m_out = absl::FormatTime(kFormat, m_times[i], m_zone);
  }
  std::string text() const { return m_out; }

 private:
  std::vector<absl::Time> m_times;
  absl::TimeZone m_zone;
  std::string m_out;
};
#endif

// "00" .. "99".
constexpr char kPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

inline char* floorPut2(char* p, unsigned v) {
  std::memcpy(p, kPairs + 2 * v, 2);
  return p + 2;
}

// The hand-written floor: the record's fields into digits at fixed places.
template <Form F>
class FloorWriter {
 public:
  explicit FloorWriter(const std::vector<long long>& instants) : m_values(gmtValues(instants)) {}
  void write(std::size_t i) {
    const ZephalCalendarFields& t = m_values[i].m_time;
    char text[32];
    char* p = text;
    if constexpr (F == Form::kRfc1123) {
      static const char kDays[] = "SunMonTueWedThuFriSatSun";
      static const char kMonths[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
      const int wday = zpcivil::weekdayFromDays(zpcivil::daysFromCivil(t.wYear, t.wMonth, t.wDay));
      std::memcpy(p, kDays + 3 * wday, 3);
      std::memcpy(p + 3, ", ", 2);
      p = floorPut2(p + 5, t.wDay);
      *p++ = ' ';
      std::memcpy(p, kMonths + 3 * (t.wMonth - 1), 3);
      p[3] = ' ';
      p = floorPut2(p + 4, t.wYear / 100);
      p = floorPut2(p, t.wYear % 100);
      *p++ = ' ';
      p = floorPut2(p, t.wHour);
      *p++ = ':';
      p = floorPut2(p, t.wMinute);
      *p++ = ':';
      p = floorPut2(p, t.wSecond);
      std::memcpy(p, " GMT", 4);
      p += 4;
    } else {
      if constexpr (F == Form::kIso8601) p = floorPut2(p, t.wYear / 100);
      p = floorPut2(p, t.wYear % 100);
      p = floorPut2(p, t.wMonth);
      p = floorPut2(p, t.wDay);
      if constexpr (F == Form::kIso8601) *p++ = 'T';
      p = floorPut2(p, t.wHour);
      p = floorPut2(p, t.wMinute);
      p = floorPut2(p, t.wSecond);
      *p++ = 'Z';
    }
    m_out.clear();
    m_out.append(text, static_cast<std::size_t>(p - text));
  }
  std::string text() const { return m_out; }

 private:
  std::vector<ZephalSysTime> m_values;
  std::string m_out;
};

template <Form F>
void registerWriters(const std::string& prefix) {
  const char* reference = strftimeFormat(F);
  registerWriter<OursWriter<F>>(prefix + "Ours", reference);
  registerWriter<FloorWriter<F>>(prefix + "Floor", reference);
  registerWriter<StrftimeWriter<F>>(prefix + "Strftime", reference);
  registerWriter<GmtimeStrftimeWriter<F>>(prefix + "GmtimeStrftime", reference);
#if ZP_BENCH_FMT
  registerWriter<FmtWriter<F>>(prefix + "Fmt", reference);
#endif
#if ZP_BENCH_ABSL
  registerWriter<AbslWriter<F>>(prefix + "Absl", reference);
#endif
}

const bool kRegistered = [] {
  registerWriters<Form::kIso8601>("BM_WriteIso8601_");
  registerWriters<Form::kUtcTime>("BM_WriteUtcTime_");
  registerWriters<Form::kRfc1123>("BM_WriteRfc1123_");
  return true;
}();

}  // namespace
}  // namespace zpbench
