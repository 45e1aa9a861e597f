// Fixed text layouts: written texts against strftime on gmtime_r, read texts
// back to the same instant, the readers' edges, and the log record.
#include "services/XString.h"
#include "tests/TestValues.h"

using namespace zptest;

static std::string strftimeAt(const char* format, long long count, bool local = false) {
  const time_t t = count;
  tm parts;
  local ? localtime_r(&t, &parts) : gmtime_r(&t, &parts);
  char text[64];
  strftime(text, sizeof text, format, &parts);
  return text;
}

// Instants from 1950 to 2049, about 37 hours and some odd seconds apart.
TEST(TextFormats, GmtTextsMatchStrftimeAndReadBack) {
  std::vector<long long> instants;
  for (long long t = -631152000; t < 2524608000; t += 133207) instants.push_back(t);
  instants.push_back(2524607999);  // 2049-12-31 23:59:59
  LogNull log;
  for (long long instant : instants) {
    SCOPED_TRACE(instant);
    ZephalSysTime t, back, parsed;
    t.fromUnixTime64(false, instant);
    StringBuffer iso, utc, rfc;
    t.getIso8601Timestamp(iso);
    ASSERT_EQ(iso.getString(), strftimeAt("%Y%m%dT%H%M%SZ", instant));
    ASSERT_TRUE(t.getAsnUtcDateTime(utc));
    ASSERT_EQ(utc.getString(), strftimeAt("%y%m%d%H%M%SZ", instant));
    ASSERT_TRUE(back.fromAsnUtcDateTime(utc.getString(), log));
    ASSERT_EQ(back.toUnixTime_gmt64(), instant);
    ASSERT_TRUE(t.getRfc822String(rfc));
    ASSERT_EQ(rfc.getString(), strftimeAt("%a, %d %b %Y %H:%M:%S GMT", instant));
    ASSERT_TRUE(parsed.setFromRfc822String(rfc.getString(), log));
    ASSERT_EQ(parsed.toUnixTime_gmt64(), instant);
    ASSERT_FALSE(parsed.m_bLocal);
  }
}

// A local value prints its instant in GMT: ISO 8601 on a copy, UTCTime after
// converting the value itself; RFC 822 keeps the wall clock with its offset.
TEST(TextFormats, LocalValuesPrintInGmt) {
  for (int month = 1; month <= 12; ++month) {
    const ZephalSysTime before = makeTime({2024, month, 7, 9, 5, 3}, true, 250);
    ZephalSysTime local = before;
    tm image = tmOf(2024, month, 7, 9, 5, 3);
    const long long instant = mktime(&image);
    StringBuffer iso, rfc, utc;
    local.getIso8601Timestamp(iso);
    EXPECT_EQ(iso.getString(), strftimeAt("%Y%m%dT%H%M%SZ", instant));
    local.getRfc822String(rfc);
    EXPECT_EQ(rfc.getString(), strftimeAt("%a, %d %b %Y %H:%M:%S %z", instant, true));
    EXPECT_EQ(stateOf(local), stateOf(before));
    local.getAsnUtcDateTime(utc);
    EXPECT_EQ(utc.getString(), strftimeAt("%y%m%d%H%M%SZ", instant));
    EXPECT_EQ(extrasOf(local), "ms=0 gmt flags=110 dst=-1");
  }
}

TEST(TextFormats, YearWidths) {
  const struct { int year; const char* iso; const char* utcTime; } cases[] = {
      {987, "09870307T090503Z", "870307090503Z"},
      {2050, "20500307T090503Z", "500307090503Z"},  // reads back as 1950
      {12345, "123450307T090503Z", "450307090503Z"},
  };
  for (const auto& c : cases) {
    ZephalSysTime t = makeTime({c.year, 3, 7, 9, 5, 3}, false);
    StringBuffer iso, utc;
    t.getIso8601Timestamp(iso);
    t.getAsnUtcDateTime(utc);
    EXPECT_STREQ(iso.getString(), c.iso);
    EXPECT_STREQ(utc.getString(), c.utcTime);
  }
}

TEST(TextFormats, ReadersKeepWhatTheyDoNotRead) {
  LogNull log;
  ZephalSysTime asn = marked(makeTime({2001, 1, 1, 0, 0, 0}, true, 250));
  asn.m_time.wDayOfWeek = 3;
  EXPECT_TRUE(asn.fromAsnUtcDateTime("500307090503Z", log));
  EXPECT_EQ(stateOf(asn), "1950 3 7 9 5 3 3 ms=250 gmt flags=001 dst=-1");  // weekday untouched

  ZephalSysTime x509 = marked(makeTime({2001, 1, 1, 0, 0, 0}, true, 250));
  EXPECT_TRUE(x509.fromX509("20240307090503.123Z", true, log));  // fraction not read
  EXPECT_EQ(stateOf(x509), "2024 3 7 9 5 3 4 ms=250 local flags=001 dst=1");
  EXPECT_TRUE(x509.fromX509("20 40307090503Z", true, log));  // the year stops at the space
  EXPECT_EQ(fieldsOf(x509), (Fields{20, 3, 7, 9, 5, 3, 6}));
  EXPECT_TRUE(x509.fromX509("491231235959Z", false, log));
  EXPECT_EQ(fieldsOf(x509), (Fields{2049, 12, 31, 23, 59, 59, 5}));
}

// Every prefix of a time text, in a buffer of exactly its size: a short text
// is refused without reading past its end and leaves the value alone.
TEST(TextFormats, ShortTextsAreRefusedUntouched) {
  LogNull log;
  const std::string full = "20240307090503Z";
  for (int mode = 0; mode < 3; ++mode) {  // UTCTime, X.509 UTCTime, X.509 GeneralizedTime
    for (size_t n = 0; n <= full.size(); ++n) {
      const std::unique_ptr<char[]> text = exactCopy(full.substr(0, n));
      ZephalSysTime t = makeTime({2001, 2, 3, 4, 5, 6}, true);
      const std::string before = stateOf(t);
      const bool read = mode == 0 ? t.fromAsnUtcDateTime(text.get(), log)
                                  : t.fromX509(text.get(), mode == 2, log);
      EXPECT_EQ(read, n >= (mode == 2 ? 14u : 12u)) << mode << " " << n;
      EXPECT_TRUE(read || stateOf(t) == before) << mode << " " << n;
    }
  }
  ZephalSysTime t;
  EXPECT_FALSE(t.fromAsnUtcDateTime(nullptr, log) || t.fromX509(nullptr, true, log));
  EXPECT_EQ(stateOf(t), kClearedState);
}

// The log record, and RFC 822 appended to an XString.
TEST(TextFormats, LogRecordAndXString) {
  LogRecorder log;
  makeTime({2001, 1, 1, 0, 0, 0}, true).logSysTime("expires", log);
  ZephalSysTime gmt = makeTime({2024, 12, 31, 23, 59, 9}, false);
  gmt.m_bFromUnknownTimezone = true;
  gmt.logSysTime("expires", log);
  EXPECT_EQ(log.render(),
            "expires:\n  localDateTime: 1/1/2001 0:00:00\n"
            "expires:\n  gmtDateTime: 12/31/2024 23:59:09\n  fromUnknownTimezone: 1\n");
  XString x;
  x.appendUtf8("Date: ");
  gmt.getRfc822StringX(x);
  EXPECT_STREQ(x.getUtf8(), "Date: Tue, 31 Dec 2024 23:59:09 GMT");
}
