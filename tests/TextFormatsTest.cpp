// Fixed text layouts: written texts against strftime on gmtime_r, read texts
// back to the same instant, the readers' edges, and the log record.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/XString.h"
#include "tests/TestValues.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;

namespace {

std::string strftimeUtc(const char* format, long long count) {
  const time_t t = count;
  tm g;
  gmtime_r(&t, &g);
  char text[64];
  strftime(text, sizeof text, format, &g);
  return text;
}

// Instants from 1950 to 2049, about 37 hours and some odd seconds apart.
std::vector<long long> sampleInstants() {
  std::vector<long long> out;
  for (long long t = -631152000; t < 2524608000; t += 133207) out.push_back(t);
  out.push_back(2524607999);  // 2049-12-31 23:59:59
  return out;
}

}  // namespace

TEST(TextFormats, GmtTextsMatchStrftimeAndReadBack) {
  LogNull log;
  for (long long instant : sampleInstants()) {
    SCOPED_TRACE(instant);
    ZephalSysTime t;
    t.fromUnixTime64(false, instant);

    StringBuffer iso;
    t.getIso8601Timestamp(iso);
    ASSERT_EQ(iso.getString(), strftimeUtc("%Y%m%dT%H%M%SZ", instant));

    StringBuffer utc;
    ASSERT_TRUE(t.getAsnUtcDateTime(utc));
    ASSERT_EQ(utc.getString(), strftimeUtc("%y%m%d%H%M%SZ", instant));
    ZephalSysTime back;
    ASSERT_TRUE(back.fromAsnUtcDateTime(utc.getString(), log));
    ASSERT_EQ(back.toUnixTime_gmt64(), instant);

    StringBuffer rfc;
    ASSERT_TRUE(t.getRfc822String(rfc));
    ASSERT_EQ(rfc.getString(), strftimeUtc("%a, %d %b %Y %H:%M:%S GMT", instant));
    ZephalSysTime parsed;
    ASSERT_TRUE(parsed.setFromRfc822String(rfc.getString(), log));
    ASSERT_EQ(parsed.toUnixTime_gmt64(), instant);
    ASSERT_FALSE(parsed.m_bLocal);
  }
}

// A local value prints its instant in GMT: ISO 8601 on a copy, UTCTime after
// converting the value itself. Expectations from glibc's mktime.
TEST(TextFormats, LocalValuesPrintInGmt) {
  for (int month = 1; month <= 12; ++month) {
    ZephalSysTime local = makeTime(2024, month, 7, 9, 5, 3, true, 250);
    tm image{};
    image.tm_year = 124;
    image.tm_mon = month - 1;
    image.tm_mday = 7;
    image.tm_hour = 9;
    image.tm_min = 5;
    image.tm_sec = 3;
    image.tm_isdst = -1;
    const long long instant = mktime(&image);

    StringBuffer iso;
    local.getIso8601Timestamp(iso);
    EXPECT_EQ(iso.getString(), strftimeUtc("%Y%m%dT%H%M%SZ", instant));
    expectFields(local, 2024, month, 7, 9, 5, 3, -1);
    EXPECT_TRUE(local.m_bLocal);
    EXPECT_EQ(local.m_time.wMilliseconds, 250);

    StringBuffer rfc;
    local.getRfc822String(rfc);
    char offset[32];
    std::snprintf(offset, sizeof offset, "%+03ld%02ld", image.tm_gmtoff / 3600,
                  std::labs(image.tm_gmtoff / 60 % 60));
    EXPECT_EQ(rfc.getString(), strftimeUtc("%a, %d %b %Y 09:05:03 ", instant + image.tm_gmtoff) +
                                   offset);

    StringBuffer utc;
    local.getAsnUtcDateTime(utc);
    EXPECT_EQ(utc.getString(), strftimeUtc("%y%m%d%H%M%SZ", instant));
    EXPECT_FALSE(local.m_bLocal);
    EXPECT_EQ(local.m_time.wMilliseconds, 0);
    EXPECT_EQ(local.m_isDst, -1);
  }
}

