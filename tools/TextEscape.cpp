#include "tools/TextEscape.h"

#include <cstring>

namespace zpdate {
namespace {

// The length of the well-formed UTF-8 sequence at p[0, size) (Table 3-7 of
// the Unicode standard: no overlong forms, no surrogates, nothing past
// U+10FFFF), or 0 when none starts there; `illFormed` is then the length of
// the maximal ill-formed part, which one U+FFFD replaces.
size_t wellFormedLength(const unsigned char* p, size_t size, size_t& illFormed) {
  const unsigned char c = p[0];
  illFormed = 1;
  if (c < 0x80) return 1;
  size_t need;
  unsigned char low = 0x80, high = 0xBF;  // range of the second byte
  if (c >= 0xC2 && c <= 0xDF) {
    need = 2;
  } else if (c >= 0xE0 && c <= 0xEF) {
    need = 3;
    if (c == 0xE0) low = 0xA0;
    if (c == 0xED) high = 0x9F;
  } else if (c >= 0xF0 && c <= 0xF4) {
    need = 4;
    if (c == 0xF0) low = 0x90;
    if (c == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  for (size_t i = 1; i < need; ++i) {
    const bool ok = i < size && p[i] >= (i == 1 ? low : 0x80) && p[i] <= (i == 1 ? high : 0xBF);
    if (!ok) {
      illFormed = i;
      return 0;
    }
  }
  return need;
}

constexpr char kHex[] = "0123456789abcdef";
// The control bytes C writes by name, and their names.
constexpr char kNamedControls[] = "\a\b\f\n\r\t\v";
constexpr char kControlNames[] = "abfnrtv";

// Copies the run of printable ASCII from text[i] that needs no escape (bytes
// below `limit`, neither '\\' nor `quote`) in one append, most of any text;
// returns where the run ends.
size_t appendPlainRun(const char* text, size_t i, size_t size, unsigned char limit, char quote,
                      std::string& out) {
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  size_t end = i;
  while (end < size && p[end] >= 0x20 && p[end] < limit && p[end] != '\\' && p[end] != quote) ++end;
  out.append(text + i, end - i);
  return end;
}

}  // namespace

void appendJsonString(const char* text, size_t size, std::string& out) {
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  out += '"';
  for (size_t i = 0; i < size;) {
    const size_t run = appendPlainRun(text, i, size, 0x80, '"', out);  // DEL may stand raw
    if (run > i) {
      i = run;
      continue;
    }
    const unsigned char c = p[i];
    size_t bad = 0;
    const size_t good = c < 0x80 ? 1 : wellFormedLength(p + i, size - i, bad);
    if (good == 0) {
      out += "\\ufffd";
      i += bad;
    } else if (c >= 0x80) {
      out.append(text + i, good);
      i += good;
    } else {
      out += '\\';
      switch (c) {
        case '"': out += '"'; break;
        case '\\': out += '\\'; break;
        case '\b': out += 'b'; break;
        case '\f': out += 'f'; break;
        case '\n': out += 'n'; break;
        case '\r': out += 'r'; break;
        case '\t': out += 't'; break;
        default:
          out += "u00";
          out += kHex[c >> 4];
          out += kHex[c & 0xF];
      }
      ++i;
    }
  }
  out += '"';
}

void appendEscaped(const char* text, size_t size, std::string& out) {
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  for (size_t i = 0; i < size;) {
    const size_t run = appendPlainRun(text, i, size, 0x7F, '\\', out);
    if (run > i) {
      i = run;
      continue;
    }
    const unsigned char c = p[i];
    size_t bad = 0;
    const size_t good = c < 0x80 ? 1 : wellFormedLength(p + i, size - i, bad);
    if (good > 1) {
      out.append(text + i, good);
      i += good;
    } else if (good == 1 && c >= 0x20 && c != 0x7F) {
      if (c == '\\') out += '\\';
      out += static_cast<char>(c);
      ++i;
    } else if (const char* named = c != 0 ? std::strchr(kNamedControls, c) : nullptr) {
      out += '\\';
      out += kControlNames[named - kNamedControls];
      ++i;
    } else {
      const char octal[4] = {'\\', static_cast<char>('0' + (c >> 6)),
                             static_cast<char>('0' + ((c >> 3) & 7)),
                             static_cast<char>('0' + (c & 7))};
      out.append(octal, 4);
      ++i;
    }
  }
}

}  // namespace zpdate
