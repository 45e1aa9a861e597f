// zpParseDate on the rows of tests/data/pattern_reads.tsv, against glibc's
// strptime and timegm where it reads the same and where it is laxer; on what
// strftime writes; and never past the views it is given.
#include <time.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "services/zpDatePattern.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

// A table field: C escapes, '-' for an empty text.
std::string fieldOf(const std::string& field) { return field == "-" ? "" : unescape(field); }

// Text and layout in heap blocks of exactly their size, no zero after them:
// AddressSanitizer sees any read past either view.
bool readExactly(const std::string& text, const std::string& layout, ZephalSysTime& value,
                 ZephalTextError& error) {
  const std::unique_ptr<char[]> t(new char[text.size()]), l(new char[layout.size()]);
  text.copy(t.get(), text.size());
  layout.copy(l.get(), layout.size());
  return zpParseDate({t.get(), text.size()}, {l.get(), layout.size()}, value, error);
}

// What strptime makes of the whole text, as an instant: timegm of its
// fields less the offset %z read; mktime for %s, which strptime breaks down
// as local time. False when it refuses or stops short of the end.
bool strptimeInstant(const std::string& text, const std::string& layout, long long& instant) {
  tm t{};
  t.tm_mday = 1;  // a layout without a day: the first, as ours
  const char* end = strptime(text.c_str(), layout.c_str(), &t);
  if (end == nullptr || *end != '\0') return false;
  const long offset = t.tm_gmtoff;  // timegm clears it
  instant = layout.find("%s") != std::string::npos ? mktime(&t) : timegm(&t) - offset;
  return true;
}

// A layout of tests/data/pattern_layouts.tsv and the years it is used in.
struct Layout {
  std::string layout;
  int first, last;
};

std::vector<Layout> layoutsFor(const std::string& use) {
  std::vector<Layout> layouts;
  for (const Row& r : readTable("pattern_layouts.tsv")) {
    if (r[0] == use) layouts.push_back({r[1], int(toInt(r[2])), int(toInt(r[3]))});
  }
  return layouts;
}

std::string strftimeOf(const std::string& layout, const tm& parts) {
  char text[96];
  return std::string(text, strftime(text, sizeof text, layout.c_str(), &parts));
}

std::string readingOf(const std::string& text, const std::string& layout, ZephalSysTime& value) {
  ZephalTextError error;
  if (zpParseDate(text, layout, value, error)) return "";
  return layout + " <- " + text + ": " + error.reason + " at byte " + std::to_string(error.byte);
}

}  // namespace

// Each row read into a value with every carried flag set: what it stores,
// or the refusal with the value untouched; `error` is written only then.
TEST(PatternRead, Readings) {
  const ZephalSysTime before = marked(makeTime({1987, 6, 9, 5, 4, 3}, true, 777));
  for (const Row& row : readTable("pattern_reads.tsv")) {
    const std::string layout = fieldOf(row[1]), text = fieldOf(row[2]);
    SCOPED_TRACE(row[0] + " " + row[1] + " <- " + row[2] + (row.size() > 4 ? ": " + row[4] : ""));
    ZephalSysTime value = before;
    ZephalTextError error{"untouched", 99};
    const bool ok = readExactly(text, layout, value, error);
    const std::string refusal = std::string(error.reason) + " at byte " + std::to_string(error.byte);
    EXPECT_EQ(ok ? stateOf(value) : refusal, row[3]);
    EXPECT_EQ(ok ? refusal : stateOf(value), ok ? "untouched at byte 99" : stateOf(before));
    if (row[0] == "ours") continue;
    long long instant = 0;
    tm parts{};
    EXPECT_NE(strptime(text.c_str(), layout.c_str(), &parts), nullptr);
    EXPECT_EQ(ok && strptimeInstant(text, layout, instant) && instant == value.toUnixTime_gmt64(),
              row[0] == "same");
  }
}

// Every layout of the table against every text of it.
TEST(PatternRead, NeverReadsPastTheViews) {
  std::set<std::string> layouts, texts;
  for (const Row& row : readTable("pattern_reads.tsv")) {
    layouts.insert(fieldOf(row[1]));
    texts.insert(fieldOf(row[2]));
  }
  for (const std::string& layout : layouts) {
    for (const std::string& text : texts) {
      ZephalSysTime value;
      ZephalTextError error;
      readExactly(text, layout, value, error);
    }
  }
}

// What strftime writes on the local clock, read by strptime and timegm and
// by ours: the same instant (or the same wall clock, no zone).
TEST(PatternRead, AsStrptimeReadsWhatStrftimeWrites) {
  const std::vector<Layout> layouts = layoutsFor("strptime");
  for (long long t = -30610137600; t < 253402214400; t += 777777777) {
    const time_t when = t;
    tm local;
    localtime_r(&when, &local);
    for (const auto& [layout, first, last] : layouts) {
      if (local.tm_year + 1900 < first || local.tm_year + 1900 > last) continue;
      const std::string text = strftimeOf(layout, local);
      long long expected = 0;
      ZephalSysTime value;
      ASSERT_TRUE(strptimeInstant(text, layout, expected)) << layout << " <- " << text;
      ASSERT_EQ(readingOf(text, layout, value), "");
      ASSERT_EQ(value.toUnixTime_gmt64(), expected) << layout << " <- " << text;
    }
  }
}

// Every day of 1900-2100 and every 61st of 0000-9999 as strftime writes it
// on the GMT clock: week dates, days of the year and names, which strptime
// reads but computes nothing from.
TEST(PatternRead, DatesAsStrftimeWritesThem) {
  const std::vector<Layout> layouts = layoutsFor("strftime");
  for (long long day = -719528; day < 2932897; ++day) {
    if ((day < -25567 || day > 47482) && day % 61 != 0) continue;
    const tm parts = gmtimeOf(day * 86400);
    for (const auto& [layout, first, last] : layouts) {
      if (parts.tm_year + 1900 < first || parts.tm_year + 1900 > last) continue;
      const std::string text = strftimeOf(layout, parts);
      ZephalSysTime value;
      ASSERT_EQ(readingOf(text, layout, value), "");
      ASSERT_EQ(fieldsOf(value), fieldsOf(parts)) << layout << " <- " << text;
    }
  }
}
