// Shows one instant in every form the time module writes: as a block for
// people to read, or as one JSON object for programs. A form that cannot hold
// the instant says so in the block and is null in the object.
#pragma once

#include <cstddef>
#include <string>

#include "tools/DateInput.h"

namespace zpdate {

// How an input was read: "GMT", "local", or, for a text that states no
// zone, "unknown zone (read as GMT)", "local, no zone stated" or, with
// --from-zone, "Europe/Berlin, no zone stated".
std::string readingOf(const Instant& in);

// Appends the block: the input, then what a person reads first (the instant
// in GMT and on the local clock, with the days of the week), the exchange
// texts, the numbers, and with `withLog` the module's log record.
void appendBlock(const std::string& input, const Instant& in, bool withLog, std::string& out);

// Appends one JSON object on one line (no newline); `input` may hold any bytes.
void appendJson(const char* input, size_t size, const Instant& in, std::string& out);

// Appends {"input":...,"error":...} for an input that gave no instant;
// "input" is null when `input` is (a line too long to show).
void appendJsonError(const char* input, size_t size, const std::string& why, std::string& out);

}  // namespace zpdate
