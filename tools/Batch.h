// Batch mode: a file or stream of date lines, converted a block of whole
// lines at a time, on one thread or several (BatchThreads.h). Several
// threads give the same output, messages (line numbers included) and exit
// status as one: blocks are written in input order, each block's output and
// then its messages.
//
//   FdWriter out(1), err(2);
//   convertStream(settings, fd, "log.txt", 2, out, err);  // 0, 1 or, on a failure, 1
#pragma once

#include "tools/Convert.h"
#include "tools/LineIo.h"

namespace zpdate {

// Converts every line read from `fd` (`name` names it in a read error) with
// `jobs` converting threads; 1 converts on the calling thread alone, with no
// thread machinery. Memory stays bounded whatever the input's size: a few
// blocks per thread. Returns the exit status: 0 when every line converted,
// else 1.
int convertStream(const Settings& s, int fd, const char* name, unsigned jobs, FdWriter& out,
                  FdWriter& err);

// Writes a block's output and then its messages; `status` becomes 1 when a
// line of it failed. False after a failed write to `out`.
bool writeBlock(const BlockCount& count, const StringBuffer& text, const std::string& messages,
                FdWriter& out, FdWriter& err, int& status);

// Ends the run on a failed read of `name` (after the lines before it) or a
// failed write to `out` (after what is waiting for `err`); return the exit
// status 1.
int readFailed(const char* name, int error);
int writeFailed(FdWriter& out, FdWriter& err);

}  // namespace zpdate
