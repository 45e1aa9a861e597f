// The zone-abbreviation table and its search.
#include "services/internal/DateZoneNames.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace zpread {
namespace {

struct ZoneName {
  const char* name;  // upper case
  int minutesEast;   // or kAmbiguousZone
};

constexpr ZoneName kZoneNames[] = {
#include "services/internal/ZoneAbbreviations.inc"
};

constexpr bool before(const char* a, const char* b) {
  for (; *a && *a == *b; ++a, ++b) {
  }
  return static_cast<unsigned char>(*a) < static_cast<unsigned char>(*b);
}

constexpr bool sortedAndUnique() {
  for (size_t i = 1; i < std::size(kZoneNames); ++i) {
    if (!before(kZoneNames[i - 1].name, kZoneNames[i].name)) return false;
  }
  return true;
}
static_assert(sortedAndUnique(), "ZoneAbbreviations.inc must be sorted in byte order, no repeats");

// No name of the table is longer; longer words are no zone names.
constexpr size_t kLongestName = 7;

constexpr bool namesFit() {
  for (const ZoneName& z : kZoneNames) {
    size_t len = 0;
    while (z.name[len] != '\0') ++len;
    if (len == 0 || len > kLongestName) return false;
  }
  return true;
}
static_assert(namesFit(), "a zone name longer than kLongestName would never be found");

}  // namespace

int zoneNameOffset(const char* name, size_t len) {
  if (len == 0 || len > kLongestName) return kUnknownZone;
  char upper[kLongestName + 1];
  for (size_t i = 0; i < len; ++i) {
    const char c = name[i];
    upper[i] = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  upper[len] = '\0';
  const ZoneName* const end = std::end(kZoneNames);
  const ZoneName* const it = std::lower_bound(
      std::begin(kZoneNames), end, upper,
      [](const ZoneName& z, const char* key) { return std::strcmp(z.name, key) < 0; });
  if (it == end || std::strcmp(it->name, upper) != 0) return kUnknownZone;
  return it->minutesEast;
}

}  // namespace zpread
