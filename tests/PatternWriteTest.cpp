// zpFormatDate against GNU date (tests/data/pattern_writes.tsv) and against
// glibc's strftime on the conversions both take; zpWallClockOf against
// localtime_r.
#include <time.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "services/zpDatePattern.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

// A table field: C escapes, '-' for an empty text, and \*N* for N more of
// the byte before (gen_pattern_tables.py).
std::string decodeField(const std::string& field) {
  if (field == "-") return "";
  std::string out;
  for (size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 1 < field.size() && field[i + 1] == '*') {
      const size_t close = field.find('*', i + 2);
      out.append(std::stoul(field.substr(i + 2, close - i - 2)), out.back());
      i = close;
    } else {
      const size_t next = field.find("\\*", i);
      const size_t stop = next == std::string::npos ? field.size() : next;
      out += unescape(field.substr(i, stop - i));
      i = stop - 1;
    }
  }
  return out;
}

std::string written(std::string_view layout, const ZephalWallClock& clock) {
  StringBuffer out;
  EXPECT_TRUE(zpFormatDate(layout, clock, out));
  return std::string(out.getString(), out.getSize());
}

// The wall clock of an instant: GMT, or local in this run's zone.
ZephalWallClock clockAt(long long seconds, int millis, bool local) {
  ZephalSysTime t;
  t.fromUnixTime64(false, seconds);
  t.m_time.wMilliseconds = static_cast<uint16_t>(millis);
  ZephalWallClock clock;
  local ? zpLocalWallClockOf(t, clock) : zpWallClockOf(t, clock);
  return clock;
}

}  // namespace

TEST(PatternWrite, AsGnuDateWrites) {
  int compared = 0;
  for (const Row& row : readTable("pattern_writes.tsv")) {
    const bool gmt = row[0] == "GMT";
    if (!gmt && row[0] != currentTz()) continue;
    const ZephalWallClock clock = clockAt(toInt(row[1]), static_cast<int>(toInt(row[2])), !gmt);
    const std::string layout = decodeField(row[3]);
    EXPECT_EQ(written(layout, clock), decodeField(row[4]))
        << row[0] << " @" << row[1] << "." << row[2] << " layout " << row[3];
    ++compared;
  }
  EXPECT_GT(compared, 1000);
}

namespace {

// Where GNU date's +FORMAT and glibc's strftime part ways on the conversions
// both take; the table above holds date's answers for these.
struct Divergence {
  const char* layouts;  // space-separated
  const char* why;
};
constexpr Divergence kDivergences[] = {
    {"%-D %_D", "date hands %D's flag to its %y"},
    {"%_z %3z %12z", "date pads the digits of an offset, glibc the sign and digits apart"},
    {"%-% %_% %0% %^% %#% %3% %12% %E% %O%", "date copies a '%' with flags as written"},
    {"%3F %12F", "date gives %F's width to its year"},
    {"%3s %12s", "glibc pads %s to the width with spaces, date with zeros"},
};

bool diverges(const std::string& layout) {
  for (const Divergence& d : kDivergences) {
    const std::string list = std::string(" ") + d.layouts + " ";
    if (list.find(" " + layout + " ") != std::string::npos) return true;
  }
  return false;
}

// Each conversion both take, alone, with each flag, with widths, with each
// modifier. %s only for local values: glibc's reads any tm as local time.
std::vector<std::string> sharedLayouts(bool local) {
  const std::string conversions =
      std::string("aAbBcCdDeFgGhHIjklmMnpPrRSTuUVwWxXyYzZ%") + (local ? "s" : "");
  std::vector<std::string> layouts;
  for (char c : conversions) {
    for (const char* prefix : {"", "-", "_", "0", "^", "#", "3", "12", "E", "O"}) {
      const std::string layout = std::string("%") + prefix + c;
      if (!diverges(layout)) layouts.push_back(layout);
    }
  }
  return layouts;
}

}  // namespace

// Years 1000-9999: below them date pads %Y %G %C %F to four digits, glibc not.
TEST(PatternWrite, AsStrftimeWrites) {
  for (bool local : {false, true}) {
    const std::vector<std::string> layouts = sharedLayouts(local);
    for (long long t = -30610137600; t < 253386576000; t += 1234567891) {  // 1000-01-02 .. 9999-07
      for (long long instant : {t, t + 86400 * 180}) {
        SCOPED_TRACE(instant);
        const time_t when = instant;
        tm parts;
        local ? localtime_r(&when, &parts) : gmtime_r(&when, &parts);
        const ZephalWallClock clock = clockAt(instant, 0, local);
        for (const std::string& layout : layouts) {
          char text[128];
          const size_t n = strftime(text, sizeof text, layout.c_str(), &parts);
          ASSERT_EQ(written(layout, clock), std::string(text, n)) << layout;
        }
      }
    }
  }
}

