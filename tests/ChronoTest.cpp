// The values and std::chrono's system clock: every day of the years 1 to
// 9999 against gmtime_r, the edges of a nanosecond time_point against
// Python's datetime (tests/data/gen_chrono_table.py), and a local value
// taken at the instant mktime gives it.
#include <chrono>
#include <ratio>

#include "tests/TestValues.h"
#include "time/ZephalChrono.h"

using namespace zptest;
using std::chrono::milliseconds;
using std::chrono::system_clock;

namespace {

constexpr bool kNanosecondClock = std::ratio_equal<system_clock::period, std::nano>::value;

int64_t millisOf(system_clock::time_point tp) {
  return std::chrono::duration_cast<milliseconds>(tp.time_since_epoch()).count();
}

// The GMT record of gmtime_r's fields, without the vectors makeTime takes:
// the loop over every day stays quick under the sanitizers.
ZephalSysTime recordOf(const tm& g, int ms) {
  ZephalSysTime t;
  t.m_time = ZephalCalendarFields{uint16_t(g.tm_year + 1900), uint16_t(g.tm_mon + 1), 0, uint16_t(g.tm_mday),
                                  uint16_t(g.tm_hour), uint16_t(g.tm_min), uint16_t(g.tm_sec), uint16_t(ms)};
  return t;
}

bool sameReading(const ZephalSysTime& t, const tm& g, int ms) {
  const ZephalCalendarFields& f = t.m_time;
  return f.wYear == g.tm_year + 1900 && f.wMonth == g.tm_mon + 1 && f.wDay == g.tm_mday &&
         f.wHour == g.tm_hour && f.wMinute == g.tm_min && f.wSecond == g.tm_sec &&
         f.wDayOfWeek == g.tm_wday && f.wMilliseconds == ms && !t.m_bLocal;
}

system_clock::time_point pointAt(int64_t unixMillis) {
  return system_clock::time_point(std::chrono::duration_cast<system_clock::duration>(milliseconds(unixMillis)));
}

}  // namespace

TEST(ChronoSysTime, PeerInstants) {
  // unix_ms | Y M D h m s ms wday | in a nanosecond time_point
  for (const Row& r : readTable("chrono_instants.tsv")) {
    const int64_t ms = toInt(r[0]);
    const Fields f = intsOf(r, 1, 8);
    const bool holds = !kNanosecondClock || r[9] == "1";
    const ZephalSysTime gmt = makeTime({f[0], f[1], f[2], f[3], f[4], f[5]}, false, f[6]);
    system_clock::time_point tp = pointAt(0);
    EXPECT_EQ(zpToTimePoint(gmt, tp), holds) << r[0];
    EXPECT_EQ(millisOf(tp), holds ? ms : 0) << r[0];
    if (!holds) continue;
    ZephalSysTime back = marked(makeTime({1, 2, 3, 4, 5, 6}, true));
    ASSERT_TRUE(zpFromTimePoint(tp, back)) << r[0];
    EXPECT_EQ(fieldsOf(back), (Fields{f[0], f[1], f[2], f[3], f[4], f[5], f[7]})) << r[0];
    EXPECT_EQ(extrasOf(back), "ms=" + std::to_string(f[6]) + " gmt flags=110 dst=-1") << r[0];
  }
}

// The ends of the time_point itself, and instants between its milliseconds,
// rounded down: before 1970 too.
TEST(ChronoSysTime, FromRoundsDown) {
  if (!kNanosecondClock) GTEST_SKIP() << "the system clock does not count nanoseconds";
  struct Case {
    system_clock::time_point tp;
    const char* gmt;
  };
  const Case cases[] = {
      {system_clock::time_point::min(), "1677 9 21 0 12 43 2 ms=145 gmt flags=110 dst=-1"},
      {system_clock::time_point::max(), "2262 4 11 23 47 16 5 ms=854 gmt flags=110 dst=-1"},
      {system_clock::time_point(std::chrono::nanoseconds(-1)), "1969 12 31 23 59 59 3 ms=999 gmt flags=110 dst=-1"},
      {system_clock::time_point(std::chrono::nanoseconds(999999)), "1970 1 1 0 0 0 4 ms=0 gmt flags=110 dst=-1"},
      {system_clock::time_point(std::chrono::nanoseconds(-1000001)), "1969 12 31 23 59 59 3 ms=998 gmt flags=110 dst=-1"},
  };
  for (const Case& c : cases) {
    ZephalSysTime out;
    ASSERT_TRUE(zpFromTimePoint(c.tp, out));
    EXPECT_EQ(stateOf(out), c.gmt);
  }
}

