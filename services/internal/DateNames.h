// Month and weekday names of the C (POSIX) locale, as strftime writes them
// there and as the pattern reader takes them in any letter case (internal).
#pragma once

#include <string_view>

namespace zpnames {

// [0] is January; an abbreviation is the first three letters of its name.
inline constexpr std::string_view kMonths[12] = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

// [0] is Sunday, as in tm_wday and wDayOfWeek.
inline constexpr std::string_view kWeekdays[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                  "Thursday", "Friday", "Saturday"};

constexpr size_t kAbbreviation = 3;

}  // namespace zpnames
