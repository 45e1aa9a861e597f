#include "tools/LineIo.h"

#include <cstring>

namespace zpdate {

namespace {
constexpr size_t kBlock = 1 << 16;
}

LineReader::LineReader(std::FILE* in) : m_in(in), m_buffer(kBlock + kMaxLine) {}

bool LineReader::refill() {
  if (m_eof) return false;
  std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
  m_end -= m_begin;
  m_begin = 0;
  const size_t got = std::fread(m_buffer.data() + m_end, 1, m_buffer.size() - m_end, m_in);
  m_end += got;
  if (got == 0) {
    m_eof = true;
    m_failed = std::ferror(m_in) != 0;
  }
  return got > 0;
}

bool LineReader::next(const char*& line, size_t& length, bool& tooLong) {
  tooLong = false;
  for (;;) {
    char* start = m_buffer.data() + m_begin;
    auto* newline = static_cast<char*>(std::memchr(start, '\n', m_end - m_begin));
    if (newline != nullptr || (m_eof && m_begin < m_end)) {
      const size_t full = newline ? static_cast<size_t>(newline - start) : m_end - m_begin;
      m_begin += full + (newline ? 1 : 0);
      length = full > 0 && start[full - 1] == '\r' ? full - 1 : full;
      line = start;
      if (length > kMaxLine) tooLong = true;
      if (tooLong) length = 0;
      return true;
    }
    if (m_eof) {
      line = start;
      length = 0;
      return tooLong;  // a too-long last line without its newline still counts
    }
    if (m_end - m_begin >= kMaxLine) {  // no newline within reach: drop what we have
      tooLong = true;
      m_begin = m_end;
    }
    refill();
  }
}

BlockWriter::BlockWriter(std::FILE* out) : m_out(out), m_buffer(kBlock) {}

void BlockWriter::write(const char* data, size_t length) {
  if (m_used + length > m_buffer.size()) {
    flush();
    if (length > m_buffer.size()) {
      std::fwrite(data, 1, length, m_out);
      return;
    }
  }
  std::memcpy(m_buffer.data() + m_used, data, length);
  m_used += length;
}

void BlockWriter::flush() {
  if (m_used > 0) std::fwrite(m_buffer.data(), 1, m_used, m_out);
  m_used = 0;
  std::fflush(m_out);
}

}  // namespace zpdate
