// Writing date texts and loading them back, ours beside the peers on the
// same work:
//
//   BM_WriteIso8601_*   20240307T090503Z               getIso8601Timestamp
//   BM_WriteUtcTime_*   240307090503Z                  getAsnUtcDateTime
//   BM_WriteRfc1123_*   Thu, 07 Mar 2024 09:05:03 GMT  getRfc822String
//   BM_Load<Form>_*     loadAnyFormat on each of its seven forms; the peers
//                       for its RFC 822 form are the BM_ParseRfc1123_* rows;
//                       the counted forms (JSON, Unix) have a fair floor
//   BM_Local*           the paths through the C library's local zone (mktime);
//                       run them with TZ set and with TZ unset
//
// Writers start from GMT values (ours: the record; strftime and fmt: a tm;
// abseil: an absl::Time; _GmtimeStrftime: a time_t) and write into a buffer
// that is cleared, not rebuilt, for each text. Every writer's output is
// checked against strftime's before timing. Compare `per_text`.
#include <time.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iostream>  // stream objects exist before the registrations below run
#include <string>
#include <string_view>
#include <vector>

#include "bench/BenchReaders.h"
#include "bench/BenchTexts.h"
#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

#if ZP_BENCH_FMT
#include <fmt/chrono.h>
#include <fmt/format.h>
#endif

namespace zpbench {
namespace {

// ---- Writers ------------------------------------------------------------------------
// Built from the instants; write(i) replaces the buffer's text with instant
// i's, text() shows it.

enum class Form { kIso8601, kUtcTime, kRfc1123 };

constexpr const char* strftimeFormat(Form form) {
  return form == Form::kIso8601   ? "%Y%m%dT%H%M%SZ"
         : form == Form::kUtcTime ? "%y%m%d%H%M%SZ"
                                  : "%a, %d %b %Y %H:%M:%S GMT";
}

std::vector<ZephalSysTime> gmtValues(const std::vector<long long>& instants) {
  std::vector<ZephalSysTime> values(instants.size());
  for (std::size_t i = 0; i < instants.size(); ++i) values[i].fromUnixTime64(false, instants[i]);
  return values;
}

std::vector<tm> gmtTms(const std::vector<long long>& instants) {
  std::vector<tm> tms(instants.size());
  for (std::size_t i = 0; i < instants.size(); ++i) {
    const time_t t = static_cast<time_t>(instants[i]);
    gmtime_r(&t, &tms[i]);
  }
  return tms;
}

std::vector<ZephalSysTime> localValues(const std::vector<long long>& instants) {
  std::vector<ZephalSysTime> values = gmtValues(instants);
  for (ZephalSysTime& v : values) v.toLocalSysTime();
  return values;
}

// Ours on GMT values, or on local ones, which go through mktime: the ISO
// text on a copy, UTCTime by converting the value itself (so each write then
// starts from a fresh copy), RFC 822 with the offset mktime finds.
template <Form F, bool Local = false>
class OursWriter {
 public:
  explicit OursWriter(const std::vector<long long>& instants)
      : m_values(Local ? localValues(instants) : gmtValues(instants)) {}
  void write(std::size_t i) {
    m_out.clear();
    if constexpr (F == Form::kIso8601) {
      m_values[i].getIso8601Timestamp(m_out);
    } else if constexpr (F == Form::kUtcTime && Local) {
      m_work.copyFrom(m_values[i]);
      m_work.getAsnUtcDateTime(m_out);
    } else if constexpr (F == Form::kUtcTime) {
      m_values[i].getAsnUtcDateTime(m_out);
    } else {
      m_values[i].getRfc822String(m_out);
    }
  }
  std::string text() const { return m_out.getString(); }

