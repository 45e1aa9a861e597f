// The pattern writer's output: appends that remember failure, padding of
// any width, letter case, and GNU date's layout of signed, padded numbers.
#include <cstring>

#include "services/StringBuffer.h"
#include "services/internal/PatternSink.h"
#include "services/internal/PutDigits.h"

namespace zppattern {

void Sink::flush() {
  if (m_used == 0) return;
  if (m_ok) m_ok = m_out.appendN(m_block, static_cast<unsigned>(m_used));
  m_used = 0;
}

void Sink::putLong(const char* text, size_t n) {
  flush();
  if (m_ok) m_ok = n < UINT32_MAX && m_out.appendN(text, static_cast<unsigned>(n));
}

// A width of INT_MAX is 2 GiB of padding: after the first block, each append
// copies all the padding written so far, so n bytes take log2(n) appends.
void Sink::fillLong(char c, size_t n) {
  flush();
  std::memset(m_block, c, sizeof m_block);
  const size_t first = n < sizeof m_block ? n : sizeof m_block;
  putLong(m_block, first);
  for (size_t done = first; done < n && m_ok;) {
    const size_t step = n - done < done ? n - done : done;
    // The padding just written is the last `done` bytes of the buffer; the
    // append keeps its source valid when it moves the text.
    putLong(m_out.getString() + m_out.getSize() - done, step);
    done += step;
  }
}

namespace {

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

void putCased(Sink& out, const char* text, size_t n, Case letters) {
  if (letters == Case::kAsIs) {
    out.put(text, n);
    return;
  }
  char chunk[64];
  while (n > 0) {
    const size_t step = n < sizeof chunk ? n : sizeof chunk;
    for (size_t i = 0; i < step; ++i) {
      chunk[i] = letters == Case::kUpper ? upper(text[i]) : lower(text[i]);
    }
    out.put(chunk, step);
    text += step;
    n -= step;
  }
}

// Padding before `n` bytes to reach `width`, as date's width_add: none for
// the pad '-' or no width.
void padTo(Sink& out, char pad, int64_t width, size_t n) {
  if (pad == '-' || width < 0 || static_cast<uint64_t>(width) <= n) return;
  out.fill(pad == '0' || pad == '+' ? '0' : ' ', static_cast<size_t>(width) - n);
}

}  // namespace

void putText(Sink& out, char pad, int width, const char* text, size_t n, Case letters) {
  padTo(out, pad, width, n);
  putCased(out, text, n, letters);
}

void putNumber(Sink& out, char pad, int width, int digits, uint64_t magnitude, bool negative,
               bool plus, unsigned colonMask) {
  if ((pad == 0 || pad == '0') && width < 0 && !negative && !plus && colonMask == 0 &&
      magnitude <= UINT32_MAX) {
    // Most numbers: zeros to their natural width, from the digit-pair table.
    char text[12];
    const char* const end = zp_detail::putDigits(text, static_cast<uint32_t>(magnitude),
                                                 static_cast<unsigned>(digits));
    out.put(text, static_cast<size_t>(end - text));
    return;
  }
  char buf[40];  // 20 digits and as many colons at most
  char* const end = buf + sizeof buf;
  char* p = end;
  do {
    if (colonMask & 1) *--p = ':';
    colonMask >>= 1;
    *--p = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0 || colonMask != 0);
  const size_t n = static_cast<size_t>(end - p);
  if (pad == 0) pad = '0';
  int64_t w = width < 0 ? digits : width;  // int64: INT_MAX less the sign stays exact
  const char sign = negative ? '-' : plus ? '+' : 0;
  if (sign != 0) {
    // Spaces go before the sign, zeros after it.
    const int64_t shortage = w - 1 - static_cast<int64_t>(n);
    if (pad == '_' && shortage > 0) {
      out.fill(' ', static_cast<size_t>(shortage));
      w -= shortage;
    }
    out.put(&sign, 1);
    --w;
  }
  padTo(out, pad, w, n);
  out.put(p, n);
}

void putYearish(Sink& out, const Directive& s, char yearPad, int width, int digits, int64_t value) {
  const char pad = s.pad != 0 ? s.pad : yearPad;
  const bool negative = value < 0;
  const uint64_t magnitude =
      negative ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
  const uint64_t room = digits == 2 ? 99 : 9999;
  const bool plus = pad == '+' && (magnitude > room || digits < width);
  putNumber(out, pad, width, digits, magnitude, negative, plus);
}

}  // namespace zppattern
