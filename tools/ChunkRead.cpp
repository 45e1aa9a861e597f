#include "tools/ChunkRead.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace zpdate {
namespace {

// Whether a read now would wait: no bytes, no end and no error pending.
bool wouldWait(int fd) {
  pollfd p{fd, POLLIN, 0};
  return poll(&p, 1, 0) == 0;
}

}  // namespace

size_t readAt(int fd, char* p, size_t size, off_t offset, int& error) {
  size_t got = 0;
  while (got < size) {
    const ssize_t n = pread(fd, p + got, size - got, offset + static_cast<off_t>(got));
    if (n > 0) {
      got += static_cast<size_t>(n);
    } else if (n == 0 || errno != EINTR) {
      if (n < 0) error = errno;
      break;
    }
  }
  return got;
}

size_t readStream(int fd, char* p, size_t size, bool& ended, int& error) {
  size_t got = 0;
  ended = false;
  while (got < size) {
    const ssize_t n = read(fd, p + got, size - got);
    if (n > 0) {
      got += static_cast<size_t>(n);
      if (got < size && p[got - 1] == '\n' && wouldWait(fd)) break;
    } else if (n == 0 || errno != EINTR) {
      if (n < 0) error = errno;
      ended = true;
      break;
    }
  }
  return got;
}

}  // namespace zpdate