 private:
  std::vector<ZephalSysTime> m_values;
  ZephalSysTime m_work;
  StringBuffer m_out;
};

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

std::string strftimeGmt(const char* format, long long instant) {
  const time_t t = static_cast<time_t>(instant);
  tm broken;
  gmtime_r(&t, &broken);
  char text[64];
  return std::string(text, strftime(text, sizeof text, format, &broken));
}

std::string strftimeLocal(const char* format, long long instant) {
  const time_t t = static_cast<time_t>(instant);
  tm broken;
  localtime_r(&t, &broken);
  char text[64];
  return std::string(text, strftime(text, sizeof text, format, &broken));
}

using Reference = std::string (*)(const char* format, long long instant);

template <class Writer>
void timeWriter(benchmark::State& state, const char* referenceFormat, Reference reference) {
  const std::vector<long long>& instants = kWriteInstants;
  Writer writer(instants);
  for (std::size_t i = 0; i < instants.size(); ++i) {
    writer.write(i);
    const std::string want = reference(referenceFormat, instants[i]);
    if (writer.text() != want) {
      state.SkipWithError(("wrote " + writer.text() + " for " + want).c_str());
      return;
    }
  }
  for (auto _ : state) {
    for (std::size_t i = 0; i < instants.size(); ++i) {
      writer.write(i);
      benchmark::ClobberMemory();
    }
  }
  reportPerText(state, instants.size());
}

template <class Writer>
void registerWriter(const std::string& name, const char* referenceFormat,
                    Reference reference = strftimeGmt) {
  benchmark::RegisterBenchmark(name.c_str(), timeWriter<Writer>, referenceFormat, reference);
}

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

// ---- Loaders ----------------------------------------------------------------------------

// /Date(ms[+-hhmm])/ read the loader's way: whole hours of the suffix move
// the instant the other way.
class JsonStrtollReader {
 public:
  explicit JsonStrtollReader(const TextSet& set) : m_set(set) {}
  bool read(std::size_t i, long long& s) {
    const char* p = m_set[i].text;
    if (std::strncmp(p, "/Date(", 6) != 0) return false;
    char* end;
    const long long ms = std::strtoll(p + 6, &end, 10);
    if (end == p + 6) return false;
    long zone = 0;
    if (*end == '+' || *end == '-') zone = std::strtol(end, &end, 10);
    if (std::strcmp(end, ")/") != 0) return false;
    s = ms / 1000 - zone / 100 * 3600;
    return true;
  }

 private:
  const TextSet& m_set;
};

// The fair floor of the two counted forms: the digits parsed, a zone
// suffix's whole hours applied, the count broken down into calendar fields
// by civil arithmetic, and the answer read back from the fields, as ours is.
inline void floorBreakDown(long long t, ZephalCalendarFields& f) {
  const long long days = zpcivil::floorDiv(t, 86400);
  const int daySeconds = static_cast<int>(t - days * 86400);
  const zpcivil::CivilDate c = zpcivil::civilFromDays(days);
  f.wYear = static_cast<uint16_t>(c.year);
  f.wMonth = static_cast<uint16_t>(c.month);
  f.wDay = static_cast<uint16_t>(c.day);
  f.wHour = static_cast<uint16_t>(daySeconds / 3600);
  f.wMinute = static_cast<uint16_t>(daySeconds / 60 % 60);
  f.wSecond = static_cast<uint16_t>(daySeconds % 60);
  f.wDayOfWeek = static_cast<uint16_t>(zpcivil::weekdayFromDays(days));
}

// Digits in [p, end) into v; false when there are none or a byte is no digit.
inline bool floorDigits(const char* p, const char* end, long long& v) {
  v = 0;
  if (p == end) return false;
  for (; p < end; ++p) {
    if (static_cast<unsigned char>(*p - '0') > 9) return false;
    v = v * 10 + (*p - '0');
  }
  return true;
}

// The texts as views, and the fields a floor breaks a count down into.
class FloorBase {
 protected:
  explicit FloorBase(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text, std::strlen(c.text));
  }
  std::vector<std::string_view> m_texts;
  ZephalCalendarFields m_fields{};
};

// "/Date(1700000000000+0100)/": the suffix's hours move the instant back.
class JsonFloorReader : FloorBase {
 public:
  explicit JsonFloorReader(const TextSet& set) : FloorBase(set) {}
  bool read(std::size_t i, long long& s) {
    const char* p = m_texts[i].data();
    const char* end = p + m_texts[i].size();
    if (end - p < 9 || std::memcmp(p, "/Date(", 6) != 0 || end[-1] != '/' || end[-2] != ')') {
      return false;
    }
    p += 6;
    end -= 2;
    const bool negative = *p == '-';
    p += negative;
    long long hhmm = 0;
    if (end - p > 5 && (end[-5] == '+' || end[-5] == '-')) {
      if (!floorDigits(end - 4, end, hhmm)) return false;
      if (end[-5] == '-') hhmm = -hhmm;
      end -= 5;
    }
    long long ms;
    if (!floorDigits(p, end, ms)) return false;
    floorBreakDown((negative ? -ms : ms) / 1000 - hhmm / 100 * 3600, m_fields);
    s = unixSecondsOf(m_fields);
    return true;
  }
};

class UnixFloorReader : FloorBase {
 public:
  explicit UnixFloorReader(const TextSet& set) : FloorBase(set) {}
  bool read(std::size_t i, long long& s) {
    long long t;
    if (!floorDigits(m_texts[i].data(), m_texts[i].data() + m_texts[i].size(), t)) return false;
    floorBreakDown(t, m_fields);
    s = unixSecondsOf(m_fields);
    return true;
  }
};

class UnixStrtollReader {
 public:
  explicit UnixStrtollReader(const TextSet& set) : m_set(set) {}
  bool read(std::size_t i, long long& s) {
    const char* p = m_set[i].text;
    char* end;
    s = std::strtoll(p, &end, 10);
    return end != p && *end == '\0';
  }

