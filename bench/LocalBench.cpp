// The paths through the C library's local zone (mktime), ours beside the C
// library's own way to the same text:
//
//   BM_LocalIso8601_*    a local value's ISO 8601 timestamp, in GMT
//   BM_LocalUtcTime_*    its UTCTime, which converts the value itself
//   BM_LocalRfc822_*     its RFC 822 text with the offset mktime finds
//   BM_LocalLoadUnix_*   Unix seconds loaded as local: no zone step
//
// run_benchmarks.sh runs them with TZ set and with TZ unset: glibc's cost
// for mktime and localtime_r depends on it. Compare `per_text`.
#include <time.h>

#include <iostream>  // stream objects exist before the registrations below run
#include <string>
#include <vector>

#include "bench/BenchTexts.h"
#include "bench/BenchTiming.h"
#include "bench/BenchWriters.h"
#include "bench/OursReaders.h"

namespace zpbench {
namespace {

// The C library's way from local wall-clock fields (as localtime_r gives
// them, the summer-time flag left to mktime) to a text: the GMT instant's
// ISO 8601 timestamp, or with Rfc822 the local fields and the offset mktime
// finds for %z.
template <bool Rfc822>
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
    char text[64];
    std::size_t n;
    if constexpr (Rfc822) {
      mktime(&t);
      n = strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S %z", &t);
    } else {
      const time_t instant = mktime(&t);
      tm gmt;
      gmtime_r(&instant, &gmt);
      n = strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &gmt);
    }
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
  registerWriter<MktimeStrftimeWriter<false>>("BM_LocalIso8601_MktimeStrftime", "%Y%m%dT%H%M%SZ");
  registerWriter<OursWriter<Form::kUtcTime, true>>("BM_LocalUtcTime_Ours", "%y%m%d%H%M%SZ");
  registerWriter<OursWriter<Form::kRfc1123, true>>("BM_LocalRfc822_Ours",
                                                   "%a, %d %b %Y %H:%M:%S %z", strftimeLocal);
  registerWriter<MktimeStrftimeWriter<true>>("BM_LocalRfc822_MktimeStrftime",
                                             "%a, %d %b %Y %H:%M:%S %z", strftimeLocal);
  // The local flag only marks the fields: no zone conversion happens here.
  registerReader<OursLoadReader<true>>("BM_LocalLoadUnix_Ours", kLoadUnixTexts);
}

const bool kRegistered = [] {
  registerLocalPaths();
  return true;
}();

}  // namespace
}  // namespace zpbench
