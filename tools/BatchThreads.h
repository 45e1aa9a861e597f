// Batch mode on several threads, with as little as possible on one thread
// only. Each thread takes the next chunk of the input, converts the whole
// lines that start in it (ChunkLines.h), and, when its block is the next to
// leave, writes it and the converted blocks waiting behind it. A regular file
// is read by every thread at its own chunk's offset; a pipe or terminal is
// read a chunk at a time, in turn, by whichever thread finds the next chunk
// missing, and no thread looks at its lines but the one converting them. A
// block's messages number its lines from 1 until the lines before it are
// counted, then move on (LineNumbers.h).
//
//   convertOnThreads(settings, fd, "log.txt", 4, 0, out, err);  // as convertStream
#pragma once

#include <cstddef>

#include "tools/Convert.h"
#include "tools/LineIo.h"

namespace zpdate {

// Converts what `fd` holds from its offset on with `jobs` threads (2 or
// more, the calling thread one of them), `chunkBytes` at a time (0: the
// usual size; tests take a few bytes). Output, messages and exit status are
// those of convertStream on one thread; a regular file is left at its end.
int convertOnThreads(const Settings& s, int fd, const char* name, unsigned jobs, size_t chunkBytes,
                     FdWriter& out, FdWriter& err);

}  // namespace zpdate
