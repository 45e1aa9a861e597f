// The C and C++ libraries' own readers of the benchmark texts: glibc's
// strptime with timegm for the date forms, strtoll and from_chars for the
// counted ones. Each turns a text into Unix seconds (see BenchTiming.h).
//
// strptime gets, per text, the first format from its list that reads the
// text right, chosen before timing: it never pays for trying formats, which
// a real caller facing mixed texts would.
#pragma once

#include <time.h>

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"

namespace zpbench {

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

}  // namespace zpbench
