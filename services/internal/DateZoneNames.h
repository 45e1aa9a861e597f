// Zone abbreviations the date parser reads (internal). The table is data:
// services/internal/ZoneAbbreviations.inc, generated from tzdata by
// tests/data/gen_zone_names.py, one row per name that a zone used from 1970
// on, sorted so that it is searched, not walked.
#pragma once

#include <climits>
#include <cstddef>

namespace zpread {

// A name tzdata gives more than one offset (IST: India, Ireland, Israel).
constexpr int kAmbiguousZone = INT_MIN;
// A name the table does not hold.
constexpr int kUnknownZone = INT_MIN + 1;

// Minutes east of GMT that the `len` letters at `name` stand for, in any
// letter case; kAmbiguousZone or kUnknownZone otherwise.
int zoneNameOffset(const char* name, size_t len);

}  // namespace zpread
