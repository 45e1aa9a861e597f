// StringBuffer: a growable byte string with a terminating zero.
//
// The first 64 bytes live inside the object, so a date-sized temporary never
// touches the heap; longer texts move to a heap block that doubles as it
// grows. Lengths and positions count bytes. Appends report false only when
// memory runs out, and leave the text as it was.
//
//   StringBuffer sb;
//   sb.append("Date(1700000000000)");
//   sb.countCharOccurances('0');  // 11
#pragma once

#include <cstdint>
#include <cstring>

class StringBuffer {
 public:
  StringBuffer();
  explicit StringBuffer(const char* text);
  StringBuffer(const StringBuffer& other);
  StringBuffer& operator=(const StringBuffer& other);
  ~StringBuffer();

  // ---- Building ---------------------------------------------------------------

  bool append(const char* text);  // a null text appends nothing and succeeds
  bool append(const StringBuffer& other);
  bool appendN(const char* text, unsigned int n);  // n bytes; zero bytes included
  bool appendChar(char c);
  void clear() { setSize(0); }  // empty; keeps the storage

  // ---- Reading ----------------------------------------------------------------

  // The zero-terminated text, valid until the buffer next changes.
  const char* getString() const { return m_data; }
  unsigned int getSize() const { return m_size; }

  // The last byte, or 0 for an empty buffer.
  char lastChar() const { return m_size ? m_data[m_size - 1] : '\0'; }
  // The byte at `i`, or 0 past the end.
  char charAt(unsigned int i) const { return i < m_size ? m_data[i] : '\0'; }

  bool containsSubstring(const char* text) const;  // "" is always contained
  bool containsChar(char c) const { return std::memchr(m_data, c, m_size) != nullptr; }
  unsigned int countCharOccurances(char c) const;

  // True when the whole text is a decimal number: one or more ASCII digits,
  // with nothing else. With `digitsOnly` false a leading '+' or '-' may come
  // first. White space anywhere makes it false.
  bool isDecimalNumber(bool digitsOnly) const;

  // The leading decimal number of the text, as strtoul/strtoll would read it
  // (leading white space, then an optional sign, then digits; reading stops at
  // the first other byte; no digits give 0). Values past the type's range
  // saturate; uintValue gives 0 for a negative number.
  unsigned int uintValue() const;
  int64_t int64Value() const;

  // ---- Editing ----------------------------------------------------------------

  // Removes spaces, tabs, CR and LF at both ends.
  void trim2();
  // Collapses each run of white space inside the text to one space.
  void trimInsideSpaces();
  // Replaces the first occurrence of `find` by `replacement`; with
  // `caseInsensitive` ASCII letters match either case. False when not found.
  bool replaceFirstOccurance(const char* find, const char* replacement, bool caseInsensitive);
  // Removes every occurrence of `c`; returns how many went.
  unsigned int removeCharOccurances(char c);
  // Cuts the text before the first `c`, which goes too. No `c`: unchanged.
  void chopAtFirstChar(char c);

 private:
  static constexpr unsigned int kInlineCapacity = 64;

  bool reserve(unsigned int size);  // room for `size` bytes plus the zero
  void setSize(unsigned int size) {  // writes the terminating zero
    m_size = size;
    m_data[size] = '\0';
  }

  char* m_data;
  unsigned int m_size;
  unsigned int m_capacity;  // bytes m_data can hold, zero included
  char m_inline[kInlineCapacity];
};

// ---- Implementation details follow ----------------------------------------------

inline bool StringBuffer::appendChar(char c) {
  if (m_size + 1 >= m_capacity) return appendN(&c, 1);
  m_data[m_size] = c;
  setSize(m_size + 1);
  return true;
}
