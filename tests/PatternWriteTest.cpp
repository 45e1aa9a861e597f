// zpFormatDate against GNU date (tests/data/pattern_writes.tsv); the wall
// clocks against localtime_r and mktime; and what zpFormatDate writes,
// zpParseDate reads back.
#include <time.h>

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
    EXPECT_EQ(written(decodeField(row[3]), clock), decodeField(row[4]))
        << row[0] << " @" << row[1] << "." << row[2] << " layout " << row[3];
    ++compared;
  }
  EXPECT_GT(compared, 1000);
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

// The layout ends at a zero byte; what the buffer held stays in front.
TEST(PatternWrite, AppendsAndStopsAtZero) {
  const ZephalWallClock clock = clockAt(1709802303, 0, false);
  StringBuffer out("x");
  EXPECT_TRUE(zpFormatDate(std::string_view("%Y\0%m", 5), clock, out));
  EXPECT_STREQ(out.getString(), "x2024");
  EXPECT_TRUE(zpFormatDate(std::string_view(), clock, out));
  EXPECT_STREQ(out.getString(), "x2024");
}

// What zpFormatDate writes of instants 1901-2099 (where every TZ of the runs
// has its rules), and around this run's clock changes, on the local and the
// GMT clock, reads back by the layouts of tests/data/pattern_layouts.tsv: to
// the instant ("instant"; the milliseconds where it keeps them), or to the
// wall clock, zone unknown ("wall").
TEST(PatternRoundTrip, WrittenTextsReadBack) {
  std::vector<Row> layouts;
  for (Row& r : readTable("pattern_layouts.tsv")) {
    if (r[0] == "instant" || r[0] == "wall") layouts.push_back(std::move(r));
  }
  std::vector<long long> instants;
  for (long long t = -2145916800; t < 4102444800; t += 86400 * 13 + 3607) instants.push_back(t);
  for (long long t = 1710032400; t < 1710050400; t += 900) instants.push_back(t);  // 2024-03-10
  for (long long t = 1711846800; t < 1711864800; t += 900) instants.push_back(t);  // 2024-03-31
  for (long long t = 1730001600; t < 1730019600; t += 900) instants.push_back(t);  // 2024-10-27
  for (long long t = 1730609000; t < 1730627000; t += 900) instants.push_back(t);  // 2024-11-03
  int n = 0;
  for (long long instant : instants) {
    for (bool local : {true, false}) {
      const ZephalWallClock clock = clockAt(instant, n++ * 7 % 1000, local);
      for (const Row& l : layouts) {
        if (clock.fields.wYear < toInt(l[2]) || clock.fields.wYear > toInt(l[3])) continue;
        const std::string text = written(l[1], clock);
        ZephalSysTime back;
        ZephalTextError error;
        ASSERT_TRUE(zpParseDate(text, l[1], back, error))
            << l[1] << " <- " << text << ": " << error.reason << " at byte " << error.byte;
        ZephalCalendarFields wall = clock.fields;
        wall.wMilliseconds = l.size() > 4 ? wall.wMilliseconds : 0;
        if (l[0] == "instant") {
          ASSERT_EQ(back.toUnixTime_gmt64(), instant) << l[1] << " <- " << text;
        } else {
          ASSERT_EQ(fieldsOf(back), (Fields{wall.wYear, wall.wMonth, wall.wDay, wall.wHour,
                                            wall.wMinute, wall.wSecond, wall.wDayOfWeek}))
              << l[1] << " <- " << text;
        }
        ASSERT_EQ(back.m_time.wMilliseconds, wall.wMilliseconds) << l[1] << " <- " << text;
        ASSERT_EQ(back.m_bFromUnknownTimezone, l[0] == "wall");
      }
    }
  }
}

// The named layouts write what their comments show and read it back.
TEST(PatternRoundTrip, NamedLayouts) {
  const ZephalWallClock clock = clockAt(1709802303, 123, false);
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
    EXPECT_EQ(written(c.layout, clock), c.text);
    ZephalSysTime back;
    ZephalTextError error;
    ASSERT_TRUE(zpParseDate(c.text, c.layout, back, error)) << c.text << ": " << error.reason;
    EXPECT_EQ(back.toUnixTime_gmt64(), 1709802303) << c.text;
  }
}
