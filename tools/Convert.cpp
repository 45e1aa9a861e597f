#include "tools/Convert.h"

#include <charconv>
#include <cstring>

#include "tools/DateReport.h"
#include "tools/LineIo.h"
#include "tools/TextEscape.h"

namespace zpdate {
namespace {

// `in` in the settings' form, and a '\n'; false, with nothing appended, when
// the form cannot hold it. `text` is scratch for the forms written as text.
bool appendFormLine(const Settings& s, bool buffered, const Instant& in, StringBuffer& out,
                    std::string& text, std::string& why) {
  if (buffered) {
    if (!appendForm(s.form, in, out, why)) return false;
  } else {
    text.clear();
    if (!appendForm(s.form, s.pattern.c_str(), in, text, why)) return false;
    out.appendN(text.data(), static_cast<unsigned>(text.size()));
  }
  out.appendChar('\n');
  return true;
}

// Where the next `byte` of a block is, searched for again only once a line
// has passed it: a compare a line instead of a search, as most blocks hold
// no zero byte and no '(' at all (a million RFC 1123 lines: 52 ms instead
// of 54 ms).
class NextByte {
 public:
  NextByte(char byte, const char* begin, const char* end) : m_byte(byte), m_end(end) {
    find(begin);
  }

  // Whether [begin, end), at or after the last line asked about, holds it.
  bool within(const char* begin, const char* end) {
    if (m_at < begin) find(begin);
    return m_at < end;
  }

 private:
  void find(const char* from) {
    const void* found = std::memchr(from, m_byte, static_cast<size_t>(m_end - from));
    m_at = found ? static_cast<const char*>(found) : m_end;
  }

  char m_byte;
  const char* m_end;
  const char* m_at;
};

}  // namespace

bool convertOne(const Settings& s, const char* where, const char* text, size_t size,
                const Instant* in, std::string& why, bool keepLines, std::string& out,
                std::string& messages) {
  if (in != nullptr) {
    switch (s.shape) {
      case Settings::Shape::kBlock:
        if (!out.empty()) out += '\n';
        appendBlock(std::string(text, size), *in, s.log, out);
        return true;
      case Settings::Shape::kJson:
        appendJson(text, size, *in, out);
        out += '\n';
        return true;
      case Settings::Shape::kForm: {
        const size_t mark = out.size();
        if (appendForm(s.form, s.pattern.c_str(), *in, out, why)) {
          out += '\n';
          return true;
        }
        out.resize(mark);
      }
    }
  }
  if (s.shape == Settings::Shape::kJson) {
    appendJsonError(text, size, why, out);
    out += '\n';
  } else if (keepLines) {
    out += '\n';
  }
  messages += "zpdate: ";
  messages += where;
  if (text != nullptr) {
    messages += '\'';
    appendEscaped(text, size, messages);
    messages += "': ";
  }
  messages += why;
  messages += '\n';
  return false;
}

BlockCount convertBlock(const Settings& s, const char* data, size_t size, unsigned long firstLine,
                        StringBuffer& out, std::string& messages) {
  StringBuffer scratch;
  Instant in;
  std::string why, text;
  char where[32] = "line ";
  BlockCount count{0, 0};
  // The module's own writers append straight to the block's output.
  const bool buffered = s.shape == Settings::Shape::kForm && isBufferedForm(s.form);
  unsigned long number = firstLine;
  const char* const end = data + size;
  NextByte zero('\0', data, end), paren('(', data, end);
  for (; data < end; ++number, ++count.lines) {
    const char* newline =
        static_cast<const char*>(std::memchr(data, '\n', static_cast<size_t>(end - data)));
    const char* line = data;
    size_t length = static_cast<size_t>(newline - data);
    data = newline + 1;
    if (length > 0 && line[length - 1] == '\r') --length;
    const char* shown = line;  // a line too long is not echoed
    bool loaded = false;
    if (length > kMaxLine) {
      why = "line too long (over " + std::to_string(kMaxLine) + " bytes)";
      shown = nullptr;
      length = 0;
    } else {
      const MayHold may{zero.within(line, line + length), paren.within(line, line + length)};
      loaded = loadText(line, length, s.assumeLocal, scratch, in, why, may);
    }
    if (loaded && s.shape == Settings::Shape::kForm) {  // the common case, without a detour
      if (appendFormLine(s, buffered, in, out, text, why)) continue;
      loaded = false;
    }
    // to_chars: snprintf cost a bad line more than reading it did.
    char* const digits = std::to_chars(where + 5, where + sizeof where - 3, number).ptr;
    std::memcpy(digits, ": ", 3);
    text.clear();
    count.failed +=
        !convertOne(s, where, shown, length, loaded ? &in : nullptr, why, true, text, messages);
    out.appendN(text.data(), static_cast<unsigned>(text.size()));
  }
  return count;
}

}  // namespace zpdate
