// parseRFC822Date, generateDateRFC822 and AtomDateToSysTime against the
// tables that tests/data/gen_parser_tables.py computes with Python's
// email.utils and datetime.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "tests/TestTables.h"
#include "time/ZephalSysTime.h"

namespace {

using zptest::readTable;
using zptest::Row;
using zptest::toInt;

// The tables' C escapes: \t \r \n \\ \xHH.
std::string unescape(const std::string& s) {
  std::string out;
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] != '\\') {
      out += s[i];
    } else if (s[++i] == 'x') {
      out += static_cast<char>(std::stoi(s.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      out += s[i] == 't' ? '\t' : s[i] == 'r' ? '\r' : s[i] == 'n' ? '\n' : s[i];
    }
  }
  return out;
}

// The text in a heap block of exactly its size, so that reading past the
// terminating zero is an AddressSanitizer error.
std::unique_ptr<char[]> exactCopy(const std::string& text) {
  std::unique_ptr<char[]> p(new char[text.size() + 1]);
  std::memcpy(p.get(), text.c_str(), text.size() + 1);
  return p;
}

// A value whose every field and flag differs from what a parse leaves.
ZephalSysTime sentinel() {
  ZephalSysTime t;
  t.m_time = ZephalCalendarFields{1111, 11, 5, 11, 11, 11, 11, 111};
  t.m_bLocal = true;
  t.m_bFlagA = false;
  t.m_bFlagB = false;
  t.m_bFromUnknownTimezone = true;
  t.m_isDst = 7;
  return t;
}

bool sameValue(const ZephalSysTime& a, const ZephalSysTime& b) {
  return std::memcmp(&a.m_time, &b.m_time, sizeof a.m_time) == 0 && a.m_bLocal == b.m_bLocal &&
         a.m_bFlagA == b.m_bFlagA && a.m_bFlagB == b.m_bFlagB &&
         a.m_bFromUnknownTimezone == b.m_bFromUnknownTimezone && a.m_isDst == b.m_isDst;
}

// Columns from `first`: year month day hour minute second millis weekday unknownZone.
void expectGmtRow(const ZephalSysTime& t, const Row& row, size_t first) {
  const ZephalCalendarFields& f = t.m_time;
  const int got[] = {f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond, f.wMilliseconds,
                     f.wDayOfWeek, t.m_bFromUnknownTimezone};
  for (size_t i = 0; i < 9; ++i) EXPECT_EQ(got[i], toInt(row[first + i])) << "column " << first + i;
  EXPECT_FALSE(t.m_bLocal);
  EXPECT_EQ(t.m_isDst, -1);
  // The carried flags stay as they were.
  EXPECT_FALSE(t.m_bFlagA);
  EXPECT_FALSE(t.m_bFlagB);
}

TEST(DateParserRfc822, AcceptsTable) {
  for (const Row& row : readTable("rfc822_accept.tsv")) {
    ASSERT_EQ(row.size(), 10u);
    const std::string text = unescape(row[0]);
    SCOPED_TRACE(row[0]);
    ZephalSysTime t = sentinel();
    LogRecorder log;
    ASSERT_TRUE(_zpDateParser::parseRFC822Date(exactCopy(text).get(), t, log));
    expectGmtRow(t, row, 1);
    EXPECT_TRUE(log.lines().empty());
  }
}

TEST(DateParserRfc822, RejectsTableAndLeavesValue) {
  for (const Row& row : readTable("rfc822_reject.tsv")) {
    const std::string text = unescape(row[0]);
    SCOPED_TRACE(row[0] + "  (" + row[1] + ")");
    ZephalSysTime t = sentinel();
    LogRecorder log;
    EXPECT_FALSE(_zpDateParser::parseRFC822Date(exactCopy(text).get(), t, log));
    EXPECT_TRUE(sameValue(t, sentinel()));
    // One context holding the reason and the text.
    ASSERT_EQ(log.lines().size(), 3u);
    EXPECT_EQ(log.lines()[0].name, "parseRFC822Date");
    EXPECT_EQ(log.lines()[1].name, "error");
    EXPECT_FALSE(log.lines()[1].value.empty());
    EXPECT_EQ(log.lines()[2].value, text);
  }
}

