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
  Instant in;
  std::string why, text;
  char where[32] = "line ";
  BlockCount count{0, 0};
  // The module's own writers append straight to the block's output.
  const bool buffered = s.shape == Settings::Shape::kForm && isBufferedForm(s.form);
  unsigned long number = firstLine;
  const char* const end = data + size;
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
      loaded = loadText(line, length, s.reading, in, why);
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
