// OLE Automation dates of a value and the day arithmetic on them: the
// published DATE examples, zoneinfo's wall clock for the TZ of this run
// (tests/data/ole_zone_days.tsv), and the system clock for day ages.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "tests/TestTables.h"
#include "tests/TestValues.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;
using zptest::toInt;

namespace {

// Rows of ole_zone_days.tsv of one kind for this run's TZ; fields from `at` on.
std::vector<zptest::Row> zoneRows(const char* kind) {
  static const std::vector<zptest::Row> table = zptest::readTable("ole_zone_days.tsv");
  std::vector<zptest::Row> rows;
  for (const zptest::Row& r : table) {
    if (r[0] == zptest::currentTz() && r[1] == kind) rows.push_back(r);
  }
  return rows;
}

ZephalSysTime timeAt(const zptest::Row& r, size_t at, bool local) {
  return makeTime(int(toInt(r[at])), int(toInt(r[at + 1])), int(toInt(r[at + 2])),
                  int(toInt(r[at + 3])), int(toInt(r[at + 4])), int(toInt(r[at + 5])), local);
}

void expectFieldsAt(const ZephalSysTime& t, const zptest::Row& r, size_t at) {
  expectFields(t, int(toInt(r[at])), int(toInt(r[at + 1])), int(toInt(r[at + 2])),
               int(toInt(r[at + 3])), int(toInt(r[at + 4])), int(toInt(r[at + 5])), -1);
}

#define SKIP_UNLESS(rows) \
  if ((rows).empty()) GTEST_SKIP() << "no rows for TZ '" << zptest::currentTz() << "'"

}  // namespace

// The DATE type's documented examples: 2.0 is 1900-01-01, 5.25 is 1900-01-04
// 06:00, -1.25 is 1899-12-29 06:00 (the fraction counts forward from the
// day's midnight even before day 0).
TEST(OleConversion, PublishedExamples) {
  const struct {
    int f[6];
    double date;
  } rows[] = {
      {{1899, 12, 30, 0, 0, 0}, 0.0},   {{1900, 1, 1, 0, 0, 0}, 2.0},
      {{1900, 1, 4, 6, 0, 0}, 5.25},    {{1899, 12, 29, 6, 0, 0}, -1.25},
      {{2000, 1, 1, 12, 0, 0}, 36526.5}, {{9999, 12, 31, 0, 0, 0}, 2958465.0},
  };
  for (const auto& r : rows) {
    for (int ms : {0, 999}) {
      ZephalSysTime t = makeTime(r.f[0], r.f[1], r.f[2], r.f[3], r.f[4], r.f[5], false, ms);
      EXPECT_EQ(t.toOleDate(false), r.date);
      EXPECT_EQ(t.m_time.wMilliseconds, ms);  // a GMT value is left alone
    }
    for (bool local : {false, true}) {
      ZephalSysTime t = makeTime(1, 1, 1, 1, 1, 1, !local, 500);
      t.m_bFlagA = false;
      t.m_bFromUnknownTimezone = true;
      t.m_isDst = 1;
      EXPECT_TRUE(t.fromOleDate(local, r.date));
      expectFields(t, r.f[0], r.f[1], r.f[2], r.f[3], r.f[4], r.f[5], -1);
      EXPECT_TRUE(t.m_bLocal == local && t.m_time.wMilliseconds == 0 && t.m_isDst == -1);
      EXPECT_TRUE(!t.m_bFlagA && t.m_bFlagB && t.m_bFromUnknownTimezone);
    }
  }
}

TEST(OleConversion, RefusedDateChangesNothing) {
  for (double date : {std::nan(""), std::numeric_limits<double>::infinity(), -657435.0,
                      2958466.0}) {
    ZephalSysTime t = makeTime(2024, 3, 7, 9, 5, 3, true, 250);
    t.m_isDst = 1;
    const ZephalSysTime before = t;
    EXPECT_FALSE(t.fromOleDate(false, date));
    EXPECT_EQ(std::memcmp(&t.m_time, &before.m_time, sizeof t.m_time), 0);
    EXPECT_TRUE(t.m_bLocal && t.m_isDst == 1);
  }
}

// toOleDate moves the value itself into the zone asked for.
TEST(OleConversion, ConvertsTheValueInPlace) {
  const std::vector<zptest::Row> rows = zoneRows("ole");
  SKIP_UNLESS(rows);
  for (const zptest::Row& r : rows) {
    SCOPED_TRACE(r[2]);
    ZephalSysTime t = timeAt(r, 3, false);
    EXPECT_DOUBLE_EQ(t.toOleDate(true), std::stod(r[16]));
    EXPECT_TRUE(t.m_bLocal);
    expectFieldsAt(t, r, 9);
    EXPECT_DOUBLE_EQ(t.toOleDate(false), std::stod(r[15]));
    EXPECT_FALSE(t.m_bLocal);
    expectFieldsAt(t, r, 3);
  }
}

