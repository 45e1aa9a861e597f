// The calendar facts every reader and writer rests on, against glibc's
// timegm and gmtime_r: leap years, month lengths and day counts over every
// year from 1 to 9999; the breakdown of a count on every day of the years 0
// to 9999 at a time of day that moves from day to day, and far beyond them.
#include <gtest/gtest.h>

#include "services/internal/CivilDays.h"
#include "services/zpDateParser.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

Fields fieldsOf(const zpcivil::CivilTime& c) {
  return {static_cast<int>(c.year), c.month, c.day, c.hour, c.minute, c.second, c.weekday, c.yearDay};
}

Fields gmtimeFields(long long count) {
  const tm g = gmtimeOf(count);
  return {g.tm_year + 1900, g.tm_mon + 1, g.tm_mday, g.tm_hour, g.tm_min, g.tm_sec, g.tm_wday,
          g.tm_yday};
}

}  // namespace

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

TEST(CivilDays, BreakdownAgreesWithGmtimeOnEveryDay) {
  const long long first = timegmOf(0, 1, 1) / 86400 - 1, last = timegmOf(9999, 12, 31) / 86400 + 1;
  for (long long day = first; day <= last; ++day) {
    const long long moving = (day * 7919 % 86400 + 86400) % 86400;
    for (long long second : {day * 86400, day * 86400 + moving, day * 86400 + 86399}) {
      ASSERT_EQ(fieldsOf(zpcivil::breakDown(second)), gmtimeFields(second)) << second;
    }
    const tm g = gmtimeOf(day * 86400);
    ASSERT_EQ(_zpDateParser::DayOfWeek(g.tm_year + 1900, g.tm_mon + 1, g.tm_mday), g.tm_wday);
  }
}

// Where the 32-bit arithmetic hands over to the general one, and beyond.
TEST(CivilDays, BreakdownAgreesWithGmtimeFarOut) {
  const long long kEdges[] = {-1600LL * 365 * 86400, -50000LL * 365 * 86400, 2900000LL * 365 * 86400,
                              (1LL << 40), -(1LL << 40)};
  for (long long edge : kEdges) {
    for (long long second = edge - 3 * 86400; second <= edge + 3 * 86400; second += 3600 * 7 + 1) {
      ASSERT_EQ(fieldsOf(zpcivil::breakDown(second)), gmtimeFields(second)) << second;
    }
  }
}
