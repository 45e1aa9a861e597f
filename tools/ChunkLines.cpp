#include "tools/ChunkLines.h"

#include <cstring>

namespace zpdate {
namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

const char* findNewline(const char* from, const char* end) {
  return static_cast<const char*>(std::memchr(from, '\n', static_cast<size_t>(end - from)));
}

// Where the line holding the byte before `from` began: after the last '\n'
// in [start, from), or at `start`. Only a read error needs it.
const char* lineStartBefore(const char* start, const char* from) {
  while (from > start && from[-1] != '\n') --from;
  return from;
}

}  // namespace

void chunkLines(Window& w, const char*& lines, size_t& size) {
  lines = w.data;
  size = 0;
  if (w.chunk == 0) return;
  const char* const end = w.data + w.size;
  const char* const chunkEnd = w.data + (w.first ? 0 : 1) + w.chunk;
  const char* start = w.data;
  if (w.first) {
    if (w.size >= 3 && std::memcmp(w.data, kByteOrderMark, 3) == 0) start += 3;
  } else {
    // A line starts in the chunk after a '\n' from the byte before it up to
    // the chunk's last byte but one.
    const char* newline = findNewline(w.data, w.data + w.chunk);
    if (newline == nullptr) return;  // inside a line that began before
    start = newline + 1;
  }
  if (start >= end) return;  // only a byte-order mark
  lines = start;
  // The last line that starts in the chunk ends at the first '\n' from the
  // chunk's last byte on; every line before it ends before that byte.
  const char* from = start > chunkEnd - 1 ? start : chunkEnd - 1;
  if (const char* newline = findNewline(from, end)) {
    size = static_cast<size_t>(newline + 1 - start);
    return;
  }
  if (w.end == Window::kError) {  // as a read error leaves it: not converted
    size = static_cast<size_t>(lineStartBefore(start, from) - start);
    return;
  }
  // The input's last line without its '\n'; or, with more to come, a line
  // of kLookahead bytes at least, which converts as too long however it is
  // cut.
  w.data[w.size] = '\n';
  size = static_cast<size_t>(end + 1 - start);
}

}  // namespace zpdate
