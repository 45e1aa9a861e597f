#include "services/StringBuffer.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

static bool isInline(const StringBuffer& sb) {
  const char* self = reinterpret_cast<const char*>(&sb);
  return sb.getString() >= self && sb.getString() < self + sizeof sb;
}

TEST(StringBuffer, GrowsPastTheInlineBytesAndBack) {
  StringBuffer sb;
  std::string model;
  for (char c = 0; model.size() < 300; model += c) {
    ASSERT_EQ(isInline(sb), model.size() < 64) << model.size();
    c = static_cast<char>('a' + model.size() % 26);
    ASSERT_TRUE(sb.appendChar(c));
    ASSERT_EQ(sb.getString(), model + c);
  }
  StringBuffer copy(sb);
  sb.chopAtFirstChar('c');
  copy.append(sb);
  EXPECT_EQ(copy.getString(), model + "ab");
  copy = sb;
  EXPECT_STREQ(copy.getString(), "ab");
  sb.clear();
  EXPECT_TRUE(sb.lastChar() == '\0' && sb.charAt(0) == '\0');
}

TEST(StringBuffer, AppendsItselfAcrossTheMoveToTheHeap) {
  const std::string forty = "0123456789012345678901234567890123456789";
  StringBuffer sb(forty.c_str());
  ASSERT_TRUE(sb.append(sb));
  ASSERT_TRUE(sb.appendN(sb.getString() + 1, 3));
  ASSERT_TRUE(sb.append(sb.getString()));
  const std::string once = forty + forty + "123";
  EXPECT_EQ(sb.getString(), once + once);
}

// Each edit with what it returns (0 for those that return nothing).
TEST(StringBuffer, Edits) {
  using Edit = int (*)(StringBuffer&);
  const Edit dashes = [](StringBuffer& s) { return int(s.countCharOccurances('-')); };
  const std::string manyDashes(300, '-');
  const std::string mixed = manyDashes + "x-x" + manyDashes + "-";
  const struct { const char* text; Edit edit; std::string expected; int result; } rows[] = {
      {"2024-03-07T09:05:03-05:00", dashes, "2024-03-07T09:05:03-05:00", 3},
      {"-------", dashes, "-------", 7},
      {"--------", dashes, "--------", 8},
      {"x--------", dashes, "x--------", 8},
      {"Thu, 07 Mar 2024 09:05:03 GMT", dashes, "Thu, 07 Mar 2024 09:05:03 GMT", 0},
      {mixed.c_str(), dashes, mixed, 602},
      {" \t a  b \r\n", [](StringBuffer& s) { return s.trim2(), 0; }, "a  b", 0},
      {"\r\n", [](StringBuffer& s) { return s.trim2(), 0; }, "", 0},
      {"  a \t\n b  c \t", [](StringBuffer& s) { return s.trimInsideSpaces(), 0; }, "  a b c \t", 0},
      {"xDATEy", [](StringBuffer& s) { return int(s.replaceFirstOccurance("date", "Day", true)); }, "xDayy", 1},
      {"/Date(", [](StringBuffer& s) { return int(s.replaceFirstOccurance("date", "", false)); }, "/Date(", 0},
      {"aXa", [](StringBuffer& s) { return int(s.replaceFirstOccurance("a", std::string(70, 'b').c_str(), false)); },
       std::string(70, 'b') + "Xa", 1},
      {"abc", [](StringBuffer& s) { return int(s.replaceFirstOccurance("b", s.getString(), false)); }, "aabcc", 1},
      {"abc", [](StringBuffer& s) { return int(s.replaceFirstOccurance("", "x", false)); }, "abc", 0},
      {"/17(/", [](StringBuffer& s) { return int(s.removeCharOccurances('/')); }, "17(", 2},
      {"17+01-05", [](StringBuffer& s) { return s.chopAtFirstChar('-'), 0; }, "17+01", 0},
      {"abc", [](StringBuffer& s) { return s.chopAtFirstChar('z'), 0; }, "abc", 0},
  };
  for (const auto& row : rows) {
    StringBuffer sb(row.text);
    EXPECT_EQ(row.edit(sb), row.result) << row.text;
    EXPECT_EQ(sb.getString(), row.expected) << row.text;
  }
}

TEST(StringBuffer, Numbers) {
  const struct { const char* text; unsigned u; int64_t i; bool digitsOnly, signAllowed; } rows[] = {
      {"1700000000", 1700000000, 1700000000, true, true},
      {"", 0, 0, false, false},
      {"+", 0, 0, false, false},
      {" \t42abc", 42, 42, false, false},
      {"12 ", 12, 12, false, false},
      {"1-2", 1, 1, false, false},
      {"+7", 7, 7, false, true},
      {"-5", 0, -5, false, true},
      {"4294967296", UINT_MAX, 4294967296, true, true},
      {"9223372036854775808", UINT_MAX, INT64_MAX, true, true},
      {"-9223372036854775808", 0, INT64_MIN, false, true},
      {"-99999999999999999999999", 0, INT64_MIN, false, true},
  };
  for (const auto& row : rows) {
    const StringBuffer sb(row.text);
    EXPECT_EQ(sb.uintValue(), row.u) << row.text;
    EXPECT_EQ(sb.int64Value(), row.i) << row.text;
    EXPECT_EQ(sb.isDecimalNumber(true), row.digitsOnly) << row.text;
    EXPECT_EQ(sb.isDecimalNumber(false), row.signAllowed) << row.text;
  }
  StringBuffer embedded;
  embedded.appendN("1\0002", 3);
  EXPECT_FALSE(embedded.isDecimalNumber(true));
}
