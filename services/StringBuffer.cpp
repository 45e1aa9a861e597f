// StringBuffer: storage, searching, number reading and in-place edits.
//
// Every byte loop is bounded by m_size, so texts with embedded zero bytes are
// searched and edited whole; only the number readers stop at the first zero.
#include "services/StringBuffer.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "services/internal/FastPaths.h"
#include "services/internal/TextBytes.h"

namespace {

// The white space that trim2 and trimInsideSpaces remove.
bool isTrimSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// isspace() of the C locale, as strtoul skips it; no locale is consulted.
bool isCSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

char asciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// std::less gives a total order even for pointers into different objects.
bool pointsInto(const char* p, const char* begin, const char* end) {
  return !std::less<const char*>()(p, begin) && std::less<const char*>()(p, end);
}

bool equalBytes(const char* a, const char* b, size_t n, bool caseInsensitive) {
  if (!caseInsensitive) return std::memcmp(a, b, n) == 0;
  for (size_t i = 0; i < n; ++i) {
    if (asciiLower(a[i]) != asciiLower(b[i])) return false;
  }
  return true;
}

// The first place in [begin, end) where the `n` bytes of `pattern` occur.
// memchr jumps between candidates for the first byte: the loader asks every
// text with a '/' for "Date(", and in most of them 'D' never occurs
// (BM_PathMemchrSearch: 36 ns instead of 91 ns a text, 2.54x).
const char* findBytes(const char* begin, const char* end, const char* pattern, size_t n,
                      bool caseInsensitive) {
  if (n > static_cast<size_t>(end - begin)) return nullptr;
  if (n == 0) return begin;
  const char* const lastStart = end - n;
  for (const char* p = begin; p <= lastStart; ++p) {
    if (!caseInsensitive && zp_fast::on(zp_fast::kMemchrSearch)) {
      p = static_cast<const char*>(std::memchr(p, pattern[0], lastStart - p + 1));
      if (p == nullptr) return nullptr;
    }
    if (equalBytes(p, pattern, n, caseInsensitive)) return p;
  }
  return nullptr;
}

// A leading number as strtoull reads it, the magnitude saturated at UINT64_MAX
// so that both uintValue and int64Value can clamp from it.
struct LeadingNumber {
  uint64_t magnitude = 0;
  bool negative = false;
};

LeadingNumber readLeadingNumber(const char* p) {
  LeadingNumber n;
  while (isCSpace(*p)) ++p;
  if (*p == '+' || *p == '-') n.negative = (*p++ == '-');
  for (; zpread::isDigit(*p); ++p) {
    const unsigned digit = static_cast<unsigned>(*p - '0');
    if (n.magnitude > (UINT64_MAX - digit) / 10) {
      n.magnitude = UINT64_MAX;
      break;
    }
    n.magnitude = n.magnitude * 10 + digit;
  }
  return n;
}

}  // namespace

// ---- Storage ------------------------------------------------------------------

StringBuffer::StringBuffer() : m_data(m_inline), m_size(0), m_capacity(kInlineCapacity) {
  m_inline[0] = '\0';
}

StringBuffer::StringBuffer(const char* text) : StringBuffer() { append(text); }

// Out of memory, a copy stays empty: the class reports failures, never throws.
StringBuffer::StringBuffer(const StringBuffer& other) : StringBuffer() {
  appendN(other.m_data, other.m_size);
}

StringBuffer& StringBuffer::operator=(const StringBuffer& other) {
  if (this != &other && reserve(other.m_size)) {
    std::memcpy(m_data, other.m_data, other.m_size);
    setSize(other.m_size);
  }
  return *this;
}

StringBuffer::~StringBuffer() {
  if (m_data != m_inline) std::free(m_data);
}

bool StringBuffer::reserve(unsigned int size) {
  if (size < m_capacity) return true;
  if (size == UINT_MAX) return false;  // no room left for the zero
  // Doubling keeps a long run of appends linear in the bytes appended.
  const uint64_t wanted = std::max<uint64_t>(uint64_t{m_capacity} * 2, uint64_t{size} + 1);
  const unsigned capacity = static_cast<unsigned>(std::min<uint64_t>(wanted, UINT_MAX));
  const bool onHeap = m_data != m_inline;
  char* block = static_cast<char*>(onHeap ? std::realloc(m_data, capacity) : std::malloc(capacity));
  if (block == nullptr) return false;  // realloc left the old block intact
  if (!onHeap) std::memcpy(block, m_inline, m_size + 1);
  m_data = block;
  m_capacity = capacity;
  return true;
}

// ---- Building -----------------------------------------------------------------

bool StringBuffer::append(const char* text) {
  if (text == nullptr) return true;
  const size_t n = std::strlen(text);
  return n <= UINT_MAX && appendN(text, static_cast<unsigned>(n));
}

bool StringBuffer::append(const StringBuffer& other) { return appendN(other.m_data, other.m_size); }

bool StringBuffer::appendN(const char* text, unsigned int n) {
  if (n == 0 || text == nullptr) return true;  // null appends nothing, as in append
  if (n < m_capacity - m_size) {
    // Room already, so nothing moves and our own text needs no more care
    // than memmove gives.
    std::memmove(m_data + m_size, text, n);
    setSize(m_size + n);
    return true;
  }
  if (n > UINT_MAX - 1 - m_size) return false;
  // Appending part of our own text: growing may move it, so keep its offset.
  const bool ownText = pointsInto(text, m_data, m_data + m_capacity);
  const size_t offset = ownText ? static_cast<size_t>(text - m_data) : 0;
  if (!reserve(m_size + n)) return false;
  if (ownText) text = m_data + offset;
  std::memmove(m_data + m_size, text, n);  // the source may reach our zero byte
  setSize(m_size + n);
  return true;
}

