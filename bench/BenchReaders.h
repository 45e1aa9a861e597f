// Readers of the benchmark texts: ours, each peer library through its usual
// API for the form, and a fixed-format floor. Each turns a text into Unix
// seconds (see BenchTexts.h for the reader shape).
//
// Peers that take a format get, per text, the first format from their list
// that reads the text right, chosen before timing: they never pay for trying
// formats, which a real caller facing mixed texts would. Stream-based peers
// keep one stream and refill it, which is cheaper than a stream per call.
#pragma once

#include <time.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

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

// For each text, the index of the first format with which readWith(i, f, s)
// gives the right seconds; 0 when none does (that text is then misread and
// left out of the timing).
template <class ReadWith>
std::vector<std::size_t> chooseFormats(const TextSet& set, std::size_t formatCount,
                                       ReadWith readWith) {
  std::vector<std::size_t> chosen(set.size(), 0);
  for (std::size_t i = 0; i < set.size(); ++i) {
    for (std::size_t f = 0; f < formatCount; ++f) {
      long long s = 0;
      if (readWith(i, f, s) && s == set[i].unixSeconds) {
        chosen[i] = f;
        break;
      }
    }
  }
  return chosen;
}

// A zone as a token after the time: none, a name for GMT, or a numeric
// offset (+hhmm, +hh:mm). Peers without zone input (Boost's ptime) use it.
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

// ---- Ours -----------------------------------------------------------------------

class OursRfc822Reader {
 public:
  explicit OursRfc822Reader(const TextSet& set) : m_set(set) {}
  bool read(std::size_t i, long long& s) {
    if (!_zpDateParser::parseRFC822Date(m_set[i].text, m_value, m_log)) return false;
    s = unixSecondsOf(m_value.m_time);
    return true;
  }

 private:
  const TextSet& m_set;
  ZephalSysTime m_value;
  LogNull m_log;
};

class OursAtomReader {
 public:
  explicit OursAtomReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text);
  }
  bool read(std::size_t i, long long& s) {
    if (!_zpDateParser::AtomDateToSysTime(m_texts[i], m_value, nullptr)) return false;
    s = unixSecondsOf(m_value.m_time);
    return true;
  }

 private:
  std::vector<StringBuffer> m_texts;
  ZephalSysTime m_value;
};

// loadAnyFormat, marking Unix seconds local or not.
template <bool Local>
class OursLoadReader {
 public:
  explicit OursLoadReader(const TextSet& set) {
    for (const TextCase& c : set) m_texts.emplace_back(c.text);
  }
  bool read(std::size_t i, long long& s) {
    if (!m_value.loadAnyFormat(Local, m_texts[i])) return false;
    s = unixSecondsOf(m_value.m_time);
    return true;
  }

 private:
  std::vector<StringBuffer> m_texts;
  ZephalSysTime m_value;
};

// ---- Fixed-format floors ----------------------------------------------------------
// Each knows one layout by byte position and does the least a reader can:
// check and read the digits, switch on the month name, count days. Texts in
// any other layout are refused.

inline int floorDigit(char c) { return static_cast<unsigned char>(c - '0'); }

// Two digits at p into v; false when either is no digit.
inline bool floorTwo(const char* p, int& v) {
  const int a = floorDigit(p[0]);
  const int b = floorDigit(p[1]);
  v = a * 10 + b;
  return (a < 10) & (b < 10);
}

// "+hhmm" (colon false) or "+hh:mm" at p, in minutes east.
inline bool floorOffset(const char* p, bool colon, int& minutes) {
  int hh, mm;
  if ((p[0] != '+' && p[0] != '-') || !floorTwo(p + 1, hh) || !floorTwo(p + (colon ? 4 : 3), mm) ||
      (colon && p[3] != ':')) {
    return false;
  }
  minutes = p[0] == '-' ? -(hh * 60 + mm) : hh * 60 + mm;
  return true;
}

inline long long floorSeconds(int y, int mo, int d, int h, int mi, int s, int offsetMinutes) {
  return zpcivil::daysFromCivil(y, mo, d) * 86400 + h * 3600LL + mi * 60LL + s -
         offsetMinutes * 60LL;
}

// "Thu, 07 Mar 2024 09:05:03 GMT" or "... +0100".
class FloorRfc1123Reader {
 public:
  explicit FloorRfc1123Reader(const TextSet& set) {
    for (const TextCase& c : set) m_lengths.push_back(std::strlen(c.text));
    m_set = &set;
  }
  bool read(std::size_t i, long long& s) {
    const char* p = (*m_set)[i].text;
    const std::size_t n = m_lengths[i];
    int d, y1, y2, h, mi, se, off = 0;
    if ((n != 29 && n != 31) || p[3] != ',' || !floorTwo(p + 5, d) || !floorTwo(p + 12, y1) ||
        !floorTwo(p + 14, y2) || !floorTwo(p + 17, h) || !floorTwo(p + 20, mi) ||
        !floorTwo(p + 23, se)) {
      return false;
    }
    int mo;
    switch (p[8] << 16 | p[9] << 8 | p[10]) {
      case 'J' << 16 | 'a' << 8 | 'n': mo = 1; break;
      case 'F' << 16 | 'e' << 8 | 'b': mo = 2; break;
      case 'M' << 16 | 'a' << 8 | 'r': mo = 3; break;
      case 'A' << 16 | 'p' << 8 | 'r': mo = 4; break;
      case 'M' << 16 | 'a' << 8 | 'y': mo = 5; break;
      case 'J' << 16 | 'u' << 8 | 'n': mo = 6; break;
      case 'J' << 16 | 'u' << 8 | 'l': mo = 7; break;
      case 'A' << 16 | 'u' << 8 | 'g': mo = 8; break;
      case 'S' << 16 | 'e' << 8 | 'p': mo = 9; break;
      case 'O' << 16 | 'c' << 8 | 't': mo = 10; break;
      case 'N' << 16 | 'o' << 8 | 'v': mo = 11; break;
      case 'D' << 16 | 'e' << 8 | 'c': mo = 12; break;
      default: return false;
    }
    if (n == 29 ? std::memcmp(p + 26, "GMT", 3) != 0 : !floorOffset(p + 26, false, off)) return false;
    s = floorSeconds(y1 * 100 + y2, mo, d, h, mi, se, off);
    return true;
  }

