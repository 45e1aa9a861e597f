// The lines a chunk of the input owns: those that start in it. Threads that
// each take a chunk of fixed size, at its offset, split the input into the
// same lines as one reader going through it from the start, without knowing
// where the chunks before theirs ended. A chunk is seen through a window: the
// byte before it, then the chunk, then enough of what follows to finish its
// last line or to know that the line is too long.
//
//   Window w{buffer, got, chunkBytes, false, Window::kMore};  // buffer[0]: the byte before
//   const char* lines;
//   size_t size;
//   chunkLines(w, lines, size);  // whole lines, each ending in '\n'; may be none
#pragma once

#include <cstddef>

#include "tools/LineIo.h"

namespace zpdate {

// What a window must hold past its chunk, unless the input ends sooner: the
// rest of a line that starts in the chunk, or enough of it to be too long.
constexpr size_t kLookahead = kMaxLine + 2;

// The smallest chunk: the byte-order mark lies within the first.
constexpr size_t kMinChunk = 4;

struct Window {
  enum End { kMore, kEnd, kError };

  char* data;    // the byte before the chunk (unless `first`), the chunk, what follows
  size_t size;   // bytes in data; data[size] is room for a '\n'
  size_t chunk;  // the chunk's bytes; kMinChunk at least unless the input ends in it
  bool first;    // the chunk opens the input: no byte before it, maybe a byte-order mark
  End end;       // whether the input ends at data + size, cleanly or on a read error
};

// The whole lines that start in the window's chunk, as LineReader hands them
// out: a byte-order mark opening the input is skipped, a last line without
// '\n' gets one (written at data[size]), a line cut short by a read error is
// dropped, and a line with no '\n' in the window, too long to convert, ends
// where the window ends. `size` is 0 when no line starts in the chunk. With
// `end` kMore the window must hold the '\n' that ends the chunk's last line,
// or kLookahead bytes past the chunk.
void chunkLines(Window& w, const char*& lines, size_t& size);

}  // namespace zpdate
