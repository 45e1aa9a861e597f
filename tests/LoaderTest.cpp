// The free-form loader on every form it tells apart and the borders between
// them, against Python's readings (tests/data/loader_cases.tsv).
#include "fuzz/LoaderSteps.h"
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

// Texts for the JSON and decimal forms made from parts: counts around the
// 32- and 64-bit limits, signs, zone suffixes of every length, blanks,
// escapes, other brackets, and a zero byte at each place.
std::vector<std::string> zptest::jsonAndDecimalTexts() {
  const char* const counts[] = {"",     "0",          "1",     "999",  "1000", "0001700000000000",
                                "1700000000999", "4294967295000", "4294967296000",
                                "253402300799000", "999999999999999999", "9223372036854775807",
                                "9223372036854775808", "99999999999999999999999"};
  const char* const signs[] = {"", "-", "+", "--", " -", "- "};
  const char* const zones[] = {"", "+0100", "-0500", "+0530", "-0530", "+01", "-1", "+99999",
                               "+", "-", "+-0100", "-+0100", " +0100", "+01 00", "+abcd"};
  const char* const shapes[] = {"/Date(%)/", " /Date(%)/\t", "/Date( % )/", "Date(%)/",
                                "\\/Date(%)\\/", "/Date(%)/x", "x/Date(%)/", "/Date(%)",
                                "/Date(%)//", "/DateDate(%)/", "/Date((%))/", "%"};
  std::vector<std::string> texts;
  for (const char* shape : shapes) {
    for (const char* sign : signs) {
      for (const char* count : counts) {
        for (const char* zone : zones) {
          std::string text = shape;
          text.replace(text.find('%'), 1, std::string(sign) + count + zone);
          texts.push_back(text);
        }
      }
    }
  }
  const size_t made = texts.size();
  for (size_t i = 0; i < made; i += 7) {
    for (size_t at = 0; at <= texts[i].size(); at += 3) {
      texts.push_back(texts[i].substr(0, at) + '\0' + texts[i].substr(at));
    }
  }
  return texts;
}

// The JSON and decimal forms read as quickly as possible give what the
// steps give one by one (fuzz/LoaderSteps.h), on every field and flag, for
// the table's texts and the made ones alike.
TEST(LoadAnyFormat, JsonAndDecimalAsTheStepsRead) {
  std::vector<std::string> texts = jsonAndDecimalTexts();
  for (const Row& r : readTable("loader_cases.tsv")) texts.push_back(unescape(r[0]));
  int compared = 0;
  for (const std::string& text : texts) {
    StringBuffer input;
    input.appendN(text.data(), static_cast<unsigned>(text.size()));
    for (const bool local : {false, true}) {
      ZephalSysTime steps = marked(makeTime({2001, 2, 3, 4, 5, 6}, true, 250));
      ZephalSysTime loaded = steps;
      if (!zpsteps::loadJsonOrDecimal(local, input, steps)) continue;
      ++compared;
      EXPECT_TRUE(loaded.loadAnyFormat(local, input));
      EXPECT_EQ(stateOf(loaded), stateOf(steps)) << ::testing::PrintToString(text);
    }
  }
  EXPECT_GT(compared, 20000);
}
