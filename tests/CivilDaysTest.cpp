// The calendar facts every reader and writer rests on, against glibc's
// timegm and gmtime_r over every year from 1 to 9999: leap years, month
// lengths, day counts, the breakdown of a count and the day of the week.
#include <gtest/gtest.h>

#include "services/internal/CivilDays.h"
#include "services/zpDateParser.h"
#include "tests/TestValues.h"

using namespace zptest;

TEST(CivilDays, EveryMonthAgreesWithTimegm) {
  for (int year = 1; year <= 9999; ++year) {
    long long first = timegmOf(year, 1, 1);
    for (int month = 1; month <= 12; ++month) {
      SCOPED_TRACE(std::to_string(year) + "-" + std::to_string(month));
      const long long next = month == 12 ? timegmOf(year + 1, 1, 1) : timegmOf(year, month + 1, 1);
      ASSERT_EQ(zpcivil::daysFromCivil(year, month, 1) * 86400, first);
      ASSERT_EQ(zpcivil::daysFromReadDate(year, month, 1) * 86400LL, first);
      ASSERT_EQ(zpcivil::daysInMonth(year, month), (next - first) / 86400);
      first = next;
    }
    ASSERT_EQ(zpcivil::isLeapYear(year), zpcivil::daysInMonth(year, 2) == 29) << year;
  }
}

// Each year's first and last second, and noon of every 97th day, broken
// down as gmtime_r breaks them down, with the weekday DayOfWeek gives.
TEST(CivilDays, BreakdownAgreesWithGmtime) {
  const long long first = timegmOf(1, 1, 1), last = timegmOf(10000, 1, 1) - 1;
  auto check = [](long long count) {
    const zpcivil::CivilTime c = zpcivil::breakDown(count);
    const tm g = gmtimeOf(count);
    ASSERT_EQ((Fields{static_cast<int>(c.year), c.month, c.day, c.hour, c.minute, c.second,
                      c.weekday, c.yearDay}),
              (Fields{g.tm_year + 1900, g.tm_mon + 1, g.tm_mday, g.tm_hour, g.tm_min, g.tm_sec,
                      g.tm_wday, g.tm_yday}))
        << count;
    ASSERT_EQ(_zpDateParser::DayOfWeek(g.tm_year + 1900, g.tm_mon + 1, g.tm_mday), g.tm_wday);
  };
  for (long long t = first + 43200; t <= last; t += 97 * 86400LL) check(t);
  for (int year = 1; year <= 9999; ++year) {
    check(timegmOf(year, 1, 1));
    check(timegmOf(year + 1, 1, 1) - 1);
  }
}
