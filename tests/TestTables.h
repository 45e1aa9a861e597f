// Reads the expected-value tables in tests/data/: tab-separated rows, '#'
// starts a comment line. Each table names the script that generated it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zptest {

using Row = std::vector<std::string>;

// Rows of tests/data/<name>; fails the calling test when the file is missing.
std::vector<Row> readTable(const std::string& name);

int64_t toInt(const std::string& field);

// The TZ of this run, "" when unset.
std::string currentTz();

}  // namespace zptest
