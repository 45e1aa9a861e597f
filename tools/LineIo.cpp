#include "tools/LineIo.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zpdate {
namespace {

constexpr size_t kBlock = 1 << 16;  // bytes a read asks for, and a write's size
// The buffer holds a block and the unread start of a line, which is shorter
// than kMaxLine + 2 whenever a read is due; one byte more takes the '\n'
// supplied after a last or cut line.
constexpr size_t kCapacity = kBlock + kMaxLine + 2;
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

}  // namespace

LineReader::LineReader(int fd) : m_fd(fd), m_buffer(kCapacity + 1) {}

bool LineReader::fill() {
  char* buffer = m_buffer.data();
  std::memmove(buffer, buffer + m_begin, m_end - m_begin);
  m_end -= m_begin;
  m_begin = 0;
  for (;;) {
    const ssize_t got = read(m_fd, buffer + m_end, kCapacity - m_end);
    if (got > 0) {
      m_end += static_cast<size_t>(got);
      return true;
    }
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      m_error = errno;
      m_end = 0;  // a line the error cut short is not converted
    }
    m_eof = true;
    return false;
  }
}

void LineReader::skipByteOrderMark() {
  m_started = true;
  while (m_end - m_begin < 3 && fill()) {
  }
  if (m_end - m_begin >= 3 && std::memcmp(m_buffer.data() + m_begin, kByteOrderMark, 3) == 0) {
    m_begin += 3;
  }
}

bool LineReader::skipOverlongRest() {
  for (;;) {
    const char* begin = m_buffer.data() + m_begin;
    const auto* newline = static_cast<const char*>(std::memchr(begin, '\n', m_end - m_begin));
    if (newline != nullptr) {
      m_begin += static_cast<size_t>(newline - begin) + 1;
      m_cutLine = false;
      return true;
    }
    m_begin = m_end;
    if (!fill()) return false;
  }
}

bool LineReader::next(const char*& data, size_t& size) {
  if (!m_started) skipByteOrderMark();
  for (;;) {
    if (m_cutLine && !skipOverlongRest()) return false;
    char* begin = m_buffer.data() + m_begin;
    const size_t unread = m_end - m_begin;
    size_t whole = unread;  // bytes up to and including the last '\n'
    while (whole > 0 && begin[whole - 1] != '\n') --whole;
    if (whole > 0) {
      data = begin;
      size = whole;
      m_begin += whole;
      return true;
    }
    if (unread >= kMaxLine + 2) {  // no '\n' in reach: the line cannot convert
      begin[kMaxLine + 2] = '\n';
      data = begin;
      size = kMaxLine + 3;
      m_begin += unread < size ? unread : size;
      m_cutLine = true;
      return true;
    }
    if (m_eof) {
      if (unread == 0) return false;
      begin[unread] = '\n';
      data = begin;
      size = unread + 1;
      m_begin = m_end;
      return true;
    }
    fill();
  }
}

void FdWriter::write(const char* data, size_t size) {
  if (m_error != 0) return;
  if (m_pending.empty() && size >= kBlock) {  // large enough already: no copy
    writeAll(data, size);
    return;
  }
  m_pending.append(data, size);
  if (m_pending.size() >= kBlock) flush();
}

void FdWriter::writeThrough(const char* data, size_t size) {
  flush();
  if (m_error == 0) writeAll(data, size);
}

bool FdWriter::flush() {
  if (m_error == 0) writeAll(m_pending.data(), m_pending.size());
  m_pending.clear();
  return m_error == 0;
}

void FdWriter::writeAll(const char* p, size_t left) {
  while (left > 0) {
    const ssize_t put = ::write(m_fd, p, left);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) {
      m_error = errno;
      break;
    }
    p += put;
    left -= static_cast<size_t>(put);
  }
}

}  // namespace zpdate
