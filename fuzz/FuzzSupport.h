// Shared by the fuzz targets: inputs held so that AddressSanitizer sees the
// first byte read past their end, record comparisons, and the failure report.
//
// Every target is a libFuzzer entry point,
//   extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
// that aborts through zpfuzz::fail when a documented property does not hold.
#pragma once

#include <time.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "services/StringBuffer.h"
#include "time/ZephalSysTime.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZP_FUZZ_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZP_FUZZ_ASAN 1
#endif
#endif

#if defined(ZP_FUZZ_ASAN)
#include <sanitizer/asan_interface.h>
// Declared here, as clang's <sanitizer/allocator_interface.h> does, because
// g++ ships no such header although its runtime has both.
extern "C" int __sanitizer_get_ownership(const volatile void* p);
extern "C" size_t __sanitizer_get_allocated_size(const volatile void* p);
#endif

namespace zpfuzz {

// Bytes as a C string literal would show them, so a report can be pasted.
inline std::string quoted(const char* bytes, size_t size) {
  std::string out = "\"";
  for (size_t i = 0; i < size; ++i) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c >= 0x20 && c < 0x7f) {
      out += static_cast<char>(c);
    } else {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02x", c);
      out += hex;
    }
  }
  return out + "\"";
}

inline std::string quoted(const char* text) { return quoted(text, std::strlen(text)); }

inline std::string fieldsOf(const ZephalSysTime& t) {
  const ZephalCalendarFields& f = t.m_time;
  char text[160];
  std::snprintf(text, sizeof text,
                "%04u-%02u-%02u %02u:%02u:%02u.%03u wday %u local %d unknownTz %d isDst %d "
                "flags %d%d",
                f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond, f.wMilliseconds,
                f.wDayOfWeek, t.m_bLocal, t.m_bFromUnknownTimezone, t.m_isDst, t.m_bFlagA,
                t.m_bFlagB);
  return text;
}

// abort() is what libFuzzer and the replay program both report as a crash.
[[noreturn]] inline void fail(const char* what, const std::string& detail) {
  std::fprintf(stderr, "\n*** fuzz check failed: %s\n%s\n", what, detail.c_str());
  std::fflush(stderr);
  std::abort();
}

// The input up to its first zero byte, in a heap block of exactly that many
// bytes plus the zero. A C-string reader cannot see past the zero, so this is
// the whole text it may touch; one byte more is a heap-buffer-overflow.
class ExactText {
 public:
  ExactText(const uint8_t* data, size_t size)
      : m_size(strnlen(reinterpret_cast<const char*>(data), size)),
        m_block(new char[m_size + 1]) {
    std::memcpy(m_block.get(), data, m_size);
    m_block[m_size] = '\0';
  }
  const char* get() const { return m_block.get(); }
  size_t size() const { return m_size; }
  std::string quoted() const { return zpfuzz::quoted(m_block.get(), m_size); }

 private:
  size_t m_size;
  std::unique_ptr<char[]> m_block;
};

// Poisons a StringBuffer's spare capacity (every byte after its terminating
// zero) while alive, since a StringBuffer keeps short texts in a 64-byte block
// inside the object and longer ones in a block with room to grow: without
// this, reads past the zero would stay inside valid memory. Construct it after
// the buffer is filled, let it die before the buffer changes or dies.
class PoisonedTail {
 public:
  explicit PoisonedTail(const StringBuffer& text) {
#if defined(ZP_FUZZ_ASAN)
    const char* data = text.getString();
    const char* const self = reinterpret_cast<const char*>(&text);
    const char* end;
    if (data >= self && data < self + sizeof(StringBuffer)) {
      // The in-object block: 64 bytes, as StringBuffer.h documents.
      end = data + 64 < self + sizeof(StringBuffer) ? data + 64 : self + sizeof(StringBuffer);
    } else if (__sanitizer_get_ownership(data)) {
      end = data + __sanitizer_get_allocated_size(data);
    } else {
      return;
    }
    m_begin = data + text.getSize() + 1;
    m_size = end > m_begin ? static_cast<size_t>(end - m_begin) : 0;
    ASAN_POISON_MEMORY_REGION(m_begin, m_size);
#else
    (void)text;
#endif
  }
  ~PoisonedTail() {
#if defined(ZP_FUZZ_ASAN)
    if (m_size > 0) ASAN_UNPOISON_MEMORY_REGION(m_begin, m_size);
#endif
  }
  PoisonedTail(const PoisonedTail&) = delete;
  PoisonedTail& operator=(const PoisonedTail&) = delete;

