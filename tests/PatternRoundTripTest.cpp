// What zpFormatDate writes, zpParseDate reads back to the same instant, on
// the local clock of this run's zone and on the GMT one; and every date of
// a layout's range read as gmtime_r writes it.
#include <time.h>

#include <cstdio>
#include <string>
#include <vector>

#include "services/zpDatePattern.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

// Layouts that carry a whole instant; `millis` when they keep milliseconds,
// `twoDigitYears` when their year reads back only in 1950-2049.
struct Carrying {
  const char* layout;
  bool millis;
  bool twoDigitYears = false;
};
constexpr Carrying kCarrying[] = {
    {"%Y-%m-%dT%H:%M:%S%z", false},
    {"%Y-%m-%dT%H:%M:%S.%3N%:z", true},
    {"%FT%T,%N%::z", true},
    {"%a, %d %b %Y %H:%M:%S %z", false},
    {"%A %-d %B %Y %-I:%M:%S.%6N %p %:::z", true},
    {"%c %z", false},
    {"%a %b %e %H:%M:%S %Z %Y", false},  // CET, CEST, EST, EDT, UTC, +0530: all in the table
    {"%D %r %Z", false, true},
    {"%G-W%V-%u %T %z", false},
    {"%Y-%j %k:%M:%S %z", false},
    {"%Y %U %a %T%z", false},
    {"%Y %W %u %T%z", false},
    {"%_d.%_m.%Y %l:%M:%S%P %z", false},
    {"%^a %^b %d %Y %H%M%S %#Z", false},
    {"%s", false},
    {"%s.%3N", true},
    {"%C%y%m%d%H%M%S%z", false},
    {"%4Y-%3m-%3d %3H:%3M:%3S %z", false},
    {"%Y%n%m%t%d  %H:%M:%S %z", false},
};

std::string writeClock(const char* layout, const ZephalWallClock& clock) {
  StringBuffer out;
  EXPECT_TRUE(zpFormatDate(layout, clock, out));
  return std::string(out.getString(), out.getSize());
}

}  // namespace

// Instants 1901-2099 (where every TZ of the runs has its rules and the
// two-digit years of %D read back) and around this run's clock changes.
TEST(PatternRoundTrip, WrittenTextsReadBack) {
  std::vector<long long> instants;
  for (long long t = -2145916800; t < 4102444800; t += 86400 * 13 + 3607) instants.push_back(t);
  for (long long t = 1710032400; t < 1710050400; t += 900) instants.push_back(t);  // 2024-03-10
  for (long long t = 1711846800; t < 1711864800; t += 900) instants.push_back(t);  // 2024-03-31
  for (long long t = 1730001600; t < 1730019600; t += 900) instants.push_back(t);  // 2024-10-27
  for (long long t = 1730609000; t < 1730627000; t += 900) instants.push_back(t);  // 2024-11-03
  int n = 0;
  for (long long instant : instants) {
    for (bool local : {true, false}) {
      ZephalSysTime value;
      value.fromUnixTime64(false, instant);
      value.m_time.wMilliseconds = static_cast<uint16_t>(n++ * 7 % 1000);
      ZephalWallClock clock;
      local ? zpLocalWallClockOf(value, clock) : zpWallClockOf(value, clock);
      for (const Carrying& c : kCarrying) {
        if (c.twoDigitYears && (instant < -631065600 || instant > 2524521600)) continue;
        const std::string text = writeClock(c.layout, clock);
        ZephalSysTime back;
        ZephalTextError error;
        ASSERT_TRUE(zpParseDate(text, c.layout, back, error))
            << c.layout << " <- " << text << ": " << error.reason << " at byte " << error.byte;
        ASSERT_EQ(back.toUnixTime_gmt64(), instant) << c.layout << " <- " << text;
        ASSERT_EQ(back.m_time.wMilliseconds, c.millis ? value.m_time.wMilliseconds : 0)
            << c.layout << " <- " << text;
        ASSERT_FALSE(back.m_bFromUnknownTimezone);
      }
    }
  }
}