TEST(TextFormats, YearWidths) {
  struct Case {
    int year;
    const char* iso;
    const char* utcTime;
  } const cases[] = {
      {987, "09870307T090503Z", "870307090503Z"},
      {2050, "20500307T090503Z", "500307090503Z"},  // reads back as 1950
      {12345, "123450307T090503Z", "450307090503Z"},
  };
  for (const Case& c : cases) {
    ZephalSysTime t = makeTime(c.year, 3, 7, 9, 5, 3, false);
    StringBuffer iso, utc;
    t.getIso8601Timestamp(iso);
    t.getAsnUtcDateTime(utc);
    EXPECT_STREQ(iso.getString(), c.iso);
    EXPECT_STREQ(utc.getString(), c.utcTime);
  }
}

TEST(TextFormats, ReadersKeepWhatTheyDoNotRead) {
  LogNull log;
  ZephalSysTime asn = makeTime(2001, 1, 1, 0, 0, 0, true, 250);
  asn.m_time.wDayOfWeek = 3;
  asn.m_isDst = 1;
  EXPECT_TRUE(asn.fromAsnUtcDateTime("500307090503Z", log));
  expectFields(asn, 1950, 3, 7, 9, 5, 3, 3);  // day of the week untouched
  EXPECT_EQ(asn.m_time.wMilliseconds, 250);
  EXPECT_FALSE(asn.m_bLocal);
  EXPECT_EQ(asn.m_isDst, -1);

  ZephalSysTime x509 = makeTime(2001, 1, 1, 0, 0, 0, true, 250);
  x509.m_isDst = 1;
  EXPECT_TRUE(x509.fromX509("20240307090503.123Z", true, log));  // fraction not read
  expectFields(x509, 2024, 3, 7, 9, 5, 3, 4);
  EXPECT_TRUE(x509.m_bLocal);
  EXPECT_EQ(x509.m_time.wMilliseconds, 250);
  EXPECT_EQ(x509.m_isDst, 1);
  EXPECT_TRUE(x509.fromX509("491231235959Z", false, log));
  expectFields(x509, 2049, 12, 31, 23, 59, 59, 5);
}

// Every prefix of a time text, in a buffer of exactly its size: a short text
// is refused without reading past its end and leaves the value alone.
TEST(TextFormats, ShortTextsAreRefusedUntouched) {
  LogNull log;
  const std::string full = "20240307090503Z";
  for (int mode = 0; mode < 3; ++mode) {
    const bool generalized = mode == 2;
    const size_t needed = generalized ? 14 : 12;
    for (size_t n = 0; n <= full.size(); ++n) {
      std::unique_ptr<char[]> text(new char[n + 1]);
      std::memcpy(text.get(), full.data(), n);
      text[n] = '\0';
      ZephalSysTime t = makeTime(2001, 2, 3, 4, 5, 6, true);
      const bool read = mode == 0 ? t.fromAsnUtcDateTime(text.get(), log)
                                  : t.fromX509(text.get(), generalized, log);
      EXPECT_EQ(read, n >= needed) << mode << " " << n;
      if (!read) expectFields(t, 2001, 2, 3, 4, 5, 6, -1);
    }
  }
  ZephalSysTime t;
  EXPECT_FALSE(t.fromAsnUtcDateTime(nullptr, log));
  EXPECT_FALSE(t.fromX509(nullptr, true, log));
  EXPECT_TRUE(zptest::isDefaultState(t));
}

TEST(TextFormats, LogRecord) {
  struct Case {
    ZephalSysTime value;
    bool unknownZone;
    const char* expected;
  } const cases[] = {
      {makeTime(2024, 3, 7, 9, 5, 3, false), false, "expires:\n  gmtDateTime: 3/7/2024 9:05:03\n"},
      {makeTime(2001, 1, 1, 0, 0, 0, true), false, "expires:\n  localDateTime: 1/1/2001 0:00:00\n"},
      {makeTime(2024, 12, 31, 23, 59, 9, false), true,
       "expires:\n  gmtDateTime: 12/31/2024 23:59:09\n  fromUnknownTimezone: 1\n"},
  };
  for (const Case& c : cases) {
    ZephalSysTime value = c.value;
    value.m_bFromUnknownTimezone = c.unknownZone;
    LogRecorder log;
    value.logSysTime("expires", log);
    EXPECT_EQ(log.render(), c.expected);
  }
}

TEST(TextFormats, Rfc822IntoXString) {
  ZephalSysTime t = makeTime(2024, 3, 7, 9, 5, 3, false);
  XString x;
  x.appendUtf8("Date: ");
  t.getRfc822StringX(x);
  EXPECT_STREQ(x.getUtf8(), "Date: Thu, 07 Mar 2024 09:05:03 GMT");
}
