// The forms a checked instant is written in, one at a time: the exchange
// texts in GMT, the local texts as GNU date writes them, and the numbers.
// Each form holds a range of instants; outside it the form writes nothing
// and says why, rather than a truncated year.
//
//   std::string out, why;
//   appendForm(Form::kRfc3339, nullptr, in, out, why);  // 2024-03-07T09:05:03.123Z
//   appendForm(Form::kUtcTime, nullptr, in, out, why);  // 240307090503Z
#pragma once

#include <string>

#include "tools/DateInput.h"
#include "tools/DatePattern.h"

namespace zpdate {

enum class Form {
  kIso,           // 20240307T090503Z, the module's ISO 8601 basic timestamp
  kRfc3339,       // 2024-03-07T09:05:03Z; .123 before the Z when milliseconds are not 0
  kRfc3339Local,  // 2024-03-07T10:05:03+01:00, the same on the local clock
  kUtcTime,       // 240307090503Z, years 1950 to 2049
  kRfc822,        // Thu, 07 Mar 2024 09:05:03 GMT
  kRfc822Local,   // Thu, 07 Mar 2024 10:05:03 +0100, as date -R writes it
  kUnix,          // 1709802303, rounded down
  kFileTime,      // 133542759030000000, from 1601
  kTicks,         // 638453991030000000
  kDos,           // 0x5867 0x50A2, local time from 1980 to 2037
  kOle,           // 45358.37850694444, from 0100
  kPattern,       // +FORMAT on the local clock
};

// GNU date's named local formats, as patterns.
constexpr char kRfcEmail[] = "%a, %d %b %Y %H:%M:%S %z";  // Thu, 07 Mar 2024 10:05:03 +0100

// Appends `form` of `in` (for kPattern, `pattern`), or gives false and why not.
bool appendForm(Form form, const char* pattern, const Instant& in, std::string& out,
                std::string& why);

// The forms the module itself writes into a StringBuffer (kIso, kUtcTime,
// kRfc822), which the overload below appends with no copy between.
bool isBufferedForm(Form form);
bool appendForm(Form form, const Instant& in, StringBuffer& out, std::string& why);

// ---- Pieces the report shows apart ---------------------------------------------

// The local clock of the instant; false outside the years 0001 to 9999 there.
bool localClock(const Instant& in, Clock& clock, std::string& why);

// The FILETIME count; false before 1601.
bool fileTimeOf(const Instant& in, unsigned long long& count, std::string& why);

// "Thursday" for 0 = Sunday .. 6.
const char* dayName(int dayOfWeek);

}  // namespace zpdate
