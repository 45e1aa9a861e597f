// Renders one date in every form the time module writes: as a readable
// block, as one JSON object, or as a single form for pipelines.
#pragma once

#include <string>

#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

namespace zpdate {

// The forms `--to` can name.
enum class Form { kIso, kUtcTime, kRfc822, kUnix, kFileTime, kTicks, kDos, kOle };

// Looks a form up by its `--to` name ("iso", "utctime", ...); false if unknown.
bool formByName(const char* name, Form& form);

// The `--to` names, comma-separated, for messages.
const char* formNames();

// How a value was read: "GMT", "local" or "unknown zone".
const char* readingOf(const ZephalSysTime& value);

// Appends the block: the input, then one labelled line per form, then the log record.
void appendBlock(const char* input, const ZephalSysTime& value, std::string& out);

// Appends one JSON object on one line (no newline).
void appendJson(const char* input, const ZephalSysTime& value, std::string& out);

// Appends the single form (no newline). Works on copies; `value` is unchanged.
void appendForm(Form form, const ZephalSysTime& value, StringBuffer& out);

}  // namespace zpdate
