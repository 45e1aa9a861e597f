// Turning inputs into output: one input at a time for the command line, a
// block of whole lines at a time for a file. Nothing here keeps state between
// calls, so blocks can be converted in any order and written in input order.
//
//   StringBuffer out;
//   std::string messages;
//   convertBlock(settings, "1700000000\nnope\n", 16, 1, out, messages);
//   // out: "20231114T221320Z\n\n"   messages: "zpdate: line 2: 'nope': not a date\n"
#pragma once

#include <cstddef>
#include <string>

#include "tools/DateForms.h"

namespace zpdate {

struct Settings {
  enum class Shape { kBlock, kJson, kForm };
  Shape shape = Shape::kBlock;
  Form form = Form::kIso;  // for kForm
  std::string pattern;     // for Form::kPattern
  TextReading reading;
  bool log = false;  // kBlock: add the module's log record
};

// Appends what one input gives: for a loaded input (`in` not null) its block,
// JSON object or form; otherwise, or when the form cannot hold it, a message
// naming the input (`where` is "" or "line 7: ") and `why`, plus a JSON error
// object, or with `keepLines` an empty line, so that output lines stay in
// step with input lines. True when the input was written.
bool convertOne(const Settings& s, const char* where, const char* text, size_t size,
                const Instant* in, std::string& why, bool keepLines, std::string& out,
                std::string& messages);

struct BlockCount {
  unsigned long lines, failed;
};

// Converts the lines in data[0, size), each ending in '\n', the first being
// line `firstLine`: one output line per input line. A batch is in the form
// or the JSON shape, never in blocks.
BlockCount convertBlock(const Settings& s, const char* data, size_t size, unsigned long firstLine,
                        StringBuffer& out, std::string& messages);

}  // namespace zpdate
