// OLE Automation dates and DayOfWeek, against the tables of
// tests/data/gen_parser_tables.py (which checks its model against .NET's
// published values) and glibc's gmtime_r over the whole range.
#include <climits>
#include <cmath>

#include "services/zpDateParser.h"
#include "tests/TestValues.h"

using namespace zptest;

// Refused rows also check that the output is left alone.
TEST(OleDate, Table) {
  for (const Row& row : readTable("ole_dates.tsv")) {
    SCOPED_TRACE(row[0] + " " + row[1]);
    const double date = std::strtod(row[1].c_str(), nullptr);
    double back = 42.0;
    if (row[0] == "fields") {
      const Fields f = intsOf(row, 2, 6);
      EXPECT_EQ(_zpDateParser::TmToVariant(f[0], f[1], f[2], f[3], f[4], f[5], back), row[1] != "refused");
      EXPECT_EQ(back, row[1] == "refused" ? 42.0 : date);
      continue;
    }
    tm t;
    std::memset(&t, 0x5a, sizeof t);
    const tm before = t;
    if (row[2] == "refused") {
      EXPECT_FALSE(_zpDateParser::VariantToTm(date, t));
      EXPECT_EQ(std::memcmp(&t, &before, sizeof t), 0);
      continue;
    }
    const Fields want = intsOf(row, 2, 8);  // Y M D h m s wday yday
    ASSERT_TRUE(_zpDateParser::VariantToTm(date, t));
    Fields got = fieldsOf(t);
    got.push_back(t.tm_yday);
    EXPECT_EQ(got, want);
    if (row[0] == "both") {
      ASSERT_TRUE(_zpDateParser::TmToVariant(want[0], want[1], want[2], want[3], want[4], want[5], back));
      EXPECT_EQ(back, date);
    }
  }
}

// Every day of the range (day 0, 1899-12-30, is Unix day -25569), each at a
// different time of day: the whole part counts days, and the fields come back.
TEST(OleDate, EveryDayRoundTrips) {
  for (long long day = -657434; day <= 2958465; ++day) {
    const tm c = gmtimeOf((day - 25569) * 86400 + (day * 7919 % 86400 + 86400) % 86400);
    double date = 0.0;
    ASSERT_TRUE(_zpDateParser::TmToVariant(c.tm_year + 1900, c.tm_mon + 1, c.tm_mday, c.tm_hour,
                                           c.tm_min, c.tm_sec, date));
    ASSERT_EQ(std::trunc(date), static_cast<double>(day));
    tm b{};
    ASSERT_TRUE(_zpDateParser::VariantToTm(date, b));
    ASSERT_TRUE(b.tm_year == c.tm_year && b.tm_mon == c.tm_mon && b.tm_mday == c.tm_mday &&
                b.tm_hour == c.tm_hour && b.tm_min == c.tm_min && b.tm_sec == c.tm_sec &&
                b.tm_wday == c.tm_wday) << day;
  }
}

TEST(OleDate, SystemTimeConversions) {
  ZephalSysTime t = makeTime({2024, 2, 29, 10, 20, 30}, false, 999);
  EXPECT_EQ(_zpDateParser::SystemTimeToVariant(t), 45351.0 + 37230.0 / 86400);
  t.m_time.wMonth = 13;
  EXPECT_TRUE(std::isnan(_zpDateParser::SystemTimeToVariant(t)));

  t = marked(makeTime({1, 1, 1, 1, 1, 1}, true, 5));
  double date = -1.25;
  ASSERT_TRUE(_zpDateParser::VariantToSystemTime(date, t));
  const std::string want = "1899 12 29 6 0 0 5 ms=0 local flags=001 dst=1";  // flags untouched
  EXPECT_EQ(stateOf(t), want);
  date = std::nan("");
  EXPECT_FALSE(_zpDateParser::VariantToSystemTime(date, t));
  EXPECT_EQ(stateOf(t), want);
}

// Every day from 0001 to 9999 against gmtime_r, and every row of the table
// (Python's isoweekday).
TEST(DayOfWeek, EveryDayAndTable) {
  for (long long day = -719162; day <= 2932896; ++day) {  // 0001-01-01 .. 9999-12-31
    const tm c = gmtimeOf(day * 86400);
    ASSERT_EQ(_zpDateParser::DayOfWeek(c.tm_year + 1900, c.tm_mon + 1, c.tm_mday), c.tm_wday)
        << day;
  }
  for (const Row& r : readTable("weekdays.tsv")) {
    EXPECT_EQ(_zpDateParser::DayOfWeek(int(toInt(r[0])), int(toInt(r[1])), int(toInt(r[2]))),
              toInt(r[3]));
  }
}

// 400 Gregorian years are 146097 days, a whole number of weeks; months and
// days out of range carry.
TEST(DayOfWeek, NegativeAndLargeYears) {
  const auto dow = &_zpDateParser::DayOfWeek;
  EXPECT_EQ(dow(0, 1, 1), 6);   // as 2000-01-01, a Saturday
  EXPECT_EQ(dow(0, 2, 29), 2);  // year 0 is leap
  EXPECT_EQ(dow(-1, 12, 31), 5);
  for (int k : {-1000000, -5, -1, 1, 7, 5000000}) {
    for (int m = 1; m <= 12; ++m) EXPECT_EQ(dow(2024 + 400 * k, m, 13), dow(2024, m, 13)) << k;
  }
  EXPECT_EQ(dow(2023, 13, 1), dow(2024, 1, 1));
  EXPECT_EQ(dow(2024, 0, 1), dow(2023, 12, 1));
  EXPECT_EQ(dow(2024, -11, 1), dow(2023, 1, 1));
  EXPECT_EQ(dow(2024, 3, 0), dow(2024, 2, 29));
  EXPECT_EQ(dow(2024, 1, 366), dow(2024, 12, 31));
  for (int v : {INT_MIN, INT_MAX}) EXPECT_TRUE(dow(v, v, v) >= 0 && dow(v, v, v) <= 6);
}
