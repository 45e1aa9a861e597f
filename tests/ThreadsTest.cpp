// Conversions from several threads at once must agree with the same work
// done on one thread (and run clean under ThreadSanitizer).
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "time/ZephalSysTime.h"

namespace {

struct Answer {
  long long local[6];
  int offset;
  int isDst;
  long long back;
};

Answer convert(long long utc) {
  ZephalSysTime t;
  t.fromUnixTime64(false, utc);
  Answer a{};
  a.offset = t.getGmtOffsetInSeconds(0);
  t.toLocalSysTime();
  const ZephalCalendarFields& f = t.m_time;
  const long long fields[6] = {f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond};
  std::copy(fields, fields + 6, a.local);
  a.isDst = t.getIsDst();
  t.toGmtSysTime();
  a.back = t.toUnixTime_gmt64();
  return a;
}

bool same(const Answer& a, const Answer& b) {
  return std::equal(a.local, a.local + 6, b.local) && a.offset == b.offset &&
         a.isDst == b.isDst && a.back == b.back;
}

}  // namespace

TEST(Threads, FourThreadsConvertAtOnce) {
  constexpr int kThreads = 4, kPerThread = 2000;
  auto instant = [](int thread, int i) { return 1700000000LL + (thread * kPerThread + i) * 3607LL; };
  std::vector<Answer> expected;
  for (int i = 0; i < kThreads * kPerThread; ++i) expected.push_back(convert(instant(0, i)));

  std::vector<int> mismatches(kThreads, 0);
  std::vector<std::thread> threads;
  for (int th = 0; th < kThreads; ++th) {
    threads.emplace_back([&, th] {
      for (int i = 0; i < kPerThread; ++i) {
        if (!same(convert(instant(th, i)), expected[th * kPerThread + i])) ++mismatches[th];
      }
    });
  }
  for (std::thread& t : threads) t.join();
  for (int th = 0; th < kThreads; ++th) EXPECT_EQ(mismatches[th], 0) << "thread " << th;
}
