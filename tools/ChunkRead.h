// Reading a chunk of the input for batch threads: a regular file at the
// chunk's offset, by any thread at any time; a stream in turn, a chunk after
// the other. A stream's chunk ends early at a line's end when nothing more
// has come for now, so that lines typed or written slowly (tail -f) are
// converted as they come instead of when a chunk fills.
//
//   int error = 0;
//   size_t got = readAt(fd, buffer, 70000, 65535, error);  // short: end of file or error
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace zpdate {

// Up to `size` bytes at `offset`: fewer only at the end of the file or on a
// read error (`error` then holds errno).
size_t readAt(int fd, char* p, size_t size, off_t offset, int& error);

// Up to `size` bytes from the stream: fewer at its end (`ended`, with `error`
// on a read error), or when they end in '\n' and the stream has no more
// bytes waiting.
size_t readStream(int fd, char* p, size_t size, bool& ended, int& error);

}  // namespace zpdate
