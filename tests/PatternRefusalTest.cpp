// zpParseDate's refusals, each with its reason and byte; white space and
// zero bytes; reading only inside the views it is given; and what a reading
// stores, or leaves alone.
#include <time.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "services/zpDateParser.h"
#include "services/zpDatePattern.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

struct Read {
  bool ok;
  ZephalSysTime value;
  ZephalTextError error;
};

Read readDate(std::string_view text, std::string_view layout) {
  Read r;
  r.ok = zpParseDate(text, layout, r.value, r.error);
  return r;
}

std::string refusalOf(const Read& r) {
  return r.ok ? "taken" : std::string(r.error.reason) + " at byte " + std::to_string(r.error.byte);
}

}  // namespace

// Each refusal names its reason and the byte it was found at.
TEST(PatternRead, Refusals) {
  const struct {
    const char* layout;
    const char* text;
    const char* refusal;
  } cases[] = {
      {"%F %T", "2024-03-07 09:05", "expected ':' at byte 16"},
      {"%F %T", "2024-03-07T09:05:03", "expected white space at byte 10"},
      {"%F", "2024-13-07", "month out of range at byte 5"},
      {"%F", "2024-00-07", "month out of range at byte 5"},
      {"%F", "2024-03-32", "day out of range at byte 8"},
      {"%F", "2024-03-00", "day out of range at byte 8"},
      {"%F", "2024-04-31", "day out of range for the month at byte 8"},
      {"%F %T", "2024-03-07 24:00:00", "hour out of range at byte 11"},
      {"%F %T", "2024-03-07 23:60:00", "minute out of range at byte 14"},
      {"%F %T", "2024-03-07 23:59:61", "second out of range at byte 17"},
      {"%F %I %p", "2024-03-07 13 PM", "hour out of range (12-hour clock) at byte 11"},
      {"%F %I %p", "2024-03-07 00 PM", "hour out of range (12-hour clock) at byte 11"},
      {"%F %I %p", "2024-03-07 01 XM", "expected AM or PM at byte 14"},
      {"%F %I %p", "2024-03-07 01 a.m", "expected '.' after a.m or p.m at byte 17"},
      {"%F", "2024/03/07", "expected '-' at byte 4"},
      {"%F", "2024-03-07\xff", "text left unread at byte 10"},
      {"%F\xff", "2024-03-07x", "expected byte 0xff at byte 10"},
      {"%Y-%b-%d", "2024-Mrz-07", "expected a month name at byte 5"},
      {"%a %F", "Thx 2024-03-07", "expected a weekday name at byte 0"},
      {"%Y %j", "2024 367", "day of the year out of range at byte 5"},
      {"%Y %j", "2024 000", "day of the year out of range at byte 5"},
      {"%G-W%V-%u", "2024-W54-1", "ISO week out of range at byte 6"},
      {"%G-W%V-%u", "2024-W10-8", "weekday out of range at byte 9"},
      {"%G-W%V-%u", "2020-W53-5", ""},  // 2021-01-01: ISO 2020 has 53 weeks
      {"%G-W%V-%u", "2021-W53-5", "ISO week out of range for the year at byte 6"},
      {"%G-W%V", "2024-W10", "week number without a weekday at byte 6"},
      {"%Y-W%V-%u", "2024-W10-4", "ISO week without an ISO year at byte 6"},
      {"%Y %U", "2024 09", "week number without a weekday at byte 5"},
      {"%Y %U %a", "2024 53 Tue", "week number out of range for the year at byte 5"},
      {"%F %G", "2024-12-30 2024", "ISO year does not match the date at byte 11"},
      {"%F %j", "2024-03-07 068", "day of the year does not match the date at byte 11"},
      {"%F %q", "2024-03-07 2", "quarter does not match the date at byte 11"},
      {"%Y %C", "2024 19", "century does not match the date at byte 5"},
      {"%Y %y", "2024 23", "two-digit year does not match the date at byte 5"},
      {"%F %d", "2024-03-07 08", "day does not match the date at byte 11"},
      {"%F %T %H", "2024-03-07 09:05:03 10", "hour read twice, differently at byte 20"},
      {"%F %H %I %p", "2024-03-07 09 10 AM", "12-hour hour does not match the hour at byte 14"},
      {"%F %p", "2024-03-07 AM", "AM or PM without an hour at byte 11"},
      {"%F %z", "2024-03-07 +2400", "zone offset out of range at byte 11"},
      {"%F %z", "2024-03-07 +0160", "zone offset out of range at byte 11"},
      {"%F %z", "2024-03-07 +01:", "expected the minutes of the offset at byte 15"},
      {"%F %z", "2024-03-07 +01:00:30", "zone offset not in whole minutes at byte 11"},
      {"%F %z", "2024-03-07 0100", "expected a zone offset at byte 11"},
      {"%F %z", "2024-03-07 +1", "expected a zone offset at byte 11"},
      {"%F %Z", "2024-03-07 123", "expected a zone name at byte 11"},
      {"%F %Z", "2024-03-07 ABCDEFGHIJKLMNOP", "unknown zone name at byte 11"},
      {"%s", "253402300800", "Unix seconds outside years 0-9999 at byte 0"},
      {"%s", "-62167219201", "Unix seconds outside years 0-9999 at byte 0"},
      {"%s", "1234567890123", "Unix seconds outside years 0-9999 at byte 0"},
      {"%s", "-", "expected Unix seconds at byte 0"},
      {"%s %F", "0 1970-01-01", "date field beside Unix seconds at byte 2"},
      {"%F %T.%3N", "2024-03-07 09:05:03.12", "expected a fraction of a second at byte 20"},
      {"%F %T.%N", "2024-03-07 09:05:03.", "expected a fraction of a second at byte 20"},
      {"%F %T.%N", "2024-03-07 09:05:03.1234567891", "text left unread at byte 29"},
      {"%F %T%z", "9999-12-31 23:59:59-0100", "GMT reading outside years 0-9999 at byte 0"},
      {"%F %T%z", "0000-01-01 00:00:00+0100", "GMT reading outside years 0-9999 at byte 0"},
      {"%F %Q", "2024-03-07 x", "unknown conversion in the layout at byte 11"},
      {"%F %:Y", "2024-03-07 x", "unknown conversion in the layout at byte 11"},
      {"%F %::::z", "2024-03-07 +01", "unknown conversion in the layout at byte 11"},
      {"%F %", "2024-03-07 x", "layout ends inside a conversion at byte 11"},
      {"%d %m", "07 03", "layout names no year at byte 0"},
      {"%d %Y", "07 2024", "day without a month in the layout at byte 0"},
      {"", "x", "text left unread at byte 0"},
      {"%F", "", "expected a four-digit year at byte 0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.layout) + " <- " + c.text);
    EXPECT_EQ(refusalOf(readDate(c.text, c.layout)), *c.refusal ? c.refusal : "taken");
  }
}

// White space in the layout takes any run of it; a space past the layout's
// own count, before a field written with space padding, is that field's.
TEST(PatternRead, WhiteSpaceRuns) {
  const struct {
    const char* layout;
    const char* text;
    const char* result;  // Y M D h m s, or the refusal
  } cases[] = {
      {"%Y %b %e", "2024 Mar  7", "2024 3 7 0 0 0"},
      {"%Y %b %e", "2024 Mar 17", "2024 3 17 0 0 0"},
      {"%Y %b %e", "2024 Mar\t\n 17", "text left unread at byte 12"},  // " 1" is %e's
      {"%Y %b %e", "2024 Mar   7", "2024 3 7 0 0 0"},
      {"%Y %b %e", "2024 Mar   17", "text left unread at byte 12"},
      {"%Y %b%n%t%e", "2024 Mar  7", "2024 3 7 0 0 0"},
      {"%Y %b%n%t%e", "2024 Mar   7", "2024 3 7 0 0 0"},
      {"%F\t%k%M%S", "2024-03-07\t 05711", "2024 3 7 0 57 11"},
      {"%F\t%k%M%S", "2024-03-07\t235711", "2024 3 7 23 57 11"},
      {"%F  %_m", "2024-10-07  10", "2024 10 7 0 0 0"},
      {"%F  %_m", "2024-03-07   3", "2024 3 7 0 0 0"},
      {"%F %T", "2024-03-07\r\n\v\f09:05:03", "2024 3 7 9 5 3"},
      {"%F %T", "2024-03-0709:05:03", "expected white space at byte 10"},
      {"%F%n", "2024-03-07", "expected white space at byte 10"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.layout) + " <- " + c.text);
    const std::string text = unescape(c.text), layout = unescape(c.layout);
    const Read r = readDate(text, layout);
    if (!r.ok) {
      EXPECT_EQ(refusalOf(r), c.result);
      continue;
    }
    std::string fields;
    for (int v : fieldsOf(r.value, 6)) fields += (fields.empty() ? "" : " ") + std::to_string(v);
    EXPECT_EQ(fields, c.result);
  }
}