// ---- Reading ------------------------------------------------------------------

// A null text counts as "", as it does for append.
bool StringBuffer::containsSubstring(const char* text) const {
  if (text == nullptr) return true;
  return findBytes(m_data, m_data + m_size, text, std::strlen(text), false) != nullptr;
}

// Most texts hold none of the byte asked for ('-' in a mail date), and one
// memchr says so; after the first, one pass counts the rest, where jumping
// from one to the next would pay a call for each of the two or three '-'
// and ':' of an Atom text.
unsigned int StringBuffer::countCharOccurances(char c) const {
  const char* const begin = m_data;
  const char* const end = begin + m_size;
  if (!zp_fast::on(zp_fast::kMemchrSearch)) return static_cast<unsigned>(std::count(begin, end, c));
  const char* const first = static_cast<const char*>(std::memchr(begin, c, m_size));
  return first == nullptr ? 0 : 1 + static_cast<unsigned>(std::count(first + 1, end, c));
}

bool StringBuffer::isDecimalNumber(bool digitsOnly) const {
  const char* p = m_data;
  const char* end = m_data + m_size;
  if (!digitsOnly && p != end && (*p == '+' || *p == '-')) ++p;
  // The last byte first: date texts that are not numbers mostly end in a letter.
  return p != end && zpread::isDigit(end[-1]) && std::all_of(p, end, zpread::isDigit);
}

unsigned int StringBuffer::uintValue() const {
  const LeadingNumber n = readLeadingNumber(m_data);
  if (n.negative) return 0;
  return static_cast<unsigned>(std::min<uint64_t>(n.magnitude, UINT_MAX));
}

int64_t StringBuffer::int64Value() const {
  const LeadingNumber n = readLeadingNumber(m_data);
  const uint64_t limit = uint64_t{INT64_MAX} + n.negative;  // |INT64_MIN| is one more
  const uint64_t magnitude = std::min(n.magnitude, limit);
  // Negating in unsigned arithmetic reaches INT64_MIN without overflow.
  return n.negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
}

// ---- Editing ------------------------------------------------------------------

void StringBuffer::trim2() {
  unsigned begin = 0;
  unsigned end = m_size;
  while (end > begin && isTrimSpace(m_data[end - 1])) --end;
  while (begin < end && isTrimSpace(m_data[begin])) ++begin;
  if (begin > 0) std::memmove(m_data, m_data + begin, end - begin);
  setSize(end - begin);
}

// Runs at either end are left alone: removing them is trim2's job, and a
// caller may want them kept.
void StringBuffer::trimInsideSpaces() {
  unsigned first = 0;
  unsigned last = m_size;
  while (first < last && isTrimSpace(m_data[first])) ++first;
  while (last > first && isTrimSpace(m_data[last - 1])) --last;
  // [first, last) starts and ends with a byte that is not white space.
  unsigned out = first;
  for (unsigned i = first; i < last;) {
    if (!isTrimSpace(m_data[i])) {
      m_data[out++] = m_data[i++];
      continue;
    }
    while (isTrimSpace(m_data[i])) ++i;  // stops before `last`
    m_data[out++] = ' ';
  }
  std::memmove(m_data + out, m_data + last, m_size - last);
  setSize(out + (m_size - last));
}

// An empty `find` replaces nothing: "first occurrence" of it has no useful meaning.
bool StringBuffer::replaceFirstOccurance(const char* find, const char* replacement,
                                         bool caseInsensitive) {
  if (find == nullptr || *find == '\0') return false;
  if (replacement == nullptr) replacement = "";
  if (pointsInto(replacement, m_data, m_data + m_capacity)) {
    // Moving our bytes below would overwrite or free the replacement.
    const StringBuffer copy(replacement);
    return copy.getSize() == std::strlen(replacement) &&
           replaceFirstOccurance(find, copy.getString(), caseInsensitive);
  }
  const size_t findLength = std::strlen(find);
  const char* hit = findBytes(m_data, m_data + m_size, find, findLength, caseInsensitive);
  if (hit == nullptr) return false;
  const size_t at = static_cast<size_t>(hit - m_data);  // reserve may move the bytes
  const size_t replacementLength = std::strlen(replacement);
  if (replacementLength > findLength &&
      (replacementLength - findLength > UINT_MAX - 1 - m_size ||
       !reserve(static_cast<unsigned>(m_size + replacementLength - findLength)))) {
    return false;
  }
  const size_t tailStart = at + findLength;
  std::memmove(m_data + at + replacementLength, m_data + tailStart, m_size - tailStart);
  std::memcpy(m_data + at, replacement, replacementLength);
  setSize(static_cast<unsigned>(m_size - findLength + replacementLength));
  return true;
}

unsigned int StringBuffer::removeCharOccurances(char c) {
  const unsigned kept = static_cast<unsigned>(std::remove(m_data, m_data + m_size, c) - m_data);
  const unsigned removed = m_size - kept;
  setSize(kept);
  return removed;
}

void StringBuffer::chopAtFirstChar(char c) {
  const void* hit = std::memchr(m_data, c, m_size);
  if (hit != nullptr) setSize(static_cast<unsigned>(static_cast<const char*>(hit) - m_data));
}
