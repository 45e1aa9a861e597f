// The cctz zone a ZephalTimeZone holds (internal header). The public header
// keeps cctz out of users' code: it holds the zone's one pointer as bytes.
#pragma once

#include <cctz/time_zone.h>

#include <cstring>
#include <string_view>
#include <type_traits>

#include "zones/ZephalTimeZone.h"

static_assert(sizeof(cctz::time_zone) == sizeof(void*) &&
                  std::is_trivially_copyable<cctz::time_zone>::value,
              "a cctz::time_zone is one pointer, copied as bytes");

struct ZoneAccess {
  static cctz::time_zone cctzZone(const ZephalTimeZone& zone) {
    cctz::time_zone z;
    std::memcpy(static_cast<void*>(&z), zone.m_cctzZone, sizeof z);
    return z;
  }

  static bool isRule(const ZephalTimeZone& zone) { return zone.m_isRule; }

  static void store(ZephalTimeZone& zone, const cctz::time_zone& z, bool isRule,
                    std::string_view name) {
    std::memcpy(zone.m_cctzZone, static_cast<const void*>(&z), sizeof z);
    zone.m_isRule = isRule;
    zone.m_name.assign(name.data(), name.size());
  }
};
