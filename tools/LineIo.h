// Batch input and output on file descriptors. The reader hands out blocks of
// whole lines from one fixed buffer, so memory stays constant whatever the
// input's size; the writer leaves in large writes. Both keep the system's
// error number for the message instead of losing it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zpdate {

// The longest line that converts, without its "\n" or "\r\n". Longer lines
// are refused, wherever they fall in the input.
constexpr size_t kMaxLine = 4096;

class LineReader {
 public:
  explicit LineReader(int fd);

  // The next block of whole lines, each ending in '\n' (the reader supplies
  // one for a last line without it). A UTF-8 byte-order mark at the start of
  // the input is skipped. A line longer than the buffer can hold arrives cut
  // to kMaxLine + 2 bytes, so that it still counts as one line and is still
  // too long. Valid until the next call. False at the end of the input or
  // on a read error; error() then tells which.
  bool next(const char*& data, size_t& size);

  int error() const { return m_error; }  // errno of a failed read, 0 if none

 private:
  bool fill();  // moves the unread tail to the front and reads more
  void skipByteOrderMark();
  bool skipOverlongRest();  // drops the rest of a cut line; false at the end

  int m_fd;
  std::vector<char> m_buffer;
  size_t m_begin = 0, m_end = 0;
  bool m_eof = false, m_started = false, m_cutLine = false;
  int m_error = 0;
};

// Appends to a buffer and writes it out when it grows past a block, and on
// flush(). After the first failed write it writes nothing more.
class FdWriter {
 public:
  explicit FdWriter(int fd) : m_fd(fd) {}

  void write(const char* data, size_t size);
  void write(const std::string& text) { write(text.data(), text.size()); }
  // What is pending, then `data` at once, uncopied: for a block of output
  // that a flush would follow anyway.
  void writeThrough(const char* data, size_t size);
  bool flush();  // false once any write has failed

  int error() const { return m_error; }  // errno of the failed write, 0 if none

 private:
  void writeAll(const char* p, size_t size);  // sets m_error when a write fails

  int m_fd;
  std::string m_pending;
  int m_error = 0;
};

}  // namespace zpdate
