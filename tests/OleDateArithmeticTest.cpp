// OLE Automation dates of a value and the day arithmetic on them: zoneinfo's
// wall clock for the TZ of this run (tests/data/ole_zone_days.tsv), and the
// system clock for day ages. The format itself is OleDateTest's.
#include <cmath>

#include "tests/TestValues.h"

using namespace zptest;

// fromOleDate marks the fields local or GMT and shifts nothing (-1.25 is
// 1899-12-29 06:00, a Friday); a refused date changes nothing.
TEST(OleConversion, FromOleDateMarksTheFields) {
  for (bool local : {false, true}) {
    ZephalSysTime t = marked(makeTime({1, 1, 1, 1, 1, 1}, !local, 500));
    EXPECT_TRUE(t.fromOleDate(local, -1.25));
    const std::string read = stateOf(t);
    EXPECT_EQ(read, std::string("1899 12 29 6 0 0 5 ms=0 ") + (local ? "local" : "gmt") + " flags=001 dst=-1");
    EXPECT_FALSE(t.fromOleDate(local, std::nan("")) || t.fromOleDate(local, 2958466.0));
    EXPECT_EQ(stateOf(t), read);
  }
}

// toOleDate moves the value itself into the zone asked for.
TEST(OleConversion, ConvertsTheValueInPlace) {
  const std::vector<Row> rows = zoneRows("ole_zone_days.tsv", "ole");
  ZP_SKIP_IF_NO_ROWS(rows);
  for (const Row& r : rows) {
    SCOPED_TRACE(r[2]);
    ZephalSysTime t = makeTime(intsOf(r, 3, 6), false);
    EXPECT_DOUBLE_EQ(t.toOleDate(true), std::stod(r[16]));
    EXPECT_TRUE(t.m_bLocal && fieldsOf(t, 6) == intsOf(r, 9, 6));
    EXPECT_DOUBLE_EQ(t.toOleDate(false), std::stod(r[15]));
    EXPECT_TRUE(!t.m_bLocal && fieldsOf(t, 6) == intsOf(r, 3, 6));
  }
}

// Days move the wall clock: across a change of summer time a local value
// keeps its time of day, and so names an instant 23 or 25 hours away.
TEST(DayArithmetic, AddDaysKeepsTheWallClock) {
  const std::vector<Row> rows = zoneRows("ole_zone_days.tsv", "days");
  ZP_SKIP_IF_NO_ROWS(rows);
  for (const Row& r : rows) {
    ZephalSysTime t = marked(makeTime(intsOf(r, 2, 6), true));
    EXPECT_TRUE(t.addDays(int(toInt(r[8]))));
    EXPECT_EQ(fieldsOf(t), intsOf(r, 9, 7));
    EXPECT_EQ(extrasOf(t), "ms=0 local flags=001 dst=-1");
    EXPECT_EQ(t.toUnixTime_gmt64(), toInt(r[16]));
  }
  ZephalSysTime same = marked(makeTime({2024, 3, 7, 9, 5, 3}, false));
  EXPECT_TRUE(same.addDays(0));
  EXPECT_EQ(stateOf(same), "2024 3 7 9 5 3 4 ms=0 gmt flags=001 dst=-1");
}

// Today's GMT date is time()/86400 (POSIX): the local reading of now (its own
// date counts, unconverted), the range's ends, values at the day's edges.
TEST(DayArithmetic, NumDaysOldCountsCalendarDays) {
  tm local{};
  const auto [now, got] = atOneSecond([&local](time_t now) {
    localtime_r(&now, &local);
    std::vector<ZephalSysTime> values = {
        makeTime(fieldsOf(local), true),          makeTime({100, 1, 1, 0, 0, 0}, false),
        makeTime({9999, 12, 31, 0, 0, 0}, false),   makeTime({99, 12, 31, 23, 59, 59}, false),
        makeTime({9999, 12, 31, 0, 0, 1}, false),  // above 2958465.0
        makeTime({0, 0, 0, 0, 0, 0}, false)};
    const long long midnight = now / 86400 * 86400;
    for (long long s : {midnight, midnight + 86399, midnight - 1, midnight + 86400, midnight - 34560000}) {
      values.push_back(makeTime(fieldsOf(gmtimeOf(s)), false));
    }
    std::vector<long long> days;
    for (const ZephalSysTime& t : values) days.push_back(t.getNumDaysOld());
    return days;
  });
  const long long today = now / 86400;
  const auto ago = [today](int y, int mo, int d) { return today - timegmOf(y, mo, d) / 86400; };
  EXPECT_EQ(got, (std::vector<long long>{ago(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
                                         ago(100, 1, 1), ago(9999, 12, 31), -9999, -9999, -9999,
                                         0, 0, 1, -1, 400}));
}

TEST(DayArithmetic, IsAfterComparesWholeSecondsInGmt) {
  ZephalSysTime a = makeTime({2024, 3, 7, 12, 0, 0}, false, 900);
  ZephalSysTime b = makeTime({2024, 3, 7, 12, 0, 0}, false, 100);
  EXPECT_FALSE(a.isAfter(b) || b.isAfter(a));
  b.m_time.wSecond = 1;
  EXPECT_TRUE(b.isAfter(a) && !a.isAfter(b));

  const std::vector<Row> rows = zoneRows("ole_zone_days.tsv", "ole");
  ZP_SKIP_IF_NO_ROWS(rows);
  for (const Row& r : rows) {
    SCOPED_TRACE(r[2]);
    const Fields g = intsOf(r, 3, 6), l = intsOf(r, 9, 6);
    ZephalSysTime local = makeTime(l, true), gmt = makeTime(g, false), other = makeTime(l, true);
    EXPECT_FALSE(local.isAfter(gmt) || gmt.isAfter(other));
    EXPECT_TRUE(fieldsOf(local, 6) == g && fieldsOf(other, 6) == g);  // both converted in place
    gmt.addSeconds64(-1);
    EXPECT_TRUE(makeTime(l, true).isAfter(gmt));
  }
}
