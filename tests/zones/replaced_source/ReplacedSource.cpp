// A program with cctz's zone-data hook of its own: the component's weak one
// gives way, names still load through the program's hook, and a TZ rule is
// refused with the reason rather than met by a hook that does not know it.
#include <cctz/zone_info_source.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "zones/ZephalTimeZone.h"

namespace {

int g_asked = 0;

std::unique_ptr<cctz::ZoneInfoSource> programSource(
    const std::string& name,
    const std::function<std::unique_ptr<cctz::ZoneInfoSource>(const std::string&)>& files) {
  ++g_asked;
  return files(name);
}

}  // namespace

namespace cctz_extension {
ZoneInfoSourceFactory zone_info_source_factory = programSource;
}  // namespace cctz_extension

int main() {
  ZephalTimeZone zone;
  ZephalTextError error;
  const bool name = zone.load("Asia/Tokyo", error);
  const bool rule = zone.load("CET-1CEST,M3.5.0,M10.5.0/3", error);
  const char* expected = "TZ rules need zephal::zones' zone source, which the program replaced";
  std::printf("name %d (hook asked %d times), rule %d: %s\n", name, g_asked, rule, error.reason);
  return name && g_asked > 0 && !rule && std::strcmp(error.reason, expected) == 0 &&
                 zone.name() == "Asia/Tokyo"
             ? 0
             : 1;
}
