// Runs the built zpdate as a user runs it, over the cases of
// tests/data/zpdate_cases.tsv (expected output from GNU date and Python,
// written by gen_zpdate_tables.py), under the TZ of the CTest entry. Every
// line of JSON output is read back by a strict parser.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/TestTables.h"
#include "tests/tool/ZpdateRun.h"

#ifdef ZP_HAVE_NLOHMANN_JSON
#include <nlohmann/json.hpp>
#endif

namespace {

using zptest::Outcome;

// A table field: C escapes undone; "-" is empty.
std::string field(const std::string& text) { return text == "-" ? "" : zptest::unescape(text); }

// Runs zpdate with `args`; standard input from `input`, or from the file
// `input` names after an '@'; standard output on /dev/full when `full`.
Outcome zpdate(const std::vector<std::string>& args, const std::string& input, bool full) {
  return zptest::runZpdate(args, input, {}, "", full);
}

void expectJsonLines(const std::string& out, const std::string& where) {
#ifdef ZP_HAVE_NLOHMANN_JSON
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(nlohmann::json::accept(line)) << where << "\n" << line;
  }
#else
  (void)out, (void)where;
  GTEST_SKIP() << "nlohmann-json3-dev is not installed: JSON lines not parsed";
#endif
}

}  // namespace

TEST(Zpdate, Cases) {
  int ran = 0;
  for (const zptest::Row& row : zptest::readTable("zpdate_cases.tsv")) {
    if (row[0] != "*" && row[0] != zptest::currentTz()) continue;
#ifndef ZP_ZPDATE_NAMED_ZONES
    const auto namesZone = [](const std::string& a) { return a.find("zone=") != std::string::npos; };
    if (std::any_of(row.begin() + 5, row.end(), namesZone)) continue;
#endif
    std::vector<std::string> args;
    for (size_t i = 5; i < row.size(); ++i) args.push_back(field(row[i]));
    const std::string out = field(row[3]);
    const Outcome r = zpdate(args, field(row[2]), out == "!full");
    std::string where = "zpdate";
    for (size_t i = 5; i < row.size(); ++i) where += " " + row[i];
    EXPECT_EQ(r.status, std::stoi(row[1])) << where << "\n" << r.err;
    if (out != "*" && out != "!full") {
      EXPECT_EQ(r.out, out) << where;
    }
    EXPECT_EQ(r.err, field(row[4])) << where;
    if (std::find(args.begin(), args.end(), "--json") != args.end()) expectJsonLines(r.out, where);
    ++ran;
  }
  EXPECT_GT(ran, 150);
}

// Lines of 4,090 to 4,096 bytes (the longest allowed), some ending in CRLF:
// each refill of the reader's buffer falls inside one of them. Lines of
// 4,097 bytes and of more than the buffer holds are refused, and the lines
// after them still convert. Runs of short lines between them, bad ones and
// CRLF among them, fill blocks of many lines. On any number of threads the
// output, the messages with their line numbers and the status are those of
// one thread.
TEST(Zpdate, LongLinesAcrossRefillsOnAnyNumberOfThreads) {
  const std::string date = "Thu, 07 Mar 2024 09:05:03 GMT (";
  const char* const shortLines[][2] = {{"1700000000\r\n", "20231114T221320Z\n"},
                                       {"nope\n", "\n"},
                                       {"/Date(1700000000000+0100)/\r\n", "20231114T211320Z\n"},
                                       {"2024-03-07T09:05:03Z\n", "20240307T090503Z\n"}};
  std::string input, expected, messages;
  unsigned long line = 0;
  for (int i = 0; i < 120; ++i) {
    const bool tooLong = i == 60 || i == 90;
    const size_t size = i == 60 ? 4097 : i == 90 ? 100000 : 4090 + i % 7;
    input += date + std::string(size - date.size() - 1, 'x') + ")" + (i % 3 ? "\n" : "\r\n");
    expected += tooLong ? "\n" : "20240307T090503Z\n";
    if (tooLong) {
      messages += "zpdate: line " + std::to_string(line + 1) + ": line too long (over 4096 bytes)\n";
    }
    ++line;
    for (int j = 0; i % 10 == 0 && j < 2000; ++j, ++line) {
      input += shortLines[j % 4][0];
      expected += shortLines[j % 4][1];
      if (j % 4 == 1) {
        messages += "zpdate: line " + std::to_string(line + 1) +
                    ": 'nope': not a date: unknown month name at byte 0\n";
      }
    }
  }
  std::ofstream(::testing::TempDir() + "zpdate.threads.in", std::ios::binary) << input;
  for (const char* jobs : {"-j1", "-j2", "-j3", "--jobs=8"}) {
    const Outcome r = zpdate({jobs, "-f", ::testing::TempDir() + "zpdate.threads.in"}, "", false);
    EXPECT_EQ(r.status, 1) << jobs;
    EXPECT_EQ(r.out, expected) << jobs;
    EXPECT_EQ(r.err, messages) << jobs;
  }
  const Outcome piped = zptest::runZpdate({"-j2"}, input, {zptest::Stdin::kPipe});  // a stream
  EXPECT_EQ(piped.out, expected);
  EXPECT_EQ(piped.err, messages);
  EXPECT_EQ(zpdate({"-j0", "-f", "-"}, "", false).status, 2);
}
