// zpFormatDate and zpParseDate. An input whose first byte is even builds a
// layout that carries a whole instant from pieces the bytes choose (a date,
// a time, a fraction, a zone, in either order), writes an instant with it on
// the GMT or the local clock, and reads the text back: the same instant
// (the same wall clock when the layout states no zone). An odd first byte
// splits the rest into a layout and a text: the reader must take or refuse
// without reading past either, keep the value on a refusal, and give a
// valid GMT reading otherwise; the writer writes the layout on fields of
// any value, widths up to 999. Either way the layout read again with a '0'
// flag on each conversion, which changes nothing a reader does but keeps it
// off its fast path, gives the same answer to the byte.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/FuzzSupport.h"
#include "fuzz/ParserChecks.h"
#include "services/StringBuffer.h"
#include "services/zpDatePattern.h"
#include "time/ZephalSysTime.h"

namespace {

using zpfuzz::fail;
using zpfuzz::quoted;

// Bytes in a heap block of exactly their size, no terminating zero: the
// readers take string_views and must stop at their end.
class ExactBytes {
 public:
  ExactBytes(const uint8_t* data, size_t size) : m_size(size), m_block(new char[size ? size : 1]) {
    if (size) std::memcpy(m_block.get(), data, size);
  }
  std::string_view view() const { return std::string_view(m_block.get(), m_size); }

