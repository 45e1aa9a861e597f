#include "tools/Convert.h"

#include <cstdio>
#include <cstring>

#include "tools/DateReport.h"
#include "tools/LineIo.h"
#include "tools/TextEscape.h"

namespace zpdate {

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
                        std::string& out, std::string& messages) {
  StringBuffer scratch;
  Instant in;
  std::string why;
  char where[32];
  BlockCount count{0, 0};
  unsigned long number = firstLine;
  for (const char* end = data + size; data < end; ++number, ++count.lines) {
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
      loaded = loadText(line, length, s.assumeLocal, scratch, in, why);
    }
    if (loaded && s.shape == Settings::Shape::kForm) {  // the common case, without a detour
      const size_t mark = out.size();
      if (appendForm(s.form, s.pattern.c_str(), in, out, why)) {
        out += '\n';
        continue;
      }
      out.resize(mark);
      loaded = false;
    }
    std::snprintf(where, sizeof where, "line %lu: ", number);
    count.failed +=
        !convertOne(s, where, shown, length, loaded ? &in : nullptr, why, true, out, messages);
  }
  return count;
}

}  // namespace zpdate
