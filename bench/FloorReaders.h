// Fixed-format floors: readers that know one layout by byte position and do
// the least a reader can (check and read the digits, switch on the month
// name, count days), the bound below which no reader of the form can go.
// Texts in any other layout are refused.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "services/internal/CivilDays.h"
#include "time/ZephalSysTime.h"

namespace zpbench {

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

}  // namespace zpbench
