// Line numbers in a block's messages, moved on once the lines before the
// block are counted: a thread converts a block before it knows where the
// block starts, numbering its lines from 1.
//
//   std::string m = "zpdate: line 2: 'nope': not a date\n";
//   moveLineNumbers(m, 4001);  // "zpdate: line 4002: 'nope': not a date\n"
#pragma once

#include <string>

namespace zpdate {

// Adds firstLine - 1 to the number of each message line that begins
// "zpdate: line N: "; other lines are kept as they are.
void moveLineNumbers(std::string& messages, unsigned long firstLine);

}  // namespace zpdate
