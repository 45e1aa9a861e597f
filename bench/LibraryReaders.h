// The peer libraries' readers of the benchmark texts, each through its usual
// API for the form: abseil, libcurl, Boost.Date_Time and Howard Hinnant's
// date. Each turns a text into Unix seconds (see BenchTiming.h).
//
// Peers that take a format get, per text, the first format from their list
// that reads the text right, chosen before timing: they never pay for trying
// formats, which a real caller facing mixed texts would. Stream-based peers
// keep one stream and refill it, which is cheaper than a stream per call.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"

#if ZP_BENCH_ABSL
#include <absl/time/time.h>
#endif
#if ZP_BENCH_CURL
#include <curl/curl.h>
#endif
#if ZP_BENCH_BOOST
#include <boost/date_time/posix_time/posix_time.hpp>
#endif
#if ZP_BENCH_HHDATE
// date.h's from_stream leaves a long double unset on paths that fail the
// stream; g++ -O3 reports it through the inlining.
#if defined(__clang__)
#include <date/date.h>
#else
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <date/date.h>
#pragma GCC diagnostic pop
#endif
#endif

namespace zpbench {

// ---- abseil -------------------------------------------------------------------------
#if ZP_BENCH_ABSL

inline const std::vector<const char*> kAbslMailFormats = {
    absl::RFC1123_full,           "%a, %d %b %E4Y %H:%M:%S GMT", absl::RFC1123_no_wday,
    "%a, %d %b %y %H:%M:%S GMT",  "%A, %d-%b-%y %H:%M:%S GMT",   "%a, %d-%b-%E4Y %H:%M:%S GMT",
    "%a %b %e %H:%M:%S %E4Y",     absl::RFC3339_full,            "%Y-%m-%d %H:%M:%S%Ez",
    "%a, %d %b %E4Y %H:%M %z",
};
inline const std::vector<const char*> kAbslAtomFormats = {absl::RFC3339_full};
// %E4Y: a plain %Y would take every digit of the run.
inline const std::vector<const char*> kAbslGeneralizedFractionFormats = {"%E4Y%m%d%H%M%E*SZ"};
inline const std::vector<const char*> kAbslUtcTimeFormats = {"%y%m%d%H%M%SZ"};
inline const std::vector<const char*> kAbslGeneralizedFormats = {"%E4Y%m%d%H%M%SZ"};

template <const std::vector<const char*>& Formats>
class AbslReader {
 public:
  explicit AbslReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text);
    for (const char* f : Formats) m_formats.emplace_back(f);
    m_chosen = chooseFormats(set, m_formats.size(),
                             [&](std::size_t i, std::size_t f, long long& s) {
                               return readWith(i, f, s);
                             });
  }
  bool read(std::size_t i, long long& s) { return readWith(i, m_chosen[i], s); }

 private:
  bool readWith(std::size_t i, std::size_t f, long long& s) {
    absl::Time t;
    if (!absl::ParseTime(m_formats[f], m_texts[i], &t, &m_error)) return false;
    s = absl::ToUnixSeconds(t);
    return true;
  }

  std::vector<absl::string_view> m_texts;
  std::vector<absl::string_view> m_formats;
  std::vector<std::size_t> m_chosen;
  std::string m_error;
};

using AbslMailReader = AbslReader<kAbslMailFormats>;
using AbslAtomReader = AbslReader<kAbslAtomFormats>;

#endif

// ---- libcurl ----------------------------------------------------------------------------
#if ZP_BENCH_CURL

// curl_getdate answers -1 for failure, so a text naming 1969-12-31 23:59:59
// counts as misread.
class CurlReader {
 public:
  explicit CurlReader(const TextSet& set) : m_set(set) {}
  bool read(std::size_t i, long long& s) {
    const time_t t = curl_getdate(m_set[i].text, nullptr);
    s = static_cast<long long>(t);
    return t != -1;
  }

 private:
  const TextSet& m_set;
};

#endif

// ---- Boost.Date_Time ----------------------------------------------------------------------
#if ZP_BENCH_BOOST

// A zone as a token after the time: none, a name for GMT, or a numeric
// offset (+hhmm, +hh:mm). ptime has no zone: Boost's readers read it so.
inline bool zoneOffsetMinutes(const char* z, std::size_t n, int& minutes) {
  minutes = 0;
  if (n == 0 || (n == 1 && (*z == 'Z' || *z == 'z')) || (n == 3 && std::memcmp(z, "GMT", 3) == 0) ||
      (n == 2 && std::memcmp(z, "UT", 2) == 0) || (n == 3 && std::memcmp(z, "UTC", 3) == 0)) {
    return true;
  }
  if ((*z != '+' && *z != '-') || (n != 5 && n != 6)) return false;
  const char* m = z + (n == 6 ? 4 : 3);
  if (n == 6 && z[3] != ':') return false;
  const int v[4] = {z[1] - '0', z[2] - '0', m[0] - '0', m[1] - '0'};
  for (int d : v) {
    if (d < 0 || d > 9) return false;
  }
  minutes = (v[0] * 10 + v[1]) * 60 + v[2] * 10 + v[3];
  if (*z == '-') minutes = -minutes;
  return true;
}

inline long long boostSeconds(const boost::posix_time::ptime& pt) {
  static const boost::gregorian::date kEpoch(1970, 1, 1);
  return (pt.date() - kEpoch).days() * 86400LL + pt.time_of_day().total_seconds();
}

