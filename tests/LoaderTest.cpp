// The free-form loader on every form it tells apart and the borders between
// them, against Python's readings (tests/data/loader_cases.tsv).
#include <gtest/gtest.h>

#include "services/StringBuffer.h"
#include "tests/TestTables.h"
#include "tests/TestValues.h"
#include "time/ZephalSysTime.h"

using zptest::toInt;

namespace {

// The "marked" starting value: every field and flag a form might keep.
ZephalSysTime markedValue() {
  ZephalSysTime t = zptest::makeTime(2001, 2, 3, 4, 5, 6, true, 250);
  t.m_time.wDayOfWeek = 6;
  t.m_isDst = 1;
  t.m_bFlagA = false;
  t.m_bFromUnknownTimezone = true;
  return t;
}

}  // namespace

TEST(LoadAnyFormat, Forms) {
  for (const zptest::Row& r : zptest::readTable("loader_cases.tsv")) {
    const std::string& text = r[0];
    SCOPED_TRACE("'" + text + "'");
    ZephalSysTime t = r[2] == "marked" ? markedValue() : ZephalSysTime();
    StringBuffer input(text.c_str());
    const bool loaded = t.loadAnyFormat(r[1] == "1", input);
    EXPECT_EQ(loaded, r[3] == "1");
    EXPECT_STREQ(input.getString(), text.c_str());  // the caller's text is left alone
    if (!loaded) continue;
    zptest::expectFields(t, int(toInt(r[4])), int(toInt(r[5])), int(toInt(r[6])),
                         int(toInt(r[7])), int(toInt(r[8])), int(toInt(r[9])), int(toInt(r[10])));
    EXPECT_EQ(t.m_time.wMilliseconds, toInt(r[11]));
    EXPECT_EQ(t.m_bLocal, r[12] == "1");
    EXPECT_EQ(t.m_bFromUnknownTimezone, r[13] == "1");
    EXPECT_EQ(t.m_isDst, toInt(r[14]));
    EXPECT_EQ(t.m_bFlagA, r[15] == "1");
  }
}

// A text the Atom counts let through but the Atom reader refuses must still
// reach the later forms: here the 15-byte GeneralizedTime shape cannot occur
// (it has '-'), so it ends with the RFC 822 parser, which may refuse it too.
TEST(LoadAnyFormat, RefusedTextsLeaveWhatTheParsersLeft) {
  ZephalSysTime t = zptest::makeTime(2001, 2, 3, 4, 5, 6, true, 250);
  StringBuffer text("Thu, 99-Mar-2024 09:05:03 GMT");
  EXPECT_FALSE(t.loadAnyFormat(false, text));
  zptest::expectFields(t, 2001, 2, 3, 4, 5, 6, -1);
  EXPECT_TRUE(t.m_bLocal);
  EXPECT_EQ(t.m_time.wMilliseconds, 250);
}