TEST(PatternWrite, Divergences) {
  // Each listed layout does differ somewhere, or the list is stale.
  const ZephalWallClock clock = clockAt(-62003714097, 0, false);  // 0005-03-07 10:05:03
  tm parts = gmtimeOf(-62003714097);
  for (const Divergence& d : kDivergences) {
    std::istringstream list(d.layouts);
    for (std::string layout; list >> layout;) {
      char text[128];
      const size_t n = strftime(text, sizeof text, layout.c_str(), &parts);
      const ZephalWallClock some =
          layout.find('s') != std::string::npos ? clockAt(0, 0, false) : clock;
      tm other = gmtimeOf(0);
      char otherText[128];
      const size_t m = strftime(otherText, sizeof otherText, layout.c_str(), &other);
      EXPECT_TRUE(written(layout, clock) != std::string(text, n) ||
                  written(layout, some) != std::string(otherText, m))
          << layout << ": " << d.why;
    }
  }
}

// Names of the C locale, whatever LC_TIME says: a months and weekdays sweep
// against strftime in the "C" locale this binary runs in.
TEST(PatternWrite, NamesOfEveryMonthAndWeekday) {
  for (int day = 0; day < 7 * 12 * 31; day += 5) {
    const long long instant = 1704067200LL + day * 86400LL;  // from 2024-01-01
    tm parts = gmtimeOf(instant);
    char text[96];
    const std::string layout =
        "%a %A %b %B %^a %#B %p %P";  // a string: g++ warns of %^ in a literal
    const size_t n = strftime(text, sizeof text, layout.c_str(), &parts);
    EXPECT_EQ(written(layout, clockAt(instant, 0, false)), std::string(text, n));
  }
}

// The GMT clock: fields as they stand, the weekday computed, "GMT"; a month
// with no name gives '?' and no weekday is computed for it.
TEST(PatternWrite, GmtClock) {
  ZephalSysTime t = makeTime({2024, 3, 7, 9, 5, 3}, false, 123);
  t.m_time.wDayOfWeek = 6;  // stale: the clock computes its own
  ZephalWallClock clock;
  zpWallClockOf(t, clock);
  EXPECT_EQ(written("%F %T.%3N %a %Z %z", clock), "2024-03-07 09:05:03.123 Thu GMT +0000");
  EXPECT_FALSE(clock.isDst);
  t.m_time.wMonth = 13;
  zpWallClockOf(t, clock);
  EXPECT_EQ(written("%m %b %B", clock), "13 ? ?");
}

// A local value's clock is mktime's reading of it, and a GMT value's local
// clock is localtime_r's, so each half of a repeated hour keeps its offset.
TEST(PatternWrite, LocalClocks) {
  for (long long instant = 1704067200; instant < 1735689600; instant += 86400 * 3 + 3599) {
    SCOPED_TRACE(instant);
    const time_t when = instant;
    tm local;
    localtime_r(&when, &local);
    const ZephalWallClock ofInstant = clockAt(instant, 250, true);
    char text[96];
    const size_t n = strftime(text, sizeof text, "%F %T %a %j %z %Z", &local);
    EXPECT_EQ(written("%F %T %a %j %z %Z", ofInstant), std::string(text, n));
    EXPECT_EQ(ofInstant.isDst, local.tm_isdst > 0);
    EXPECT_EQ(ofInstant.fields.wMilliseconds, 250);
    ZephalSysTime value;
    value.fromUnixTime64(false, instant);
    value.toLocalSysTime();
    ZephalWallClock ofValue;
    zpWallClockOf(value, ofValue);
    tm image = tmOf(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                    local.tm_min, local.tm_sec);
    mktime(&image);
    EXPECT_EQ(ofValue.gmtOffset, image.tm_gmtoff);
    EXPECT_STREQ(ofValue.abbreviation, image.tm_zone);
  }
}

// Padding of any size, in one piece: GNU date writes a field of width N as
// N - 2 zeros and the day (the table holds widths to 70000).
TEST(PatternWrite, WideFields) {
  const ZephalWallClock clock = clockAt(1709802303, 0, false);
  const std::string wide = written("%3000000d|%_3000000A", clock);
  ASSERT_EQ(wide.size(), 6000001u);
  EXPECT_EQ(wide.find_first_not_of('0'), 2999999u);
  EXPECT_EQ(wide.substr(2999998, 4), "07| ");
  EXPECT_EQ(wide.substr(wide.size() - 9), " Thursday");
}

// The layout ends at a zero byte; what the buffer held stays in front.
TEST(PatternWrite, AppendsAndStopsAtZero) {
  const ZephalWallClock clock = clockAt(1709802303, 0, false);
  StringBuffer out("x");
  EXPECT_TRUE(zpFormatDate(std::string_view("%Y\0%m", 5), clock, out));
  EXPECT_STREQ(out.getString(), "x2024");
  EXPECT_TRUE(zpFormatDate(std::string_view(), clock, out));
  EXPECT_STREQ(out.getString(), "x2024");
}
