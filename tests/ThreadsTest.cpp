// Conversions from several threads at once must agree with the same work
// done on one thread (and run clean under ThreadSanitizer).
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "time/ZephalSysTime.h"

namespace {

// Offset, local fields, summer time and the instant read back, in one line.
std::string convert(long long utc) {
  ZephalSysTime t;
  t.fromUnixTime64(false, utc);
  std::string answer = std::to_string(t.getGmtOffsetInSeconds(0));
  t.toLocalSysTime();
  const ZephalCalendarFields& f = t.m_time;
  for (int v : {f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond}) answer += ' ' + std::to_string(v);
  answer += ' ' + std::to_string(t.getIsDst());
  t.toGmtSysTime();
  return answer + ' ' + std::to_string(t.toUnixTime_gmt64());
}

}  // namespace

TEST(Threads, FourThreadsConvertAtOnce) {
  constexpr int kThreads = 4, kPerThread = 2000;
  auto instant = [](int i) { return 1700000000LL + i * 3607LL; };
  std::vector<std::string> expected;
  for (int i = 0; i < kThreads * kPerThread; ++i) expected.push_back(convert(instant(i)));

  std::vector<int> mismatches(kThreads, 0);
  std::vector<std::thread> threads;
  for (int th = 0; th < kThreads; ++th) {
    threads.emplace_back([&, th] {
      for (int i = th * kPerThread; i < (th + 1) * kPerThread; ++i) {
        if (convert(instant(i)) != expected[i]) ++mismatches[th];
      }
    });
  }
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(mismatches, std::vector<int>(kThreads, 0));
}
