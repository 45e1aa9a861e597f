// A structure-aware mutator for the targets that read date texts.
//
// libFuzzer's byte mutations with the dictionary find the short forms fast,
// but a run of them rarely builds what long real-world texts hold: nested
// comments, folded white space, a field repeated many times, trailing words,
// digit runs of every width. Half the calls here do one such edit on the
// text's own tokens; the other half are libFuzzer's mutations, so that
// comparison-guided progress goes on.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

extern "C" __attribute__((weak)) size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

// Pieces the forms of the date texts are made of.
const char* const kPieces[] = {
    " ",        ", ",          ":",           "-",         "T",          "Z",
    " GMT",     " UTC",        " CET",        " +0100",    " -0530",     "+01:00",
    "(",        ")",           " (comment)",  "\r\n ",     "\t",         ".123",
    ".123456789", " m=+0.000123", "[Europe/Berlin]", " trailing words", "Thu", "Mar",
    "2024",     "07",          "09:05:03",    "/Date(",    ")/",         "/Mar/2024:",
    // What people and office software write.
    " AM",      " p.m.",       "\xe2\x80\xaf" "PM", "\xc2\xa0" "am", " at ",     "January",
    "/",        ".",           "25.1.",       "3/7/",      "-JAN-",      " GMT-5",
    " GMT+5:30", " UTC\xe2\x88\x92" "5", "12:05",   "0:32",      "Sept",
};

enum class Kind { kDigit, kAlpha, kSpace, kOther };

Kind kindOf(char c) {
  if (c >= '0' && c <= '9') return Kind::kDigit;
  if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) return Kind::kAlpha;
  if (c == ' ' || c == '\t' || c == '\r' || c == '\n') return Kind::kSpace;
  return Kind::kOther;
}

// The run of bytes of one kind around position `at`: [begin, end).
void tokenAt(const std::string& s, size_t at, size_t& begin, size_t& end) {
  const Kind k = kindOf(s[at]);
  begin = at;
  end = at + 1;
  while (begin > 0 && kindOf(s[begin - 1]) == k) --begin;
  while (end < s.size() && kindOf(s[end]) == k) ++end;
}

std::string mutate(std::string s, std::minstd_rand& rng) {
  const auto pick = [&](size_t n) { return static_cast<size_t>(rng() % n); };
  const size_t at = s.empty() ? 0 : pick(s.size() + 1);
  size_t begin = 0, end = 0;
  if (!s.empty()) tokenAt(s, at < s.size() ? at : s.size() - 1, begin, end);
  switch (pick(6)) {
    case 0: {  // a comment nested 1 to 16 deep, around a token or empty
      const size_t depth = 1 + pick(16);
      return s.substr(0, begin) + std::string(depth, '(') + s.substr(begin, end - begin) +
             std::string(depth, ')') + s.substr(end);
    }
    case 1: {  // a token repeated 2 to 64 times
      std::string run;
      for (size_t n = 2 + pick(63); n > 0; --n) run += s.substr(begin, end - begin);
      return s.substr(0, begin) + run + s.substr(end);
    }
    case 2:  // one of the pieces of the forms
      return s.substr(0, at) + kPieces[pick(sizeof kPieces / sizeof kPieces[0])] + s.substr(at);
    case 3: {  // a digit run of 1 to 20 digits in place of a token
      std::string digits;
      for (size_t n = 1 + pick(20); n > 0; --n) digits += static_cast<char>('0' + pick(10));
      return s.substr(0, begin) + digits + s.substr(end);
    }
    case 4:  // the text twice, as a list of dates
      return s + (pick(2) ? " " : ", ") + s;
    default:  // the tail dropped
      return s.substr(0, at);
  }
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize,
                                          unsigned int seed) {
  std::minstd_rand rng(seed == 0 ? 1 : seed);
  if (rng() % 2 == 0 && LLVMFuzzerMutate != nullptr) return LLVMFuzzerMutate(data, size, maxSize);
  std::string text = mutate(std::string(reinterpret_cast<const char*>(data), size), rng);
  if (text.size() > maxSize) text.resize(maxSize);
  std::memcpy(data, text.data(), text.size());
  return text.size();
}