// Days move the wall clock: across a change of summer time a local value
// keeps its time of day, and so names an instant 23 or 25 hours away.
TEST(DayArithmetic, AddDaysKeepsTheWallClock) {
  const std::vector<zptest::Row> rows = zoneRows("days");
  SKIP_UNLESS(rows);
  for (const zptest::Row& r : rows) {
    ZephalSysTime t = timeAt(r, 2, true);
    t.m_bFromUnknownTimezone = true;
    t.m_isDst = 0;
    EXPECT_TRUE(t.addDays(int(toInt(r[8]))));
    expectFields(t, int(toInt(r[9])), int(toInt(r[10])), int(toInt(r[11])), int(toInt(r[12])),
                 int(toInt(r[13])), int(toInt(r[14])), int(toInt(r[15])));
    EXPECT_TRUE(t.m_bLocal && t.m_bFromUnknownTimezone && t.m_isDst == -1);
    EXPECT_EQ(t.toUnixTime_gmt64(), toInt(r[16]));
  }
  ZephalSysTime same = makeTime(2024, 3, 7, 9, 5, 3, false);
  same.m_isDst = 0;
  EXPECT_TRUE(same.addDays(0));
  expectFields(same, 2024, 3, 7, 9, 5, 3, -1);
  EXPECT_EQ(same.m_isDst, -1);
}

// Today's GMT date is time()/86400 (POSIX); values near the day's edges,
// read again if midnight passes while the test runs.
TEST(DayArithmetic, NumDaysOldCountsCalendarDays) {
  for (;;) {
    const time_t now = time(nullptr);
    const long long today = now / 86400;
    tm parts;
    localtime_r(&now, &parts);
    const long long localToday = (now + parts.tm_gmtoff) / 86400;
    const struct {
      long long seconds;
      bool local;
      long long expected;
    } rows[] = {
        {today * 86400, false, 0},
        {today * 86400 + 86399, false, 0},
        {today * 86400 - 1, false, 1},
        {(today + 1) * 86400, false, -1},
        {(today - 400) * 86400 + 43200, false, 400},
        {now + parts.tm_gmtoff, true, today - localToday},  // the local date, unconverted
    };
    int got[6];
    for (int i = 0; i < 6; ++i) {
      ZephalSysTime t;
      t.fromUnixTime64(rows[i].local, rows[i].seconds);
      got[i] = t.getNumDaysOld();
      EXPECT_EQ(t.m_bLocal, rows[i].local);
    }
    if (time(nullptr) / 86400 != today) continue;
    for (int i = 0; i < 6; ++i) EXPECT_EQ(got[i], rows[i].expected) << i;
    break;
  }
}

TEST(DayArithmetic, NumDaysOldAtTheEdgesOfTheRange) {
  const struct {
    int f[6];
    bool inRange;
  } rows[] = {
      {{100, 1, 1, 0, 0, 0}, true},    {{99, 12, 31, 23, 59, 59}, false},
      {{9999, 12, 31, 0, 0, 0}, true}, {{9999, 12, 31, 0, 0, 1}, false},  // above 2958465.0
      {{0, 0, 0, 0, 0, 0}, false},
  };
  for (const auto& r : rows) {
    const ZephalSysTime t = makeTime(r.f[0], r.f[1], r.f[2], r.f[3], r.f[4], r.f[5], false);
    tm date{};
    date.tm_year = r.f[0] - 1900;
    date.tm_mon = r.f[1] - 1;
    date.tm_mday = r.f[2];
    const long long day = timegm(&date) / 86400;  // midnight: exact
    for (;;) {
      const long long today = time(nullptr) / 86400;
      const int got = t.getNumDaysOld();
      if (time(nullptr) / 86400 != today) continue;
      EXPECT_EQ(got, r.inRange ? today - day : -9999) << r.f[0];
      break;
    }
  }
}

TEST(DayArithmetic, IsAfterComparesWholeSecondsInGmt) {
  ZephalSysTime a = makeTime(2024, 3, 7, 12, 0, 0, false, 900);
  ZephalSysTime b = makeTime(2024, 3, 7, 12, 0, 0, false, 100);
  EXPECT_FALSE(a.isAfter(b));
  EXPECT_FALSE(b.isAfter(a));
  b.m_time.wSecond = 1;
  EXPECT_TRUE(b.isAfter(a));
  EXPECT_FALSE(a.isAfter(b));

  const std::vector<zptest::Row> rows = zoneRows("ole");
  SKIP_UNLESS(rows);
  for (const zptest::Row& r : rows) {
    SCOPED_TRACE(r[2]);
    ZephalSysTime local = timeAt(r, 9, true);
    ZephalSysTime gmt = timeAt(r, 3, false);
    EXPECT_FALSE(local.isAfter(gmt));
    EXPECT_FALSE(local.m_bLocal);
    expectFieldsAt(local, r, 3);
    local = timeAt(r, 9, true);
    EXPECT_FALSE(gmt.isAfter(local));
    EXPECT_FALSE(local.m_bLocal);
    gmt.addSeconds64(-1);
    local = timeAt(r, 9, true);
    EXPECT_TRUE(local.isAfter(gmt));
    local = timeAt(r, 9, true);
    EXPECT_FALSE(gmt.isAfter(local));
  }
}
