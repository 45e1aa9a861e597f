// The checks zpdate adds to what the module reads: fields that name a real
// date and time, a local time that a clock change does not skip, an instant
// within the years 0001 to 9999, and the messages that say which failed.
#pragma once

#include <string>

#include "time/ZephalFileTime.h"
#include "time/ZephalText.h"
#include "tools/DateInput.h"

namespace zpdate {

// Unix seconds of 0001-01-01T00:00:00Z and 9999-12-31T23:59:59Z, the years
// .NET ticks hold, and the last FILETIME count within them.
constexpr long long kFirstSecond =
    -static_cast<long long>(zp_filetime::kTicksEpoch / zp_filetime::kIntervalsPerSecond);
constexpr long long kLastSecond = static_cast<long long>(
    (zp_filetime::kLastTicks - zp_filetime::kTicksEpoch) / zp_filetime::kIntervalsPerSecond);
constexpr unsigned long long kLastFileTime =
    zp_filetime::kLastTicks - (zp_filetime::kTicksEpoch - zp_filetime::kFileTimeEpoch);
static_assert(kFirstSecond == -62135596800 && kLastSecond == 253402300799,
              "0001-01-01 and 9999-12-31 23:59:59");

extern const char kOutsideYears[];  // "outside the years 0001 to 9999"

inline bool inYears(long long seconds) { return seconds >= kFirstSecond && seconds <= kLastSecond; }

// Sets `why` to `reason` (or the printf-formatted text) and gives false.
bool refuse(std::string& why, const char* reason);
bool refuseFormatted(std::string& why, const char* format, unsigned a, unsigned b = 0,
                     unsigned c = 0);

// Fields that name a real date and time; a second up to `lastSecond`
// (60 lets a leap second through). "impossible date: month 13".
bool checkFields(const ZephalCalendarFields& f, unsigned lastSecond, std::string& why);

// The last step of every input, its fields real already (zpReadDate and the
// module's numeric loads give no others; DOS words are checked first): works
// out its GMT reading into `out`, refusing a skipped local time and years
// outside 0001 to 9999.
bool finish(const ZephalSysTime& loaded, Instant& out, std::string& why);

// What the module's refusal of a text says to a user: "UTCTime: month out
// of range at byte 2", "not a date: unknown month name at byte 0".
void describeRefusal(const ZephalTextError& error, std::string& why);

}  // namespace zpdate
