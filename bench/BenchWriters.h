// Writing date texts, the shared part: the three forms, the values each
// writer starts from, our writer, and the timing of a writer. A writer is a
// class built from the instants; write(i) replaces its buffer's text with
// instant i's, text() shows it. Every writer's output is checked against
// strftime's before timing; rows report `per_text`.
#pragma once

#include <time.h>

#include <cstddef>
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

namespace zpbench {

enum class Form { kIso8601, kUtcTime, kRfc1123 };

constexpr const char* strftimeFormat(Form form) {
  return form == Form::kIso8601   ? "%Y%m%dT%H%M%SZ"
         : form == Form::kUtcTime ? "%y%m%d%H%M%SZ"
                                  : "%a, %d %b %Y %H:%M:%S GMT";
}

inline std::vector<ZephalSysTime> gmtValues(const std::vector<long long>& instants) {
  std::vector<ZephalSysTime> values(instants.size());
  for (std::size_t i = 0; i < instants.size(); ++i) values[i].fromUnixTime64(false, instants[i]);
  return values;
}

inline std::vector<tm> gmtTms(const std::vector<long long>& instants) {
  std::vector<tm> tms(instants.size());
  for (std::size_t i = 0; i < instants.size(); ++i) {
    const time_t t = static_cast<time_t>(instants[i]);
    gmtime_r(&t, &tms[i]);
  }
  return tms;
}

inline std::vector<ZephalSysTime> localValues(const std::vector<long long>& instants) {
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

inline std::string strftimeGmt(const char* format, long long instant) {
  const time_t t = static_cast<time_t>(instant);
  tm broken;
  gmtime_r(&t, &broken);
  char text[64];
  return std::string(text, strftime(text, sizeof text, format, &broken));
}

inline std::string strftimeLocal(const char* format, long long instant) {
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

}  // namespace zpbench
