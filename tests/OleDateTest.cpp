// OLE Automation dates and DayOfWeek, against published .NET values, the
// tables of tests/data/gen_parser_tables.py, and whole-range walks.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "services/zpDateParser.h"
#include "tests/TestTables.h"
#include "time/ZephalSysTime.h"

namespace {

using zptest::readTable;
using zptest::Row;
using zptest::toInt;

// The walk's own month lengths, independent of the code under test.
int monthLength(int y, int m) {
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
  return m == 2 && leap ? 29 : kDays[m - 1];
}

void nextDay(int& y, int& m, int& d) {
  if (++d <= monthLength(y, m)) return;
  d = 1;
  if (++m <= 12) return;
  m = 1;
  ++y;
}

// y mo d h mi s of a tm, to compare with a row in one step.
std::vector<int> tmFields(const tm& t) {
  return {t.tm_year + 1900, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec};
}

// .NET's DateTime.ToOADate / FromOADate documentation (Remarks): 1899-12-30
// 00:00 is 0.0, 1899-12-31 00:00 is 1.0, 1900-01-01 06:00 is 2.25,
// 1899-12-29 00:00 is -1.0 and 06:00 is -1.25; the range runs from midnight,
// 1 January 0100 (-657434.0) to the last moment of 9999-12-31 (2958465.99998843
// to the second). 36526.5: 2000-01-01 12:00, 100 years of 365 days, 24 leap
// days and the two last days of 1899.
TEST(OleDate, PublishedValues) {
  struct Case { double date; std::vector<int> fields; };
  const Case kCases[] = {
      {0.0, {1899, 12, 30, 0, 0, 0}},   {1.0, {1899, 12, 31, 0, 0, 0}},
      {2.25, {1900, 1, 1, 6, 0, 0}},    {-1.0, {1899, 12, 29, 0, 0, 0}},
      {-1.25, {1899, 12, 29, 6, 0, 0}}, {36526.5, {2000, 1, 1, 12, 0, 0}},
      {-657434.0, {100, 1, 1, 0, 0, 0}}, {2958465.0 + 86399.0 / 86400, {9999, 12, 31, 23, 59, 59}},
  };
  for (const Case& c : kCases) {
    tm t{};
    ASSERT_TRUE(_zpDateParser::VariantToTm(c.date, t)) << c.date;
    EXPECT_EQ(tmFields(t), c.fields) << c.date;
    const std::vector<int>& f = c.fields;
    double back = 99.0;
    ASSERT_TRUE(_zpDateParser::TmToVariant(f[0], f[1], f[2], f[3], f[4], f[5], back));
    EXPECT_EQ(back, c.date);
  }
  tm t{};
  ASSERT_TRUE(_zpDateParser::VariantToTm(2958465.99998843, t));
  EXPECT_EQ(tmFields(t), (std::vector<int>{9999, 12, 31, 23, 59, 59}));
}

// Refused rows also check that the tm is left alone.
TEST(OleDate, Table) {
  for (const Row& row : readTable("ole_dates.tsv")) {
    SCOPED_TRACE(row[0] + " " + row[1]);
    const double date = std::strtod(row[1].c_str(), nullptr);
    tm t;
    std::memset(&t, 0x5a, sizeof t);
    const tm before = t;
    if (row[2] == "refused") {
      EXPECT_FALSE(_zpDateParser::VariantToTm(date, t));
      EXPECT_EQ(std::memcmp(&t, &before, sizeof t), 0);
      continue;
    }
    std::vector<int> v;
    for (size_t i = 2; i < row.size(); ++i) v.push_back(static_cast<int>(toInt(row[i])));
    ASSERT_EQ(v.size(), 8u);
    ASSERT_TRUE(_zpDateParser::VariantToTm(date, t));
    std::vector<int> got = tmFields(t);
    got.push_back(t.tm_wday);
    got.push_back(t.tm_yday);
    EXPECT_EQ(got, v);
    double back = 0.0;
    if (row[0] == "both") {
      ASSERT_TRUE(_zpDateParser::TmToVariant(v[0], v[1], v[2], v[3], v[4], v[5], back));
      EXPECT_EQ(back, date);
    }
  }
}

// Every day of the range, each at a different time of day: the whole part
// counts days, and the fields come back.
TEST(OleDate, EveryDayRoundTrips) {
  int y = 100, m = 1, d = 1;
  for (long day = -657434; day <= 2958465; ++day, nextDay(y, m, d)) {
    const int secs = static_cast<int>((day * 7919) % 86400 + 86400) % 86400;
    double date = 0.0;
    ASSERT_TRUE(_zpDateParser::TmToVariant(y, m, d, secs / 3600, secs / 60 % 60, secs % 60, date));
    ASSERT_EQ(std::trunc(date), static_cast<double>(day)) << y << "-" << m << "-" << d;
    tm t{};
    ASSERT_TRUE(_zpDateParser::VariantToTm(date, t));
    ASSERT_TRUE(t.tm_year + 1900 == y && t.tm_mon + 1 == m && t.tm_mday == d &&
                t.tm_hour * 3600 + t.tm_min * 60 + t.tm_sec == secs)
        << y << "-" << m << "-" << d;
  }
  EXPECT_EQ(y * 10000 + m * 100 + d, 100000101);  // the walk ended on 10000-01-01
}

TEST(OleDate, RefusesFieldsAndLeavesOutput) {
  const unsigned short kBadFields[][6] = {
      {99, 12, 31, 0, 0, 0},  {10000, 1, 1, 0, 0, 0}, {2024, 0, 1, 0, 0, 0},
      {2024, 13, 1, 0, 0, 0}, {2024, 2, 30, 0, 0, 0}, {2023, 2, 29, 0, 0, 0},
      {2024, 3, 0, 0, 0, 0},  {2024, 3, 7, 24, 0, 0}, {2024, 3, 7, 9, 60, 0},
      {2024, 3, 7, 9, 5, 61}, {9999, 12, 31, 23, 59, 60},
  };
  for (const auto& f : kBadFields) {
    double date = 42.0;
    EXPECT_FALSE(_zpDateParser::TmToVariant(f[0], f[1], f[2], f[3], f[4], f[5], date)) << f[0];
    EXPECT_EQ(date, 42.0);
  }
  // Second 60, as a date text may carry it, is the next second.
  double leap = 0.0, next = 1.0;
  EXPECT_TRUE(_zpDateParser::TmToVariant(2016, 12, 31, 23, 59, 60, leap));
  EXPECT_TRUE(_zpDateParser::TmToVariant(2017, 1, 1, 0, 0, 0, next));
  EXPECT_EQ(leap, next);
}

TEST(OleDate, SystemTimeConversions) {
  ZephalSysTime t;
  t.m_time = ZephalCalendarFields{2024, 2, 0, 29, 10, 20, 30, 999};
  EXPECT_EQ(_zpDateParser::SystemTimeToVariant(t), 45351.0 + 37230.0 / 86400);
  t.m_time.wMonth = 13;
  EXPECT_TRUE(std::isnan(_zpDateParser::SystemTimeToVariant(t)));

  t.m_bLocal = true;
  t.m_bFlagA = false;
  t.m_isDst = 1;
  double date = -1.25;
  ASSERT_TRUE(_zpDateParser::VariantToSystemTime(date, t));
  const ZephalCalendarFields want{1899, 12, 5, 29, 6, 0, 0, 0};  // a Friday
  EXPECT_EQ(std::memcmp(&t.m_time, &want, sizeof want), 0);
  EXPECT_TRUE(t.m_bLocal);
  EXPECT_FALSE(t.m_bFlagA);
  EXPECT_EQ(t.m_isDst, 1);
  date = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(_zpDateParser::VariantToSystemTime(date, t));
  EXPECT_EQ(std::memcmp(&t.m_time, &want, sizeof want), 0);
}

// Every day from 0001 to 9999 one weekday after the one before, starting
// from the table's 0001-01-01; every table row (Python's isoweekday) directly.
TEST(DayOfWeek, EveryDayAndTable) {
  const auto rows = readTable("weekdays.tsv");
  ASSERT_EQ(toInt(rows[0][0]) * 10000 + toInt(rows[0][1]) * 100 + toInt(rows[0][2]), 10101);
  int want = static_cast<int>(toInt(rows[0][3]));
  for (int y = 1, m = 1, d = 1; y < 10000; nextDay(y, m, d), want = (want + 1) % 7) {
    ASSERT_EQ(_zpDateParser::DayOfWeek(y, m, d), want) << y << "-" << m << "-" << d;
  }
  for (const Row& r : rows) {
    EXPECT_EQ(_zpDateParser::DayOfWeek(static_cast<int>(toInt(r[0])), static_cast<int>(toInt(r[1])),
                                       static_cast<int>(toInt(r[2]))),
              toInt(r[3]));
  }
}

// 400 Gregorian years are 146097 days, a whole number of weeks.
TEST(DayOfWeek, NegativeAndLargeYears) {
  EXPECT_EQ(_zpDateParser::DayOfWeek(0, 1, 1), 6);    // as 2000-01-01, a Saturday
  EXPECT_EQ(_zpDateParser::DayOfWeek(0, 2, 29), 2);   // year 0 is leap
  EXPECT_EQ(_zpDateParser::DayOfWeek(-1, 12, 31), 5);
  for (int k : {-1000000, -5, -1, 1, 7, 5000000}) {
    for (int m = 1; m <= 12; ++m) {
      const int shifted = _zpDateParser::DayOfWeek(2024 + 400 * k, m, 13);
      EXPECT_EQ(shifted, _zpDateParser::DayOfWeek(2024, m, 13)) << k << " " << m;
    }
  }
  EXPECT_EQ(_zpDateParser::DayOfWeek(2023, 13, 1), _zpDateParser::DayOfWeek(2024, 1, 1));
  EXPECT_EQ(_zpDateParser::DayOfWeek(2024, 0, 1), _zpDateParser::DayOfWeek(2023, 12, 1));
  EXPECT_EQ(_zpDateParser::DayOfWeek(2024, -11, 1), _zpDateParser::DayOfWeek(2023, 1, 1));
  EXPECT_EQ(_zpDateParser::DayOfWeek(2024, 3, 0), _zpDateParser::DayOfWeek(2024, 2, 29));
  EXPECT_EQ(_zpDateParser::DayOfWeek(2024, 1, 366), _zpDateParser::DayOfWeek(2024, 12, 31));
  for (int v : {INT_MIN, INT_MAX}) {
    const int w = _zpDateParser::DayOfWeek(v, v, v);
    EXPECT_TRUE(w >= 0 && w <= 6);
  }
}

}  // namespace
