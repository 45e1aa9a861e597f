// Our readers as the benchmarks call them: the mail reader, the RFC 3339
// reader and the free-form loader, each turning a text into Unix seconds
// (see BenchTiming.h for the reader shape).
#pragma once

#include <cstddef>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

namespace zpbench {

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

}  // namespace zpbench
