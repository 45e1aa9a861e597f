// The time that batch threads spend where only one thread can be at once:
// holding the lock, reading a stream's next chunk, writing the next block.
// A read's wall time holds the wait for the program writing the stream, so
// its processor time is counted too. Counted only in the build of zpdate
// that bench/ measures the serial part with (ZPDATE_SERIAL_CLOCK defined);
// elsewhere every call is empty.
//
//   clock.start(SerialClock::kWrite);
//   ...  // the write turn
//   clock.stop(SerialClock::kWrite);
#pragma once

#ifdef ZPDATE_SERIAL_CLOCK
#include <time.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#endif

namespace zpdate {

class SerialClock {
 public:
  enum Part { kLock, kRead, kWrite, kParts };

  // Each part is started and stopped by the thread that holds it; the lock
  // or the turn orders one holder's stop before the next one's start.
  void start(Part part) {
#ifdef ZPDATE_SERIAL_CLOCK
    if (part == kRead) m_readCpuSince = threadCpu();
    m_since[part] = Clock::now();
#else
    (void)part;
#endif
  }

  void stop(Part part) {
#ifdef ZPDATE_SERIAL_CLOCK
    m_total[part] += Clock::now() - m_since[part];
    if (part == kRead) m_readCpu += threadCpu() - m_readCpuSince;
#else
    (void)part;
#endif
  }

  // The seconds in each part, for bench/run_benchmarks.sh: appended to the
  // file named by ZPDATE_SERIAL_REPORT (standard error may be busy with
  // messages), else on standard error.
  void report() const {
#ifdef ZPDATE_SERIAL_CLOCK
    const char* path = std::getenv("ZPDATE_SERIAL_REPORT");
    std::FILE* to = path != nullptr ? std::fopen(path, "a") : stderr;
    if (to == nullptr) return;
    std::fprintf(to, "serial lock=%.6f read=%.6f read-cpu=%.6f write=%.6f\n", seconds(kLock),
                 seconds(kRead), m_readCpu, seconds(kWrite));
    if (to != stderr) std::fclose(to);
#endif
  }

 private:
#ifdef ZPDATE_SERIAL_CLOCK
  using Clock = std::chrono::steady_clock;
  double seconds(Part part) const { return std::chrono::duration<double>(m_total[part]).count(); }
  static double threadCpu() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
  }

  Clock::time_point m_since[kParts];
  Clock::duration m_total[kParts]{};
  double m_readCpuSince = 0, m_readCpu = 0;
#endif
};

}  // namespace zpdate
