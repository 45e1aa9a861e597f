// The free-form loader on every form it tells apart and the borders between
// them, against Python's readings (tests/data/loader_cases.tsv).
#include "tests/TestValues.h"

using namespace zptest;

TEST(LoadAnyFormat, Forms) {
  for (const Row& r : readTable("loader_cases.tsv")) {
    const std::string text = unescape(r[0]);
    SCOPED_TRACE("'" + r[0] + "'");
    ZephalSysTime t;
    if (r[2] == "marked") {  // every field and flag a form might keep
      t = marked(makeTime({2001, 2, 3, 4, 5, 6}, true, 250));
      t.m_time.wDayOfWeek = 6;
    }
    StringBuffer input;  // of the text's exact size, a zero byte inside included
    input.appendN(text.data(), static_cast<unsigned>(text.size()));
    const bool loaded = t.loadAnyFormat(r[1] == "1", input);
    EXPECT_EQ(loaded, r[3] == "1");
    EXPECT_EQ(std::string(input.getString(), input.getSize()), text);  // left alone
    if (!loaded) continue;
    EXPECT_EQ(fieldsOf(t), intsOf(r, 4, 7));
    EXPECT_EQ((Fields{t.m_time.wMilliseconds, t.m_bLocal, t.m_bFromUnknownTimezone, t.m_isDst,
                      t.m_bFlagA}),
              intsOf(r, 11, 5));
  }
}

// A text the Atom counts let through but the Atom reader refuses must still
// reach the later forms: here the 15-byte GeneralizedTime shape cannot occur
// (it has '-'), so it ends with the RFC 822 parser, which may refuse it too.
TEST(LoadAnyFormat, RefusedTextsLeaveWhatTheParsersLeft) {
  ZephalSysTime t = makeTime({2001, 2, 3, 4, 5, 6}, true, 250);
  StringBuffer text("Thu, 99-Mar-2024 09:05:03 GMT");
  EXPECT_FALSE(t.loadAnyFormat(false, text));
  EXPECT_EQ(stateOf(t), stateOf(makeTime({2001, 2, 3, 4, 5, 6}, true, 250)));
}