// A layout without a zone gives back the wall clock as written, zone unknown.
TEST(PatternRoundTrip, WallClockWithoutAZone) {
  for (long long t = -2145916800; t < 4102444800; t += 86400 * 29 + 3607 * 3) {
    ZephalSysTime value;
    value.fromUnixTime64(false, t);
    ZephalWallClock clock;
    zpLocalWallClockOf(value, clock);
    for (const char* layout : {"%F %T", "%c", "%d/%m/%Y %I:%M:%S %p", "%e %B %Y %k.%M.%S"}) {
      const std::string text = writeClock(layout, clock);
      ZephalSysTime back;
      ZephalTextError error;
      ASSERT_TRUE(zpParseDate(text, layout, back, error)) << layout << " <- " << text;
      ZephalCalendarFields expected = clock.fields;
      expected.wMilliseconds = 0;
      ASSERT_EQ(fieldsOf(back), (Fields{expected.wYear, expected.wMonth, expected.wDay,
                                        expected.wHour, expected.wMinute, expected.wSecond,
                                        expected.wDayOfWeek}))
          << layout << " <- " << text;
      ASSERT_TRUE(back.m_bFromUnknownTimezone);
    }
  }
}

// Every day of 1900-2100 and every 97th of 0000-9999, as gmtime_r breaks it
// down, read by %F and by %d %b %Y.
TEST(PatternRoundTrip, EveryDay) {
  for (long long day = -719528; day < 2932897; ++day) {
    if ((day < -25567 || day > 47482) && day % 97 != 0) continue;
    const tm parts = gmtimeOf(day * 86400 + 43200);
    char iso[32], named[32];
    std::snprintf(iso, sizeof iso, "%04d-%02d-%02d 12", parts.tm_year + 1900, parts.tm_mon + 1,
                  parts.tm_mday);
    static const char kMonths[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
    std::snprintf(named, sizeof named, "%d %.3s %04d 12", parts.tm_mday, kMonths + parts.tm_mon * 3,
                  parts.tm_year + 1900);
    ZephalSysTime a, b;
    ZephalTextError error;
    ASSERT_TRUE(zpParseDate(iso, "%F %H", a, error)) << iso;
    ASSERT_TRUE(zpParseDate(named, "%d %b %Y %H", b, error)) << named;
    ASSERT_EQ(a.toUnixTime_gmt64(), day * 86400 + 43200) << iso;
    ASSERT_EQ(fieldsOf(a), fieldsOf(parts)) << iso;
    ASSERT_EQ(stateOf(b), stateOf(a)) << named;
  }
}

// The named layouts write what their comments show and read it back.
TEST(PatternRoundTrip, NamedLayouts) {
  ZephalSysTime gmt;
  gmt.fromUnixTime64(false, 1709802303);
  gmt.m_time.wMilliseconds = 123;
  ZephalWallClock clock;
  zpWallClockOf(gmt, clock);
  const struct {
    std::string_view layout;
    const char* text;
  } cases[] = {
      {kZpLayoutRfc3339, "2024-03-07T09:05:03+00:00"},
      {kZpLayoutRfc3339Millis, "2024-03-07T09:05:03.123+00:00"},
      {kZpLayoutRfc1123, "Thu, 07 Mar 2024 09:05:03 GMT"},
      {kZpLayoutDate, "Thu Mar  7 09:05:03 GMT 2024"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(writeClock(std::string(c.layout).c_str(), clock), c.text);
    ZephalSysTime back;
    ZephalTextError error;
    ASSERT_TRUE(zpParseDate(c.text, c.layout, back, error)) << c.text << ": " << error.reason;
    EXPECT_EQ(back.toUnixTime_gmt64(), 1709802303) << c.text;
  }
}
