// DayOfWeek: the day of the week of any Gregorian date, months and days
// past their ends carried over.
#include <cstdint>

#include "services/CivilDays.h"
#include "services/zpDateParser.h"

int _zpDateParser::DayOfWeek(int year, int month, int day) {
  // Carry the month into the year first, then let the day count on.
  const int64_t m0 = static_cast<int64_t>(month) - 1;
  const int64_t yearCarry = zpcivil::floorDiv(m0, 12);
  const int m = static_cast<int>(m0 - yearCarry * 12) + 1;  // [1, 12]
  const int64_t first = zpcivil::daysFromCivil(year + yearCarry, m, 1);
  return zpcivil::weekdayFromDays(first + (static_cast<int64_t>(day) - 1));
}
