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

#include "services/StringBuffer.h"
#include "tools/DateInput.h"
#include "tools/Clocks.h"

namespace zpdate {

// Every output form, said once: the enum's name, its name for --to, its
// label in the block, its name in JSON, whether JSON holds it as a number,
// how the block and JSON show more of it, and its example in --help (local
// here is +01:00). In --to's order; the block and JSON lead with the two
// clock lines and follow this order for the rest.
#define ZPDATE_FORMS(X)                                                                            \
  X(kIso, "iso", "ISO 8601", "iso8601", false, kPlain, "20240307T090503Z")                         \
  X(kRfc3339, "rfc3339", "GMT", "rfc3339", false, kClock,                                          \
    "2024-03-07T09:05:03Z, with .123 when milliseconds are not 0")                                \
  X(kRfc3339Local, "rfc3339-local", "local", "rfc3339Local", false, kClock,                        \
    "2024-03-07T10:05:03+01:00, the same on the local clock")                                     \
  X(kUtcTime, "utctime", "UTCTime", "utcTime", false, kPlain, "240307090503Z, the years 1950 to 2049") \
  X(kRfc822, "rfc822", "RFC 822 GMT", "rfc822Gmt", false, kPlain, "Thu, 07 Mar 2024 09:05:03 GMT")  \
  X(kRfc822Local, "rfc822-local", "RFC 822 local", "rfc822Local", false, kPlain,                   \
    "Thu, 07 Mar 2024 10:05:03 +0100")                                                             \
  X(kUnix, "unix", "Unix seconds", "unix", true, kPlain, "1709802303")                             \
  X(kFileTime, "filetime", "FILETIME", "fileTime", true, kHalves, "133542759030000000, from 1601") \
  X(kTicks, "ticks", ".NET ticks", "ticks", true, kPlain, "638453991030000000")                    \
  X(kDos, "dos", "DOS local", "dos", false, kWords, "0x5867 0x50A2, local time from 1980 to 2037") \
  X(kOle, "ole", "OLE date", "ole", true, kPlain, "45358.37850694444, from 0100")

#define ZPDATE_FORM_ENUM(name, ...) name,
enum class Form { ZPDATE_FORMS(ZPDATE_FORM_ENUM) kPattern /* +FORMAT on the local clock */ };
#undef ZPDATE_FORM_ENUM

// What the block and JSON show besides a form's text.
enum class Extra {
  kPlain,   // nothing
  kClock,   // a leading clock line: the day of the week, and the zone for local time
  kHalves,  // FILETIME's two 32-bit halves, as Windows keeps them
  kWords,   // DOS's date and time words apart ("dosDate", "dosTime" in JSON)
};

struct FormRow {
  Form form;
  const char* name;     // --to
  const char* label;    // the block
  const char* json;     // JSON's field
  bool jsonNumber;      // JSON holds it unquoted
  Extra extra;
  const char* example;  // --help
};

#define ZPDATE_FORM_ROW(name, option, label, json, number, extra, example) \
  {Form::name, option, label, json, number, Extra::extra, example},
constexpr FormRow kFormRows[] = {ZPDATE_FORMS(ZPDATE_FORM_ROW)};
#undef ZPDATE_FORM_ROW

const FormRow& formRow(Form form);  // not kPattern

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

// The FILETIME count; false before 1601.
bool fileTimeOf(const Instant& in, unsigned long long& count, std::string& why);

// "Thursday" for 0 = Sunday .. 6.
const char* dayName(int dayOfWeek);

}  // namespace zpdate
