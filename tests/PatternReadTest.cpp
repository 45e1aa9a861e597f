// zpParseDate against glibc's strptime and timegm on the layouts both take,
// against strftime for the week dates strptime does not compute, and the
// texts zpFormatDate writes read back.
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

// strptime and ours agree on these: the same instant; the zone stated or not.
constexpr const char* kShared[][2] = {
    {"%Y-%m-%d %H:%M:%S", "2024-03-07 09:05:03"},
    {"%Y-%m-%d %H:%M:%S", "2024-12-31 23:59:60"},  // a leap second, kept as read
    {"%Y-%m-%dT%H:%M:%S%z", "2024-03-07T10:05:03+0100"},
    {"%Y-%m-%dT%H:%M:%S%z", "2024-03-07T03:35:03-05:30"},
    {"%Y-%m-%dT%H:%M:%S%z", "2024-03-07T09:05:03Z"},
    {"%Y-%m-%dT%H:%M:%S%z", "2024-03-07T10:05:03+01"},
    {"%Y-%m-%d %H:%M %z", "2024-01-01 00:30 +2359"},
    {"%a, %d %b %Y %H:%M:%S %Z", "Thu, 07 Mar 2024 09:05:03 GMT"},
    {"%a, %d %b %Y %H:%M:%S %Z", "thu, 07 mar 2024 09:05:03 UTC"},
    {"%A %B %d %Y", "THURSDAY march 07 2024"},
    {"%b %d %Y", "Sep 7 2024"},
    {"%m/%d/%Y", "3/7/2024"},
    {"%d/%m/%y", "07/03/24"},
    {"%d/%m/%y", "31/12/49"},
    {"%D %T", "03/07/24 09:05:03"},
    {"%F %T", "2024-03-07 09:05:03"},
    {"%c", "Thu Mar  7 09:05:03 2024"},
    {"%x %X", "03/07/24 09:05:03"},
    {"%F %r", "2024-03-07 09:05:03 PM"},
    {"%F %I:%M %p", "2024-03-07 12:00 AM"},
    {"%F %I:%M %p", "2024-03-07 12:30 pm"},
    {"%F %l:%M %p", "2024-03-07  1:30 pm"},
    {"%e %b %Y %k:%M", " 7 Mar 2024  9:05"},
    {"%Y %j", "2024 067"},
    {"%Y %j", "2024 366"},
    {"%Y %j", "2023 1"},
    {"%Y %U %a", "2024 09 Thu"},
    {"%Y %U %w", "2024 00 6"},
    {"%Y %W %A", "2024 10 Thursday"},
    {"%Y %W %u", "2024 52 7"},
    {"%C%y%m%d", "20240307"},
    {"%C%y%m%d", "19991231"},
    {"%Y%m%d%H%M%S", "20240307090503"},
    {"%Y%m%d", "2024037"},
    {"%s", "1709802303"},
    {"%s", "0"},
    {"%Y-%m-%d%n%H:%M", "2024-03-07\t09:05"},
    {"%Y-%m-%d %t %H:%M", "2024-03-07 \n 09:05"},
    {"%Y-%m-%d %%", "2024-03-07 %"},
    {"%Y", "2024"},
    {"%Y-%m", "2024-02"},
    {"%Y/%m/%d %H", "0001/01/01 00"},
    {"%Y/%m/%d %H:%M:%S", "9999/12/31 23:59:59"},
    {"%h %d %Y %R", "mAr 07 2024 09:05"},
};

