#include "tests/TestTables.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace zptest {

std::vector<Row> readTable(const std::string& name) {
  std::vector<Row> rows;
  std::ifstream in(std::string(ZP_TEST_DATA_DIR) + "/" + name);
  EXPECT_TRUE(in.good()) << "missing table " << name;
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    Row row;
    std::string::size_type start = 0;
    for (;;) {
      std::string::size_type tab = line.find('\t', start);
      row.push_back(line.substr(start, tab - start));
      if (tab == std::string::npos) break;
      start = tab + 1;
    }
    rows.push_back(std::move(row));
  }
  EXPECT_FALSE(rows.empty()) << "empty table " << name;
  return rows;
}

int64_t toInt(const std::string& field) { return std::stoll(field); }

std::string currentTz() {
  const char* tz = std::getenv("TZ");
  return tz ? tz : "";
}

}  // namespace zptest
