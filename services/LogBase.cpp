#include "services/LogBase.h"

LogBase::~LogBase() = default;

void LogBase::LogDataLong(const char* name, long value) {
  char text[24];  // "-9223372036854775808" and the zero
  char* p = text + sizeof text;
  *--p = '\0';
  // Negating in unsigned arithmetic keeps LONG_MIN defined.
  const unsigned long bits = static_cast<unsigned long>(value);
  unsigned long magnitude = value < 0 ? 0ul - bits : bits;
  do {
    *--p = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  if (value < 0) *--p = '-';
  LogDataStr(name, p);
}

namespace {
const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }
}  // namespace

// The level is not kept: a recorder is for looking at everything.
void LogRecorder::EnterContext(const char* tag, int /*level*/) {
  m_lines.push_back(Line{m_depth, orEmpty(tag), std::string(), true});
  ++m_depth;
}

// A close without an open is ignored rather than driving the depth negative.
void LogRecorder::LeaveContext() {
  if (m_depth > 0) --m_depth;
}

void LogRecorder::LogDataStr(const char* name, const char* value) {
  m_lines.push_back(Line{m_depth, orEmpty(name), orEmpty(value), false});
}

std::string LogRecorder::render() const {
  std::string text;
  for (const Line& line : m_lines) {
    text.append(2 * static_cast<size_t>(line.depth), ' ');
    text += line.name;
    text += line.isContext ? ":" : ": ";
    text += line.value;
    text += '\n';
  }
  return text;
}

void LogRecorder::clear() {
  m_lines.clear();
  m_depth = 0;
}