// strptime takes these; we refuse them, for the reason given.
struct Laxer {
  const char* layout;
  const char* text;
  const char* refusal;
  const char* why;
};
constexpr Laxer kLaxer[] = {
    {"%Y-%m-%d", "24-03-07", "expected a four-digit year at byte 0", "%Y is four digits"},
    {"%Y-%m-%d", " 2024-03-07", "expected a four-digit year at byte 0",
     "no white space the layout does not have"},
    {"%Y-%m-%d", "2024-02-30", "day out of range for the month at byte 8",
     "timegm would move it to 1 March"},
    {"%Y-%m-%d", "2023-02-29", "day out of range for the month at byte 8",
     "no 29 February in 2023"},
    {"%Y %j", "2023 366", "day of the year out of range for the year at byte 5", "2023 has 365"},
    {"%a %Y-%m-%d", "Fri 2024-03-07", "weekday does not match the date at byte 0",
     "the text contradicts itself"},
    {"%Y-%m-%d %H:%M %p", "2024-03-07 22:05 AM", "AM/PM does not match the hour at byte 17",
     "the text contradicts itself"},
    {"%Y-%m-%d %I:%M", "2024-03-07 09:05", "12-hour hour without AM or PM at byte 11",
     "morning or evening is a guess"},
    {"%H:%M", "09:05", "layout names no year at byte 0", "no date: today or 1900 is a guess"},
    {"%d %b", "07 Mar", "layout names no year at byte 0", "no year"},
    {"%Y-%m-%d %Z", "2024-03-07 XYZ", "unknown zone name at byte 11",
     "strptime skips any word, we need its offset"},
    {"%Y-%m-%d %Z", "2024-03-07 IST", "zone name with several offsets at byte 11",
     "India, Ireland or Israel"},
    {"%Y-%m-%d %H:%M:%S", "2024-03-07 9:5:3 ", "text left unread at byte 16",
     "strptime skips white space after its last field"},
    {"%Y-%m-%d %H:%M", "2024-03-07 09:05:30", "text left unread at byte 16",
     "strptime stops where the layout does, we read the whole text"},
    {"%Y-%m-%d %Z", "2024-03-07 UTC+1", "text left unread at byte 14",
     "a name ends at its letters"},
    {"%Y-%m-%d%H", "2024-03-07 09", "expected an hour at byte 10",
     "no white space the layout does not have"},
    {"%d/%m/%y", "01/01/68", "", "pivot: 00-49 are 20xx here, 00-68 in glibc"},
};

}  // namespace

TEST(PatternRead, AsStrptimeReads) {
  for (const auto& c : kShared) {
    SCOPED_TRACE(std::string(c[0]) + " <- " + c[1]);
    long long expected = 0;
    ASSERT_TRUE(strptimeInstant(c[1], c[0], expected));
    const Read r = readDate(c[1], c[0]);
    ASSERT_TRUE(r.ok) << refusalOf(r);
    EXPECT_EQ(r.value.toUnixTime_gmt64(), expected);
    const std::string layout = c[0];
    const bool zoned = layout.find("%z") != std::string::npos ||
                       layout.find("%Z") != std::string::npos ||
                       layout.find("%s") != std::string::npos;
    EXPECT_EQ(r.value.m_bFromUnknownTimezone, !zoned);
  }
}

// What strftime writes on the local clock, read by strptime and timegm and
// by ours: the same instant (or the same wall clock, no zone). Two-digit
// years only in 1970-2049, where glibc's pivot (69) and ours (50) agree;
// four-digit ones from 1000, where glibc starts padding %Y.
TEST(PatternRead, AsStrptimeReadsWhatStrftimeWrites) {
  const struct {
    const char* layout;
    bool twoDigitYear;
  } layouts[] = {
      {"%Y-%m-%d %H:%M:%S", false},         {"%a, %d %b %Y %H:%M:%S %z", false},
      {"%A %B %e %Y %I:%M:%S %p", false},   {"%c", false},
      {"%D %T", true},                      {"%x %X %z", true},
      {"%Y %j %H:%M", false},               {"%C%y%m%d%H%M%S", false},
      {"%b %d %Y %r", false},               {"%s", false},
      {"%Y %U %a %T", false},               {"%Y %W %u %k.%M.%S %z", false},
      {"%d/%m/%y %l:%M %p", true},
  };
  for (long long t = -30610137600; t < 253402214400; t += 777777777) {
    const time_t when = t;
    tm local;
    localtime_r(&when, &local);
    for (const auto& l : layouts) {
      if (l.twoDigitYear && (local.tm_year < 70 || local.tm_year > 149)) continue;
      if (t < 0 && std::string(l.layout) == "%s") continue;  // glibc's %s takes no sign
      char text[96];
      const std::string layout = l.layout;
      strftime(text, sizeof text, layout.c_str(), &local);
      long long expected = 0;
      ASSERT_TRUE(strptimeInstant(text, layout, expected)) << layout << " <- " << text;
      const Read r = readDate(text, layout);
      ASSERT_TRUE(r.ok) << layout << " <- " << text << ": " << refusalOf(r);
      ASSERT_EQ(r.value.toUnixTime_gmt64(), expected) << layout << " <- " << text;
    }
  }
}

