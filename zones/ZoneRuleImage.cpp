// A TZ rule as the zone file cctz reads (RFC 8536, version 2): no history,
// the two changes of 1970, and the rule as the footer that cctz applies
// after them. cctz 2.3 extends a footer's rule only from a last pair of
// changes that it matches, so the pair must be there; before it, the caller
// moves instants and readings on by 400-year cycles (zones/internal/ZoneRule.h).
// Summer time all year (EST5EDT4,0/0,J365/25, RFC 8536's way to say it)
// has changes that meet, which cctz refuses: it becomes summer time alone.
#include <utility>

#include "services/internal/CivilDays.h"
#include "zones/internal/ZoneRule.h"

namespace {

constexpr char kMagic[] = "TZif2";    // the magic, then the version
constexpr size_t kReservedBytes = 15;

void putBigEndian(std::string& out, uint64_t value, int bytes) {
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
    out += static_cast<char>((value >> shift) & 0xff);
  }
}

struct Change {
  int64_t at;    // Unix seconds
  uint8_t type;  // 0 standard time, 1 summer time
};

// A local time type: its offset east, whether it is summer time, its abbreviation.
struct Type {
  int32_t offset;
  bool summer;
  std::string_view name;
};

// The zone file's content: the types (the first in force before the first
// change), the changes between them, the footer.
struct Image {
  Type types[2];
  size_t typeCount = 0;
  Change changes[2];
  size_t changeCount = 0;
  std::string_view footer;
};

// One header and data block: version 1's with 4-byte times, version 2's with 8.
void putBlock(std::string& out, const Image& image, int timeBytes) {
  std::string names;
  for (size_t i = 0; i < image.typeCount; ++i) (names += image.types[i].name) += '\0';
  out += kMagic;
  out.append(kReservedBytes, '\0');
  // isutcnt, isstdcnt, leapcnt, timecnt, typecnt, charcnt
  for (size_t count : {size_t{0}, size_t{0}, size_t{0}, image.changeCount, image.typeCount, names.size()}) {
    putBigEndian(out, count, 4);
  }
  for (size_t i = 0; i < image.changeCount; ++i) {
    putBigEndian(out, static_cast<uint64_t>(image.changes[i].at), timeBytes);
  }
  for (size_t i = 0; i < image.changeCount; ++i) out += static_cast<char>(image.changes[i].type);
  size_t nameAt = 0;  // each type: offset (4 bytes), summer-time flag, where its name starts
  for (size_t i = 0; i < image.typeCount; ++i) {
    putBigEndian(out, static_cast<uint32_t>(image.types[i].offset), 4);
    out += static_cast<char>(image.types[i].summer);
    out += static_cast<char>(nameAt);
    nameAt += image.types[i].name.size() + 1;
  }
  out += names;
}

// From 00:00 on 1 January (day 0 or J1) to 24:00 on 31 December (J365) on
// summer time, which is midnight of standard time.
bool summerAllYear(const zpzone::ZoneRule& rule) {
  const zpzone::RuleDay& s = rule.start;
  const zpzone::RuleDay& e = rule.end;
  const bool firstMidnight = s.time == 0 && ((s.kind == zpzone::RuleDay::kZeroBased && s.day == 0) ||
                                             (s.kind == zpzone::RuleDay::kJulian && s.day == 1));
  return firstMidnight && e.kind == zpzone::RuleDay::kJulian && e.day == 365 &&
         e.time == zpcivil::kSecondsPerDay + rule.dstOffset - rule.stdOffset;
}

}  // namespace

int64_t zpzone::instantOf(const RuleDay& day, int64_t year, int32_t offset) {
  int64_t days = zpcivil::daysFromCivil(year, 1, 1);
  if (day.kind == RuleDay::kJulian) {
    days += day.day - 1 + (zpcivil::isLeapYear(year) && day.day >= 60);
  } else if (day.kind == RuleDay::kZeroBased) {
    days += day.day;
  } else {
    const int64_t first = zpcivil::daysFromCivil(year, day.month, 1);
    const int firstWeekday = zpcivil::weekdayFromDays(first);
    int mday = 1 + (day.weekday - firstWeekday + 7) % 7 + (day.week - 1) * 7;  // [1, 35]
    if (mday > zpcivil::daysInMonth(year, day.month)) mday -= 7;  // week 5: the last
    days = first + mday - 1;
  }
  return days * zpcivil::kSecondsPerDay + day.time - offset;
}

std::string zpzone::ruleImage(const ZoneRule& rule, std::string_view text) {
  Image image;
  image.footer = text;
  if (rule.dstName.empty()) {
    image.types[image.typeCount++] = {rule.stdOffset, false, rule.stdName};
  } else if (summerAllYear(rule)) {
    image.types[image.typeCount++] = {rule.dstOffset, true, rule.dstName};
    image.footer = {};  // the last (only) type holds for ever
  } else {
    image.types[image.typeCount++] = {rule.stdOffset, false, rule.stdName};
    image.types[image.typeCount++] = {rule.dstOffset, true, rule.dstName};
    Change start{instantOf(rule.start, kImageYear, rule.stdOffset), 1};
    Change end{instantOf(rule.end, kImageYear, rule.dstOffset), 0};
    if (end.at < start.at) std::swap(start, end);  // summer across the new year
    image.changes[image.changeCount++] = start;
    image.changes[image.changeCount++] = end;
  }
  std::string out;
  putBlock(out, image, 4);
  putBlock(out, image, 8);
  out += '\n';
  out += image.footer;
  out += '\n';
  return out;
}