inline const std::vector<const char*> kBoostMailFormats = {
    "%a, %d %b %Y %H:%M:%S", "%d %b %Y %H:%M:%S",     "%a, %d %b %y %H:%M:%S",
    "%A, %d-%b-%y %H:%M:%S", "%a, %d-%b-%Y %H:%M:%S", "%a %b %d %H:%M:%S %Y",
    "%Y-%m-%dT%H:%M:%S",     "%Y-%m-%d %H:%M:%S",     "%a, %d %b %Y %H:%M",
};

// The time input facet reads the date and time; ptime has no zone, so the
// token after it goes through zoneOffsetMinutes. One stream per format, its
// facet imbued once.
class BoostMailReader {
 public:
  explicit BoostMailReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text);
    for (const char* f : kBoostMailFormats) {
      auto is = std::make_unique<std::istringstream>();
      is->imbue(std::locale(is->getloc(), new boost::posix_time::time_input_facet(f)));
      m_streams.push_back(std::move(is));
    }
    m_chosen = chooseFormats(set, m_streams.size(),
                             [&](std::size_t i, std::size_t f, long long& s) {
                               return readWith(i, f, s);
                             });
  }
  bool read(std::size_t i, long long& s) { return readWith(i, m_chosen[i], s); }

 private:
  bool readWith(std::size_t i, std::size_t f, long long& s) {
    std::istringstream& is = *m_streams[f];
    is.clear();
    is.str(m_texts[i]);
    boost::posix_time::ptime pt;
    is >> pt;
    if (is.fail() || pt.is_special()) return false;
    m_zone.clear();
    is >> m_zone;
    int offset;
    if (!zoneOffsetMinutes(m_zone.data(), m_zone.size(), offset)) return false;
    s = boostSeconds(pt) - offset * 60LL;
    return true;
  }

  std::vector<std::string> m_texts;
  std::vector<std::unique_ptr<std::istringstream>> m_streams;
  std::vector<std::size_t> m_chosen;
  std::string m_zone;
};

// from_iso_extended_string reads the date, 'T', time and fraction; the zone
// after them is split off by hand, as Boost reads none.
class BoostAtomReader {
 public:
  explicit BoostAtomReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text);
  }
  bool read(std::size_t i, long long& s) {
    const std::string& text = m_texts[i];
    const std::size_t zone = text.find_first_of("Zz+-", 19);
    if (zone == std::string::npos) return false;
    int offset;
    if (!zoneOffsetMinutes(text.data() + zone, text.size() - zone, offset)) return false;
    try {
      const boost::posix_time::ptime pt =
          boost::posix_time::from_iso_extended_string(text.substr(0, zone));
      if (pt.is_special()) return false;
      s = boostSeconds(pt) - offset * 60LL;
      return true;
    } catch (const std::exception&) {
      return false;
    }
  }

 private:
  std::vector<std::string> m_texts;
};

#endif

// ---- Howard Hinnant's date ----------------------------------------------------------------
#if ZP_BENCH_HHDATE

inline const std::vector<const char*> kHhDateMailFormats = {
    "%a, %d %b %Y %T %z",  "%a, %d %b %Y %T GMT",  "%d %b %Y %T %z",
    "%a, %d %b %y %T GMT", "%A, %d-%b-%y %T GMT",  "%a, %d-%b-%Y %T GMT",
    "%a %b %e %T %Y",      "%FT%TZ",               "%F %T%Ez",
    "%a, %d %b %Y %R %z",
};
inline const std::vector<const char*> kHhDateAtomFormats = {"%FT%T%Ez", "%FT%TZ"};
inline const std::vector<const char*> kHhDateUtcTimeFormats = {"%y%m%d%H%M%SZ"};
inline const std::vector<const char*> kHhDateGeneralizedFormats = {"%Y%m%d%H%M%SZ"};

// date::from_stream is what date::parse's manipulator calls; called directly
// it skips the manipulator's copy of the format string.
template <const std::vector<const char*>& Formats, class Duration>
class HhDateReader {
 public:
  explicit HhDateReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text);
    m_chosen = chooseFormats(set, Formats.size(), [&](std::size_t i, std::size_t f, long long& s) {
      return readWith(i, f, s);
    });
  }
  bool read(std::size_t i, long long& s) { return readWith(i, m_chosen[i], s); }

 private:
  bool readWith(std::size_t i, std::size_t f, long long& s) {
    m_stream.clear();
    m_stream.str(m_texts[i]);
    date::sys_time<Duration> tp;
    date::from_stream(m_stream, Formats[f], tp);
    if (m_stream.fail()) return false;
    s = std::chrono::floor<std::chrono::seconds>(tp).time_since_epoch().count();
    return true;
  }

  std::vector<std::string> m_texts;
  std::vector<std::size_t> m_chosen;
  std::istringstream m_stream;
};

using HhDateMailReader = HhDateReader<kHhDateMailFormats, std::chrono::seconds>;
using HhDateAtomReader = HhDateReader<kHhDateAtomFormats, std::chrono::nanoseconds>;
using HhDateGeneralizedFractionReader =
    HhDateReader<kHhDateGeneralizedFormats, std::chrono::milliseconds>;
using HhDateUtcTimeReader = HhDateReader<kHhDateUtcTimeFormats, std::chrono::seconds>;
using HhDateGeneralizedReader = HhDateReader<kHhDateGeneralizedFormats, std::chrono::seconds>;

#endif

}  // namespace zpbench
