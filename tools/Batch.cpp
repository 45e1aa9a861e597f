#include "tools/Batch.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/BatchThreads.h"

namespace zpdate {
namespace {

int convertOnThisThread(const Settings& s, LineReader& reader, const char* name, FdWriter& out,
                        FdWriter& err) {
  StringBuffer text;
  std::string messages;
  unsigned long line = 1;
  int status = 0;
  const char* data;
  size_t size;
  while (reader.next(data, size)) {
    text.clear();
    messages.clear();
    const BlockCount count = convertBlock(s, data, size, line, text, messages);
    line += count.lines;
    if (!writeBlock(count, text, messages, out, err, status)) return writeFailed(out, err);
  }
  return reader.error() != 0 ? readFailed(name, reader.error()) : status;
}

// Chunks of a few bytes, so that tests put a chunk's edge at every byte of
// small inputs; set only by tests/tool (unset: 64 KB chunks).
size_t testChunkBytes() {
  const char* bytes = std::getenv("ZPDATE_TEST_CHUNK_BYTES");
  return bytes != nullptr ? std::strtoul(bytes, nullptr, 10) : 0;
}

}  // namespace

bool writeBlock(const BlockCount& count, const StringBuffer& text, const std::string& messages,
                FdWriter& out, FdWriter& err, int& status) {
  if (count.failed > 0) status = 1;
  out.writeThrough(text.getString(), text.getSize());
  err.write(messages);
  if (!out.flush()) return false;
  err.flush();
  return true;
}

int readFailed(const char* name, int error) {
  std::fprintf(stderr, "zpdate: %s: %s\n", name, std::strerror(error));
  return 1;
}

int writeFailed(FdWriter& out, FdWriter& err) {
  err.flush();
  std::fprintf(stderr, "zpdate: write error: %s\n", std::strerror(out.error()));
  return 1;
}

int convertStream(const Settings& s, int fd, const char* name, unsigned jobs, FdWriter& out,
                  FdWriter& err) {
  if (jobs > 1) return convertOnThreads(s, fd, name, jobs, testChunkBytes(), out, err);
  LineReader reader(fd);
  return convertOnThisThread(s, reader, name, out, err);
}

}  // namespace zpdate
