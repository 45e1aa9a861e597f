// Reads the expected-value tables in tests/data/: tab-separated rows, '#'
// starts a comment line. Each table names the script that generated it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zptest {

using Row = std::vector<std::string>;

// Rows of tests/data/<name>; fails the calling test when the file is missing.
inline std::vector<Row> readTable(const std::string& name) {
  std::vector<Row> rows;
  std::ifstream in(std::string(ZP_TEST_DATA_DIR) + "/" + name);
  EXPECT_TRUE(in.good()) << "missing table " << name;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);  // no table ends a row with an empty field
    rows.emplace_back();
    for (std::string field; std::getline(fields, field, '\t');) rows.back().push_back(field);
  }
  EXPECT_FALSE(rows.empty()) << "empty table " << name;
  return rows;
}

// A text field's C escapes undone: \t \r \n \\ \xHH.
inline std::string unescape(const std::string& s) {
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

inline int64_t toInt(const std::string& field) { return std::stoll(field); }

// n integer columns of a row, from column `at` on.
inline std::vector<int> intsOf(const Row& row, size_t at, size_t n) {
  std::vector<int> out;
  for (size_t i = at; i < at + n; ++i) out.push_back(static_cast<int>(toInt(row.at(i))));
  return out;
}

// The TZ of this run, "" when unset.
inline std::string currentTz() {
  const char* tz = std::getenv("TZ");
  return tz ? tz : "";
}

// Rows of a per-zone table (column 0 the TZ, column 1 the kind; "" any) for this run's TZ.
inline std::vector<Row> zoneRows(const std::string& name, const std::string& kind) {
  std::vector<Row> rows;
  for (Row& r : readTable(name)) {
    if (r[0] == currentTz() && (kind.empty() || r[1] == kind)) rows.push_back(std::move(r));
  }
  return rows;
}

}  // namespace zptest

// For a zone the tables do not know (TZ unset, say) there is nothing to compare.
#define ZP_SKIP_IF_NO_ROWS(rows) \
  if ((rows).empty()) GTEST_SKIP() << "no table rows for TZ '" << zptest::currentTz() << "'"