// A zero byte ends what is read; the text goes on past it, unread.
TEST(PatternRead, ZeroByteEndsTheReading) {
  EXPECT_EQ(refusalOf(readDate(std::string_view("2024-03-07\0", 11), "%F")),
            "text left unread at byte 10");
  EXPECT_EQ(refusalOf(readDate(std::string_view("2024-03\0-07", 11), "%F")),
            "expected '-' at byte 7");
  EXPECT_EQ(refusalOf(readDate(std::string_view("2024-03-0\0" "7", 11), "%F")),
            "day out of range at byte 8");
  EXPECT_TRUE(readDate("2024-03-07", std::string_view("%F\0%T", 5)).ok);  // the layout ends there
  // Every byte 128-255 where a digit, a name and a literal should be.
  for (int b = 128; b < 256; ++b) {
    const std::string x(1, static_cast<char>(b));
    EXPECT_EQ(refusalOf(readDate("2024-" + x + "-07", "%F")), "expected a month at byte 5");
    EXPECT_EQ(refusalOf(readDate("07 " + x + "ar 2024", "%d %b %Y")),
              "expected a month name at byte 3");
    EXPECT_EQ(refusalOf(readDate("2024" + x + "03-07", "%F")), "expected '-' at byte 4");
    EXPECT_EQ(refusalOf(readDate("2024-03-07 GMT" + x, "%F %Z")), "text left unread at byte 14");
  }
}