// Every day from 0001-01-01 to 9999-12-31, at a time of day and millisecond
// that move from day to day: the fields gmtime_r gives, converted, count
// back to the same milliseconds where the time_point holds them, and are
// refused where it does not.
TEST(ChronoSysTime, EveryDayOfTheYears1To9999) {
  const int64_t firstDay = timegmOf(1, 1, 1) / 86400, lastDay = timegmOf(9999, 12, 31) / 86400;
  const int64_t firstPoint = millisOf(system_clock::time_point::min()) + 1;
  const int64_t lastPoint = millisOf(system_clock::time_point::max());
  int64_t inside = 0, failures = 0;
  for (int64_t day = firstDay; day <= lastDay && failures < 10; ++day) {
    const int64_t seconds = day * 86400 + (day * 7919 % 86400 + 86400) % 86400;
    const int ms = static_cast<int>((day % 1000 + 1000) % 1000);
    const int64_t count = seconds * 1000 + ms;
    const tm g = gmtimeOf(seconds);
    const ZephalSysTime t = recordOf(g, ms);
    system_clock::time_point tp = pointAt(1);
    const bool holds = count >= firstPoint && count <= lastPoint;
    if (zpToTimePoint(t, tp) != holds || millisOf(tp) != (holds ? count : 1)) {
      ++failures;
      ADD_FAILURE() << stateOf(t) << ": " << millisOf(tp) << ", want " << count;
      continue;
    }
    if (!holds) continue;
    ++inside;
    ZephalSysTime back;
    if (!zpFromTimePoint(tp, back) || !sameReading(back, g, ms)) {
      ++failures;
      ADD_FAILURE() << count << ": " << stateOf(back) << ", want " << stateOf(t);
    }
  }
  EXPECT_GT(inside, kNanosecondClock ? 200000 : 3000000);
}

// A local value names the instant mktime gives its fields; it is not changed.
TEST(ChronoSysTime, LocalValueTakenOnTheLocalClock) {
  for (const Fields& f : {Fields{2024, 3, 7, 9, 5, 3}, Fields{2024, 7, 1, 12, 0, 0}, Fields{1969, 12, 31, 23, 59, 59},
                          Fields{1900, 1, 1, 0, 0, 0}, Fields{2100, 6, 30, 23, 59, 60}}) {
    const ZephalSysTime local = makeTime(f, true, 321);
    const std::string before = stateOf(local);
    tm t = tmOf(f[0], f[1], f[2], f[3], f[4], f[5]);
    const int64_t expected = static_cast<int64_t>(mktime(&t)) * 1000 + 321;
    system_clock::time_point tp;
    ASSERT_TRUE(zpToTimePoint(local, tp)) << before;
    EXPECT_EQ(millisOf(tp), expected) << before;
    EXPECT_EQ(stateOf(local), before);
  }
}

TEST(ChronoSysTime, FieldsThatNameNoReading) {
  for (const ZephalSysTime& bad :
       {makeTime({2024, 13, 1, 0, 0, 0}, false), makeTime({2024, 0, 1, 0, 0, 0}, false),
        makeTime({2023, 2, 29, 0, 0, 0}, false), makeTime({2024, 4, 31, 0, 0, 0}, true),
        makeTime({2024, 1, 1, 24, 0, 0}, false), makeTime({2024, 1, 1, 0, 60, 0}, false),
        makeTime({2024, 1, 1, 0, 0, 61}, false), makeTime({2024, 1, 1, 0, 0, 0}, false, 1000),
        makeTime({10000, 1, 1, 0, 0, 0}, false), makeTime({0, 0, 0, 0, 0, 0}, false)}) {
    system_clock::time_point tp = pointAt(42);
    EXPECT_FALSE(zpToTimePoint(bad, tp)) << stateOf(bad);
    EXPECT_EQ(millisOf(tp), 42);
  }
  // Second 60 is the next minute's 00, as timegm reads it.
  system_clock::time_point tp;
  ASSERT_TRUE(zpToTimePoint(makeTime({2016, 12, 31, 23, 59, 60}, false), tp));
  EXPECT_EQ(millisOf(tp), timegmOf(2017, 1, 1) * 1000);
}

// Whole seconds both ways, the whole 64-bit range; the count means what the
// standard library's to_time_t and gmtime_r make of it.
TEST(ChronoFileTime, SecondsBothWays) {
  for (int64_t s : {INT64_MIN, INT64_MIN + 1, int64_t{-62135596800}, int64_t{-1}, int64_t{0}, int64_t{1},
                    int64_t{1709802303}, int64_t{253402300799}, INT64_MAX - 1, INT64_MAX}) {
    ZephalFileTime ft;
    ft.fromUnixTime64(s, 0);
    const ZephalSysSeconds tp = zpToTimePoint(ft);
    EXPECT_EQ(tp.time_since_epoch().count(), s);
    ZephalFileTime back;
    back.m_bFlagA = false;
    zpFromTimePoint(tp, back);
    EXPECT_EQ(back.m_unixTime, s);
    EXPECT_FALSE(back.m_bFlagA) << "the carried flags stay";
  }
  // The first of every month of the years 1 to 9999 at 12:34:56, as timegm counts it.
  for (int year = 1; year <= 9999; ++year) {
    for (int month = 1; month <= 12; ++month) {
      const int64_t s = timegmOf(year, month, 1, 12, 34, 56);
      ZephalFileTime ft;
      ft.fromUnixTime64(s, 0);
      const ZephalSysSeconds tp = zpToTimePoint(ft);
      ASSERT_EQ(tp, ZephalSysSeconds(std::chrono::seconds(s))) << year << "-" << month;
      ZephalFileTime back;
      zpFromTimePoint(tp, back);
      ASSERT_EQ(back.m_unixTime, s);
    }
  }
}