 private:
  const TextSet& m_set;
};

class UnixFromCharsReader {
 public:
  explicit UnixFromCharsReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text, std::strlen(c.text));
  }
  bool read(std::size_t i, long long& s) {
    const std::string_view t = m_texts[i];
    const std::from_chars_result r = std::from_chars(t.data(), t.data() + t.size(), s);
    return r.ec == std::errc() && r.ptr == t.data() + t.size();
  }

 private:
  std::vector<std::string_view> m_texts;
};

#if ZP_BENCH_HHDATE
using HhDateGeneralizedFractionReader = HhDateReader<kHhDateGeneralizedFormats, std::chrono::milliseconds>;
using HhDateUtcTimeReader = HhDateReader<kHhDateUtcTimeFormats, std::chrono::seconds>;
using HhDateGeneralizedReader = HhDateReader<kHhDateGeneralizedFormats, std::chrono::seconds>;
#endif

void registerLoaders() {
  registerReader<OursLoadReader<false>>("BM_LoadJson_Ours", kLoadJsonTexts);
  registerReader<JsonStrtollReader>("BM_LoadJson_Strtoll", kLoadJsonTexts);
  registerReader<JsonFloorReader>("BM_LoadJson_Floor", kLoadJsonTexts);

  registerReader<OursLoadReader<false>>("BM_LoadAtom_Ours", kLoadAtomTexts);
  registerReader<OursAtomReader>("BM_LoadAtom_OursAtomDateToSysTime", kLoadAtomTexts);
  registerReader<StrptimeAtomReader>("BM_LoadAtom_Strptime", kLoadAtomTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslAtomReader>("BM_LoadAtom_Absl", kLoadAtomTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateAtomReader>("BM_LoadAtom_HhDate", kLoadAtomTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadGeneralizedFraction_Ours",
                                        kLoadGeneralizedFractionTexts);
  registerReader<StrptimeReader<kStrptimeGeneralizedFractionFormats>>(
      "BM_LoadGeneralizedFraction_Strptime", kLoadGeneralizedFractionTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslReader<kAbslGeneralizedFractionFormats>>("BM_LoadGeneralizedFraction_Absl",
                                                              kLoadGeneralizedFractionTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateGeneralizedFractionReader>("BM_LoadGeneralizedFraction_HhDate",
                                                  kLoadGeneralizedFractionTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadUnix_Ours", kLoadUnixTexts);
  registerReader<UnixStrtollReader>("BM_LoadUnix_Strtoll", kLoadUnixTexts);
  registerReader<UnixFromCharsReader>("BM_LoadUnix_FromChars", kLoadUnixTexts);
  registerReader<UnixFloorReader>("BM_LoadUnix_Floor", kLoadUnixTexts);

  registerReader<OursLoadReader<false>>("BM_LoadUtcTime_Ours", kLoadUtcTimeTexts);
  registerReader<StrptimeReader<kStrptimeUtcTimeFormats>>("BM_LoadUtcTime_Strptime",
                                                          kLoadUtcTimeTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslReader<kAbslUtcTimeFormats>>("BM_LoadUtcTime_Absl", kLoadUtcTimeTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateUtcTimeReader>("BM_LoadUtcTime_HhDate", kLoadUtcTimeTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadGeneralized_Ours", kLoadGeneralizedTexts);
  registerReader<StrptimeReader<kStrptimeGeneralizedFormats>>("BM_LoadGeneralized_Strptime",
                                                              kLoadGeneralizedTexts);
#if ZP_BENCH_ABSL
  registerReader<AbslReader<kAbslGeneralizedFormats>>("BM_LoadGeneralized_Absl",
                                                      kLoadGeneralizedTexts);
#endif
#if ZP_BENCH_HHDATE
  registerReader<HhDateGeneralizedReader>("BM_LoadGeneralized_HhDate", kLoadGeneralizedTexts);
#endif

  registerReader<OursLoadReader<false>>("BM_LoadRfc822_Ours", kRfc1123Texts);
}

// ---- Local paths ------------------------------------------------------------------------

// The C library's way from local wall-clock fields to a GMT text.
class MktimeStrftimeWriter {
 public:
  explicit MktimeStrftimeWriter(const std::vector<long long>& instants) {
    for (long long s : instants) {
      const time_t t = static_cast<time_t>(s);
      tm local;
      localtime_r(&t, &local);
      local.tm_isdst = -1;
      m_local.push_back(local);
    }
  }
  void write(std::size_t i) {
    tm t = m_local[i];
    const time_t instant = mktime(&t);
    tm gmt;
    gmtime_r(&instant, &gmt);
    char text[64];
    const std::size_t n = strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &gmt);
    m_out.clear();
    m_out.append(text, n);
  }
  std::string text() const { return m_out; }

 private:
  std::vector<tm> m_local;
  std::string m_out;
};

// Same, with the offset written: mktime fills tm_gmtoff for %z.
class MktimeStrftimeRfc822Writer {
 public:
  explicit MktimeStrftimeRfc822Writer(const std::vector<long long>& instants) {
    for (long long s : instants) {
      const time_t t = static_cast<time_t>(s);
      tm local;
      localtime_r(&t, &local);
      local.tm_isdst = -1;
      m_local.push_back(local);
    }
  }
  void write(std::size_t i) {
    tm t = m_local[i];
    mktime(&t);
    char text[64];
    const std::size_t n = strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S %z", &t);
    m_out.clear();
    m_out.append(text, n);
  }
  std::string text() const { return m_out; }

 private:
  std::vector<tm> m_local;
  std::string m_out;
};

void registerLocalPaths() {
  registerWriter<OursWriter<Form::kIso8601, true>>("BM_LocalIso8601_Ours", "%Y%m%dT%H%M%SZ");
  registerWriter<MktimeStrftimeWriter>("BM_LocalIso8601_MktimeStrftime", "%Y%m%dT%H%M%SZ");
  registerWriter<OursWriter<Form::kUtcTime, true>>("BM_LocalUtcTime_Ours", "%y%m%d%H%M%SZ");
  registerWriter<OursWriter<Form::kRfc1123, true>>("BM_LocalRfc822_Ours",
                                                   "%a, %d %b %Y %H:%M:%S %z", strftimeLocal);
  registerWriter<MktimeStrftimeRfc822Writer>("BM_LocalRfc822_MktimeStrftime",
                                             "%a, %d %b %Y %H:%M:%S %z", strftimeLocal);
  // The local flag only marks the fields: no zone conversion happens here.
  registerReader<OursLoadReader<true>>("BM_LocalLoadUnix_Ours", kLoadUnixTexts);
}

const bool kRegistered = [] {
  registerWriters<Form::kIso8601>("BM_WriteIso8601_");
  registerWriters<Form::kUtcTime>("BM_WriteUtcTime_");
  registerWriters<Form::kRfc1123>("BM_WriteRfc1123_");
  registerLoaders();
  registerLocalPaths();
  return true;
}();

}  // namespace
}  // namespace zpbench