TEST(PatternRead, StricterThanStrptime) {
  for (const Laxer& c : kLaxer) {
    SCOPED_TRACE(std::string(c.layout) + " <- " + c.text + ": " + c.why);
    long long instant = 0;
    tm t{};
    EXPECT_NE(strptime(c.text, c.layout, &t), nullptr);
    const Read r = readDate(c.text, c.layout);
    if (*c.refusal != '\0') {
      EXPECT_EQ(refusalOf(r), c.refusal);
    } else {  // the pivot: taken, a century apart
      ASSERT_TRUE(strptimeInstant(c.text, c.layout, instant));
      EXPECT_EQ(fieldsOf(gmtimeOf(instant), 1)[0] - fieldsOf(r.value, 1)[0], 100);
    }
  }
}

// Two-digit years as the module's other readers take them (the pivot 50).
TEST(PatternRead, TwoDigitYearsAsTheRfc822Reader) {
  LogNull log;
  for (int yy = 0; yy < 100; ++yy) {
    char text[40];
    std::snprintf(text, sizeof text, "Thu, 07 Mar %02d 09:05:03 GMT", yy);
    ZephalSysTime mail;
    ASSERT_TRUE(_zpDateParser::parseRFC822Date(text, mail, log)) << text;
    const Read r = readDate(text + 5, "%d %b %y %T %Z");
    ASSERT_TRUE(r.ok) << refusalOf(r);
    EXPECT_EQ(r.value.m_time.wYear, mail.m_time.wYear) << text;
  }
}

// Week dates, days of the year and weekdays as glibc's strftime writes them
// (strptime reads %G and %V but computes nothing from them), every day of
// 1999-2031 and every 61st day of 0001-9999.
TEST(PatternRead, WeekDatesAsStrftimeWritesThem) {
  const char* const layouts[] = {"%G-W%V-%u", "%Y-%j", "%Y %U %w", "%Y %W %a", "%g %V %A",
                                 "%C%g %V %u", "%b %d %Y %A"};
  std::vector<long long> days;
  for (long long d = 10592; d < 22645; ++d) days.push_back(d);          // 1999 .. 2031
  for (long long d = -719162; d < 2932897; d += 61) days.push_back(d);  // 0001 .. 9999
  for (long long day : days) {
    const tm parts = gmtimeOf(day * 86400);
    if (parts.tm_year + 1900 < 1000) continue;  // glibc writes %Y and %G unpadded below 1000
    for (const char* layout : layouts) {
      const bool twoDigits = std::string(layout).find("%g") != std::string::npos;
      if (twoDigits && (parts.tm_year < 51 || parts.tm_year > 148)) continue;  // the pivot's years
      char text[64];
      const std::string l = layout;
      const size_t n = strftime(text, sizeof text, l.c_str(), &parts);
      const Read r = readDate(std::string_view(text, n), layout);
      ASSERT_TRUE(r.ok) << layout << " <- " << text << ": " << refusalOf(r);
      ASSERT_EQ(r.value.toUnixTime_gmt64(), day * 86400) << layout << " <- " << text;
    }
  }
}
