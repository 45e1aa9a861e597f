// Print and scan against snprintf and sscanf, run here as the oracle over
// every width, flag and capacity.
#include "services/zpStdio.h"

#include <climits>

#include "tests/TestValues.h"

// "%05w" for ours and "%05lu" for the C library; width 0 means none.
static std::string conversion(bool zero, int width, const char* type) {
  return std::string("%") + (zero ? "0" : "") + (width > 0 ? std::to_string(width) : "") + type;
}

// "T%05wZ" against "T%05luZ" (%d against %ld) at every capacity, into blocks of
// exactly that size for ASan.
static void expectPrintsAsC(bool zero, int width, const char* type, const void* arg, long value) {
  const std::string ours = "T" + conversion(zero, width, type) + "Z";
  const std::string c = "T" + conversion(zero, width, *type == 'w' ? "lu" : "ld") + "Z";
  const int length = std::snprintf(nullptr, 0, c.c_str(), value);
  for (int capacity = 0; capacity <= length + 1; ++capacity) {
    std::unique_ptr<char[]> out(new char[capacity]), want(new char[capacity]);
    const unsigned n = _zpStdio::_zpSprintf6(out.get(), capacity, ours.c_str(), arg, nullptr,
                                             nullptr, nullptr, nullptr, nullptr);
    if (capacity == 0) continue;
    std::snprintf(want.get(), capacity, c.c_str(), value);
    EXPECT_STREQ(out.get(), want.get()) << ours << " capacity " << capacity;
    EXPECT_EQ(n, std::strlen(want.get()));
  }
}

TEST(StdioPrint, MatchesSnprintfAtEveryWidthAndCapacity) {
  for (bool zero : {false, true}) {
    for (int width = 0; width <= 9; ++width) {
      for (uint16_t v : {0, 9, 10, 99, 100, 9999, 10000, 65535}) expectPrintsAsC(zero, width, "w", &v, v);
      for (int32_t v : {INT_MIN, -100, -1, 0, 7, INT_MAX}) expectPrintsAsC(zero, width, "d", &v, v);
    }
  }
}

// Unknown conversions are copied as written and take no argument; a null
// argument is copied too but keeps its place.
TEST(StdioPrint, UnknownConversions) {
  const uint16_t w[6] = {987, 3, 7, 9, 5, 3};
  const struct { const char* format; const char* expected; } rows[] = {
      {"%w%w%w%w%w%w%w", "98737953%w"},  // no seventh argument
      {"%s%x%%%w", "%s%x%987"},
      {"%10w|%00w|%0", "%10w|%00w|%0"},
      {"%1%w%", "%1987%"},
  };
  char out[80];
  for (const auto& row : rows) {
    _zpStdio::_zpSprintf6(out, sizeof out, row.format, &w[0], &w[1], &w[2], &w[3], &w[4], &w[5]);
    EXPECT_STREQ(out, row.expected) << row.format;
  }
  const int32_t d = -7;
  _zpStdio::_zpSprintf6(out, sizeof out, "%w.%02d", nullptr, &d, nullptr, nullptr, nullptr, nullptr);
  EXPECT_STREQ(out, "%w.-7");
}

TEST(StdioScan, MatchesSscanf) {
  const char* texts[] = {"0", "-1", "2147483647", "-2147483648", "+12", "  42x", "\t-7 8", "0071234",
                         "abc", "", "-", "+-1", "1-2", "20240307 090503Z", "2024-03", " 2024 - 03", "x5"};
  std::vector<std::string> formats = {"%d%d", "%d - %d", "%04d-%02d", "x%d", "%%%d"};
  for (bool zero : {false, true}) {
    for (int width = 1; width <= 9; ++width) formats.push_back(conversion(zero, width, "d") + "%d");
  }
  for (const std::string& f : formats) {
    for (const char* text : texts) {
      int want[2] = {-99, -99};
      int32_t got[2] = {-99, -99};
      const int count = std::sscanf(text, f.c_str(), &want[0], &want[1]);
      EXPECT_EQ(_zpStdio::_zpSscanf6(text, f.c_str(), &got[0], &got[1], nullptr, nullptr, nullptr, nullptr),
                count == EOF ? 0 : count) << f << " on \"" << text << '"';
      EXPECT_TRUE(got[0] == want[0] && got[1] == want[1]) << f << " on \"" << text << '"';
    }
  }
}

TEST(StdioScan, UnknownsAndOverflow) {
  const struct { const char* text; const char* format; int count; int32_t value; } rows[] = {
      {"7", "%x%d", 0, 42},  // the target keeps its value
      {"7 8", "%d %d", 1, 7},  // one target only
      {"99999999999", "%d", 1, INT_MAX},
      {"-99999999999", "%d", 1, INT_MIN},
  };
  for (const auto& row : rows) {
    int32_t z = 42;
    EXPECT_EQ(_zpStdio::_zpSscanf1(row.text, row.format, &z), row.count) << row.text;
    EXPECT_EQ(z, row.value) << row.text;
  }
}

// Every prefix in a block of exactly its size, so ASan sees a read past the zero.
TEST(StdioHelpers, UIntValueNStopsAtTheEnd) {
  for (const std::string text : {"0123456789", "2024x07", "-5"}) {
    for (size_t length = 0; length <= text.size(); ++length) {
      const std::unique_ptr<char[]> block = zptest::exactCopy(text.substr(0, length));
      for (unsigned count = 0; count <= length + 2; ++count) {
        const std::string read = text.substr(0, std::min<size_t>(count, length));
        const size_t digits = std::min(read.find_first_not_of("0123456789"), read.size());
        unsigned scratch = 99;
        EXPECT_EQ(zpUIntValueN(block.get(), count, scratch), std::strtoul(read.substr(0, digits).c_str(), nullptr, 10));
        EXPECT_EQ(scratch, digits);
      }
    }
  }
  unsigned scratch = 0;
  EXPECT_EQ(zpUIntValueN("99999999999", 11, scratch), UINT_MAX);
}

TEST(StdioHelpers, StrChrAndToUnsignedLong) {
  const char* text = "1700+0100-05";
  for (int ch : {'+', '-', '1', 'z', '\0'}) EXPECT_EQ(zpStrChr(text, ch), std::strchr(text, ch));
  EXPECT_EQ(zpStrChr(static_cast<const char*>(nullptr), '+'), nullptr);
  const struct { long long in; unsigned long out; } counts[] = {
      {LLONG_MIN, 0}, {-1, 0}, {0, 0}, {4294967295, 4294967295}, {LLONG_MAX, 9223372036854775807},
  };
  for (const auto& c : counts) EXPECT_EQ(zp64::toUnsignedLong(c.in), c.out) << c.in;
}
