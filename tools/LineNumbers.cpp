#include "tools/LineNumbers.h"

#include <charconv>
#include <cstring>

namespace zpdate {
namespace {

constexpr char kPrefix[] = "zpdate: line ";
constexpr size_t kPrefixSize = sizeof kPrefix - 1;

}  // namespace

void moveLineNumbers(std::string& messages, unsigned long firstLine) {
  if (firstLine <= 1 || messages.empty()) return;
  std::string moved;
  moved.reserve(messages.size() + messages.size() / 8);
  const char* p = messages.data();
  const char* const end = p + messages.size();
  while (p < end) {
    const auto* newline =
        static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
    const char* const next = newline ? newline + 1 : end;
    unsigned long number = 0;
    const char* digits = p + kPrefixSize;
    std::from_chars_result read{digits, std::errc::invalid_argument};
    if (static_cast<size_t>(next - p) > kPrefixSize && std::memcmp(p, kPrefix, kPrefixSize) == 0) {
      read = std::from_chars(digits, next, number);
    }
    if (read.ec == std::errc() && read.ptr < next && *read.ptr == ':') {
      char room[24];
      moved.append(kPrefix, kPrefixSize);
      moved.append(room, std::to_chars(room, room + sizeof room, number + firstLine - 1).ptr);
      moved.append(read.ptr, next);
    } else {
      moved.append(p, next);
    }
    p = next;
  }
  messages.swap(moved);
}

}  // namespace zpdate
