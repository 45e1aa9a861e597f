// The strict reader against Python's instants (tests/data/read_date_cases.tsv)
// and against the loader, whose forms and tests it shares.
#include "fuzz/LoaderSteps.h"
#include "tests/TestValues.h"
#include <string_view>
#include <vector>

#include "time/ZephalText.h"

using namespace zptest;

namespace {

const std::map<std::string, ZephalTextForm> kForms = {
    {"json", ZephalTextForm::kJson},           {"unix", ZephalTextForm::kUnixSeconds},
    {"utctime", ZephalTextForm::kUtcTime},     {"generalized", ZephalTextForm::kGeneralized},
    {"fraction", ZephalTextForm::kGeneralizedFraction},
    {"parser", ZephalTextForm::kDateParser},  {"none", ZephalTextForm::kNone},
};

// Unix milliseconds of a GMT value read to the millisecond.
long long millisOf(const ZephalSysTime& t) {
  const ZephalCalendarFields& f = t.m_time;
  return timegmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond) * 1000 +
         f.wMilliseconds;
}

}  // namespace

TEST(ReadDate, Table) {
  for (const Row& r : readTable("read_date_cases.tsv")) {
    const std::string text = unescape(r[1]);
    SCOPED_TRACE("'" + r[1] + "'");
    ZephalSysTime t = marked(makeTime({2001, 2, 3, 4, 5, 6}, true, 250));
    const std::string before = stateOf(t);
    ZephalTextError error;
    const bool read = zpReadDate(text, {}, t, error);
    if (r[0] == "read" || r[2] == "-") {
      ASSERT_TRUE(read) << error.reason << " at byte " << error.byte;
      EXPECT_FALSE(t.m_bLocal);
      if (r[0] == "read") {
        EXPECT_EQ(millisOf(t), toInt(r[2]));
        EXPECT_EQ(t.m_bFromUnknownTimezone, r[3] == "1");
      }
      continue;
    }
    ASSERT_FALSE(read);
    EXPECT_EQ(error.form, kForms.at(r[2]));
    EXPECT_STREQ(error.reason, r[3].c_str());
    EXPECT_EQ(error.byte, static_cast<size_t>(toInt(r[4])));
    EXPECT_EQ(stateOf(t), before);  // a refusal leaves the value alone
  }
}

TEST(ReadDate, LongTextsAndLocalSeconds) {
  ZephalSysTime t;
  ZephalTextError error;
  EXPECT_FALSE(zpReadDate(std::string(kZephalMaxDateText + 1, ' '), {}, t, error));
  EXPECT_EQ(error.byte, kZephalMaxDateText);
  ZephalTextOptions local;
  local.localSeconds = true;
  ASSERT_TRUE(zpReadDate("1700000000", local, t, error));
  EXPECT_TRUE(t.m_bLocal);  // marked, not shifted
  EXPECT_EQ(fieldsOf(t, 6), (Fields{2023, 11, 14, 22, 13, 20}));
}

// Wherever the strict reader reads a text, the loader reads it to the same
// second: both choose the form by the same tests. The texts are the loader
// table's and the JSON and decimal texts built from parts; JSON counts before
// 1970 are left out, as the loader rounds them toward 1970.
TEST(ReadDate, AgreesWithTheLoader) {
  std::vector<std::string> texts;
  for (const Row& r : readTable("loader_cases.tsv")) texts.push_back(unescape(r[0]));
  for (const std::string& text : jsonAndDecimalTexts()) texts.push_back(text);
  int read = 0;
  for (const std::string& text : texts) {
    SCOPED_TRACE("'" + text + "'");
    ZephalSysTime strict, loaded;
    ZephalTextError error;
    if (!zpReadDate(text, {}, strict, error)) continue;
    const size_t open = text.find("Date(");
    if (open != std::string::npos && text[text.find_first_not_of(' ', open + 5)] == '-') continue;
    ++read;
    StringBuffer input;
    input.appendN(text.data(), static_cast<unsigned>(text.size()));
    ASSERT_TRUE(loaded.loadAnyFormat(false, input));
    EXPECT_EQ(fieldsOf(loaded, 6), fieldsOf(strict, 6));
  }
  EXPECT_GT(read, 100);
}

// The caller's layouts come first, in order, then the free-form reader;
// instants from glibc's strptime on the layout that should read the text.
TEST(ReadDate, LayoutsComeFirst) {
  const struct {
    const char* text;
    std::vector<std::string_view> layouts;
    const char* oracleLayout;  // null: refused
  } cases[] = {
      {"07/03/2024 14:05", {"%d/%m/%Y %H:%M"}, "%d/%m/%Y %H:%M"},
      {"07/03/2024 14:05", {"%m/%d/%Y %H:%M", "%d/%m/%Y %H:%M"}, "%m/%d/%Y %H:%M"},
      {"13/03/2024", {"%m/%d/%Y"}, "%d/%m/%Y"},  // no layout reads it; the text settles it
      {"2024-03-07T09:05:03Z", {"%d.%m.%Y"}, "%Y-%m-%dT%H:%M:%SZ"},
      {"07.03.2024 @", {"%d.%m.%Y @%H", "%d.%m.%Y"}, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    ZephalTextOptions options;
    options.layouts = c.layouts.data();
    options.layoutCount = c.layouts.size();
    ZephalSysTime t;
    ZephalTextError error;
    const bool read = zpReadDate(c.text, options, t, error);
    ASSERT_EQ(read, c.oracleLayout != nullptr) << (error.reason ? error.reason : "");
    if (!read) {
      EXPECT_EQ(error.form, ZephalTextForm::kLayout);  // the first layout read furthest
      EXPECT_EQ(error.byte, 12u);
      continue;
    }
    tm want{};
    ASSERT_NE(strptime(c.text, c.oracleLayout, &want), nullptr);
    EXPECT_EQ(millisOf(t), static_cast<long long>(timegm(&want)) * 1000);
  }
}
