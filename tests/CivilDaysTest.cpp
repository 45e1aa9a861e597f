// The calendar arithmetic's fast breakdown against gmtime_r, every day of
// the years 0 to 9999 at a time of day that moves from day to day, and the
// ends of the range it is written for.
#include "services/internal/CivilDays.h"
#include "tests/TestValues.h"

using namespace zptest;

TEST(CivilDays, FastBreakdownAgreesWithGmtime) {
  const int64_t first = timegmOf(0, 1, 1) / 86400 - 1, last = timegmOf(9999, 12, 31) / 86400 + 1;
  int failures = 0;
  for (int64_t day = first; day <= last && failures < 10; ++day) {
    for (int64_t second : {day * 86400, day * 86400 + (day * 7919 % 86400 + 86400) % 86400, day * 86400 + 86399}) {
      const tm g = gmtimeOf(second);
      const zpcivil::FastCivilTime c = zpcivil::breakDownFast(second);
      if (c.year != g.tm_year + 1900 || c.month != g.tm_mon + 1 || c.day != g.tm_mday || c.hour != g.tm_hour ||
          c.minute != g.tm_min || c.second != g.tm_sec || c.weekday != g.tm_wday) {
        ++failures;
        ADD_FAILURE() << second << ": " << c.year << "-" << c.month << "-" << c.day << " " << c.hour << ":"
                      << c.minute << ":" << c.second << " weekday " << c.weekday << ", gmtime_r "
                      << testing::PrintToString(fieldsOf(g));
      }
    }
  }
}
