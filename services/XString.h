// XString: the library's general string; the time module only appends UTF-8.
#pragma once

#include "services/StringBuffer.h"

class XString {
 public:
  // Appends a zero-terminated UTF-8 text; false only when memory runs out.
  bool appendUtf8(const char* text);
  // The whole text as UTF-8, zero-terminated.
  const char* getUtf8() const { return m_utf8.getString(); }
  unsigned int getSizeUtf8() const { return m_utf8.getSize(); }
  void clear() { m_utf8.clear(); }

 private:
  StringBuffer m_utf8;
};
