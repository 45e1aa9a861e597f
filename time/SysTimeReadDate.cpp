// zpReadDate: the caller's layouts (zpParseDate), then the loader's forms
// read whole and checked, milliseconds kept.
// Where loadAnyFormat stores what a form's reader makes of a text, this
// refuses what would be read to a wrong or impossible instant:
//
//   /Date(abc)/            JSON without a count (the loader: 1970-01-01)
//   1709802303123          more than 32-bit seconds (the loader saturates)
//   999999999999Z          ASN.1 fields out of range (the loader stores month 99)
//   2403070905a3Z          ASN.1 fields that are no digits
//   Thu, 32 Mar 2024 ...   whatever the date parser refuses
//
// The tests that choose a form are the loader's own (LoaderForms.h), in its
// order, so a text takes the same form here as there.
#include <algorithm>
#include <cstring>

#include "services/internal/CivilDays.h"
#include "services/internal/DateCursor.h"
#include "services/internal/ParsedReading.h"
#include "services/internal/TextBytes.h"
#include "time/internal/LoaderForms.h"
#include "services/zpDatePattern.h"
#include "time/ZephalText.h"

namespace {

using zpread::Reading;

bool refuse(ZephalTextError& error, ZephalTextForm form, const char* reason, size_t byte) {
  error.reason = reason;
  error.byte = byte;
  error.form = form;
  return false;
}

bool refuse(ZephalTextError& error, ZephalTextForm form, const Reading& r, const char* text) {
  return refuse(error, form, r.why, static_cast<size_t>(r.at - text));
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// /Date(-1700000000123+0100)/, blanks around it allowed as the loader trims
// them. The count is floored to the second, so before 1970 the milliseconds
// count forward from an earlier second; the suffix moves whole hours, as the
// loader reads it.
bool readJson(const char* text, size_t size, ZephalSysTime& value, ZephalTextError& error) {
  const char* p = text;
  const char* end = text + size;
  while (p < end && isBlank(*p)) ++p;
  while (end > p && isBlank(end[-1])) --end;
  zpload::JsonParts j;
  if (!zpload::splitPlainJson(p, static_cast<size_t>(end - p), j)) {
    return refuse(error, ZephalTextForm::kJson, "expected /Date(milliseconds[+hhmm])/",
                  static_cast<size_t>(p - text));
  }
  const long long millis = j.beforeEpoch ? -j.millis : j.millis;  // |millis| < 10^18
  const long long seconds = zpcivil::floorDiv(millis, 1000) - j.zone / 100 * 3600LL;
  if (seconds < zpcivil::kFirstReadSecond || seconds > zpcivil::kLastReadSecond) {
    return refuse(error, ZephalTextForm::kJson, "GMT reading outside years 0-9999",
                  static_cast<size_t>(p - text) + 6);
  }
  value.fromUnixTime64(false, seconds);
  value.m_time.wMilliseconds = static_cast<uint16_t>(millis - zpcivil::floorDiv(millis, 1000) * 1000);
  return true;
}

const char* checkField(const char* at, int value, int low, int high, Reading& r, const char* why) {
  return value >= low && value <= high ? at : zpread::failAt(r, at, why);
}

// The fixed fields of UTCTime (yymmddhhmmss) or GeneralizedTime
// (yyyymmddhhmmss) at text, each of digits and in its range; the day is
// checked against its month when the reading settles.
bool readAsnFields(const char* text, bool fourDigitYear, Reading& r) {
  const size_t digits = fourDigitYear ? 14 : 12;
  const char* const stop = std::find_if_not(text, text + digits, zpread::isDigit);
  if (stop != text + digits) return zpread::failAt(r, stop, "expected a digit");
  const char* p = text + (fourDigitYear ? 4 : 2);
  r.f.year = fourDigitYear ? 100 * zpread::twoDigits(text) + zpread::twoDigits(text + 2)
                           : zpcivil::yearFromTwoDigits(zpread::twoDigits(text));
  r.f.month = zpread::twoDigits(p);
  r.f.day = zpread::twoDigits(p + 2);
  r.f.hour = zpread::twoDigits(p + 4);
  r.f.minute = zpread::twoDigits(p + 6);
  r.f.second = zpread::twoDigits(p + 8);
  r.f.millis = 0;
  r.yearAt = text;
  r.dayAt = p + 2;
  r.zoneKnown = true;  // the Z
  r.offset = 0;
  return checkField(p, r.f.month, 1, 12, r, "month out of range") &&
         checkField(p + 4, r.f.hour, 0, 23, r, "hour out of range") &&
         checkField(p + 6, r.f.minute, 0, 59, r, "minute out of range") &&
         checkField(p + 8, r.f.second, 0, 60, r, "second out of range");
}

bool readAsn(const char* text, ZephalTextForm form, ZephalSysTime& value, ZephalTextError& error) {
  Reading r;
  const bool fourDigitYear = form != ZephalTextForm::kUtcTime;
  bool read = readAsnFields(text, fourDigitYear, r);
  if (read && form == ZephalTextForm::kGeneralizedFraction) {
    const char* fraction = text + zpload::kFractionPoint + 1;
    read = zpread::allDigits(fraction, 3) || zpread::failAt(r, fraction, "expected a digit");
    r.f.millis = read ? 100 * (fraction[0] - '0') + zpread::twoDigits(fraction + 1) : 0;
  }
  return (read && zpread::settle(r, value)) || refuse(error, form, r, text);
}

// 1 to 10 digits up to 4294967295, which the loader reads exactly.
bool readSeconds(const char* text, size_t size, bool local, ZephalSysTime& value,
                 ZephalTextError& error) {
  long long count = 0;
  if (size > 10 || !zpload::readDigitRun(text, text + size, count) || count > 0xFFFFFFFFLL) {
    return refuse(error, ZephalTextForm::kUnixSeconds, "more than 32-bit Unix seconds", 0);
  }
  value.fromUnixTime(local, static_cast<unsigned>(count));
  return true;
}

bool readLoaderForms(const char* text, size_t size, const ZephalTextOptions& options,
                     ZephalSysTime& value, ZephalTextError& error) {
  if (zpread::loadRfc3339ByPosition(text, size, value)) return true;
  const char* const end = text + size;
  if (std::memchr(text, '/', size) && std::search(text, end, zpload::kJsonMark,
                                                  zpload::kJsonMark + 5) != end) {
    return readJson(text, size, value, error);
  }
  const auto dashes = static_cast<unsigned>(std::count(text, end, '-'));
  Reading r;
  if (dashes >= 2 &&
      zpload::atomCounts(dashes, static_cast<unsigned>(std::count(text, end, ':')),
                         static_cast<unsigned>(std::count(text, end, 'T'))) &&
      zpread::readAtomText(text, size, value, r)) {
    return true;
  }
  const char last = size ? end[-1] : '\0';
  const char atPoint = size > zpload::kFractionPoint ? text[zpload::kFractionPoint] : '\0';
  if (zpload::fractionShape(size, last, atPoint)) {
    return readAsn(text, ZephalTextForm::kGeneralizedFraction, value, error);
  }
  if (zpread::isDigit(last) && zpread::allDigits(text, size)) {
    return readSeconds(text, size, options.localSeconds, value, error);
  }
  const bool asnShape = zpload::asnShape(dashes, last, [&] { return std::memchr(text, ':', size); });
  if (asnShape && size == zpload::kUtcTimeSize) {
    return readAsn(text, ZephalTextForm::kUtcTime, value, error);
  }
  if (asnShape && size == zpload::kGeneralizedSize) {
    return readAsn(text, ZephalTextForm::kGeneralized, value, error);
  }
  r = Reading{};
  r.order = options.order;
  return zpread::readMailText(text, value, r) || refuse(error, ZephalTextForm::kDateParser, r, text);
}

// The caller's layouts, in order; of their refusals, `error` keeps the one
// that read furthest into the text, which is likely the layout meant.
bool readLayouts(std::string_view text, const ZephalTextOptions& options, ZephalSysTime& value,
                 ZephalTextError& error) {
  for (size_t i = 0; i < options.layoutCount; ++i) {
    ZephalTextError refusal;
    if (zpParseDate(text, options.layouts[i], value, refusal)) return true;
    if (error.reason == nullptr || refusal.byte > error.byte) {
      error = refusal;
      error.form = ZephalTextForm::kLayout;
    }
  }
  return false;
}

}  // namespace

bool zpReadDate(std::string_view text, const ZephalTextOptions& options, ZephalSysTime& value,
                ZephalTextError& error) {
  if (text.size() > kZephalMaxDateText) {
    return refuse(error, ZephalTextForm::kNone, "longer than 4096 bytes", kZephalMaxDateText);
  }
  ZephalTextError layoutError;
  if (readLayouts(text, options, value, layoutError)) return true;
  // HTTP's date reads exactly its 29 bytes, none of them zero: no copy needed
  // (zpdate on a million RFC 1123 lines: 35 ms instead of 43 ms).
  if (zpread::loadHttpDateByPosition(text.data(), text.size(), value)) return true;
  if (const void* zero = std::memchr(text.data(), '\0', text.size())) {
    return refuse(error, ZephalTextForm::kNone, "holds a zero byte",
                  static_cast<size_t>(static_cast<const char*>(zero) - text.data()));
  }
  // The readers step until a zero byte, so they read a copy that ends in one.
  char copy[kZephalMaxDateText + 1];
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  if (readLoaderForms(copy, text.size(), options, value, error)) return true;
  if (layoutError.reason != nullptr && layoutError.byte >= error.byte) error = layoutError;
  return false;
}

const char* zpTextFormName(ZephalTextForm form) {
  switch (form) {
    case ZephalTextForm::kJson: return "JSON date";
    case ZephalTextForm::kAtom: return "RFC 3339 date";
    case ZephalTextForm::kGeneralizedFraction:
    case ZephalTextForm::kGeneralized: return "GeneralizedTime";
    case ZephalTextForm::kUnixSeconds: return "Unix time";
    case ZephalTextForm::kUtcTime: return "UTCTime";
    case ZephalTextForm::kLayout: return "date in the given layouts";
    case ZephalTextForm::kNone:
    case ZephalTextForm::kDateParser: break;
  }
  return "date";
}