 private:
  const char* m_begin = nullptr;
  size_t m_size = 0;
};

// Numbers taken from the front of an input, little-endian; an exhausted input
// gives zeros, so every input, however short, is a complete case.
class Numbers {
 public:
  Numbers(const uint8_t* data, size_t size) : m_data(data), m_left(size) {}
  uint64_t u64() { return take(8); }
  uint32_t u32() { return static_cast<uint32_t>(take(4)); }
  uint16_t u16() { return static_cast<uint16_t>(take(2)); }
  int64_t i64() { return static_cast<int64_t>(u64()); }
  int32_t i32() { return static_cast<int32_t>(u32()); }
  bool flag() { return (take(1) & 1) != 0; }
  ZephalCalendarFields fields() {  // all eight, in the record's order
    ZephalCalendarFields f;
    for (uint16_t* p : {&f.wYear, &f.wMonth, &f.wDayOfWeek, &f.wDay, &f.wHour, &f.wMinute,
                        &f.wSecond, &f.wMilliseconds}) {
      *p = u16();
    }
    return f;
  }
  double real() {  // any bit pattern: NaN, infinities and subnormals included
    const uint64_t bits = u64();
    double d;
    std::memcpy(&d, &bits, sizeof d);
    return d;
  }

 private:
  uint64_t take(size_t n) {
    uint64_t v = 0;
    for (size_t i = 0; i < n && m_left > 0; ++i, --m_left) v |= uint64_t{*m_data++} << (8 * i);
    return v;
  }
  const uint8_t* m_data;
  size_t m_left;
};

// A tm of a civil reading, as the C library's oracles take it.
inline tm tmOf(long long y, long long mo, long long d, long long h = 0, long long mi = 0,
               long long s = 0) {
  tm t{};
  t.tm_year = static_cast<int>(y - 1900);
  t.tm_mon = static_cast<int>(mo - 1);
  t.tm_mday = static_cast<int>(d);
  t.tm_hour = static_cast<int>(h);
  t.tm_min = static_cast<int>(mi);
  t.tm_sec = static_cast<int>(s);
  return t;
}

// The fields as mktime (local, tm_isdst -1) or timegm reads them.
inline tm imageOf(const ZephalCalendarFields& f, bool local) {
  tm t = tmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond);
  t.tm_isdst = local ? -1 : 0;
  return t;
}

inline long long unixOf(long long y, long long mo, long long d, long long h = 0, long long mi = 0,
                        long long s = 0) {
  tm t = tmOf(y, mo, d, h, mi, s);
  return timegm(&t);
}

// The low 16 bits of a tm field plus a constant, as the broken-down load
// stores it (the sum taken exactly, then cut).
inline uint16_t low16(long long field, long long plus = 0) {
  return static_cast<uint16_t>(static_cast<unsigned long long>(field + plus) & 0xFFFF);
}

// The record fromUnixTime64(bLocal, count) must hold, from gmtime_r alone:
// the reset load of the breakdown, or the cleared value where none exists.
inline ZephalSysTime expectedLoad(long long count, bool bLocal) {
  ZephalSysTime t;
  const time_t c = static_cast<time_t>(count);
  tm g;
  if (gmtime_r(&c, &g) == nullptr) return t;
  t.m_time = ZephalCalendarFields{low16(g.tm_year, 1900), low16(g.tm_mon, 1), low16(g.tm_wday),
                                  low16(g.tm_mday),       low16(g.tm_hour),   low16(g.tm_min),
                                  low16(g.tm_sec),        0};
  t.m_bLocal = bLocal;
  return t;
}

// Everything a ZephalSysTime holds, field by field.
inline bool sameRecord(const ZephalSysTime& a, const ZephalSysTime& b) {
  return std::memcmp(&a.m_time, &b.m_time, sizeof a.m_time) == 0 && a.m_bLocal == b.m_bLocal &&
         a.m_bFlagA == b.m_bFlagA && a.m_bFlagB == b.m_bFlagB &&
         a.m_bFromUnknownTimezone == b.m_bFromUnknownTimezone && a.m_isDst == b.m_isDst;
}

// A starting value unlike anything a reader writes, so that a change shows:
// local, odd carried flags, summer time cached, a weekday no date has.
inline void mark(ZephalSysTime& t) {
  t.m_time = ZephalCalendarFields{1987, 6, 9, 5, 4, 3, 2, 777};
  t.m_bLocal = true;
  t.m_bFlagA = false;
  t.m_bFlagB = true;
  t.m_bFromUnknownTimezone = true;
  t.m_isDst = 1;
}

}  // namespace zpfuzz
