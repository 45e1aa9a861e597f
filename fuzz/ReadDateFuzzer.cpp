// zpReadDate on any bytes, handed over as a view with nothing after it, in
// each field order: what it reads is a real date and time; what it reads
// without an order, every order that reads the text reads the same (an
// order is never guessed); what it reads, loadAnyFormat reads to the same
// second, as both choose the form by the same tests; a refusal names a byte
// of the text and leaves the value alone.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz/FuzzSupport.h"
#include "services/StringBuffer.h"
#include "time/ZephalText.h"

namespace {

constexpr ZephalDateOrder kOrders[] = {ZephalDateOrder::kUnknown, ZephalDateOrder::kMonthDayYear,
                                       ZephalDateOrder::kDayMonthYear,
                                       ZephalDateOrder::kYearMonthDay};

bool realFields(const ZephalCalendarFields& f) {
  static const int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return f.wYear <= 9999 && f.wMonth >= 1 && f.wMonth <= 12 && f.wDay >= 1 &&
         f.wDay <= kDays[f.wMonth - 1] && f.wHour <= 23 && f.wMinute <= 59 && f.wSecond <= 60 &&
         f.wMilliseconds <= 999;
}

bool sameSecond(const ZephalSysTime& a, const ZephalSysTime& b) {
  const ZephalCalendarFields &x = a.m_time, &y = b.m_time;
  return x.wYear == y.wYear && x.wMonth == y.wMonth && x.wDay == y.wDay && x.wHour == y.wHour &&
         x.wMinute == y.wMinute && x.wSecond == y.wSecond;
}

// A JSON count before 1970: the loader rounds it toward 1970, we floor it.
bool negativeJson(const std::string& text) {
  const size_t open = text.find("Date(");
  if (open == std::string::npos) return false;
  const size_t count = text.find_first_not_of(" \t\r\n", open + 5);
  return count != std::string::npos && text[count] == '-';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kZephalMaxDateText + 8) return 0;
  // The exact bytes on the heap, so that a read past the view is caught.
  const std::unique_ptr<char[]> bytes(new char[size ? size : 1]);
  std::memcpy(bytes.get(), data, size);
  const std::string text(bytes.get(), size);
  const std::string input = zpfuzz::quoted(text.data(), size);

  ZephalSysTime start;
  zpfuzz::mark(start);
  ZephalSysTime read[4];
  bool ok[4];
  for (int i = 0; i < 4; ++i) {
    ZephalTextOptions options;
    options.order = kOrders[i];
    read[i].copyFrom(start);
    ZephalTextError error;
    ok[i] = zpReadDate({bytes.get(), size}, options, read[i], error);
    if (ok[i] && !realFields(read[i].m_time)) {
      zpfuzz::fail("zpReadDate read no real date", input + " -> " + zpfuzz::fieldsOf(read[i]));
    }
    if (!ok[i] && (error.reason == nullptr || error.byte > size ||
                   !zpfuzz::sameRecord(read[i], start))) {
      zpfuzz::fail("zpReadDate refused without a reason or changed the value", input);
    }
  }
  for (int i = 1; i < 4 && ok[0]; ++i) {
    if (ok[i] && !(zpfuzz::sameRecord(read[i], read[0]))) {
      zpfuzz::fail("an order changed what was read without one",
                   input + " -> " + zpfuzz::fieldsOf(read[0]) + " and " + zpfuzz::fieldsOf(read[i]));
    }
  }
  if (ok[0] && !negativeJson(text)) {
    StringBuffer buffer;
    buffer.appendN(text.data(), static_cast<unsigned>(size));
    ZephalSysTime loaded;
    if (!loaded.loadAnyFormat(false, buffer) || !sameSecond(loaded, read[0])) {
      zpfuzz::fail("loadAnyFormat reads otherwise what zpReadDate reads",
                   input + " -> " + zpfuzz::fieldsOf(read[0]) + ", loader " +
                       zpfuzz::fieldsOf(loaded));
    }
  }
  return 0;
}
