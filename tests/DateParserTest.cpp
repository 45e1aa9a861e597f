// parseRFC822Date, generateDateRFC822 and AtomDateToSysTime against the
// tables that tests/data/gen_parser_tables.py computes with Python's
// email.utils and datetime.
#include "services/zpDateParser.h"
#include "tests/TestValues.h"

using namespace zptest;

// A value whose every field and flag differs from what a parse leaves.
static ZephalSysTime sentinel() {
  ZephalSysTime t = marked(makeTime({1111, 11, 11, 11, 11, 11}, true, 111));
  t.m_time.wDayOfWeek = 5;
  return t;
}

// Columns 1-9: year month day hour minute second millis weekday unknownZone.
// The parse leaves a GMT reading; the carried flags A and B stay.
static void expectGmtRow(const ZephalSysTime& t, const Row& row) {
  const Fields f = intsOf(row, 1, 9);
  EXPECT_EQ(fieldsOf(t), (Fields{f[0], f[1], f[2], f[3], f[4], f[5], f[7]}));
  EXPECT_EQ(extrasOf(t), "ms=" + row[7] + " gmt flags=00" + row[9] + " dst=-1");
}

TEST(DateParserRfc822, AcceptsTable) {
  for (const Row& row : readTable("rfc822_accept.tsv")) {
    SCOPED_TRACE(row[0]);
    ZephalSysTime t = sentinel();
    LogRecorder log;
    ASSERT_TRUE(_zpDateParser::parseRFC822Date(exactCopy(unescape(row[0])).get(), t, log));
    expectGmtRow(t, row);
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
    EXPECT_EQ(stateOf(t), stateOf(sentinel()));
    ASSERT_EQ(log.lines().size(), 3u);  // one context: a reason, then the text
    EXPECT_TRUE(log.lines()[0].name == "parseRFC822Date" && log.lines()[1].name == "error");
    EXPECT_TRUE(!log.lines()[1].value.empty() && log.lines()[2].value == text);
  }
}

TEST(DateParserRfc822, LogsWhy) {
  ZephalSysTime t;
  LogRecorder log;
  EXPECT_FALSE(_zpDateParser::parseRFC822Date("2024-13-07 09:05:03", t, log));
  EXPECT_EQ(log.render(),
            "parseRFC822Date:\n  error: month out of range\n  text: 2024-13-07 09:05:03\n");
  log.clear();
  EXPECT_FALSE(_zpDateParser::parseRFC822Date(nullptr, t, log));
  EXPECT_EQ(log.lines().size(), 3u);
}

TEST(DateParserRfc822, GeneratesGmt) {
  ZephalSysTime t;
  LogNull log;
  ASSERT_TRUE(_zpDateParser::parseRFC822Date("Fri, 07 Mar 2024 10:05:03 +0100", t, log));
  StringBuffer appended(">"), early, none;
  EXPECT_TRUE(_zpDateParser::generateDateRFC822(t, appended));
  // The day name comes from the date, not from the text read.
  EXPECT_STREQ(appended.getString(), ">Thu, 07 Mar 2024 09:05:03 GMT");
  t = makeTime({987, 1, 2, 3, 4, 5}, false);
  EXPECT_TRUE(_zpDateParser::generateDateRFC822(t, early));
  EXPECT_STREQ(early.getString(), "Tue, 02 Jan 0987 03:04:05 GMT");
  t.m_time.wMonth = 13;  // no name to write: nothing is appended
  EXPECT_FALSE(_zpDateParser::generateDateRFC822(t, none));
  EXPECT_EQ(none.getSize(), 0u);
}

TEST(DateParserAtom, AcceptsTable) {
  for (const Row& row : readTable("atom_accept.tsv")) {
    SCOPED_TRACE(row[0]);
    const StringBuffer text(unescape(row[0]).c_str());
    ZephalSysTime t = sentinel(), again = sentinel();
    int extra = 12345;
    ASSERT_TRUE(_zpDateParser::AtomDateToSysTime(text, t, &extra));
    expectGmtRow(t, row);
    EXPECT_EQ(extra, toInt(row.at(10)));
    EXPECT_TRUE(_zpDateParser::AtomDateToSysTime(text, again, nullptr));
    EXPECT_EQ(stateOf(again), stateOf(t));
  }
}

TEST(DateParserAtom, RejectsTableAndLeavesValue) {
  for (const Row& row : readTable("atom_reject.tsv")) {
    SCOPED_TRACE(row[0]);
    // appendN keeps embedded zero bytes: the buffer's size, not a zero, ends the text.
    const std::string bytes = unescape(row[0]);
    StringBuffer text;
    text.appendN(bytes.data(), static_cast<unsigned>(bytes.size()));
    ZephalSysTime t = sentinel();
    int extra = 12345;
    EXPECT_FALSE(_zpDateParser::AtomDateToSysTime(text, t, &extra));
    EXPECT_EQ(stateOf(t), stateOf(sentinel()));
    EXPECT_EQ(extra, 12345);
  }
}