 private:
  const TextSet* m_set;
  std::vector<std::size_t> m_lengths;
};

// "2024-03-07T09:05:03Z" or "...+01:00".
class FloorAtomReader {
 public:
  explicit FloorAtomReader(const TextSet& set) {
    for (const TextCase& c : set) m_lengths.push_back(std::strlen(c.text));
    m_set = &set;
  }
  bool read(std::size_t i, long long& s) {
    const char* p = (*m_set)[i].text;
    const std::size_t n = m_lengths[i];
    int y1, y2, mo, d, h, mi, se, off = 0;
    if ((n != 20 && n != 25) || !floorTwo(p, y1) || !floorTwo(p + 2, y2) || p[4] != '-' ||
        !floorTwo(p + 5, mo) || p[7] != '-' || !floorTwo(p + 8, d) || p[10] != 'T' ||
        !floorTwo(p + 11, h) || p[13] != ':' || !floorTwo(p + 14, mi) || p[16] != ':' ||
        !floorTwo(p + 17, se)) {
      return false;
    }
    if (n == 20 ? p[19] != 'Z' : !floorOffset(p + 19, true, off)) return false;
    s = floorSeconds(y1 * 100 + y2, mo, d, h, mi, se, off);
    return true;
  }

 private:
  const TextSet* m_set;
  std::vector<std::size_t> m_lengths;
};

// ---- glibc strptime + timegm ------------------------------------------------------

// The offset %z reads lands in tm_gmtoff; timegm then clears it.
inline bool strptimeSeconds(const char* text, const char* format, long long& s) {
  tm t{};
  if (strptime(text, format, &t) == nullptr) return false;
  const long offset = t.tm_gmtoff;
  s = static_cast<long long>(timegm(&t)) - offset;
  return true;
}

inline const std::vector<const char*> kStrptimeMailFormats = {
    "%a, %d %b %Y %H:%M:%S %z", "%a, %d %b %Y %H:%M:%S GMT", "%d %b %Y %H:%M:%S %z",
    "%a, %d %b %y %H:%M:%S GMT", "%A, %d-%b-%y %H:%M:%S GMT", "%a, %d-%b-%Y %H:%M:%S GMT",
    "%a %b %d %H:%M:%S %Y",      "%Y-%m-%dT%H:%M:%S%z",      "%Y-%m-%d %H:%M:%S%z",
    "%a, %d %b %Y %H:%M %z",
};
// strptime stops after the seconds; the fraction and 'Z' after them are not read.
inline const std::vector<const char*> kStrptimeGeneralizedFractionFormats = {"%Y%m%d%H%M%S"};
inline const std::vector<const char*> kStrptimeUtcTimeFormats = {"%y%m%d%H%M%SZ"};
inline const std::vector<const char*> kStrptimeGeneralizedFormats = {"%Y%m%d%H%M%SZ"};

template <const std::vector<const char*>& Formats>
class StrptimeReader {
 public:
  explicit StrptimeReader(const TextSet& set) : m_set(set) {
    m_chosen = chooseFormats(set, Formats.size(), [&](std::size_t i, std::size_t f, long long& s) {
      return strptimeSeconds(set[i].text, Formats[f], s);
    });
  }
  bool read(std::size_t i, long long& s) {
    return strptimeSeconds(m_set[i].text, Formats[m_chosen[i]], s);
  }

 private:
  const TextSet& m_set;
  std::vector<std::size_t> m_chosen;
};

using StrptimeMailReader = StrptimeReader<kStrptimeMailFormats>;

// strptime has no fractions: the date and time, the fraction skipped by
// hand, then the zone by a second strptime.
class StrptimeAtomReader {
 public:
  explicit StrptimeAtomReader(const TextSet& set) : m_set(set) {}
  bool read(std::size_t i, long long& s) {
    tm t{};
    const char* p = strptime(m_set[i].text, "%Y-%m-%dT%H:%M:%S", &t);
    if (p == nullptr) return false;
    if (*p == '.') {
      do ++p;
      while (*p >= '0' && *p <= '9');
    }
    p = strptime(p, "%z", &t);
    if (p == nullptr || *p != '\0') return false;
    const long offset = t.tm_gmtoff;
    s = static_cast<long long>(timegm(&t)) - offset;
    return true;
  }

 private:
  const TextSet& m_set;
};

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

#endif

}  // namespace zpbench
