// Streaming line input and block output for batch conversion: memory stays
// constant whatever the input's size, and output leaves in large blocks.
#pragma once

#include <cstddef>
#include <cstdio>
#include <vector>

namespace zpdate {

class LineReader {
 public:
  // Lines longer than this are reported as too long and skipped.
  static constexpr size_t kMaxLine = 4096;

  explicit LineReader(std::FILE* in);

  // The next line, without its "\n" or "\r\n"; valid until the next call.
  // False at the end of input (or on a read error: see failed()).
  bool next(const char*& line, size_t& length, bool& tooLong);
  bool failed() const { return m_failed; }

 private:
  bool refill();  // moves the unread tail to the front and reads more

  std::FILE* m_in;
  std::vector<char> m_buffer;
  size_t m_begin = 0, m_end = 0;
  bool m_eof = false, m_failed = false;
};

class BlockWriter {
 public:
  explicit BlockWriter(std::FILE* out);
  ~BlockWriter() { flush(); }

  void write(const char* data, size_t length);
  void flush();

 private:
  std::FILE* m_out;
  std::vector<char> m_buffer;
  size_t m_used = 0;
};

}  // namespace zpdate