// Layouts and texts in heap blocks of exactly their size, no zero after
// them: AddressSanitizer sees any read past either view.
TEST(PatternRead, NeverReadsPastTheViews) {
  const char* const layouts[] = {"%Y%", "%Y-%m-%d%", "%", "%Y-%m-%dT%H:%M:%S%z", "%F %T%",
                                 "%Y %b %e", "%s", "%F %Z", "%F %z", "%F %T.%N", "%c", "%D%:"};
  const char* const texts[] = {"2024", "2024-03-07", "2024-03-07T09:05:03+01", "2024-03-07 +",
                               "2024 Mar  ", "17098", "2024-03-07 CES", "2024-03-07 09:05:03.",
                               "Thu Mar  7 09:05:03 202", "03/07/24", "2024-03-07 09:05:03"};
  for (const char* layout : layouts) {
    for (const char* text : texts) {
      const size_t layoutSize = std::strlen(layout), textSize = std::strlen(text);
      const std::unique_ptr<char[]> l(new char[layoutSize]), t(new char[textSize]);
      std::memcpy(l.get(), layout, layoutSize);
      std::memcpy(t.get(), text, textSize);
      ZephalSysTime value;
      ZephalTextError error;
      zpParseDate(std::string_view(t.get(), textSize), std::string_view(l.get(), layoutSize), value,
                  error);
    }
  }
}

// A refused text leaves the value and its flags alone; a read one sets all
// but the carried flags, and `error` is written only on a refusal.
TEST(PatternRead, WhatAReadingStores) {
  const ZephalSysTime before = marked(makeTime({1987, 6, 9, 5, 4, 3}, true, 777));
  ZephalSysTime value = before;
  ZephalTextError error{"untouched", 99};
  EXPECT_FALSE(zpParseDate("2024-02-30", "%F", value, error));
  EXPECT_EQ(stateOf(value), stateOf(before));
  EXPECT_STREQ(error.reason, "day out of range for the month");
  EXPECT_EQ(error.byte, 8u);

  error = ZephalTextError{"untouched", 99};
  ASSERT_TRUE(zpParseDate("2024-03-07 10:05:03.987 +0100", "%F %T.%N %z", value, error));
  EXPECT_EQ(stateOf(value), "2024 3 7 9 5 3 4 ms=987 gmt flags=000 dst=-1");
  EXPECT_STREQ(error.reason, "untouched");
  ASSERT_TRUE(zpParseDate("2024-03-07 10:05:03.5", "%F %T.%N", value, error));
  EXPECT_EQ(stateOf(value), "2024 3 7 10 5 3 4 ms=500 gmt flags=001 dst=-1");
  ASSERT_TRUE(zpParseDate("2024-03-07 10:05:03 -0000", "%F %T %z", value, error));
  EXPECT_EQ(stateOf(value), "2024 3 7 10 5 3 4 ms=0 gmt flags=001 dst=-1");  // -0000: zone unknown
  ASSERT_TRUE(zpParseDate("1709802303.123456", "%s.%f", value, error));
  EXPECT_EQ(stateOf(value), "2024 3 7 9 5 3 4 ms=123 gmt flags=000 dst=-1");
  ASSERT_TRUE(zpParseDate("-86401", "%s", value, error));
  EXPECT_EQ(stateOf(value), "1969 12 30 23 59 59 2 ms=0 gmt flags=000 dst=-1");
  ASSERT_TRUE(zpParseDate("2024-03-07 IST +05:30", "%F %Z %:z", value, error));  // settled
  EXPECT_EQ(stateOf(value), "2024 3 6 18 30 0 3 ms=0 gmt flags=000 dst=-1");
  ASSERT_TRUE(zpParseDate("2024-03-07 12:00 +0530", "%F %R %Z", value, error));  // tzdata's +0530
  EXPECT_EQ(stateOf(value), "2024 3 7 6 30 0 4 ms=0 gmt flags=000 dst=-1");
}
