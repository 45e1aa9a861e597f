// The small types that the text readers and writers beyond loadAnyFormat
// share: why a reading failed, which form a text took, the options a caller
// may name, and a wall-clock reading to write from.
//
//   ZephalTextError error;
//   if (!zpReadDate("3/7/2024", {}, value, error)) {
//     // error.reason: "day and month order unknown", error.byte: 0
//   }
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "time/ZephalSysTime.h"

// The order of the fields of a numeric date whose text does not say it
// (3/7/2024 is 7 March in the US and 3 July in Britain).
enum class ZephalDateOrder : uint8_t { kUnknown, kMonthDayYear, kDayMonthYear, kYearMonthDay };

// Which way a text was read, or was being read when it was refused: one of
// loadAnyFormat's forms in the order it tests them, or a caller's layout.
enum class ZephalTextForm : uint8_t {
  kNone,
  kJson,                 // /Date(1700000000000+0100)/
  kAtom,                 // 2024-03-07T09:05:03Z
  kGeneralizedFraction,  // 20240307090503.123Z
  kUnixSeconds,          // 1700000000
  kUtcTime,              // 240307090503Z
  kGeneralized,          // 20240307090503Z
  kDateParser,           // Thu, 07 Mar 2024 09:05:03 GMT, and whatever else the parser reads
  kLayout,               // one of the caller's layouts
};

// A refusal: a fixed reason and the byte of the text it was found at.
struct ZephalTextError {
  const char* reason = nullptr;  // static text; null while nothing failed
  size_t byte = 0;
  ZephalTextForm form = ZephalTextForm::kNone;  // the form it was read as
};

// What a caller knows about the texts it reads.
struct ZephalTextOptions {
  ZephalDateOrder order = ZephalDateOrder::kUnknown;  // for numeric dates
  const std::string_view* layouts = nullptr;  // strptime-style layouts, tried first, in order
  size_t layoutCount = 0;
  bool localSeconds = false;  // a bare count of seconds counts local seconds (loadAnyFormat's bLocal)
};

// A wall-clock reading of an instant in some zone, with what that zone says
// of it there: what a pattern writes from.
struct ZephalWallClock {
  ZephalCalendarFields fields{};   // wDayOfWeek and wMilliseconds included
  int32_t gmtOffset = 0;           // seconds east of GMT
  bool isDst = false;
  const char* abbreviation = "";   // "CET", "GMT"; never null
};

// The longest text the readers take; longer ones are refused.
constexpr size_t kZephalMaxDateText = 4096;

// Reads a date text of unknown form, strictly, and keeps its milliseconds:
// the caller's layouts first, in order (zpParseDate, services/zpDatePattern.h),
// then loadAnyFormat's forms in its order, each read whole and checked rather
// than read as far as it goes:
//   /Date(1700000000123-0500)/   the count to the millisecond, this shape only
//   2024-03-07T09:05:03.123Z     as loadAnyFormat reads it
//   20240307090503.123Z          the fraction kept
//   1700000000                   up to 4294967295; a longer count is refused
//   240307090503Z                fields of digits, each in its range
//   20240307090503Z              the same
//   anything else                the date parser, with the caller's order
// Results are as loadAnyFormat's, but the ASN.1 forms store GMT and the
// value is left untouched by a refusal, which `error` explains: where
// layouts were given and none read the text, the refusal that read furthest.
// A zero byte in the text is refused, as the zero-terminated readers cannot
// see past it.
bool zpReadDate(std::string_view text, const ZephalTextOptions& options, ZephalSysTime& value,
                ZephalTextError& error);

// "JSON date", "UTCTime", ... for messages; "date" for kDateParser and kNone.
const char* zpTextFormName(ZephalTextForm form);