TEST(DateParserRfc822, LogsWhy) {
  ZephalSysTime t;
  LogRecorder log;
  EXPECT_FALSE(_zpDateParser::parseRFC822Date("2024-13-07 09:05:03", t, log));
  EXPECT_EQ(log.render(),
            "parseRFC822Date:\n"
            "  error: month out of range\n"
            "  text: 2024-13-07 09:05:03\n");
  log.clear();
  EXPECT_FALSE(_zpDateParser::parseRFC822Date(nullptr, t, log));
  EXPECT_EQ(log.lines().size(), 3u);
}

TEST(DateParserRfc822, GeneratesGmt) {
  ZephalSysTime t;
  LogNull log;
  ASSERT_TRUE(_zpDateParser::parseRFC822Date("Fri, 07 Mar 2024 10:05:03 +0100", t, log));
  StringBuffer out;
  out.append(">");
  EXPECT_TRUE(_zpDateParser::generateDateRFC822(t, out));
  // The day name comes from the date, not from the text read.
  EXPECT_STREQ(out.getString(), ">Thu, 07 Mar 2024 09:05:03 GMT");

  t.m_time = ZephalCalendarFields{987, 1, 0, 2, 3, 4, 5, 0};
  out.clear();
  EXPECT_TRUE(_zpDateParser::generateDateRFC822(t, out));
  EXPECT_STREQ(out.getString(), "Tue, 02 Jan 0987 03:04:05 GMT");

  t.m_time.wMonth = 13;  // no name to write: nothing is appended
  out.clear();
  EXPECT_FALSE(_zpDateParser::generateDateRFC822(t, out));
  EXPECT_EQ(out.getSize(), 0u);
}

// A local value: its own reading and the zone's offset at that instant, so
// the text read back names the instant toGmtSysTime gives, in any zone.
TEST(DateParserRfc822, GeneratesLocalWithOffset) {
  const bool cet = zptest::currentTz() == "CET-1CEST,M3.5.0,M10.5.0/3";
  for (uint16_t month : {1, 7}) {
    ZephalSysTime t;
    t.m_time = ZephalCalendarFields{2024, month, 0, 15, 12, 0, 0, 0};
    t.m_bLocal = true;
    StringBuffer out;
    ASSERT_TRUE(_zpDateParser::generateDateRFC822(t, out));
    if (cet) {
      EXPECT_STREQ(out.getString(), month == 1 ? "Mon, 15 Jan 2024 12:00:00 +0100"
                                               : "Mon, 15 Jul 2024 12:00:00 +0200");
    }
    ZephalSysTime back, gmt;
    LogNull log;
    ASSERT_TRUE(_zpDateParser::parseRFC822Date(out.getString(), back, log)) << out.getString();
    gmt.copyFrom(t);
    gmt.toGmtSysTime();
    EXPECT_EQ(std::memcmp(&back.m_time, &gmt.m_time, 6 * sizeof(uint16_t)), 0) << out.getString();
    EXPECT_TRUE(t.m_bLocal);  // the value itself is not converted
  }
}

TEST(DateParserAtom, AcceptsTable) {
  for (const Row& row : readTable("atom_accept.tsv")) {
    ASSERT_EQ(row.size(), 11u);
    SCOPED_TRACE(row[0]);
    const StringBuffer text(unescape(row[0]).c_str());
    ZephalSysTime t = sentinel();
    int extra = 12345;
    ASSERT_TRUE(_zpDateParser::AtomDateToSysTime(text, t, &extra));
    expectGmtRow(t, row, 1);
    EXPECT_EQ(extra, toInt(row[10]));
    ZephalSysTime again = sentinel();
    EXPECT_TRUE(_zpDateParser::AtomDateToSysTime(text, again, nullptr));
    EXPECT_TRUE(sameValue(t, again));
  }
}

TEST(DateParserAtom, RejectsTableAndLeavesValue) {
  for (const Row& row : readTable("atom_reject.tsv")) {
    SCOPED_TRACE(row[0]);
    const std::string bytes = unescape(row[0]);
    // appendN keeps embedded zero bytes, and an exactly-sized copy would not
    // help here: the buffer's size, not a zero, ends the text.
    StringBuffer text;
    text.appendN(bytes.data(), static_cast<unsigned>(bytes.size()));
    ZephalSysTime t = sentinel();
    int extra = 12345;
    EXPECT_FALSE(_zpDateParser::AtomDateToSysTime(text, t, &extra));
    EXPECT_TRUE(sameValue(t, sentinel()));
    EXPECT_EQ(extra, 12345);
  }
}

}  // namespace