 private:
  size_t m_size;
  std::unique_ptr<char[]> m_block;
};

template <size_t N>
const char* pick(const char* const (&choices)[N], zpfuzz::Numbers& n) {
  return choices[n.u16() % N];
}

constexpr const char* kDates[] = {"%Y-%m-%d",   "%F",          "%d %b %Y",   "%A %e %B %Y",
                                  "%G-W%V-%u",  "%Y-%j",       "%Y %U %a",   "%Y %W %u",
                                  "%C%y%m%d",   "%b %-d, %Y",  "%_m/%_d/%Y", "%Y%m%d",
                                  "%a %d.%m.%Y", "%^a %^b %d %Y", "%x %Y", "%4Y-%3m-%3d"};
constexpr const char* kTimes[] = {"%H:%M:%S", "%T",    "%I:%M:%S %p", "%l.%M.%S%P", "%k%M%S",
                                  "%H%M%S",   "%r",    "%-H:%-M:%-S", "%X",         "%R:%S"};
// Fractions, and how many tenths, hundredths and thousandths they keep.
constexpr const char* kFractions[] = {"", "", ".%3N", ",%N", ".%6N", ".%N", ".%1N", ".%2N"};
constexpr unsigned kKeptDivisor[] = {1000, 1000, 1, 1, 1, 1, 100, 10};
constexpr const char* kZones[] = {"", "%z", " %:z", "%::z", " %:::z", " %Z", " %z (%Z)"};
constexpr const char* kSeparators[] = {" ", "T", "  ", "\t", " | ", "/", "\n"};

// The layout with a '0' flag after each conversion's '%': the same layout
// to the reader. A conversion is read as date reads it: flags, a width, E
// or O, then colons and 'z' or one byte (a zero byte ends the layout).
std::string zeroFlagged(std::string_view layout) {
  std::string out;
  size_t i = 0;
  const auto in = [&](const char* set) {
    return i < layout.size() && layout[i] != '\0' && std::strchr(set, layout[i]) != nullptr;
  };
  while (i < layout.size()) {
    const char c = layout[i++];
    out += c;
    if (c != '%') continue;
    out += '0';
    while (in("_-0^#+")) out += layout[i++];
    while (in("0123456789")) out += layout[i++];
    if (in("EO")) out += layout[i++];
    size_t colons = 0;
    while (i + colons < layout.size() && layout[i + colons] == ':') ++colons;
    if (colons > 0) {
      const bool z = i + colons < layout.size() && layout[i + colons] == 'z';
      const size_t n = z ? colons + 1 : 1;  // colons no 'z' follows end at the first
      out.append(layout.substr(i, n));
      i += n;
    } else if (i < layout.size() && layout[i] != '\0') {
      out += layout[i++];
    }
  }
  return out;
}

// zpParseDate of the text by the layout and by its zero-flagged twin: the
// same verdict, record and refusal.
bool readTwice(std::string_view text, std::string_view layout, ZephalSysTime& value,
               ZephalTextError& error, const std::string& detail) {
  ZephalSysTime twin;
  twin.copyFrom(value);
  ZephalTextError twinError = error;
  const std::string flagged = zeroFlagged(layout);
  const bool taken = zpParseDate(text, layout, value, error);
  if (zpParseDate(text, flagged, twin, twinError) != taken || !zpfuzz::sameRecord(value, twin) ||
      twinError.reason != error.reason || twinError.byte != error.byte) {
    fail("the fast path and the general reader disagree",
         detail + " / " + quoted(flagged.data(), flagged.size()) + " -> " +
             zpfuzz::fieldsOf(value) + " / " + zpfuzz::fieldsOf(twin));
  }
  return taken;
}

// 0001-01-02 to 9999-12-30 GMT: every local clock of the zone stays in 0001-9999.
constexpr long long kFirst = -62135510400;
constexpr long long kSpan = 253402128000 - kFirst;

void roundTrip(zpfuzz::Numbers& n) {
  ZephalSysTime value;
  value.fromUnixTime64(false, kFirst + static_cast<long long>(n.u64() % kSpan));
  value.m_time.wMilliseconds = static_cast<uint16_t>(n.u16() % 1000);
  const bool local = n.flag();
  std::string layout;
  const bool unixSeconds = n.u16() % 8 == 0;
  const unsigned whichFraction = n.u16() % (sizeof kFractions / sizeof *kFractions);
  const char* const fraction = kFractions[whichFraction];
  const char* const zone = unixSeconds ? "" : pick(kZones, n);
  if (unixSeconds) {
    layout = std::string("%s") + fraction;
  } else {
    const std::string date = pick(kDates, n), time = std::string(pick(kTimes, n)) + fraction;
    const char* const separator = pick(kSeparators, n);
    layout = n.flag() ? date + separator + time : time + separator + date;
    layout += zone;
  }
  ZephalWallClock clock;
  local ? zpLocalWallClockOf(value, clock) : zpWallClockOf(value, clock);
  StringBuffer text;
  if (!zpFormatDate(layout, clock, text)) fail("zpFormatDate failed", layout);
  const std::string_view written(text.getString(), text.getSize());
  const std::string detail = zpfuzz::fieldsOf(value) + " " + quoted(layout.data(), layout.size()) +
                             " -> " + quoted(written.data(), written.size());
  ZephalSysTime back;
  ZephalTextError error;
  if (!readTwice(written, layout, back, error, detail)) {
    fail("zpParseDate refused zpFormatDate's text", detail + ": " + error.reason + " at byte " +
                                                         std::to_string(error.byte));
  }
  const unsigned kept = kKeptDivisor[whichFraction];
  const unsigned millis = value.m_time.wMilliseconds / kept * kept % 1000;
  if (back.m_time.wMilliseconds != millis) fail("milliseconds changed", detail);
  if (unixSeconds || *zone != '\0') {
    if (back.toUnixTime_gmt64() != value.toUnixTime_gmt64() || back.m_bFromUnknownTimezone) {
      fail("the instant changed", detail + " -> " + zpfuzz::fieldsOf(back));
    }
    return;
  }
  ZephalCalendarFields expected = clock.fields;
  expected.wMilliseconds = static_cast<uint16_t>(millis);
  if (std::memcmp(&back.m_time, &expected, sizeof expected) != 0 || !back.m_bFromUnknownTimezone) {
    fail("the wall clock changed", detail + " -> " + zpfuzz::fieldsOf(back));
  }
}

// Widths past three digits could ask for gigabytes of padding.
bool modestWidths(std::string_view layout) {
  size_t run = 0;
  for (char c : layout) {
    run = c >= '0' && c <= '9' ? run + 1 : 0;
    if (run > 3) return false;
  }
  return true;
}

void freeForm(zpfuzz::Numbers& n, const uint8_t* data, size_t size) {
  const size_t layoutSize = size == 0 ? 0 : data[0] % size;
  const ExactBytes layout(data + (size ? 1 : 0), size ? std::min(layoutSize, size - 1) : 0);
  const size_t used = size ? 1 + std::min(layoutSize, size - 1) : 0;
  const ExactBytes text(data + used, size - used);
  const std::string detail = quoted(layout.view().data(), layout.view().size()) + " <- " +
                             quoted(text.view().data(), text.view().size());

  ZephalSysTime value;
  zpfuzz::mark(value);
  ZephalSysTime before;
  before.copyFrom(value);
  ZephalTextError error{"untouched", 12345};
  if (readTwice(text.view(), layout.view(), value, error, detail)) {
    zpfuzz::checkReading(value, "zpParseDate", detail);
    if (value.m_bFlagA != before.m_bFlagA || value.m_bFlagB != before.m_bFlagB) {
      fail("the carried flags changed", detail);
    }
    if (error.byte != 12345) fail("error written on success", detail);
  } else {
    if (!zpfuzz::sameRecord(value, before)) fail("a refused text changed the value", detail);
    if (error.reason == nullptr || error.byte > text.view().size()) {
      fail("a refusal without a reason or past the text", detail);
    }
  }

  if (!modestWidths(layout.view())) return;
  ZephalWallClock clock;
  clock.fields = n.fields();
  clock.gmtOffset = n.i32() % 100000;
  clock.abbreviation = n.flag() ? "-00" : "CET";
  StringBuffer out;
  if (!zpFormatDate(layout.view(), clock, out)) fail("zpFormatDate failed", detail);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  zpfuzz::Numbers numbers(data + 1, size - 1);
  if (data[0] % 2 == 0) {
    roundTrip(numbers);
  } else {
    // The clock's numbers come from the front too; the layout and text are
    // the same bytes read as text, which keeps both mutations meaningful.
    freeForm(numbers, data + 1, size - 1);
  }
  return 0;
}
