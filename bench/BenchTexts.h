// The texts the parse, load and write benchmarks read, each with the Unix
// seconds it names (whole seconds, fraction dropped toward the past; a leap
// second counts as the next minute). The values come from Python's
// calendar.timegm, not from any reader measured here, so every reader, ours
// included, is checked against the same outside answer before it is timed
// (BenchTiming.h).
#pragma once

#include <vector>

namespace zpbench {

struct TextCase {
  const char* text;
  long long unixSeconds;
};

using TextSet = std::vector<TextCase>;

// The exact RFC 1123 layout of HTTP and most mail, GMT or a numeric zone.
inline const TextSet kRfc1123Texts = {
    {"Thu, 07 Mar 2024 09:05:03 GMT", 1709802303},
    {"Tue, 15 Nov 1994 08:12:31 GMT", 784887151},
    {"Fri, 21 Nov 1997 09:55:06 -0600", 880127706},
    {"Mon, 01 Jan 2024 00:00:00 +0000", 1704067200},
    {"Wed, 28 Feb 2024 23:59:59 -0800", 1709193599},
    {"Sat, 31 Dec 2016 12:00:00 +0100", 1483182000},
    {"Sun, 06 Nov 1994 08:49:37 GMT", 784111777},
    {"Fri, 13 Sep 2030 17:45:10 +0530", 1915532110},
};

// Dates as people's software writes them, without a zone: read as written,
// so their seconds are the fields' as GMT (from Python's strptime).
inline const TextSet kProseTexts = {  // Java's and JavaScript's medium US form
    {"Jan 25, 2026, 12:32:01 AM", 1769301121},
    {"Dec 16, 2015, 3:04:27 AM", 1450235067},
    {"Oct 21, 2034, 7:41:56 PM", 2045072516},
    {"Feb 29, 2000, 12:00:00 PM", 951825600},
};
inline const TextSet kGermanTexts = {  // de-DE's medium form
    {"25.01.2026, 00:32:01", 1769301121},
    {"16.12.2015, 03:04:27", 1450235067},
    {"21.10.2034, 19:41:56", 2045072516},
    {"29.02.2000, 12:00:00", 951825600},
};

// Date texts as mail and HTTP headers carry them.
inline const TextSet kMailTexts = {
    {"Thu, 07 Mar 2024 09:05:03 GMT", 1709802303},               // 1  RFC 1123
    {"Fri, 21 Nov 1997 09:55:06 -0600", 880127706},              // 2  numeric zone
    {"Tue, 15 Nov 1994 08:12:31 GMT", 784887151},                // 3
    {"Wed, 28 Feb 2024 23:59:59 -0800", 1709193599},             // 4  carries into Feb 29
    {"07 Mar 2024 09:05:03 +0100", 1709798703},                  // 5  no day name
    {"Sat, 29 Jun 2024 12:30:00 EST", 1719682200},               // 6  zone name
    {"Sun, 06 Nov 1994 08:49:37 PDT", 784136977},                // 7  zone name
    {"Thu, 07 Mar 2024 09:05:03 +0200 (CEST)", 1709795103},      // 8  comment
    {"Thu, 07 Mar 24 09:05:03 GMT", 1709802303},                 // 9  two-digit year
    {"Sunday, 06-Nov-94 08:49:37 GMT", 784111777},               // 10 RFC 850
    {"Sun Nov  6 08:49:37 1994", 784111777},                     // 11 asctime
    {"2024-03-07T09:05:03Z", 1709802303},                        // 12 ISO 8601
    {"2024-03-07 09:05:03+05:30", 1709782503},                   // 13 ISO 8601, space
    {"Tue, 5 Mar 2024 9:05 -0500", 1709647500},                  // 14 short fields, no seconds
    {"Thu, 07-Mar-2024 09:05:03 GMT", 1709802303},               // 15 cookie
    {"Mon, 01 Apr 2019 23:15:00 +0000 (UTC)", 1554160500},       // 16 comment
};

// RFC 3339 as Atom feeds and JSON APIs write it.
inline const TextSet kAtomTexts = {
    {"2024-03-07T09:05:03Z", 1709802303},              // 1
    {"2024-03-07T09:05:03+01:00", 1709798703},         // 2
    {"2024-03-07T09:05:03-05:00", 1709820303},         // 3
    {"2024-03-07T09:05:03.123Z", 1709802303},          // 4  milliseconds
    {"2024-03-07T09:05:03.123456789Z", 1709802303},    // 5  nanoseconds
    {"1985-04-12T23:20:50.52Z", 482196050},            // 6  RFC 3339 5.8
    {"1996-12-19T16:39:57-08:00", 851042397},          // 7  RFC 3339 5.8
    {"1990-12-31T23:59:60Z", 662688000},               // 8  leap second
    {"1937-01-01T12:00:27.87+00:20", -1041337173},     // 9  RFC 3339 5.8
    {"2024-02-29T23:30:00-02:30", 1709258400},         // 10 carries into March
    {"2000-01-01T00:00:00+14:00", 946634400},          // 11 carries into 1999
    {"2024-03-07t09:05:03z", 1709802303},              // 12 lower case
    {"2038-01-19T03:14:08Z", 2147483648},              // 13 past 32 bits
    {"1969-12-31T23:59:59.999Z", -1},                  // 14 before the epoch
    {"2024-03-07T09:05:03-00:00", 1709802303},         // 15 offset unknown
    {"2099-12-31T23:59:59.5+05:45", 4102424099},       // 16
};

// loadAnyFormat's forms, four texts each. JSON's zone suffix moves the
// instant by whole hours the other way, as the loader documents.
inline const TextSet kLoadJsonTexts = {
    {"/Date(1709802303000)/", 1709802303},
    {"/Date(1700000000000+0100)/", 1699996400},
    {"/Date(-86400000)/", -86400},
    {"/Date(1709802303123-0500)/", 1709820303},
};
inline const TextSet kLoadAtomTexts = {
    {"2024-03-07T09:05:03Z", 1709802303},
    {"1996-12-19T16:39:57-08:00", 851042397},
    {"2024-03-07T09:05:03.123Z", 1709802303},
    {"2024-02-29T23:30:00-02:30", 1709258400},
};
inline const TextSet kLoadGeneralizedFractionTexts = {
    {"20240307090503.123Z", 1709802303},
    {"19941115081231.000Z", 784887151},
    {"20301213174510.999Z", 1923414310},
    {"20000229235959.500Z", 951868799},
};
inline const TextSet kLoadUnixTexts = {
    {"1709802303", 1709802303},
    {"784887151", 784887151},
    {"0", 0},
    {"4102444799", 4102444799},
};
// Two-digit years 49 and 94, 97 read the same under the pivot 50 and POSIX's 69.
inline const TextSet kLoadUtcTimeTexts = {
    {"240307090503Z", 1709802303},
    {"941115081231Z", 784887151},
    {"971121155506Z", 880127706},
    {"491231235959Z", 2524607999},
};
inline const TextSet kLoadGeneralizedTexts = {
    {"20240307090503Z", 1709802303},
    {"19941115081231Z", 784887151},
    {"19971121155506Z", 880127706},
    {"20491231235959Z", 2524607999},
};

// The GMT instants the writers format.
inline const std::vector<long long> kWriteInstants = {
    1709802303, 784887151, 880127706, 1704067200, 1709193599, 1483182000, 1915532110, 4102444799,
};

}  // namespace zpbench
